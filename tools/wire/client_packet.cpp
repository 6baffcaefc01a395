#include "tools/wire/client_packet.h"

#include <algorithm>
#include <cassert>
#include <string_view>

namespace cvl::tools {

namespace {

constexpr std::size_t HeadLength = 4;
constexpr std::size_t CodeOffset = 4;
constexpr std::size_t ZoneOffset = 5;
constexpr std::size_t DataOffset = 8;
constexpr std::size_t StampOffset = 16;
constexpr std::size_t FractionOffset = 20;

bool HasText(ByteView bytes, std::size_t offset, std::string_view text) {
  const ByteView field = bytes.subspan(offset, text.size());
  return std::equal(field.begin(), field.end(), text.begin(),
                    [](std::uint8_t byte, char c) { return byte == static_cast<std::uint8_t>(c); });
}

bool SameRange(ByteView left, ByteView right, std::size_t from, std::size_t to) {
  return std::ranges::equal(left.subspan(from, to - from), right.subspan(from, to - from));
}

}  // namespace

std::array<std::uint8_t, ClientLength> EncodeClientRequest(NtpTime mark) {
  std::array<std::uint8_t, ClientLength> bytes{'C', 'V', 'L', 'C', '1'};
  static_assert(CodeOffset == HeadLength);
  WriteNtpTime(bytes, DataOffset, mark);
  return bytes;
}

std::variant<ClientReply, ClientFault> DecodeClientReply(ByteView reply, ByteView request,
                                                         ClientForm form) {
  assert(request.size() == ClientLength);
  if (reply.size() != ClientLength) {
    return ClientFault::Length;
  }
  if (!HasText(reply, 0, "CVLS")) {
    return ClientFault::Head;
  }
  if (form == ClientForm::Tcp && !HasText(reply, ZoneOffset, "UTC")) {
    return ClientFault::Zone;
  }
  const std::size_t returned_from = form == ClientForm::Tcp ? DataOffset : ZoneOffset;
  if (!SameRange(reply, request, returned_from, StampOffset)) {
    return ClientFault::NotMyData;
  }
  const std::uint8_t release = reply[CodeOffset];
  ClientReply result;
  result.Release = release > 0x20 && release < 0x7F ? static_cast<char>(release) : '?';
  result.Seconds = Big32(reply, StampOffset);
  result.Fraction =
      form == ClientForm::Tcp ? Little32(reply, FractionOffset) : Big32(reply, FractionOffset);
  return result;
}

}  // namespace cvl::tools
