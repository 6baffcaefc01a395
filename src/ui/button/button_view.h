// What a button asks of what shows it and of the form that it stands on.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ui/button/button_scene.h"
#include "ui/button/button_text.h"

namespace cvl {

/// Implemented once for a toolkit. Positions and sizes are pixels of the surface.
class ButtonView : public ButtonText {
 public:
  // The pointer and the window.

  /// The pointer is over this button, and nothing lies between.
  virtual bool PointerIsOver() = 0;

  /// The button gets the pointer's events wherever it goes, until its buttons are released.
  virtual void CaptureMouse() = 0;

  /// Surface, Shape or both have changed and want to be shown.
  virtual void SurfaceChanged() = 0;

  /// The button has given itself another size than the one that it was told.
  virtual void SizeCorrected(int width, int height) = 0;

  /// The pixels of UNITS in the measure of the container.
  virtual int PixelsOf(int units) = 0;

  /// The native window, 0 for none.
  virtual std::uintptr_t WindowHandle() = 0;

  /// Handles the events that are pending and returns.
  virtual void RunPendingEvents() = 0;

  // The form.

  /// What the button stands on, and where. May raise any failure.
  virtual Backdrop ParentBackdrop() = 0;

  /// The Enter key presses this button.
  virtual bool IsDefaultButton() = 0;

  /// The form is being designed: the button shows a simplified look.
  virtual bool InDesignMode() = 0;

  /// A property has a new value. The cursor and the access key may hang on it.
  virtual void PropertyChanged(std::string_view name) = 0;

  // Addresses.

  /// Starts the program of the desktop for an address, on behalf of the parent's window.
  virtual void OpenWithShell(const std::string &address) = 0;

  /// Shows the page of an address, in the browser unless the container has its own way.
  virtual void NavigateTo(const std::string &address) = 0;
};

}  // namespace cvl
