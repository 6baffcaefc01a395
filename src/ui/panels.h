// The panels of the five services on the main window, of which one is up, and the text
// that sums its service up.

#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "state/main_window.h"
#include "state/run_state.h"

namespace cvl {

class Panels {
 public:
  Panels(MainWindow &window, const RunState &state) : Window_(window), State_(state) {}

  /// The tree's last two nodes open the secondary windows.
  std::function<void()> ShowAboutBox;
  std::function<void()> ShowConfiguration;

  /// Acts on a node of the tree: puts its service's panel up, or opens a window. A number
  /// outside 1 to 8 only redraws.
  void CVLSelected(std::int16_t node);

  /// The panel that is up, 1 to 5 in the order of the tree; 0 before the first selection.
  std::int16_t PanelNode() const { return PanelNode_; }

  /// Copies the counters of the panel's service and rebuilds its text, without drawing.
  void RefreshCounts();

  /// Three lines: enabled or not, the transports, the requests.
  const std::string &StatusText() const;

 private:
  void ReadBoxes();
  void CopyCounts();
  void BuildText() { TextIsStale_ = true; }

  MainWindow &Window_;
  const RunState &State_;
  std::int16_t PanelNode_ = 0;
  std::int16_t PanelIndex_ = 0;
  bool PanelEnabled_ = false;
  bool PanelTCP_ = false;
  bool PanelUDP_ = false;
  std::int32_t TcpCount_ = 0;
  std::int32_t UdpCount_ = 0;
  // Made when somebody reads it: requests change the figures far more often than that.
  mutable std::string StatusText_;
  mutable bool TextIsStale_ = false;
};

}  // namespace cvl
