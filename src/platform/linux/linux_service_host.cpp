#include "platform/linux/linux_service_host.h"

#include <sys/signalfd.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "base/runtime_error.h"
#include "platform/linux/error_table.h"

namespace cvl {

namespace {

// The type of an event record that only informs.
constexpr int InformationType = 4;

}  // namespace

LinuxServiceHost::LinuxServiceHost(EventLoop &loop) : Loop_(loop) {
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
      if (OnStop) OnStop();
      break;
  }
}

void LinuxServiceHost::SaveSetting(std::string_view, std::string_view key, std::string_view value) {
  if (key == "Description") Description_ = value;
}

bool LinuxServiceHost::Install() {
  return false;
}

bool LinuxServiceHost::Uninstall() {
  return false;
}

void LinuxServiceHost::LogEvent(int type, int id, std::string_view text) {
  openlog("CVLServer", 0, LOG_DAEMON);
  syslog(type == InformationType ? LOG_INFO : LOG_ERR, "%d %d %.*s", type, id,
         static_cast<int>(text.size()), text.data());
  closelog();
}

void LinuxServiceHost::StartService() {
  bool success = false;
  if (OnStart) OnStart(success);
}

}  // namespace cvl
