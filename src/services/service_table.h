// What belongs to each of the five services: boxes, sockets, codes and node.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "services/service_sockets.h"
#include "state/main_window.h"

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
      : Daytime{"DTS13",       window.eDTS,   window.eTCP13, window.eUDP13, window.DS_Ptxt,
                sockets.TCP13, sockets.UDP13, "1",           "0",           3},
        Time{"NTP37",       window.eNTP,   window.eTCP37, window.eUDP37, window.NTP_Ptxt,
             sockets.TCP37, sockets.UDP37, "3",           "2",           2},
        Ntp{"SNTP123",
            window.eSNTP,
            window.eTCP123,
            window.eUDP123,
            window.SNTP_Ptxt,
            sockets.TCP123,
            sockets.UDP123,
            "5",
            "4",
            4},
        Unix{"UNIX519",
             window.eUnix,
             window.eTCP519,
             window.eUDP519,
             window.Unix_Ptxt,
             sockets.TCP519,
             sockets.UDP519,
             "7",
             "6",
             5},
        Client{"CVL3777",
               window.eCVLS,
               window.eTCP3777,
               window.eUDP3777,
               window.CVLS_Ptxt,
               sockets.TCP3777,
               sockets.UDP3777,
               "9",
               "8",
               6},
        All{&Daytime, &Time, &Ntp, &Unix, &Client} {}

  Service Daytime;
  Service Time;
  Service Ntp;
  Service Unix;
  Service Client;
  std::array<Service *, 5> All;
};

}  // namespace cvl
