// The unit by which systemd knows the service.
//
// Its text is deploy/CVLServer.service.in, which also says why each line is there; what
// depends on the machine is put into its gaps.

#pragma once

#include <string>

namespace cvl {

/// What the unit is made of.
struct ServiceUnit {
  std::string Name;         ///< of the service; the unit adds ".service"
  std::string Description;  ///< one line
  bool StartsAutomatically = true;
  /// Absolute paths. The server file is looked for in the program directory.
  std::string Executable;
  std::string ProgramDirectory;
  std::string SettingsFile;
  /// Whether the pause between two failed starts grows, which systemd knows from 254 on.
  bool HasGrowingRestarts = false;
};

/// Whether the systemd of this machine knows a pause that grows; false if it can't be asked.
bool KnowsGrowingRestarts();

/// The unit's text.
std::string UnitText(const ServiceUnit &unit);

/// CHRONVALE_UNIT_DIR, or where systemd looks for the units of the administrator.
std::string UnitDirectory();

/// Writes the unit into DIRECTORY, in the place of an older one, has systemd read it, and has
/// it started with the machine if it is to be. False as soon as one of that fails; what was
/// done until then stays, and another attempt goes over it.
[[nodiscard]] bool InstallUnit(const ServiceUnit &unit, const std::string &directory);

/// Takes the unit back, from systemd and from DIRECTORY. A service that runs goes on until it
/// is stopped, and its state directory stays. False as soon as a step fails, and when there
/// is no such unit.
[[nodiscard]] bool UninstallUnit(const std::string &name, const std::string &directory);

}  // namespace cvl
