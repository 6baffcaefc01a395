#include "platform/linux/system_log.h"

#include <syslog.h>

namespace cvl {

void WriteSystemLog(int priority, std::string_view text) {
  openlog("CVLServer", 0, LOG_DAEMON);
  syslog(priority, "%.*s", static_cast<int>(text.size()), text.data());
  closelog();
}

}  // namespace cvl
