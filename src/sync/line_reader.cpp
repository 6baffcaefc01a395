#include "sync/line_reader.h"

#include <algorithm>

namespace cvl {

LineReader::LineReader(std::istream &file) : File_(file) {
  constexpr char Mark[] = {'\xEF', '\xBB', '\xBF'};
  char start[3] = {};
  File_.read(start, sizeof start);
  if (File_.gcount() == 3 && std::equal(start, start + 3, Mark)) return;
  File_.clear();
  File_.seekg(0);
}

bool LineReader::Read(std::string &line) {
  using Traits = std::istream::traits_type;
  std::streambuf &bytes = *File_.rdbuf();
  line.clear();
  int next = bytes.sbumpc();
  if (next == Traits::eof()) return false;
  while (next != Traits::eof() && next != '\n' && next != '\r') {
    if (line.size() < MostLength) line += Traits::to_char_type(next);
    next = bytes.sbumpc();
  }
  if (next == '\r' && bytes.sgetc() == '\n') bytes.sbumpc();
  return true;
}

}  // namespace cvl
