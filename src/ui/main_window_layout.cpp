#include "ui/main_window_layout.h"

#include "ui/window_style.h"

namespace cvl {

namespace {

using namespace window_style;

constexpr LayoutColour ClockGround = 0x00A000;
constexpr LayoutColour ClockText = 0x000000;

// Low enough to stand clear of the lamps, which reach into its line.
constexpr LayoutFont LampTitle{FontFace::Terminal, 10};

// A box has the name of the label beside it.
constexpr std::string_view PortLabelText = "on Port:";
constexpr std::string_view LastClientLabelText = "LAST User:";
constexpr std::string_view IntervalLabelText = "Synchronize Server Every :";

// The five panels lie over one another, each with the same controls at the same places.

constexpr ControlLayout Panel(int panel, std::string_view title) {
  return {.Name = "proto_f",
          .Index = panel,
          .Kind = ControlKind::Frame,
          .Parent = "SVRS",
          .Text = title,
          .At = {3060, 135, 2925, 960},
          .Visible = panel == 0};
}

constexpr ControlLayout EnableBox(std::string_view name, int panel) {
  return {.Name = name,
          .Kind = ControlKind::CheckBox,
          .Parent = "proto_f",
          .ParentIndex = panel,
          .Text = "Enable",
          .At = {75, 300, 900, 240}};
}

constexpr ControlLayout PortLabel(std::string_view name, int panel) {
  return {.Name = name,
          .Kind = ControlKind::Label,
          .Parent = "proto_f",
          .ParentIndex = panel,
          .Text = PortLabelText,
          .At = {1005, 300, 900, 225},
          .Align = Alignment::Right};
}

constexpr ControlLayout PortBox(std::string_view name, int panel, std::string_view port) {
  return {.Name = name,
          .Kind = ControlKind::TextBox,
          .Parent = "proto_f",
          .ParentIndex = panel,
          .Text = port,
          .At = {1965, 255, 735, 300},
          .MaxLength = PortBoxLength,
          .SpokenName = PortLabelText};
}

/// Shown by a ticked Enable box.
constexpr ControlLayout TransportBox(std::string_view name, int panel, std::string_view text,
                                     int left) {
  return {.Name = name,
          .Kind = ControlKind::CheckBox,
          .Parent = "proto_f",
          .ParentIndex = panel,
          .Text = text,
          .At = {left, 630, 1350, 240},
          .Visible = false};
}

constexpr ControlLayout TcpBox(std::string_view name, int panel) {
  return TransportBox(name, panel, "Enable TCP", 75);
}

constexpr ControlLayout UdpBox(std::string_view name, int panel) {
  return TransportBox(name, panel, "Enable UDP", 1485);
}

constexpr ControlLayout LastClient(int panel) {
  return {.Name = "CVLRemHost",
          .Index = panel,
          .Kind = ControlKind::TextBox,
          .Parent = "SVRS",
          .Text = "None",
          .At = {4245, 1125, 1725, 330},
          .Align = Alignment::Centre,
          .Visible = panel == 0,
          .SpokenName = LastClientLabelText};
}

constexpr ControlLayout Lamp(int lamp, int left, int top, std::string_view name) {
  return {.Name = "LED",
          .Index = lamp,
          .Kind = ControlKind::Image,
          .Parent = "LED_Display",
          .At = {left, top, 240, 240},
          .SpokenName = name,
          .Picture = ImageSource::ImageTable};
}

using W = MainWindow;

constexpr LayoutRow<MainWindow> MainRows[] = {
    {Banner(6045)},
    {ProductName("Chronvale SVR v5.1", 4935)},
    {Headline("Server Edition - Running ALL Major World Time Protocol Services 24 hours a day...",
              4995)},
    {BannerLogo()},
    {{.Name = "SVRS", .Kind = ControlKind::Frame, .Parent = "", .At = {0, 870, 6045, 5145}}},
    {{.Name = "CVL_TV",
      .Kind = ControlKind::Tree,
      .Parent = "SVRS",
      .At = {45, 135, 2955, 2100},
      .SpokenName = "Services"},
     ModelOf<&W::CVL_TV>},

    {Panel(0, "Time Protocol Server"), ElementOf<&W::proto_f, 0>},
    {EnableBox("eNTP", 0), ModelOf<&W::eNTP>},
    {PortLabel("Label1", 0)},
    {PortBox("NTP_Ptxt", 0, "37"), ModelOf<&W::NTP_Ptxt>},
    {TcpBox("eTCP37", 0), ModelOf<&W::eTCP37>},
    {UdpBox("eUDP37", 0), ModelOf<&W::eUDP37>},

    {Panel(1, "\"Daytime\" Service Server"), ElementOf<&W::proto_f, 1>},
    {EnableBox("eDTS", 1), ModelOf<&W::eDTS>},
    {PortLabel("Label2", 1)},
    {PortBox("DS_Ptxt", 1, "13"), ModelOf<&W::DS_Ptxt>},
    {TcpBox("eTCP13", 1), ModelOf<&W::eTCP13>},
    {UdpBox("eUDP13", 1), ModelOf<&W::eUDP13>},

    {Panel(2, "Network Time Protocol Server"), ElementOf<&W::proto_f, 2>},
    {EnableBox("eSNTP", 2), ModelOf<&W::eSNTP>},
    {PortLabel("Label4", 2)},
    {PortBox("SNTP_Ptxt", 2, "123"), ModelOf<&W::SNTP_Ptxt>},
    {TcpBox("eTCP123", 2), ModelOf<&W::eTCP123>},
    {UdpBox("eUDP123", 2), ModelOf<&W::eUDP123>},

    {Panel(3, "Unix Time Service Server"), ElementOf<&W::proto_f, 3>},
    {EnableBox("eUnix", 3), ModelOf<&W::eUnix>},
    {PortLabel("Label5", 3)},
    {PortBox("Unix_Ptxt", 3, "519"), ModelOf<&W::Unix_Ptxt>},
    {TcpBox("eTCP519", 3), ModelOf<&W::eTCP519>},
    {UdpBox("eUDP519", 3), ModelOf<&W::eUDP519>},

    {Panel(4, "CVL Server Client Server"), ElementOf<&W::proto_f, 4>},
    {EnableBox("eCVLS", 4), ModelOf<&W::eCVLS>},
    {PortLabel("Label6", 4)},
    {PortBox("CVLS_Ptxt", 4, "3777"), ModelOf<&W::CVLS_Ptxt>},
    {TcpBox("eTCP3777", 4), ModelOf<&W::eTCP3777>},
    {UdpBox("eUDP3777", 4), ModelOf<&W::eUDP3777>},

    {LastClient(0), ElementOf<&W::CVLRemHost, 0>},
    {LastClient(1), ElementOf<&W::CVLRemHost, 1>},
    {LastClient(2), ElementOf<&W::CVLRemHost, 2>},
    {LastClient(3), ElementOf<&W::CVLRemHost, 3>},
    {LastClient(4), ElementOf<&W::CVLRemHost, 4>},
    {{.Name = "lastULBL",
      .Kind = ControlKind::Label,
      .Parent = "SVRS",
      .Text = LastClientLabelText,
      .At = {3240, 1170, 945, 225},
      .TextFont = Bold}},
    {{.Name = "svrStatlbl",
      .Kind = ControlKind::Label,
      .Parent = "SVRS",
      .Text = "Server is: ON",
      .At = {3135, 1485, 2775, 840},
      .TextFont = Courier,
      .Selectable = true},
     ModelOf<&W::svrStatlbl>},

    {{.Name = "LED_Display",
      .Kind = ControlKind::Frame,
      .Parent = "SVRS",
      .At = {60, 2235, 5925, 750}}},
    {{.Name = "svrCurrent",
      .Kind = ControlKind::TextBox,
      .Parent = "LED_Display",
      .At = {45, 120, 4545, 600},
      .TextFont = Terminal,
      .TextColour = ClockText,
      .Background = ClockGround,
      .Locked = true,
      .SpokenName = "Clock"},
     ModelOf<&W::svrCurrent>},
    {{.Name = "LEDLBL",
      .Kind = ControlKind::Label,
      .Parent = "LED_Display",
      .Text = "SRC  RX  TX",
      .At = {4710, 150, 1110, 165},
      .TextFont = LampTitle}},
    {{.Name = "Label3",
      .Kind = ControlKind::Label,
      .Parent = "LED_Display",
      .Text = "UDP    TCP",
      .At = {4950, 555, 915, 135},
      .TextFont = Terminal}},
    // Behind the labels that they overlap, and so above them.
    {Lamp(0, 4755, 270, "Source"), ElementOf<&W::LED, 0>},
    {Lamp(1, 5130, 270, "Receive"), ElementOf<&W::LED, 1>},
    {Lamp(2, 5505, 270, "Transmit"), ElementOf<&W::LED, 2>},
    {Lamp(3, 4680, 495, "UDP"), ElementOf<&W::LED, 3>},
    {Lamp(4, 5310, 495, "TCP"), ElementOf<&W::LED, 4>},

    {{.Name = "Status",
      .Kind = ControlKind::Label,
      .Parent = "SVRS",
      .Text = "Synchronizing CVL Server...please wait.",
      .At = {90, 3015, 5895, 720},
      .TextFont = Console,
      .Selectable = true},
     ModelOf<&W::Status>},

    {{.Name = "Options",
      .Kind = ControlKind::Frame,
      .Parent = "SVRS",
      .Text = "Server Synchronization",
      .At = {45, 3735, 5940, 1365}}},
    {{.Name = "Servers",
      .Kind = ControlKind::ImageCombo,
      .Parent = "Options",
      .At = {135, 210, 5655, 375},
      .SpokenName = "Time servers"},
     ModelOf<&W::Servers>},
    {{.Name = "RandomCheck",
      .Kind = ControlKind::CheckBox,
      .Parent = "Options",
      .Text = "Randomize Atomic Time Servers",
      .At = {135, 660, 4245, 240}},
     ModelOf<&W::RandomCheck>},
    {{.Name = "UpdateLbl",
      .Kind = ControlKind::Label,
      .Parent = "Options",
      .Text = IntervalLabelText,
      .At = {975, 975, 2340, 225},
      .TextFont = Bold}},
    {{.Name = "SyncN",
      .Kind = ControlKind::TextBox,
      .Parent = "Options",
      .Text = "59",
      .At = {3360, 945, 765, 345},
      .MaxLength = SyncNLength,
      .SpokenName = IntervalLabelText},
     ModelOf<&W::SyncN>},
    {{.Name = "SyncIntC",
      .Kind = ControlKind::ComboBox,
      .Parent = "Options",
      .Text = "Minute/s",
      .At = {4170, 945, 1620, 345},
      .SpokenName = "Unit of the interval"},
     ModelOf<&W::SyncIntC>},
};

}  // namespace

WindowLayout MainWindowLayout(MainWindow &window) {
  return {"CVL_Server", 6045, 6015, PlaceControls<MainWindow>(MainRows, window)};
}

std::array<MenuEntry *, 3> MainMenuEntries(MainWindow &window) {
  return {&window.mnuShow, &window.sep, &window.mnuExit};
}

}  // namespace cvl
