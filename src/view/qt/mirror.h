// A widget and the model behind it.

#pragma once

#include <QWidget>
#include <functional>

namespace cvl {

struct Mirror {
  QWidget *Widget = nullptr;
  /// Brings the widget up to what the model holds; cheap when nothing has changed. Empty for
  /// a widget without a model.
  std::function<void()> Refresh;
};

}  // namespace cvl
