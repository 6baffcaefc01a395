// The text on its way to the label Status.
//
// A server that answers thousands of requests a second has its status brought up to date
// with each of them, and shows it once a second. What a request leaves here is numbers; they
// become text when somebody reads it.

#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "base/date_time.h"

namespace cvl {

/// The requests that the status text tells of, summed up, and its two moments.
struct StatusFigures {
  DateTime Moment;
  std::int32_t Total = 0;
  std::int32_t Time = 0;
  std::int32_t Daytime = 0;
  std::int32_t Ntp = 0;
  std::int32_t UnixTime = 0;
  std::int32_t Client = 0;
  std::int32_t Udp = 0;
  std::int32_t Tcp = 0;
  DateTime LastSync;
};

class StatusLine {
 public:
  void Set(std::string text) {
    Text_ = std::move(text);
    HasFigures_ = false;
  }
  void Set(const StatusFigures &figures) {
    Figures_ = figures;
    HasFigures_ = true;
  }

  /// Empty before the first setting. Raises 6 as GeneralText does for moments beyond the
  /// calendar.
  const std::string &Text() const;

 private:
  mutable std::string Text_;
  mutable bool HasFigures_ = false;
  StatusFigures Figures_;
};

}  // namespace cvl
