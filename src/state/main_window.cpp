#include "state/main_window.h"

namespace cvl {

MainWindow::MainWindow() {
  for (CheckBox *box : {&eTCP37, &eUDP37, &eTCP13, &eUDP13, &eTCP123, &eUDP123, &eTCP519, &eUDP519,
                        &eTCP3777, &eUDP3777}) {
    box->Visible = false;
  }
  for (std::size_t panel = 0; panel < proto_f.size(); ++panel) {
    proto_f[panel].Visible = panel == 0;
    CVLRemHost[panel].Visible = panel == 0;
    CVLRemHost[panel].SetText("None");
  }
  svrStatlbl.Caption = "Server is: ON";
  Status.Caption = "Synchronizing CVL Server...please wait.";
  RandomCheck.SetValue(Tick::On);
}

}  // namespace cvl
