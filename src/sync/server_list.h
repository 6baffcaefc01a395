// The list of remote time servers: a text file beside the program, read into the box that
// the user sees and a table of hosts that the exchange uses.

#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <string>

#include "state/main_window.h"

namespace cvl {

class ServerList {
 public:
  explicit ServerList(MainWindow &window) : Window_(window) {}

  /// Name of the server file in the program directory.
  static constexpr const char *FileName = "QRB_CVLS4.CVL";

  /// Adds the servers of a file. Its first five lines are passed over; each further one is
  /// host, text, picture and a spare field with ":::" between them. An empty line ends it.
  ///
  /// Items count the lines that have four fields, hosts all lines: a line with fewer
  /// shifts every later item against its host, and it is meant to, since files in the
  /// field rely on it being passed over and not on being counted.
  ///
  /// Raises 9 for more than 300 lines and 380 for a picture that the image table lacks.
  /// Failures: neither trap nor continue.
  void Read(std::istream &file);

  /// A click on the box: the next exchange goes to the host of the selected item's number.
  /// Failures: continue; with no item selected nothing changes.
  void ChooseSelected();

  /// The host of a slot, 0 to 300; slot 0 is always empty. Raises 9 outside.
  const std::string &Host(std::int32_t slot) const;

  /// The host that the next exchange goes to. Empty until a server is chosen or drawn.
  std::string CurrentServer;

 private:
  static constexpr std::int32_t HeaderLines = 5;
  static constexpr std::int32_t LastSlot = 300;

  void ReadServer(std::int32_t slot, const std::string &line);

  MainWindow &Window_;
  std::array<std::string, LastSlot + 1> ServerHosts_;
};

}  // namespace cvl
