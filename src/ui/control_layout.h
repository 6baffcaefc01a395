// How a window is laid out: one row for each control, from which any view builds its
// widgets. Views hold no coordinates, texts or colours of their own.
//
//   for (const PlacedControl &control : MainWindowLayout(window).Controls)
//     Build(*control.Layout, control.Model);

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "controls/check_box.h"
#include "controls/combo_box.h"
#include "controls/label.h"
#include "controls/text_box.h"
#include "controls/tree_view.h"

namespace cvl {

class QRBButtons;

enum class ControlKind {
  Frame,
  Label,
  Image,
  Tree,
  TextBox,
  CheckBox,
  ComboBox,
  ImageCombo,
  Button,
};

/// Where a control stands inside its parent, in twips.
struct Place {
  int Left;
  int Top;
  int Width;
  int Height;
};

enum class FontFace { Dialog, Arial, LucidaConsole, CourierNew, Terminal };

struct LayoutFont {
  FontFace Face = FontFace::Dialog;
  int Pixels = 11;  ///< its size at the display's usual size
  bool Bold = false;
};

enum class Alignment { Left, Centre, Right };

/// A colour, 0xRRGGBB; none is the desktop's own.
using LayoutColour = std::optional<std::uint32_t>;

/// Which picture an image control shows.
enum class ImageSource { None, ImageTable, Logo };

struct ControlLayout {
  std::string_view Name;
  int Index = -1;  ///< the place in an array of controls; -1 for a control by itself
  ControlKind Kind;
  std::string_view Parent;  ///< empty for the window itself
  int ParentIndex = -1;
  std::string_view Text{};  ///< at design
  Place At;
  LayoutFont TextFont{};
  LayoutColour TextColour{};
  LayoutColour Background{};
  Alignment Align = Alignment::Left;
  bool Visible = true;      ///< at design
  bool Locked = false;      ///< a text box that the user can't change; its text can be selected
  bool Selectable = false;  ///< a label whose text the user can select and copy
  std::size_t MaxLength = 0;
  int MostRows = 20;  ///< of an open list; a longer one scrolls
  std::string_view Tip{};
  std::string_view SpokenName{};  ///< for screen readers; empty where Text is the name
  ImageSource Picture = ImageSource::None;
};

/// The model behind a control. Frames, labels and pictures that never change have none.
using ControlModel = std::variant<std::monostate, Control *, Label *, Picture *, TextBox *,
                                  CheckBox *, ComboBox *, ImageCombo *, TreeView *, QRBButtons *>;

struct PlacedControl {
  const ControlLayout *Layout;
  ControlModel Model;
};

/// A window: its inner size in twips, and its controls, parents before children.
struct WindowLayout {
  std::string_view Name;
  int Width;
  int Height;
  std::vector<PlacedControl> Controls;
};

/// A row of a window's table: a control, and how to find its model in the window; null for
/// one without a model.
template <class Window>
struct LayoutRow {
  ControlLayout Layout;
  ControlModel (*ModelIn)(Window &) = nullptr;
};

/// The model of a row that is a member of its window.
template <auto Member, class Window>
ControlModel ModelOf(Window &window) {
  return &(window.*Member);
}

/// The model of a row that is an element of an array in its window.
template <auto Array, std::size_t Index, class Window>
ControlModel ElementOf(Window &window) {
  return &(window.*Array)[Index];
}

/// The controls of WINDOW by its table.
template <class Window>
std::vector<PlacedControl> PlaceControls(std::span<const LayoutRow<Window>> rows, Window &window) {
  std::vector<PlacedControl> controls;
  controls.reserve(rows.size());
  for (const LayoutRow<Window> &row : rows) {
    controls.push_back(
        {&row.Layout, row.ModelIn == nullptr ? ControlModel() : row.ModelIn(window)});
  }
  return controls;
}

}  // namespace cvl
