// The five lamps of the main window. Request handlers light them, the status tick puts
// them out; they show only in a window of normal state.

#pragma once

#include "state/main_window.h"
#include "state/run_state.h"

namespace cvl {

class Lamps {
 public:
  Lamps(MainWindow &window, const RunFlags &flags) : Window_(window), Flags_(flags) {}

  void DataIn() { Show(1, LampLitImage); }
  void DataInC() { Show(1, LampDarkImage); }
  void DataOut() { Show(2, LampLitImage); }
  void DataOutC() { Show(2, LampDarkImage); }
  void UDPIn() { Show(3, LampLitImage); }
  void UDPInC() { Show(3, LampDarkImage); }
  void TCPIn() { Show(4, LampLitImage); }
  void TCPInC() { Show(4, LampDarkImage); }

 private:
  void Show(std::size_t lamp, int image) {
    if (Flags_.Interactive && Window_.State == WindowState::Normal) Window_.LED[lamp].Image = image;
  }

  MainWindow &Window_;
  const RunFlags &Flags_;
};

}  // namespace cvl
