#include "platform/linux/linux_message_box.h"

#include <syslog.h>

namespace cvl {

BoxAnswer LoggedMessageBoxes::Show(BoxOwner, BoxStyle style, std::string_view,
                                   std::string_view text) {
  openlog("CVLServer", 0, LOG_DAEMON);
  syslog(LOG_INFO, "%.*s", static_cast<int>(text.size()), text.data());
  closelog();
  return UnseenAnswer(style);
}

}  // namespace cvl
