// A tray that keeps what it was told.

#pragma once

#include <string>
#include <vector>

#include "platform/shell.h"
#include "tests/support/call_journal.h"

namespace cvl {

class FakeShell final : public Shell {
 public:
  /// Without a JOURNAL the calls are kept here alone.
  explicit FakeShell(CallJournal *journal = nullptr) : Journal_(journal) {}

  struct Call {
    TrayMessage Message;
    int Icon;
    std::string Tip;

    friend bool operator==(const Call &, const Call &) = default;
  };

  /// Every call, in order.
  std::vector<Call> Calls;

  void Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) override {
    if (Journal_ != nullptr) Journal_->Add("tray " + std::to_string(static_cast<int>(message)));
    Calls.push_back({message, icon.Icon, icon.Tip});
  }

  void SetForegroundWindow() override {
    if (Journal_ != nullptr) Journal_->Add("foreground");
    ++ForegroundCalls;
  }

  int ForegroundCalls = 0;

 private:
  CallJournal *Journal_;
};

}  // namespace cvl
