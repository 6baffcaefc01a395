// The shape of a window: a box with boxes cut out of it.

#pragma once

#include <algorithm>
#include <vector>

#include "ui/button/box.h"

namespace cvl {

class Region {
 public:
  explicit Region(const Box &whole) : Whole_(whole) {}

  void Remove(const Box &box) { Removed_.push_back(box); }

  bool Contains(int x, int y) const {
    return Whole_.Contains(x, y) && std::none_of(Removed_.begin(), Removed_.end(),
                                                 [&](const Box &b) { return b.Contains(x, y); });
  }

  const Box &Whole() const { return Whole_; }
  const std::vector<Box> &Removed() const { return Removed_; }

 private:
  Box Whole_;
  std::vector<Box> Removed_;
};

}  // namespace cvl
