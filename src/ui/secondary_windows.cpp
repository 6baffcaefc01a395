#include "ui/secondary_windows.h"

namespace cvl {

namespace {

template <class Window>
void ShowOrRaise(Window &window) {
  window.Visible = true;
  if (window.OnShow) window.OnShow();
}

}  // namespace

void SecondaryWindows::ShowConfiguration() {
  ShowOrRaise(Configuration());
}

void SecondaryWindows::ShowAbout() {
  ShowOrRaise(About());
}

ConfigurationWindow &SecondaryWindows::Configuration() {
  if (!Configuration_) {
    Configuration_ = std::make_unique<ConfigurationWindow>(Loop_, Main_, State_);
    if (OnConfigurationMade) OnConfigurationMade(*Configuration_);
  }
  return *Configuration_;
}

AboutBox &SecondaryWindows::About() {
  if (!About_) About_ = std::make_unique<AboutBox>(Loop_, Main_, State_.Start.MakerHost);
  return *About_;
}

void SecondaryWindows::CloseConfiguration() {
  if (Configuration_) DroppedConfigurations_.push_back(std::move(Configuration_));
}

void SecondaryWindows::CloseAbout() {
  if (About_) DroppedAbouts_.push_back(std::move(About_));
}

void SecondaryWindows::Bury() {
  DroppedConfigurations_.clear();
  DroppedAbouts_.clear();
}

}  // namespace cvl
