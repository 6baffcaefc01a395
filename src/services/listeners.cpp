#include "services/listeners.h"

#include "base/failure_modes.h"
#include "base/number_text.h"
#include "base/numbers.h"
#include "base/text.h"

namespace cvl {

namespace {

void CloseAll(Socket &socket) {
  while (socket.State() != SocketState::Closed) {
    socket.Close();
  }
}

std::int16_t PortOf(const Service &service) {
  return ToInteger(Val(service.PortBox.Text()));
}

bool IsCode(std::string_view code) {
  return code.size() == 1 && code[0] >= '0' && code[0] <= '9';
}

std::size_t PlaceOf(std::string_view code) {
  return static_cast<std::size_t>(code[0] - '0');
}

}  // namespace

Listeners::Listeners(ServiceTable &services, RunState &state, MainWindow &window)
    : Services_(services), State_(state), Window_(window) {}

void Listeners::LoadServers(std::string_view code) {
  std::int16_t port = 0;
  const Failure failure = Trap([&] {
    for (const Service *service : Services_.All) {
      if (code == service->TcpCode) OpenTcp(*service, port);
      if (code == service->UdpCode) OpenUdp(*service, code, port);
    }
  });
  Remember(code, failure.Number);
  if (failure.Number == error_number::AddressInUse) ReportTakenPort(code, port);
}

void Listeners::Remember(std::string_view code, int failure) {
  if (IsCode(code)) Openings_[PlaceOf(code)] = failure;
}

std::optional<int> Listeners::LastOpening(std::string_view code) const {
  return IsCode(code) ? Openings_[PlaceOf(code)] : std::nullopt;
}

void Listeners::OpenTcp(const Service &service, std::int16_t &port) {
  TcpSocket &listener = service.TcpSlots[0];
  CloseAll(listener);
  port = PortOf(service);
  listener.SetLocalPort(port);
  listener.Listen();
}

void Listeners::OpenUdp(const Service &service, std::string_view code, std::int16_t &port) {
  Socket &socket = service.UdpSocket;
  CloseAll(socket);
  port = PortOf(service);
  // The Time service asks its neighbour for the address, which is the same.
  const Socket &asked = code == Services_.Time.UdpCode ? Services_.Daytime.UdpSocket : socket;
  socket.SetRemoteHost(asked.LocalIP());
  socket.SetLocalPort(port);
  socket.Bind();
}

void Listeners::ReportTakenPort(std::string_view code, std::int16_t port) {
  const bool is_daytime = code == Services_.Daytime.TcpCode || code == Services_.Daytime.UdpCode;
  std::string text =
      Joined({"That address is already in use.  Please select a different port than ",
              std::to_string(port), "."});
  if (is_daytime) {
    text += Joined(
        {"\rDAYTIME SERVICE SERVER ERROR - PORT: ", Services_.Daytime.PortBox.Text(), " invalid."});
  }
  State_.Status.StatusText.Set(std::move(text));
  if (is_daytime && State_.Flags.Interactive) {
    Window_.Status.Caption = State_.Status.StatusText.Text();
  }
}

}  // namespace cvl
