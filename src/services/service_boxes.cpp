#include "services/service_boxes.h"

namespace cvl {

ServiceBoxes::ServiceBoxes(ServiceTable &services, Listeners &listeners, Panels &panels)
    : Services_(services), Listeners_(listeners), Panels_(panels) {
  for (Service *service : Services_.All) {
    Connect(*service);
  }
}

void ServiceBoxes::Connect(Service &service) {
  service.MasterBox.OnClick = [this, &service] { OnMasterClick(service); };

  // The two boxes of the client protocol are crossed: each opens the other's socket. Whoever
  // runs this service has learnt to tick them so, and stored settings count on it.
  const bool crossed = &service == &Services_.Client;
  const std::string_view by_tcp_box = crossed ? service.UdpCode : service.TcpCode;
  const std::string_view by_udp_box = crossed ? service.TcpCode : service.UdpCode;
  service.TcpBox.OnClick = [this, &service, by_tcp_box] {
    OnBoxClick(service.TcpBox, by_tcp_box, service);
  };
  service.UdpBox.OnClick = [this, &service, by_udp_box] {
    OnBoxClick(service.UdpBox, by_udp_box, service);
  };

  // The client protocol's port takes effect with the next click on a box, and neither its
  // box nor the Unix time service's says that Enter is waited for.
  if (&service == &Services_.Client) return;
  service.PortBox.OnKeyPress = [this, &service](int key) { OnPortKey(service, key); };
  if (&service == &Services_.Unix) return;
  service.PortBox.OnChange = [&service] {
    service.PortBox.Tip.Set(" Hit Enter to Register the Port Change ");
  };
}

void ServiceBoxes::OnMasterClick(const Service &service) {
  TcpSocket &listener = service.TcpSlots[0];
  const bool listening = listener.State() == SocketState::Listening;
  if (service.MasterBox.IsTicked()) {
    service.TcpBox.Visible = true;
    service.UdpBox.Visible = true;
    if (!listening) {
      if (service.UdpBox.IsTicked()) Listeners_.LoadServers(service.UdpCode);
      if (service.TcpBox.IsTicked()) Listeners_.LoadServers(service.TcpCode);
    }
  } else {
    if (listening) listener.Close();
    service.TcpBox.Visible = false;
    service.UdpBox.Visible = false;
  }
  Panels_.CVLSelected(service.Node);
}

void ServiceBoxes::OnBoxClick(const CheckBox &box, std::string_view code, const Service &service) {
  if (box.IsTicked()) Listeners_.LoadServers(code);
  Panels_.CVLSelected(service.Node);
}

void ServiceBoxes::OnPortKey(const Service &service, int key) {
  if (key != EnterKey) return;
  if (service.MasterBox.IsTicked()) Listeners_.LoadServers(service.UdpCode);
  if (service.MasterBox.IsTicked()) Listeners_.LoadServers(service.TcpCode);
  service.PortBox.Tip.Set(" Change Registered Successfully ");
}

}  // namespace cvl
