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
  const std::int32_t time = AddLong(requests.ReqTCP37, requests.ReqUDP37);
  const std::int32_t daytime = AddLong(requests.ReqTCP13, requests.ReqUDP13);
  const std::int32_t ntp = AddLong(requests.ReqTCP123, requests.ReqUDP123);
  const std::int32_t unix_time = AddLong(requests.ReqTCP519, requests.ReqUDP519);
  const std::int32_t client = AddLong(requests.ReqTCP3777, requests.ReqUDP3777);
  const std::int32_t udp = Sum({requests.ReqUDP37, requests.ReqUDP13, requests.ReqUDP123,
                                requests.ReqUDP519, requests.ReqUDP3777});
  const std::int32_t tcp = Sum({requests.ReqTCP37, requests.ReqTCP13, requests.ReqTCP123,
                                requests.ReqTCP519, requests.ReqTCP3777});
  const std::int32_t total = AddLong(udp, tcp);

  State_.Status.StatusText =
      "Server Status: " + GeneralText(Time_.Now()) + "\r# " + std::to_string(total) + " | /T " +
      std::to_string(time) + " | /D " + std::to_string(daytime) + " | /S " + std::to_string(ntp) +
      " | /U " + std::to_string(unix_time) + " | /CVL " + std::to_string(client) +
      "\r# UDP: " + std::to_string(udp) + " --- # TCP: " + std::to_string(tcp) +
      "\rLast Atomic Update: " + GeneralText(State_.Sync.LastSync);
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
  } else if (Contains(tip, "Checking")) {
    status.TrayImage = Window_.Servers.At(Window_.Servers.Selected()).Image;
  }
  Shell_.Shell_NotifyIcon(TrayMessage::Modify, {status.TrayImage, tip});
  LastTipText_ = status.TipText;
}

}  // namespace cvl
