// Message boxes on the desktop.

#pragma once

#include <QWidget>
#include <functional>

#include "platform/message_box.h"

namespace cvl {

class QtMessageBoxes final : public MessageBoxes {
 public:
  /// The widget of an owner; null for none, or for one that nobody sees.
  std::function<QWidget *(BoxOwner)> WidgetOf;

  /// The toolkit's loop runs meanwhile, and with it the server's.
  BoxAnswer Show(BoxOwner owner, BoxStyle style, std::string_view title,
                 std::string_view text) override;
};

}  // namespace cvl
