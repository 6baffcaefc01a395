#include "platform/address.h"

namespace cvl {

namespace {

void AppendOctet(std::string &text, unsigned octet) {
  if (octet >= 100) text += static_cast<char>('0' + octet / 100);
  if (octet >= 10) text += static_cast<char>('0' + octet / 10 % 10);
  text += static_cast<char>('0' + octet % 10);
}

}  // namespace

std::string AddressText(Ipv4Address address) {
  return AddressText(PeerAddress(address));
}

std::string AddressText(PeerAddress address) {
  std::string text;
  AppendAddress(text, address);
  return text;
}

void AppendAddress(std::string &text, PeerAddress address) {
  if (!address) return;
  for (int shift = 24; shift >= 0; shift -= 8) {
    AppendOctet(text, *address >> shift & 0xFF);
    if (shift > 0) text += '.';
  }
}

std::optional<Ipv4Address> ParseAddress(std::string_view text) {
  Ipv4Address address = 0;
  std::size_t at = 0;
  for (int part = 0; part < 4; ++part) {
    if (part > 0 && (at == text.size() || text[at++] != '.')) return std::nullopt;
    unsigned octet = 0;
    const std::size_t first = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9' && at - first < 3) {
      octet = octet * 10 + static_cast<unsigned>(text[at++] - '0');
    }
    if (at == first || octet > 255) return std::nullopt;
    address = address << 8 | octet;
  }
  if (at != text.size()) return std::nullopt;
  return address;
}

}  // namespace cvl
