#include "platform/linux/linux_service_host.h"

#include <sys/signalfd.h>
#include <syslog.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <utility>

#include "base/runtime_error.h"
#include "base/text.h"
#include "platform/linux/system_log.h"
#include "platform/linux/systemd_unit.h"

namespace cvl {

namespace {

/// The type of an event record that only informs.
constexpr int InformationType = 4;

/// PATH from the root, as far as it exists without links; PATH itself if even that fails.
std::string AbsolutePath(const std::string &path) {
  std::error_code failure;
  const std::filesystem::path absolute = std::filesystem::weakly_canonical(path, failure);
  return failure ? path : absolute.string();
}

}  // namespace

LinuxServiceHost::LinuxServiceHost(EventLoop &loop, std::string program_directory,
                                   std::string settings_file)
    : Loop_(loop),
      Manager_(loop),
      ProgramDirectory_(std::move(program_directory)),
      SettingsFile_(std::move(settings_file)),
      UnitDirectory_(UnitDirectory()) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2}) {
    sigaddset(&signals, signal);
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  Signals_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (Signals_ < 0) throw RuntimeError(error_number::TooManyDescriptors);
  Loop_.Watch(SocketHandle{Signals_}, {.Read = true}, *this);
}

LinuxServiceHost::~LinuxServiceHost() {
  Loop_.Unwatch(SocketHandle{Signals_});
  close(Signals_);
}

void LinuxServiceHost::OnReady(Readiness) {
  signalfd_siginfo info{};
  while (!Loop_.IsQuitting() && read(Signals_, &info, sizeof info) == sizeof info) {
    OnSignal(static_cast<int>(info.ssi_signo));
  }
}

void LinuxServiceHost::OnSignal(int signal) {
  bool success = false;
  switch (signal) {
    case SIGUSR1:
      if (OnPause) OnPause(success);
      break;
    case SIGUSR2:
      if (OnContinue) OnContinue(success);
      break;
    default:
      Manager_.Stopping();
      if (OnStop) OnStop();
      break;
  }
}

void LinuxServiceHost::SaveSetting(std::string_view, std::string_view key, std::string_view value) {
  if (key == "Description") Description_ = value;
}

bool LinuxServiceHost::Install() {
  return InstallUnit({.Name = Definition.Name,
                      .Description = Description_.empty() ? Definition.DisplayName : Description_,
                      .StartsAutomatically = Definition.StartsAutomatically,
                      .Executable = AbsolutePath("/proc/self/exe"),
                      .ProgramDirectory = AbsolutePath(ProgramDirectory_),
                      .SettingsFile = AbsolutePath(SettingsFile_),
                      .HasGrowingRestarts = KnowsGrowingRestarts()},
                     UnitDirectory_);
}

bool LinuxServiceHost::Uninstall() {
  return UninstallUnit(Definition.Name, UnitDirectory_);
}

void LinuxServiceHost::LogEvent(int type, int id, std::string_view text) {
  WriteSystemLog(type == InformationType ? LOG_INFO : LOG_ERR,
                 Joined({std::to_string(type), " ", std::to_string(id), " ", text}));
}

void LinuxServiceHost::StartService() {
  Manager_.Ready();
  bool success = false;
  if (OnStart) OnStart(success);
}

void LinuxServiceHost::ReportStatus(std::string_view text) {
  Manager_.Status(text);
}

}  // namespace cvl
