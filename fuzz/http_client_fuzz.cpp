// The update client: whatever the maker's server sends, in whatever pieces, the program goes
// on, writes nothing but bodies to the server file, and starts nothing unasked.
//
// The first byte chooses the run: 1 the server file is asked for, 2 there is a window, 4
// every question is answered with Yes, 8 there is a server file already. Then come the
// pieces, with a byte of 255 between each two.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tests/update/update_bench.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

class Run final : public cvl::UpdateTest {
 public:
  explicit Run(std::uint8_t choice) {
    Settings.FileRequested = (choice & 1) != 0;
    State.Flags.Interactive = (choice & 2) != 0;
    if ((choice & 4) != 0) Dialogs.Answer = cvl::BoxAnswer::Yes;
    if ((choice & 8) != 0) PutServerFile(Old_);
  }

  void Take(std::string_view piece) {
    if (Update.qrb().State() == cvl::SocketState::Closed) Update.QRBUpdate();
    if (Update.qrb().State() == cvl::SocketState::Connecting) Established();
    const bool writes = Settings.FileRequested && (Files.BinaryOpens == 0 || Files.OpenOutputs > 0);
    Send(Net.Connections.back(), piece);
    if (writes) Written_ += BodyOf(piece);
    CheckFile();
    CheckPrograms();
  }

  void CheckNothingBroke() const {
    Require(!testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed());
  }

 private:
  void TestBody() override {}

  static std::string_view BodyOf(std::string_view piece) {
    constexpr std::string_view EmptyLine = "\r\n\r\n";
    const std::size_t end = piece.find(EmptyLine);
    const bool has_header =
        piece.find("Content-Length: ") != std::string_view::npos && end != std::string_view::npos;
    return has_header ? piece.substr(end + EmptyLine.size()) : piece;
  }

  void CheckFile() const {
    if (Files.BinaryOpens == 0) {
      Require(Written_.empty());
      return;
    }
    Require(Files.BinaryOpens == 1);
    const std::string now = ServerFileNow();
    Require(now.starts_with(Written_));
    const std::string tail = now.substr(Written_.size());
    Require(tail.empty() || (now.size() == Old_.size() && Old_.ends_with(tail)));
  }

  void CheckPrograms() const {
    const bool may = State.Flags.Interactive && Dialogs.Answer == cvl::BoxAnswer::Yes;
    Require(may || Programs.Programs.empty());
    for (const auto &started : Programs.Programs) {
      Require(started.Program == "/program/QRBUpdate.exe" && started.Arguments.size() == 2);
    }
  }

  const std::string Old_ = ServerFile({"10.9.9.9", "10.9.9.8"});
  std::string Written_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  Run run(data[0]);
  std::string_view rest(reinterpret_cast<const char *>(data) + 1, size - 1);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\xFF'), rest.size());
    if (end > 0) run.Take(rest.substr(0, end));
    rest = rest.substr(std::min(end + 1, rest.size()));
  }
  run.CheckNothingBroke();
  return 0;
}
