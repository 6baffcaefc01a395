// The little that the update client looks at in an HTTP answer: one header and the empty
// line behind the headers. The status line is never read.
//
// Positions count characters from 1; 0 says that something isn't there. BehindHeader takes
// them as they come, 0 included.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cvl {

/// Where "Content-Length: " begins, in exactly this case.
std::size_t LengthPosition(std::string_view data);

/// Where the first CR LF CR LF begins.
std::size_t HeaderEnd(std::string_view data);

/// The value of the header at POSITION: the number at the start of the seven characters
/// behind its name, once their CR LF pairs are gone. A longer number is cut there, and one
/// that is short enough for the body to reach into the seven takes the body's first digits
/// along. It is meant so: the maker's site keeps its files to lengths that read right.
/// Raises 6 when the number doesn't fit ("9E99").
std::int32_t ContentLengthAt(std::string_view data, std::size_t position);

/// What stands behind the empty line at HEADER_END. Of data without one, 0, everything from
/// the fourth character on: it is meant so, and a version file that arrives behind its
/// header is read that way.
std::string_view BehindHeader(std::string_view data, std::size_t header_end);

/// TEXT without its CR LF pairs; a CR or LF by itself stays.
std::string WithoutLineEnds(std::string_view text);

}  // namespace cvl
