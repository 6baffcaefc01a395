// The windows as they are wanted, control by control: what the walk compares the widgets with.
// Written down by itself, so that a slip in the layouts of the program shows.

#pragma once

#include <string>
#include <vector>

namespace cvl {

enum class WantedKind {
  Frame,
  Label,
  Image,
  Tree,
  Line,
  Clock,  ///< several lines that the user can't change
  Check,
  Combo,
  ImageCombo,
  Button,
};

/// In twips inside the parent; a width of 0 stands for a place that isn't laid down.
struct WantedPlace {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;
};

struct WantedControl {
  std::string Name;  ///< of one of an array: "LED(0)"
  WantedKind Kind;
  std::string Parent;  ///< empty for the window itself
  std::string Text;
  WantedPlace At;
  bool Hidden = false;  ///< at design
  int Limit = 0;        ///< most characters, 0 for none
};

const std::vector<WantedControl> &WantedMainWindow();
const std::vector<WantedControl> &WantedConfigurationWindow();
const std::vector<WantedControl> &WantedAboutBox();

}  // namespace cvl
