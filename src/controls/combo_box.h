// A text box with a list to choose from, and its sister with a picture on each item.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "controls/text_box.h"

namespace cvl {

/// The text is free: it need not be one of the list.
class ComboBox : public TextBox {
 public:
  using TextBox::TextBox;

  /// Raised when a hand chooses from the list; never from code.
  std::function<void()> OnClick;

  std::vector<std::string> List;

  /// Chooses an item, as a hand does; the first is 0. Raises 380 when there is none such.
  void Choose(std::size_t item);
};

/// The list of a box with pictures. Items are numbered from 1.
class ImageCombo : public Control {
 public:
  struct Item {
    std::string Text;
    int Image;  ///< a number of the image table, 1 to ImageCount
  };

  explicit ImageCombo(int image_count) : ImageCount_(image_count) {}

  /// Raised when a hand chooses an item; selecting one from code raises nothing.
  std::function<void()> OnClick;

  /// Adds an item to the end. Raises 380 when the image table has no such picture.
  void Add(std::string text, std::int32_t image);
  void Clear();

  std::int32_t Count() const { return static_cast<std::int32_t>(Items_.size()); }

  /// The item of a number. Raises 35600 when there is none such.
  const Item &At(std::int32_t number) const;

  /// The number of the selected item, 0 for none.
  std::int32_t Selected() const { return Selected_; }
  /// Selects an item; raises 35600 when there is none such, and the selection stays.
  void Select(std::int32_t number);
  /// Selects an item as a hand does.
  void Choose(std::int32_t number);

  /// The text that the box shows: the selected item's, or none.
  std::string Text() const;

 private:
  int ImageCount_;
  std::vector<Item> Items_;
  std::int32_t Selected_ = 0;
};

}  // namespace cvl
