#include "tests/view_qt/wanted_controls.h"

namespace cvl {

namespace {

using K = WantedKind;

/// The controls of a panel, all panels having them at the same places.
void AddPanel(std::vector<WantedControl> &controls, int panel, const char *title,
              const char *enable, const char *tcp, const char *udp, const char *port,
              const char *number, const char *label) {
  const std::string frame = "proto_f(" + std::to_string(panel) + ")";
  const std::string client = "CVLRemHost(" + std::to_string(panel) + ")";
  const bool hidden = panel != 0;
  controls.insert(controls.end(),
                  {{frame, K::Frame, "SVRS", title, {3060, 135, 2925, 960}, hidden},
                   {client, K::Line, "SVRS", "None", {4245, 1125, 1725, 330}, hidden},
                   {enable, K::Check, frame, "Enable", {75, 300, 900, 240}},
                   {tcp, K::Check, frame, "Enable TCP", {75, 630, 0, 0}, true},
                   {udp, K::Check, frame, "Enable UDP", {1485, 630, 0, 0}, true},
                   {port, K::Line, frame, number, {1965, 255, 735, 300}, false, 5},
                   {label, K::Label, frame, "on Port:", {}}});
}

std::vector<WantedControl> MakeMainWindow() {
  std::vector<WantedControl> controls = {
      {"Frame1", K::Frame, "", "", {0, -90, 6045, 960}},
      {"NOLLabel", K::Label, "Frame1", "Chronvale SVR v5.1", {1020, 135, 4935, 390}},
      {"ROT",
       K::Label,
       "Frame1",
       "Server Edition - Running ALL Major World Time Protocol Services 24 hours a day...",
       {1065, 510, 4995, 420}},
      {"Image1", K::Image, "Frame1", "", {}},
      {"SVRS", K::Frame, "", "", {0, 870, 6045, 5145}},
      {"CVL_TV", K::Tree, "SVRS", "", {45, 135, 2955, 2100}},
      {"lastULBL", K::Label, "SVRS", "LAST User:", {3240, 1170, 945, 225}},
      {"svrStatlbl", K::Label, "SVRS", "Server is: ON", {3135, 1485, 2775, 840}},
      {"LED_Display", K::Frame, "SVRS", "", {60, 2235, 5925, 750}},
      {"svrCurrent", K::Clock, "LED_Display", "", {45, 120, 4545, 600}},
      {"LEDLBL", K::Label, "LED_Display", "SRC  RX  TX", {4710, 150, 1110, 165}},
      {"Label3", K::Label, "LED_Display", "UDP    TCP", {4950, 555, 915, 135}},
      {"LED(0)", K::Image, "LED_Display", "", {4755, 270, 240, 240}},
      {"LED(1)", K::Image, "LED_Display", "", {5130, 270, 240, 240}},
      {"LED(2)", K::Image, "LED_Display", "", {5505, 270, 240, 240}},
      {"LED(3)", K::Image, "LED_Display", "", {4680, 495, 240, 240}},
      {"LED(4)", K::Image, "LED_Display", "", {5310, 495, 240, 240}},
      {"Status",
       K::Label,
       "SVRS",
       "Synchronizing CVL Server...please wait.",
       {90, 3015, 5895, 720}},
      {"Options", K::Frame, "SVRS", "Server Synchronization", {45, 3735, 5940, 1365}},
      {"Servers", K::ImageCombo, "Options", "", {135, 210, 5655, 375}},
      {"RandomCheck", K::Check, "Options", "Randomize Atomic Time Servers", {135, 660, 4245, 240}},
      {"UpdateLbl", K::Label, "Options", "Synchronize Server Every :", {975, 975, 2340, 225}},
      {"SyncN", K::Line, "Options", "59", {3360, 945, 765, 345}, false, 6},
      {"SyncIntC", K::Combo, "Options", "Minute/s", {4170, 945, 1620, 345}},
  };
  AddPanel(controls, 0, "Time Protocol Server", "eNTP", "eTCP37", "eUDP37", "NTP_Ptxt", "37",
           "Label1");
  AddPanel(controls, 1, "\"Daytime\" Service Server", "eDTS", "eTCP13", "eUDP13", "DS_Ptxt", "13",
           "Label2");
  AddPanel(controls, 2, "Network Time Protocol Server", "eSNTP", "eTCP123", "eUDP123", "SNTP_Ptxt",
           "123", "Label4");
  AddPanel(controls, 3, "Unix Time Service Server", "eUnix", "eTCP519", "eUDP519", "Unix_Ptxt",
           "519", "Label5");
  AddPanel(controls, 4, "CVL Server Client Server", "eCVLS", "eTCP3777", "eUDP3777", "CVLS_Ptxt",
           "3777", "Label6");
  return controls;
}

}  // namespace

const std::vector<WantedControl> &WantedMainWindow() {
  static const std::vector<WantedControl> controls = MakeMainWindow();
  return controls;
}

const std::vector<WantedControl> &WantedConfigurationWindow() {
  static const std::vector<WantedControl> controls = {
      {"Frame1", K::Frame, "", "", {}},
      {"NOLLabel", K::Label, "Frame1", "Chronvale SVR v5.0", {}},
      {"ROT",
       K::Label,
       "Frame1",
       "Advanced Setup Options:  Select your region  and startup options for CVL Server Edition.",
       {}},
      {"Image1", K::Image, "Frame1", "", {}},
      {"Frame2", K::Frame, "", "", {}},
      {"RegionLbl", K::Label, "Frame2", "Select What Region this Server will Operate in", {}},
      {"closelbl", K::Label, "Frame2", "Select the closest region to you.", {}},
      {"Regions", K::Combo, "Frame2", "North America NA", {}},
      {"wc3Logs", K::Check, "Frame2", "Enable Extended WC3 Logging.", {}},
      {"OpenMin", K::Check, "Frame2", "Open Minimized?", {}},
      {"RunCVL", K::Check, "Frame2", "Run Chronvale Server when Windows Starts.", {}},
      {"CheckUpdate", K::Button, "Frame2", "Check for Software Updates", {}},
      {"SelTimeZone", K::Button, "Frame2", "Time Zone", {}},
      {"cfgsvrOK", K::Button, "", "OK", {}},
  };
  return controls;
}

const std::vector<WantedControl> &WantedAboutBox() {
  static const std::vector<WantedControl> controls = {
      {"Frame1", K::Frame, "", "", {}},
      {"NOLLabel", K::Label, "Frame1", "Chronvale SVR v5.0", {}},
      {"ROT", K::Label, "Frame1", "About Chronvale Server v5.1.1", {}},
      {"Image1", K::Image, "Frame1", "", {}},
      {"AboutF", K::Frame, "", "", {}},
      {"Help", K::Button, "AboutF", "Online Help", {}},
  };
  return controls;
}

}  // namespace cvl
