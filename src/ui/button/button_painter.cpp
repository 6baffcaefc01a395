#include "ui/button/button_painter.h"

#include "base/failure_modes.h"
#include "ui/button/button_frame.h"
#include "ui/button/raster_painting.h"

namespace cvl {

namespace {

constexpr Colour PictureShadow = Rgb(176, 176, 176);

/// A copy of what lies behind: nothing shines through. Failures: trap.
void PaintParentBackground(Canvas &canvas, const std::function<Backdrop()> &backdrop) {
  static_cast<void>(Trap([&] {
    const Backdrop behind = backdrop();
    if (behind.Picture) canvas.CopyPart(*behind.Picture, {behind.Left, behind.Top});
  }));
}

/// What Menu is filled with while it is hovered or pressed.
Colour MenuFill(const ButtonScene &scene) {
  const ButtonProperties &properties = scene.Properties;
  if (!properties.XPDefaultColors) {
    return scene.IsDown ? properties.XPColor_Pressed : properties.XPColor_Hover;
  }
  return scene.IsDown ? ColorShift(system_colour::Highlight, 156, 139, 108)
                      : ColorShift(system_colour::Highlight, 171, 154, 108);
}

void DrawBackground(Canvas &canvas, const ButtonScene &scene,
                    const std::function<Backdrop()> &backdrop) {
  canvas.Fill(scene.Properties.BackColor);
  const std::int32_t style = scene.Properties.ButtonStyle;
  const bool is_filled = style == button_style::Menu && (scene.IsDown || scene.IsHover);
  const bool shows_parent = scene.Properties.TransparentBG && style != button_style::Rounded &&
                            !(style == button_style::Menu && scene.IsDown);
  if (shows_parent) PaintParentBackground(canvas, backdrop);
  if (is_filled) canvas.Fill(MenuFill(scene));
}

void DrawPicture(Canvas &canvas, const ButtonScene &scene) {
  if (!scene.CurrentPicture) return;
  const ButtonProperties &properties = scene.Properties;
  const bool is_menu = properties.ButtonStyle == button_style::Menu;
  const bool is_lifted = is_menu && scene.IsLifted();
  Box box = scene.Layout.Picture;
  if (is_lifted) box = box.Moved(-2, -2);
  if (scene.IsDown && !is_menu) box = box.Moved(1, 1);

  const Raster &picture = *scene.CurrentPicture;
  if (!scene.Enabled) {
    PaintEmbossed(canvas, picture, box, properties.MaskColor);
    return;
  }
  if (is_lifted) {
    PaintSilhouette(canvas, picture, scene.Layout.Shadow, properties.MaskColor, PictureShadow);
  }
  PaintRaster(canvas, picture, box, properties.MaskColor);
}

void DrawFocusRect(Canvas &canvas, const ButtonScene &scene) {
  const ButtonProperties &properties = scene.Properties;
  if (!scene.HasFocus || !properties.ShowFocusRect) return;
  if (properties.ButtonStyle != button_style::Rounded) canvas.FocusRect(scene.Layout.Focus);
}

void DrawCaption(Canvas &canvas, const ButtonScene &scene, ButtonText &text) {
  const ButtonProperties &properties = scene.Properties;
  if (properties.Caption.empty()) return;
  const ShownCaption caption = ShowCaption(properties.Caption);
  Box box = scene.Layout.Caption;
  if (scene.IsDown && properties.ButtonStyle != button_style::Menu) box = box.Moved(1, 1);

  const auto draw = [&](const Box &where, Colour colour) {
    text.DrawText(canvas, caption, scene.Font, where, TranslateColor(colour));
  };
  if (scene.Enabled) {
    draw(box, properties.ForeColor);
  } else {
    draw(box.Moved(1, 1), system_colour::Highlight3D);
    draw(box, system_colour::ButtonShadow);
  }
}

}  // namespace

void PaintButton(Canvas &canvas, const ButtonScene &scene, ButtonText &text,
                 const std::function<Backdrop()> &backdrop) {
  DrawBackground(canvas, scene, backdrop);
  DrawFrame(canvas, scene);
  DrawPicture(canvas, scene);
  DrawFocusRect(canvas, scene);
  DrawCaption(canvas, scene, text);
}

}  // namespace cvl
