// A view that nobody looks at, and a button on it. What the button does is kept as a list of
// words, in the order in which it happens.

#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "tests/support/test_loop.h"
#include "tests/ui_button/fake_text.h"
#include "ui/button/qrb_buttons.h"

namespace cvl {

/// A picture of one colour.
inline RasterRef PictureOf(int width, int height) {
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  return MakeRaster(RasterKind::Bitmap, width, height, std::vector<std::uint32_t>(pixels, 1));
}

class FakeView final : public ButtonView, public FakeFont {
 public:
  std::vector<std::string> Journal;

  bool PointerIsHere = false;
  bool IsDefault = false;
  bool Designs = false;
  int TwipsPerPixel = 15;
  ButtonFont Font;
  std::function<Backdrop()> Behind = [] { return Backdrop(); };
  std::function<void()> OnRunPendingEvents;
  /// Has a word for the look of the button each time that it is painted.
  std::function<std::string()> Look = [] { return std::string("paint"); };

  TextSize MeasureText(const ShownCaption &text, const ButtonFont &, int width) override {
    return Measure(text, width);
  }
  void DrawText(Canvas &, const ShownCaption &text, const ButtonFont &font, const Box &box,
                Colour ink) override {
    Draw(text, font, box, ink);
  }
  ButtonFont ContainerFont() override { return Font; }

  bool PointerIsOver() override { return PointerIsHere; }
  void CaptureMouse() override { Journal.emplace_back("capture"); }
  void SurfaceChanged() override { Journal.push_back(Look()); }
  void SizeCorrected(int width, int height) override {
    Journal.push_back(Joined({"corrected ", std::to_string(width), " ", std::to_string(height)}));
  }
  int PixelsOf(int units) override { return units / TwipsPerPixel; }
  std::uintptr_t WindowHandle() override { return 4711; }
  void RunPendingEvents() override {
    Journal.emplace_back("run events");
    if (OnRunPendingEvents) OnRunPendingEvents();
  }

  Backdrop ParentBackdrop() override { return Behind(); }
  bool IsDefaultButton() override { return IsDefault; }
  bool InDesignMode() override { return Designs; }
  void PropertyChanged(std::string_view name) override {
    Journal.push_back(Joined({"property ", name}));
  }

  void OpenWithShell(const std::string &address) override {
    Journal.push_back(Joined({"open ", address}));
  }
  void NavigateTo(const std::string &address) override {
    Journal.push_back(Joined({"navigate ", address}));
  }
};

/// A button of 40 by 30 in style Standard with no caption. Its events and its paintings are
/// in the journal; a painting tells which of the flags were set.
class ButtonTest : public testing::Test {
 protected:
  ButtonTest() {
    Button.SetButtonStyle(button_style::Standard);
    Button.SetCaption("");
    Button.Attach(&View);
    Button.Resize(40, 30);
    Keep();
    View.Look = [this] { return Look(); };
    View.Journal.clear();
  }

  std::string Look() const {
    return Joined({"paint", Button.HasFocus() ? " focus" : "", Button.IsDown() ? " down" : "",
                   Button.IsHover() ? " hover" : ""});
  }

  /// What happened since the last call.
  std::vector<std::string> Happened() { return std::exchange(View.Journal, {}); }

  TestLoop Loop;
  FakeView View;
  QRBButtons Button{Loop, "cfgsvrOK"};

 private:
  void Note(const char *event, std::initializer_list<int> values = {}) {
    std::string words = event;
    for (const int value : values)
      words += Joined({" ", std::to_string(value)});
    View.Journal.push_back(words);
  }

  void Keep() {
    Button.Click = [this] { Note("Click"); };
    Button.KeyDown = [this](int code, int shift) { Note("KeyDown", {code, shift}); };
    Button.KeyPress = [this](int ascii) { Note("KeyPress", {ascii}); };
    Button.KeyUp = [this](int code, int shift) { Note("KeyUp", {code, shift}); };
    Button.MouseDown = [this](int b, int s, int x, int y) { Note("MouseDown", {b, s, x, y}); };
    Button.MouseMove = [this](int b, int s, int x, int y) { Note("MouseMove", {b, s, x, y}); };
    Button.MouseUp = [this](int b, int s, int x, int y) { Note("MouseUp", {b, s, x, y}); };
    Button.MouseIn = [this](int shift) { Note("MouseIn", {shift}); };
    Button.MouseOut = [this](int shift) { Note("MouseOut", {shift}); };
  }
};

}  // namespace cvl
