#include "status/status_texts.h"

#include <initializer_list>

#include "base/numbers.h"

namespace cvl {

namespace {

std::int32_t Sum(std::initializer_list<std::int32_t> counters) {
  std::int32_t sum = 0;
  for (const std::int32_t counter : counters) {
    sum = AddLong(sum, counter);
  }
  return sum;
}

bool Contains(const std::string &text, const char *word) {
  return text.find(word) != std::string::npos;
}

}  // namespace

StatusTexts::StatusTexts(RunState &state, MainWindow &window, Panels &panels, Lamps &lamps,
                         TimeEngine &time, Shell &shell)
    : State_(state), Window_(window), Panels_(panels), Lamps_(lamps), Time_(time), Shell_(shell) {}

void StatusTexts::StatusUp() {
  if (!State_.Flags.Interactive) return;
  const RequestCounters &requests = State_.Requests;
  StatusFigures figures;
  figures.Time = AddLong(requests.ReqTCP37, requests.ReqUDP37);
  figures.Daytime = AddLong(requests.ReqTCP13, requests.ReqUDP13);
  figures.Ntp = AddLong(requests.ReqTCP123, requests.ReqUDP123);
  figures.UnixTime = AddLong(requests.ReqTCP519, requests.ReqUDP519);
  figures.Client = AddLong(requests.ReqTCP3777, requests.ReqUDP3777);
  figures.Udp = Sum({requests.ReqUDP37, requests.ReqUDP13, requests.ReqUDP123, requests.ReqUDP519,
                     requests.ReqUDP3777});
  figures.Tcp = Sum({requests.ReqTCP37, requests.ReqTCP13, requests.ReqTCP123, requests.ReqTCP519,
                     requests.ReqTCP3777});
  figures.Total = AddLong(figures.Udp, figures.Tcp);
  figures.Moment = Time_.Now();
  figures.LastSync = State_.Sync.LastSync;
  State_.Status.StatusText.Set(figures);
  Panels_.RefreshCounts();
}

void StatusTexts::UpdateSZTIP() {
  if (!State_.Flags.Interactive) return;
  if (Window_.State != WindowState::Minimized) {
    Window_.LED[0].Image = LampDarkImage;
    Lamps_.DataInC();
    return;
  }
  StatusState &status = State_.Status;
  if (status.TipText == LastTipText_) return;
  const std::string &tip = status.TipText.Text();
  if (Contains(tip, "No Adjustment")) {
    status.TrayImage = 0;
  } else if (Contains(tip, "Adjusted")) {
    status.TrayImage = 1;
  } else if (Contains(tip, "Checking") && Window_.Servers.Selected() != 0) {
    status.TrayImage = Window_.Servers.At(Window_.Servers.Selected()).Image;
  }
  Shell_.Shell_NotifyIcon(TrayMessage::Modify, {status.TrayImage, tip});
  LastTipText_ = status.TipText;
}

}  // namespace cvl
