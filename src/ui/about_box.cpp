#include "ui/about_box.h"

#include "base/text.h"
#include "base/version.h"

namespace cvl {

AboutBox::AboutBox(EventLoop &loop, const MainWindow &main, const std::string &maker_host)
    : Caption(Joined({"ABOUT - ", main.Caption})), Help(loop, "Help") {
  ROT.Caption = Joined({"About Chronvale Server", " v", VersionText});
  Help.SetCaption("Online Help");
  Help.SetButtonStyle(button_style::Standard);
  Help.SetURL(Joined({"http://", maker_host, "/Chronvale/help"}));
}

}  // namespace cvl
