// Files that are read whole, and replaced whole or not at all.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cvl {

/// Reads a regular file of at most MOST bytes. Returns 0 or an errno value: ENOENT when there
/// is none, EFBIG for a larger one and EINVAL for what isn't a regular file.
[[nodiscard]] int ReadWholeFile(const std::string &path, std::size_t most, std::string &bytes);

/// Replaces a file with BYTES, or creates it, with the mode and the owner of the old one. A
/// process that is killed meanwhile, or a machine that loses its power, leaves the old file or
/// the new one, whole; what is reported as done is on the disk. The bytes are written to a
/// file of the same name with ".new" added. Anything of that name is removed first, never
/// written to.
///
/// Returns 0 or an errno value, and the old file is untouched then. EWOULDBLOCK means that
/// another process is writing the file, EINVAL that PATH isn't a regular file; EACCES is also
/// returned for an old file that this process may not write, though its directory would let it be
/// replaced.
[[nodiscard]] int ReplaceFile(const std::string &path, std::string_view bytes);

}  // namespace cvl
