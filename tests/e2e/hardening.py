"""Hardening of a release build: what the programs and the window module must carry for the
loader, the C library and the processor to check them."""

import os
import struct

from harness import BIN, run_all

PROGRAMS = ("cvlserver", "cvlquery", "cvlupstream")
MODULES = ("cvlwindow.so",)

ET_DYN = 3
PT_DYNAMIC, PT_GNU_STACK, PT_GNU_RELRO = 2, 0x6474E551, 0x6474E552
PF_X = 1
DT_STRTAB, DT_STRSZ, DT_FLAGS, DT_FLAGS_1 = 5, 10, 30, 0x6FFFFFFB
DF_BIND_NOW = 8
DF_1_NOW, DF_1_PIE = 1, 0x8000000
# The landing pad of an indirect jump by machine: endbr64, bti c or paciasp.
LANDING_PADS = {62: (b"\xf3\x0f\x1e\xfa",), 183: (b"\x5f\x24\x03\xd5", b"\x3f\x23\x03\xd5")}


class Binary:
    """The headers of a 64-bit little-endian ELF file."""

    def __init__(self, name):
        with open(os.path.join(BIN, name), "rb") as file:
            self.data = file.read()
        assert self.data[:6] == b"\x7fELF\x02\x01", name
        self.type, self.machine = struct.unpack_from("<HH", self.data, 16)
        at, = struct.unpack_from("<Q", self.data, 32)
        size, count = struct.unpack_from("<HH", self.data, 54)
        # Type, flags, file offset, address, length in the file.
        self.segments = [struct.unpack_from("<IIQQ8xQ", self.data, at + number * size)
                         for number in range(count)]
        self.dynamic = self.read_dynamic()

    def read_dynamic(self):
        entries = {}
        for kind, _, offset, _, length in self.segments:
            if kind != PT_DYNAMIC:
                continue
            for at in range(offset, offset + length, 16):
                tag, value = struct.unpack_from("<QQ", self.data, at)
                entries[tag] = value
        return entries

    def segment(self, kind):
        found = [segment for segment in self.segments if segment[0] == kind]
        return found[0] if found else None

    def names(self):
        """Every name that the dynamic linker sees: what it imports and exports."""
        address = self.dynamic[DT_STRTAB]
        start = next(offset + address - at for kind, _, offset, at, length in self.segments
                     if kind == 1 and at <= address < at + length)
        return set(self.data[start:start + self.dynamic[DT_STRSZ]].split(b"\0"))


def binaries():
    modules = [name for name in MODULES if os.path.exists(os.path.join(BIN, name))]
    return [(name, Binary(name)) for name in (*PROGRAMS, *modules)]


def TestProgramsLoadAtARandomAddress():
    for name in PROGRAMS:
        binary = Binary(name)
        assert binary.type == ET_DYN, name
        assert binary.dynamic.get(DT_FLAGS_1, 0) & DF_1_PIE, name


def TestRelocationsAreResolvedAtStartAndReadOnlyFromThenOn():
    for name, binary in binaries():
        assert binary.dynamic.get(DT_FLAGS, 0) & DF_BIND_NOW, name
        assert binary.dynamic.get(DT_FLAGS_1, 0) & DF_1_NOW, name
        assert binary.segment(PT_GNU_RELRO), name


def TestTheStackIsNotExecutable():
    for name, binary in binaries():
        stack = binary.segment(PT_GNU_STACK)
        assert stack and not stack[1] & PF_X, name


def TestStacksAreProtected():
    for name, binary in binaries():
        assert b"__stack_chk_fail" in binary.names(), name


def TestTheServerCallsTheCheckedFunctionsOfTheLibrary():
    names = Binary("cvlserver").names()
    assert b"__snprintf_chk" in names
    assert b"snprintf" not in names


def TestIndirectJumpsLandOnMarkedPlaces():
    # The start files of a C library without such marks keep the linker from marking the whole
    # program. A few pads come from the compiler's own files, so count them.
    for name, binary in binaries():
        if binary.machine in LANDING_PADS:
            pads = sum(binary.data.count(pad) for pad in LANDING_PADS[binary.machine])
            assert pads > 50, f"{name}: {pads}"


if __name__ == "__main__":
    run_all()
