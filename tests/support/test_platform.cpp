#include "tests/support/test_platform.h"

namespace cvl {

namespace {

bool Raise(const std::function<void(bool &)> &event) {
  bool success = false;
  if (event) event(success);
  return success;
}

}  // namespace

bool FakeHost::ClaimSingleInstance() {
  Journal_.Add("claim instance");
  return !IsAnotherInstance;
}

std::string FakeHost::UserName() {
  Journal_.Add("user name");
  return User;
}

std::string FakeDesktop::Obstacle() {
  Journal_.Add("obstacle");
  return InTheWay;
}

bool FakeServiceHost::Pause() {
  return Raise(OnPause);
}

bool FakeServiceHost::Continue() {
  return Raise(OnContinue);
}

void FakeServiceHost::Stop() {
  if (OnStop) OnStop();
}

void FakeServiceHost::SaveSetting(std::string_view section, std::string_view key,
                                  std::string_view value) {
  Journal_.Add("save setting " + std::string(section) + "/" + std::string(key) + "=" +
               std::string(value));
}

bool FakeServiceHost::Install() {
  Journal_.Add("install");
  return Obeys;
}

bool FakeServiceHost::Uninstall() {
  Journal_.Add("uninstall");
  return Obeys;
}

void FakeServiceHost::LogEvent(int type, int id, std::string_view text) {
  Journal_.Add("log event");
  Log.push_back({type, id, std::string(text)});
}

void FakeServiceHost::StartService() {
  Journal_.Add("start service");
  if (StartError != 0) throw RuntimeError(StartError);
  Raise(OnStart);
}

Platform TestPlatform::Interfaces() {
  return {.MachineClock = Clock,
          .Loop = Loop,
          .Sockets = WatchedNet_,
          .Names = Resolver,
          .ProgramFiles = WatchedFiles_,
          .Machine = Machine,
          .CVLService = Service,
          .Tray = Tray,
          .Screen = Screen,
          .Store = WatchedStore_,
          .Boxes = Boxes,
          .Programs = Programs};
}

}  // namespace cvl
