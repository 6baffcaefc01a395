// A tree of texts. Nodes are numbered from 1 in the order in which they were added.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "controls/control.h"

namespace cvl {

class TreeView : public Control {
 public:
  struct Node {
    std::string Text;
    std::int16_t Parent;  ///< 0 for a root
    int Image;
    bool Expanded = false;
  };

  /// Raised when a hand selects a node, with its number.
  std::function<void(std::int16_t)> OnNodeClick;

  std::vector<Node> Nodes;
  /// The number of the selected node, 0 for none.
  std::int16_t Selected = 0;

  void Add(std::string text, std::int16_t parent, int image) {
    Nodes.push_back({std::move(text), parent, image});
  }
};

}  // namespace cvl
