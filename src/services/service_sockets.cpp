#include "services/service_sockets.h"

namespace cvl {

ServiceSockets::ServiceSockets(SocketLayer &layer)
    : TCP13(layer),
      TCP37(layer),
      TCP123(layer),
      TCP519(layer),
      TCP3777(layer),
      UDP13(layer),
      UDP37(layer),
      UDP123(layer),
      UDP3777(layer),
      UDP519(layer, UDP519Events) {}

}  // namespace cvl
