// What a button that nobody sees is shown by: texts take no room, the pointer is elsewhere,
// and an address goes nowhere.

#pragma once

#include "controls/control.h"
#include "ui/button/button_view.h"

namespace cvl {

class UnseenView final : public ButtonView {
 public:
  TextSize MeasureText(const ShownCaption &, const ButtonFont &, int) override { return {}; }
  void DrawText(Canvas &, const ShownCaption &, const ButtonFont &, const Box &, Colour) override {}
  ButtonFont ContainerFont() override { return {}; }

  bool PointerIsOver() override { return false; }
  void CaptureMouse() override {}
  void SurfaceChanged() override {}
  void SizeCorrected(int, int) override {}
  int PixelsOf(int units) override { return units / TwipsPerPixel; }
  std::uintptr_t WindowHandle() override { return 0; }
  void RunPendingEvents() override {}

  Backdrop ParentBackdrop() override { return {}; }
  bool IsDefaultButton() override { return false; }
  bool InDesignMode() override { return false; }
  void PropertyChanged(std::string_view) override {}

  void OpenWithShell(const std::string &) override {}
  void NavigateTo(const std::string &) override {}
};

}  // namespace cvl
