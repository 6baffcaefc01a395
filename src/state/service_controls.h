// What the main window has for each of the five services, and where their requests are
// counted.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "state/main_window.h"
#include "state/run_state.h"

namespace cvl {

/// The panels, in the order of the tree. CVLRemHost has the same order.
namespace panel {
inline constexpr std::size_t Time = 0;
inline constexpr std::size_t Daytime = 1;
inline constexpr std::size_t Ntp = 2;
inline constexpr std::size_t Unix = 3;
inline constexpr std::size_t Client = 4;
}  // namespace panel

struct ServiceControls {
  CheckBox MainWindow::*MasterBox;
  CheckBox MainWindow::*TcpBox;
  CheckBox MainWindow::*UdpBox;
  TextBox MainWindow::*PortBox;
  std::int32_t RequestCounters::*TcpCount;
  std::int32_t RequestCounters::*UdpCount;
};

/// By panel.
inline constexpr std::array<ServiceControls, 5> AllServiceControls = {{
    {&MainWindow::eNTP, &MainWindow::eTCP37, &MainWindow::eUDP37, &MainWindow::NTP_Ptxt,
     &RequestCounters::ReqTCP37, &RequestCounters::ReqUDP37},
    {&MainWindow::eDTS, &MainWindow::eTCP13, &MainWindow::eUDP13, &MainWindow::DS_Ptxt,
     &RequestCounters::ReqTCP13, &RequestCounters::ReqUDP13},
    {&MainWindow::eSNTP, &MainWindow::eTCP123, &MainWindow::eUDP123, &MainWindow::SNTP_Ptxt,
     &RequestCounters::ReqTCP123, &RequestCounters::ReqUDP123},
    {&MainWindow::eUnix, &MainWindow::eTCP519, &MainWindow::eUDP519, &MainWindow::Unix_Ptxt,
     &RequestCounters::ReqTCP519, &RequestCounters::ReqUDP519},
    {&MainWindow::eCVLS, &MainWindow::eTCP3777, &MainWindow::eUDP3777, &MainWindow::CVLS_Ptxt,
     &RequestCounters::ReqTCP3777, &RequestCounters::ReqUDP3777},
}};

}  // namespace cvl
