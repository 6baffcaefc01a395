// The check boxes and port boxes of the services, and what a hand on them does.

#pragma once

#include "services/listeners.h"
#include "services/service_table.h"
#include "ui/panels.h"

namespace cvl {

/// Connects the boxes' events. Ticking opens sockets; unticking a master box closes its
/// listener and nothing else: whatever was opened otherwise goes on answering.
class ServiceBoxes {
 public:
  ServiceBoxes(ServiceTable &services, Listeners &listeners, Panels &panels);

 private:
  void Connect(Service &service);
  void OnMasterClick(const Service &service);
  void OnBoxClick(const CheckBox &box, std::string_view code, const Service &service);
  void OnPortKey(const Service &service, int key);

  ServiceTable &Services_;
  Listeners &Listeners_;
  Panels &Panels_;
};

}  // namespace cvl
