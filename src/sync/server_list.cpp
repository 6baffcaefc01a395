#include "sync/server_list.h"

#include "base/failure_modes.h"
#include "base/number_text.h"
#include "base/numbers.h"
#include "base/text.h"
#include "sync/line_reader.h"

namespace cvl {

namespace {

// The picture of a line whose picture field is no number.
constexpr int UsualImage = 2;

}  // namespace

void ServerList::Read(std::istream &file) {
  LineReader lines(file);
  std::string line;
  std::int32_t number = 0;
  while (lines.Read(line) && !line.empty()) {
    ++number;
    if (number > HeaderLines) ReadServer(number - HeaderLines, line);
  }
}

void ServerList::ReadServer(std::int32_t slot, const std::string &line) {
  const std::vector<std::string> fields = Split(line, ":::", 4);
  if (fields.size() != 4) return;
  const std::int32_t image = IsNumeric(fields[2]) ? ToLong(Val(fields[2])) : UsualImage;
  Window_.Servers.Add(fields[1], image);
  if (slot > LastSlot) throw RuntimeError(error_number::SubscriptOutOfRange);
  ServerHosts_[static_cast<std::size_t>(slot)] = fields[0];
}

void ServerList::ChooseSelected() {
  ContinueOnFailure mode;
  mode.Step([&] {
    const std::int32_t item = Window_.Servers.Selected();
    static_cast<void>(Window_.Servers.At(item));
    CurrentServer = Host(item);
  });
}

const std::string &ServerList::Host(std::int32_t slot) const {
  if (slot < 0 || slot > LastSlot) throw RuntimeError(error_number::SubscriptOutOfRange);
  return ServerHosts_[static_cast<std::size_t>(slot)];
}

}  // namespace cvl
