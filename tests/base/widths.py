#!/usr/bin/env python3
"""Portable code names the width of its integers: long and the functions that return it have
32 bits on some systems and 64 on others. Only the code of one system may use them.

    widths.py SOURCE_DIRECTORY
"""

import pathlib
import re
import sys

OF_ONE_SYSTEM = ('platform/linux/', 'platform/windows/')
WIDTHLESS = re.compile(
    r'\b(long|lrintf?|lroundf?|strtou?l|ato[il]|stou?l|time_t|\d+[uU]?[lL][uU]?)\b')
# Comments and texts. A quote between two digits or letters separates digits.
IGNORED = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Za-z_])\'(?:\\.|[^\'\\\n])+\'',
                     re.DOTALL)


def blanked(match):
    return re.sub(r'[^\n]', ' ', match.group())


def uses(text):
    """The line number and the word of each use in TEXT."""
    for number, line in enumerate(IGNORED.sub(blanked, text).split('\n'), 1):
        for word in WIDTHLESS.findall(line):
            yield number, word


def check_itself():
    """The uses that must be found, and the look-alikes that must not."""
    assert [word for _, word in uses("long a = lrint(b);\n1L 'x' 86400UL")] == [
        'long', 'lrint', '1L', '86400UL']
    assert not list(uses('// long\n/* long\nlong */ "long \\" long" \'l\' llrint(1) 1\'000 LongText'))


def main():
    check_itself()
    source = pathlib.Path(sys.argv[1])
    files = [file for file in sorted(source.rglob('*')) if file.suffix in ('.h', '.cpp')]
    assert len(files) > 100, 'no source files in ' + str(source)
    found = 0
    for file in files:
        if str(file.relative_to(source)).startswith(OF_ONE_SYSTEM):
            continue
        for number, word in uses(file.read_text(encoding='utf-8')):
            print(f'{file}:{number}: {word} has no certain width')
            found += 1
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
