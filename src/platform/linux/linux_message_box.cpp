#include "platform/linux/linux_message_box.h"

#include <syslog.h>

#include "platform/linux/system_log.h"

namespace cvl {

BoxAnswer LoggedMessageBoxes::Show(BoxOwner, BoxStyle style, std::string_view,
                                   std::string_view text) {
  WriteSystemLog(LOG_INFO, text);
  return UnseenAnswer(style);
}

}  // namespace cvl
