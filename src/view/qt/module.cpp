// The module's one way in.

#include "view/qt/qt_view.h"

extern "C" cvl::WindowModule *CvlWindowModule() {
  // Lives as long as the process: the toolkit wants to be taken down before its library is.
  static auto *view = new cvl::QtView;
  return view;
}
