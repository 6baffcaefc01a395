#include "sync/sync_schedule.h"

#include "base/failure_modes.h"
#include "base/number_text.h"

namespace cvl {

SyncSchedule::SyncSchedule(RunState &state, MainWindow &window, Timer &sync_now, StatusTexts &texts,
                           const Panels &panels)
    : State_(state), Window_(window), SyncNow_(sync_now), Texts_(texts), Panels_(panels) {}

void SyncSchedule::CalcIntC() {
  SyncNumber_ = ToLong(Val(Window_.SyncN.Text()));
  // Three letters decide, so that "Minute/s" and the "Minutes/s" of old settings are one.
  const std::string unit = Window_.SyncIntC.Text().substr(0, 3);
  if (unit == "Sec") {
    SyncSeconds_ = SyncNumber_;
    SyncNow_.SetEnabled(false);
    SyncNow_.SetEnabled(true);
  } else if (unit == "Min") {
    SyncSeconds_ = MultiplyLong(SyncNumber_, 60);
  } else if (unit == "Hou") {
    SyncSeconds_ = MultiplyLong(SyncNumber_, 3600);
  } else {
    SyncSeconds_ = MultiplyLong(SyncNumber_, 86400);
  }
}

void SyncSchedule::Tick() {
  if (State_.Flags.ServicePaused) return;
  ContinueOnFailure mode;
  mode.Step([&] { SyncCount_ = AddLong(SyncCount_, 1); });
  if (SyncCount_ >= SyncSeconds_) {
    SyncCount_ = 0;
    mode.Step([&] {
      if (SyncTimeNow) SyncTimeNow();
    });
  }
  if (!State_.Flags.Interactive) return;
  const std::string &status = State_.Status.StatusText.Text();
  if (Window_.Status.Caption != status) {
    if (!status.empty()) {
      Window_.Status.Caption = status;
    } else if (State_.Flags.TimeSynced) {
      mode.Step([&] { Texts_.StatusUp(); });
    }
  }
  if (Window_.svrStatlbl.Caption != Panels_.StatusText()) {
    Window_.svrStatlbl.Caption = Panels_.StatusText();
  }
}

void SyncSchedule::FilterSyncN() {
  const std::string &text = Window_.SyncN.Text();
  if (text.empty() || IsNumeric(text)) return;
  // Storing raises the change again, and so on until what is left is a number or nothing.
  Window_.SyncN.SetText(text.substr(0, text.size() - 1));
}

}  // namespace cvl
