// What belongs to each of the five services: boxes, sockets, codes and node.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "services/service_sockets.h"
#include "state/main_window.h"
#include "state/service_controls.h"

namespace cvl {

struct Service {
  std::string_view Setting;  ///< name of its value in the settings store
  CheckBox &MasterBox;
  CheckBox &TcpBox;
  CheckBox &UdpBox;
  TextBox &PortBox;
  SlotArray &TcpSlots;
  Socket &UdpSocket;
  std::string_view TcpCode;  ///< the argument of LoadServers
  std::string_view UdpCode;
  std::int16_t Node;  ///< the argument of CVLSelected
};

/// The five services, in the order of their codes.
class ServiceTable {
 public:
  ServiceTable(MainWindow &window, ServiceSockets &sockets)
      : Daytime(Make(window, panel::Daytime, "DTS13", sockets.TCP13, sockets.UDP13, "1", "0")),
        Time(Make(window, panel::Time, "NTP37", sockets.TCP37, sockets.UDP37, "3", "2")),
        Ntp(Make(window, panel::Ntp, "SNTP123", sockets.TCP123, sockets.UDP123, "5", "4")),
        Unix(Make(window, panel::Unix, "UNIX519", sockets.TCP519, sockets.UDP519, "7", "6")),
        Client(Make(window, panel::Client, "CVL3777", sockets.TCP3777, sockets.UDP3777, "9", "8")),
        All{&Daytime, &Time, &Ntp, &Unix, &Client} {}

  Service Daytime;
  Service Time;
  Service Ntp;
  Service Unix;
  Service Client;
  std::array<Service *, 5> All;

 private:
  static Service Make(MainWindow &window, std::size_t panel_index, std::string_view setting,
                      SlotArray &tcp_slots, Socket &udp_socket, std::string_view tcp_code,
                      std::string_view udp_code) {
    // The tree has its root in front of the panels.
    constexpr std::size_t FirstNode = 2;
    const ServiceControls &controls = AllServiceControls[panel_index];
    return {setting,
            window.*controls.MasterBox,
            window.*controls.TcpBox,
            window.*controls.UdpBox,
            window.*controls.PortBox,
            tcp_slots,
            udp_socket,
            tcp_code,
            udp_code,
            static_cast<std::int16_t>(panel_index + FirstNode)};
  }
};

}  // namespace cvl
