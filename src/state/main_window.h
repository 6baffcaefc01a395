// The controls of the main window. Its boxes are the live settings: read from the store
// once, written to it once, and asked by every room in between. They exist in every run,
// also where nobody sees them.
//
// The names carry an old shift: NTP means the Time service of port 37, SNTP the NTP
// service of port 123.

#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "controls/check_box.h"
#include "controls/combo_box.h"
#include "controls/label.h"
#include "controls/menu.h"
#include "controls/text_box.h"
#include "controls/tree_view.h"

namespace cvl {

/// Pictures in the image table IML: flags and globes for the server list, lamps, tree.
inline constexpr int ImageCount = 35;
inline constexpr int LampDarkImage = 33;
inline constexpr int LampLitImage = 34;

/// Most characters in a port box, and in the box of the sync interval.
inline constexpr std::size_t PortBoxLength = 5;
inline constexpr std::size_t SyncNLength = 6;

enum class WindowState { Normal = 0, Minimized = 1, Maximized = 2 };

struct MainWindow {
  MainWindow();

  std::string Caption = "Chronvale Server";
  WindowState State = WindowState::Normal;
  bool Visible = false;
  bool InTaskList = true;

  // Time service, port 37.
  CheckBox eNTP;
  CheckBox eTCP37;
  CheckBox eUDP37;
  TextBox NTP_Ptxt{"37", PortBoxLength};

  // Daytime service, port 13.
  CheckBox eDTS;
  CheckBox eTCP13;
  CheckBox eUDP13;
  TextBox DS_Ptxt{"13", PortBoxLength};

  // NTP service, port 123.
  CheckBox eSNTP;
  CheckBox eTCP123;
  CheckBox eUDP123;
  TextBox SNTP_Ptxt{"123", PortBoxLength};

  // Unix time service, port 519.
  CheckBox eUnix;
  CheckBox eTCP519;
  CheckBox eUDP519;
  TextBox Unix_Ptxt{"519", PortBoxLength};

  // Client protocol, port 3777.
  CheckBox eCVLS;
  CheckBox eTCP3777;
  CheckBox eUDP3777;
  TextBox CVLS_Ptxt{"3777", PortBoxLength};

  TreeView CVL_TV;
  /// The panels of the five services, in the order of the tree.
  std::array<Control, 5> proto_f;
  /// The last client of each service, in the order of the panels: Time, Daytime, NTP, Unix
  /// time, client protocol.
  std::array<TextBox, 5> CVLRemHost;
  Label svrStatlbl;

  TextBox svrCurrent;
  /// Source, received, sent; datagram, TCP request.
  std::array<Picture, 5> LED;
  Label Status;

  // Synchronisation.
  ImageCombo Servers{ImageCount};
  CheckBox RandomCheck;
  TextBox SyncN{"59", SyncNLength};
  ComboBox SyncIntC{"Minute/s"};

  /// Opens only as a pop-up, over the tray.
  Menu mnuMain{"Main", {}};
  MenuEntry mnuShow{"Show Chronvale Server", {}};
  MenuEntry sep{"-", {}};
  MenuEntry mnuExit{"Exit", {}};
};

}  // namespace cvl
