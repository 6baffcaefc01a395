// Lines of a text file from any system: they end at CR LF, LF or CR.

#pragma once

#include <istream>
#include <string>

namespace cvl {

class LineReader {
 public:
  /// A byte order mark at the start of FILE is passed over.
  explicit LineReader(std::istream &file);

  /// Reads the next line without its end. False at the end of the file. A line beyond
  /// MostLength is cut; the rest of it is passed over.
  bool Read(std::string &line);

  static constexpr std::size_t MostLength = 65536;

 private:
  std::istream &File_;
};

}  // namespace cvl
