// The widget that shows a QRBButtons.

#pragma once

#include <QShortcut>
#include <QWidget>

#include "ui/button/qrb_buttons.h"
#include "ui/control_layout.h"
#include "view/qt/mirror.h"
#include "view/qt/view_events.h"

namespace cvl {

Mirror MakeButton(const ControlLayout &layout, QRBButtons &model, ViewEvents &events,
                  QWidget *parent);

/// Hands the surface on to the screen and the user's doings on to the button. The surface
/// has the pixels of the display, so that it is sharp at every scale.
class ButtonWidget final : public QWidget, private ButtonView {
 public:
  ButtonWidget(QRBButtons &model, ViewEvents &events, QWidget *parent);
  ~ButtonWidget() override;

  /// Brings the widget up to what the button holds.
  void RefreshModel();

  /// Clicks the button, as its access key does; no effect while it is disabled.
  void Press();
  bool IsDown() const { return Model_.IsDown(); }
  /// The key that clicks the button; empty for none.
  QKeySequence AccessKey() const { return AccessKey_.key(); }

 protected:
  void paintEvent(QPaintEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void focusInEvent(QFocusEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void keyReleaseEvent(QKeyEvent *event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  TextSize MeasureText(const ShownCaption &text, const ButtonFont &font, int width) override;
  void DrawText(Canvas &canvas, const ShownCaption &text, const ButtonFont &font, const Box &box,
                Colour colour) override;
  ButtonFont ContainerFont() override { return {}; }

  bool PointerIsOver() override;
  void CaptureMouse() override { grabMouse(); }
  void SurfaceChanged() override;
  void SizeCorrected(int width, int height) override;
  int PixelsOf(int units) override;
  std::uintptr_t WindowHandle() override { return effectiveWinId(); }
  void RunPendingEvents() override { Events_.RunPending(); }
  Backdrop ParentBackdrop() override;
  bool IsDefaultButton() override { return false; }
  bool InDesignMode() override { return false; }
  void PropertyChanged(std::string_view name) override;
  void OpenWithShell(const std::string &address) override { Events_.OpenAddress(address); }
  void NavigateTo(const std::string &address) override { Events_.OpenAddress(address); }

  int InPixels(double units) const;
  void FitSurface();
  void TakeAccessKey();
  void TakeCursor();

  QRBButtons &Model_;
  ViewEvents &Events_;
  QShortcut AccessKey_;
  double ShownScale_ = 0;  // of the display that the surface was made for
};

}  // namespace cvl
