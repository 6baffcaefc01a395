#include "state/status_line.h"

#include "base/text.h"

namespace cvl {

namespace {

/// The lines end in a carriage return alone.
std::string TextOf(const StatusFigures &figures) {
  const auto number = [](std::int32_t value) { return std::to_string(value); };
  return Joined({"Server Status: ",
                 GeneralText(figures.Moment),
                 "\r# ",
                 number(figures.Total),
                 " | /T ",
                 number(figures.Time),
                 " | /D ",
                 number(figures.Daytime),
                 " | /S ",
                 number(figures.Ntp),
                 " | /U ",
                 number(figures.UnixTime),
                 " | /CVL ",
                 number(figures.Client),
                 "\r# UDP: ",
                 number(figures.Udp),
                 " --- # TCP: ",
                 number(figures.Tcp),
                 "\rLast Atomic Update: ",
                 GeneralText(figures.LastSync)});
}

}  // namespace

const std::string &StatusLine::Text() const {
  if (HasFigures_) {
    Text_ = TextOf(Figures_);
    HasFigures_ = false;
  }
  return Text_;
}

}  // namespace cvl
