#include "net/loop_guard.h"

#include <algorithm>

namespace cvl {

bool LoopGuard::Admit(Ipv4Address sender, std::int64_t monotonic_ms) {
  auto &row = Table_[(sender * 2654435761U) >> 24];
  const auto is_over = [monotonic_ms](const Entry &entry) {
    return entry.Count == 0 || monotonic_ms - entry.BeganMs >= 1000;
  };
  Entry *place = std::find_if(row.begin(), row.end(), [sender](const Entry &entry) {
    return entry.Count > 0 && entry.Sender == sender;
  });
  if (place == row.end()) {
    place = std::min_element(row.begin(), row.end(), [&](const Entry &a, const Entry &b) {
      return (is_over(a) ? 0 : a.Count) < (is_over(b) ? 0 : b.Count);
    });
    *place = {sender, 0, monotonic_ms};
  } else if (is_over(*place)) {
    *place = {sender, 0, monotonic_ms};
  }
  if (place->Count >= MostPerSecond) return false;
  ++place->Count;
  return true;
}

}  // namespace cvl
