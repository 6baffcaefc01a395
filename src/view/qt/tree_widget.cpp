// The tree of services.

#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyle>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <algorithm>
#include <vector>

#include "view/qt/control_widgets.h"
#include "view/qt/qt_fonts.h"
#include "view/qt/qt_images.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

constexpr int NumberRole = Qt::UserRole;

// So that all nodes are seen at once.
constexpr int RowHeight = 16;

/// The width that the rows of ITEMS need: indentation, picture, text, and what the style
/// leaves free around both.
int NeededWidth(const QTreeWidget &tree, const std::vector<QTreeWidgetItem *> &items) {
  const QFontMetrics metrics(tree.font());
  const int margin = tree.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &tree) + 1;
  int needed = 0;
  for (const QTreeWidgetItem *item : items) {
    const int depth = item->parent() == nullptr ? 1 : 2;
    needed = std::max(needed, depth * tree.indentation() + tree.iconSize().width() + 4 * margin +
                                  metrics.horizontalAdvance(item->text(0)));
  }
  return needed;
}

/// Makes the letters as small as the longest row needs.
void FitFont(QTreeWidget &tree, const std::vector<QTreeWidgetItem *> &items) {
  const int room = tree.width() - 2 * tree.frameWidth();
  Shrink(tree, [&] { return NeededWidth(tree, items) <= room; });
}

/// Adds the nodes that TREE doesn't show yet. ITEMS are those it shows, by their numbers.
void AddNodes(QTreeWidget &tree, const TreeView &model, std::vector<QTreeWidgetItem *> &items) {
  while (items.size() < model.Nodes.size()) {
    const TreeView::Node &node = model.Nodes[items.size()];
    auto *item = new QTreeWidgetItem({FromModel(node.Text)});
    item->setIcon(0, TableIcon(node.Image));
    item->setSizeHint(0, QSize(0, RowHeight));
    items.push_back(item);
    item->setData(0, NumberRole, static_cast<int>(items.size()));
    if (node.Parent == 0) {
      tree.addTopLevelItem(item);
    } else {
      items[static_cast<std::size_t>(node.Parent - 1)]->addChild(item);
    }
  }
  for (std::size_t at = 0; at < items.size(); ++at) {
    if (model.Nodes[at].Expanded) items[at]->setExpanded(true);
  }
}

/// Puts the highlight where the model's is. A press that is dragged elsewhere, or one of the
/// right button, moves it without being a click.
void ShowSelected(QTreeWidget &tree, const TreeView &model,
                  const std::vector<QTreeWidgetItem *> &items) {
  if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
  const QSignalBlocker quiet(&tree);
  for (std::size_t at = 0; at < items.size(); ++at) {
    const bool selected = static_cast<int>(at + 1) == model.Selected;
    if (items[at]->isSelected() != selected) items[at]->setSelected(selected);
  }
}

/// A tree in which the Enter key clicks the selected node, as a second click on it does.
class ServiceTree final : public QTreeWidget {
 public:
  using QTreeWidget::QTreeWidget;

  std::function<void(QTreeWidgetItem *)> OnEnter;

 protected:
  void keyPressEvent(QKeyEvent *event) override {
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QList<QTreeWidgetItem *> selected = selectedItems();
    if (!is_enter || selected.isEmpty()) {
      QTreeWidget::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
      OnEnter(selected.first());
    }
  }
};

}  // namespace

Mirror MakeTree(const ControlLayout &layout, TreeView &model, ViewEvents &events, QWidget *parent) {
  auto *tree = new ServiceTree(parent);
  tree->setHeaderHidden(true);
  tree->setIconSize(QSize(16, 16));
  tree->setIndentation(14);
  tree->setFont(FontFor(layout.TextFont));
  const auto select = [&model, &events](QTreeWidgetItem *item) {
    const auto number = static_cast<std::int16_t>(item->data(0, NumberRole).toInt());
    events.Raise([&] {
      model.Selected = number;
      if (model.OnNodeClick) model.OnNodeClick(number);
    });
  };
  // A click selects, also what is selected already; so does a key that moves the selection.
  QObject::connect(tree, &QTreeWidget::itemClicked, tree,
                   [select](QTreeWidgetItem *item) { select(item); });
  tree->OnEnter = select;
  QObject::connect(tree, &QTreeWidget::itemSelectionChanged, tree, [tree, select] {
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
    const QList<QTreeWidgetItem *> selected = tree->selectedItems();
    if (!selected.isEmpty()) select(selected.first());
  });
  return {tree, [tree, &model, items = std::vector<QTreeWidgetItem *>()]() mutable {
            RefreshControl(*tree, model);
            if (items.size() < model.Nodes.size()) {
              AddNodes(*tree, model, items);
              FitFont(*tree, items);
            }
            ShowSelected(*tree, model, items);
          }};
}

}  // namespace cvl
