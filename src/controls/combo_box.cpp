#include "controls/combo_box.h"

#include <utility>

#include "base/runtime_error.h"

namespace cvl {

void ComboBox::Choose(std::size_t item) {
  if (item >= List.size()) throw RuntimeError(error_number::InvalidPropertyValue);
  SetText(List[item]);
  if (OnClick) OnClick();
}

void ImageCombo::Add(std::string text, std::int32_t image) {
  if (image < 1 || image > ImageCount_) throw RuntimeError(error_number::InvalidPropertyValue);
  Items_.push_back({std::move(text), image});
}

void ImageCombo::Clear() {
  Items_.clear();
  Selected_ = 0;
}

const ImageCombo::Item &ImageCombo::At(std::int32_t number) const {
  if (number < 1 || number > Count()) throw RuntimeError(error_number::ElementNotFound);
  return Items_[static_cast<std::size_t>(number - 1)];
}

void ImageCombo::Select(std::int32_t number) {
  static_cast<void>(At(number));
  Selected_ = number;
}

void ImageCombo::Choose(std::int32_t number) {
  Select(number);
  if (OnClick) OnClick();
}

std::string ImageCombo::Text() const {
  return Selected_ == 0 ? std::string() : At(Selected_).Text;
}

}  // namespace cvl
