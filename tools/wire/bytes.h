// Bytes as they come from the wire: numbers in them, and how they are shown.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace cvl::tools {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The four bytes from `offset` on, most significant first. The caller has checked
/// that they exist.
std::uint32_t Big32(ByteView bytes, std::size_t offset);

/// The four bytes from `offset` on, least significant first. As above.
std::uint32_t Little32(ByteView bytes, std::size_t offset);

/// Writes four bytes from `offset` on, most significant first. As above.
void PutBig32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value);

/// Two small hexadecimal digits a byte and nothing between them; "" for no bytes.
std::string Hex(ByteView bytes);

/// Lines of at most 16 bytes, each with its decimal offset in front and a line end
/// behind. Of more than 1024 bytes only the first 1024 are shown, and the rest are
/// counted. No bytes at all give the line "(empty)".
std::string HexDump(ByteView bytes);

/// The bytes as text that can't upset a terminal: printable ASCII stands for itself,
/// a backslash is doubled, everything else is \xHH.
std::string Printable(ByteView bytes);

}  // namespace cvl::tools
