// Every text fits its control: measured with the toolkit's own measures of fonts and styles,
// and for painted texts by their ink.

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionViewItem>
#include <QTextCursor>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include "tests/view_qt/window_bench.h"
#include "view/qt/button_widget.h"
#include "view/qt/fitted_label.h"
#include "view/qt/locked_text_box.h"
#include "view/qt/qt_text.h"

namespace cvl {
namespace {

/// Letters lower than this can't be read.
constexpr int LeastPixels = 8;

/// Pixels of PICTURE that the eye tells from its ground; the softened edge of a letter isn't
/// among them.
int InkOf(const QImage &picture) {
  int ink = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y).lightness() < 192) ++ink;
    }
  }
  return ink;
}

QImage WhiteImage(QSize size, double scale) {
  QImage image(size * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  return image;
}

/// The ink of TEXT where nothing is in its way, set in lines of the width of BOX.
int WholeInk(const QFont &font, const QString &text, QRect box, int flags, double scale) {
  constexpr int Room = 200;
  QImage image = WhiteImage({box.width() + 2 * Room, 3 * Room}, scale);
  QPainter painter(&image);
  painter.setFont(font);
  painter.setPen(Qt::black);
  painter.drawText(QRect(box.topLeft() + QPoint(Room, Room), QSize(box.width(), Room)),
                   flags | Qt::TextDontClip, text);
  painter.end();
  return InkOf(image);
}

/// What LABEL itself shows: its text alone, black on white.
QImage ShownPicture(FittedLabel &label) {
  const QPalette before = label.palette();
  QPalette plain = before;
  plain.setColor(QPalette::WindowText, Qt::black);
  for (const auto role :
       {QPalette::Window, QPalette::Light, QPalette::Dark, QPalette::Mid, QPalette::Midlight}) {
    plain.setColor(role, Qt::white);
  }
  label.setPalette(plain);
  QImage image = WhiteImage(label.size(), label.devicePixelRatioF());
  label.render(&image, {}, {}, QWidget::DrawWindowBackground);
  label.setPalette(before);
  return image;
}

int ShownInk(FittedLabel &label) {
  return InkOf(ShownPicture(label));
}

void ExpectFits(FittedLabel &label) {
  SCOPED_TRACE(Text(label.objectName() + ": " + label.Text()));
  if (label.Text().isEmpty()) return;
  const QFont font = label.font();
  EXPECT_GE(font.pixelSize(), LeastPixels);
  EXPECT_EQ(ShownInk(label), WholeInk(font, label.Text(), label.contentsRect(), label.Flags(),
                                      label.devicePixelRatioF()));
}

void ExpectFits(const LockedTextBox &box) {
  SCOPED_TRACE(Text(box.objectName() + ": " + box.Text()));
  EXPECT_GE(box.font().pixelSize(), LeastPixels);
  EXPECT_EQ(box.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(box.verticalScrollBar()->maximum(), 0);
  QTextCursor end = box.textCursor();
  end.movePosition(QTextCursor::End);
  EXPECT_LE(box.cursorRect(end).bottom(), box.viewport()->rect().bottom());
}

void ExpectFits(const QCheckBox &box) {
  SCOPED_TRACE(Text(box.objectName()));
  QStyleOptionButton option;
  option.initFrom(&box);
  option.text = box.text();
  const QRect room = box.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &box);
  const QFontMetrics metrics(box.font());
  EXPECT_LE(metrics.horizontalAdvance(box.text()), room.width());
  EXPECT_LE(metrics.tightBoundingRect(box.text()).height(), box.height());
  EXPECT_GE(box.font().pixelSize(), LeastPixels);
}

void ExpectFits(const QLineEdit &line) {
  SCOPED_TRACE(Text(line.objectName() + ": " + line.text()));
  QStyleOptionFrame option;
  option.initFrom(&line);
  option.lineWidth = line.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &line);
  const QRect room = line.style()->subElementRect(QStyle::SE_LineEditContents, &option, &line);
  constexpr int TextMargins = 2 * 2;
  const QFontMetrics metrics(line.font());
  EXPECT_LE(metrics.horizontalAdvance(line.text()), room.width() - TextMargins);
  EXPECT_LE(metrics.height(), room.height());
}

/// Every entry of BOX fits the closed box, and the open list.
void ExpectFits(QComboBox &box) {
  SCOPED_TRACE(Text(box.objectName()));
  const QFontMetrics metrics(box.font());
  QStyleOptionComboBox option;
  option.initFrom(&box);
  option.editable = box.isEditable();
  const QRect room =
      box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box);
  const int picture = box.isEditable() ? 0 : box.iconSize().width() + 4;
  constexpr int TextMargins = 2 * 2;
  for (int at = 0; at < box.count(); ++at) {
    EXPECT_LE(metrics.horizontalAdvance(box.itemText(at)), room.width() - picture - TextMargins)
        << Text(box.itemText(at));
  }
  EXPECT_LE(metrics.height(), room.height());
  box.showPopup();
  EXPECT_LE(box.view()->sizeHintForColumn(0), box.view()->width());
  EXPECT_FALSE(box.view()->horizontalScrollBar()->isVisible());
  box.hidePopup();
}

void ExpectFits(const QGroupBox &frame) {
  SCOPED_TRACE(Text(frame.objectName()));
  const QFontMetrics metrics(frame.font());
  EXPECT_LT(metrics.horizontalAdvance(frame.title()) + 12, frame.width());
}

void ExpectFits(const QRBButtons &button, const QWidget &widget) {
  SCOPED_TRACE(Text(widget.objectName()));
  const Box &caption = button.Layout().Caption;
  const double scale = widget.devicePixelRatioF();
  QFont font = widget.font();
  font.setPixelSize(static_cast<int>(button.Font().Points * 96 / 72 * scale));
  const QString text = FromModel(button.Caption());
  EXPECT_LE(caption.Height(), 2 * QFontMetrics(font).height() - 1) << "one line";
  EXPECT_GE(caption.Left, 3 * scale);
  EXPECT_LE(caption.Right, button.Width() - 3 * scale);
  EXPECT_GE(caption.Top, 2 * scale);
  EXPECT_LE(caption.Bottom, button.Height() - 2 * scale);
}

void ExpectFits(QTreeWidget &tree) {
  EXPECT_FALSE(tree.horizontalScrollBar()->isVisible());
  EXPECT_FALSE(tree.verticalScrollBar()->isVisible());
  const QFontMetrics metrics(tree.font());
  for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) {
    SCOPED_TRACE(Text((*at)->text(0)));
    const QRect row = tree.visualItemRect(*at);
    EXPECT_TRUE(tree.viewport()->rect().contains(row));
    QStyleOptionViewItem option;
    option.initFrom(&tree);
    option.rect = row;
    option.text = (*at)->text(0);
    option.font = tree.font();
    option.decorationSize = tree.iconSize();
    option.features = QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasDecoration;
    const QRect room = tree.style()->subElementRect(QStyle::SE_ItemViewItemText, &option, &tree);
    const int margin = tree.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, &tree) + 1;
    EXPECT_LE(metrics.horizontalAdvance(option.text), room.width() - 2 * margin);
    EXPECT_LE(metrics.height(), row.height());
    EXPECT_LE(tree.iconSize().height(), row.height());
  }
}

/// Everything in WINDOW that can be seen.
void ExpectAllFits(QWidget &window) {
  for (QWidget *widget : window.findChildren<QWidget *>()) {
    if (!widget->isVisible() || widget->objectName().isEmpty()) continue;
    if (auto *label = dynamic_cast<FittedLabel *>(widget)) {
      ExpectFits(*label);
    } else if (auto *locked = dynamic_cast<LockedTextBox *>(widget)) {
      ExpectFits(*locked);
    } else if (auto *box = dynamic_cast<QCheckBox *>(widget)) {
      ExpectFits(*box);
    } else if (auto *combo = dynamic_cast<QComboBox *>(widget)) {
      ExpectFits(*combo);
    } else if (auto *line = dynamic_cast<QLineEdit *>(widget)) {
      if (dynamic_cast<QComboBox *>(line->parent()) == nullptr) ExpectFits(*line);
    } else if (auto *frame = dynamic_cast<QGroupBox *>(widget)) {
      ExpectFits(*frame);
    } else if (auto *tree = dynamic_cast<QTreeWidget *>(widget)) {
      ExpectFits(*tree);
    }
  }
}

class TextFitTest : public WindowTest {
 protected:
  /// Shows a text in a label, whatever the model holds.
  void ExpectLabelFits(const char *name, const std::string &text) {
    auto &label = Widget<FittedLabel>(name);
    label.SetText(FromModel(text));
    ExpectFits(label);
  }
};

TEST_F(TextFitTest, TheScaleIsTheOneThatWasAskedFor) {
  Show();
  const char *asked = std::getenv("QT_SCALE_FACTOR");
  EXPECT_EQ(TheView().Main()->devicePixelRatioF(), asked == nullptr ? 1 : std::atof(asked));
}

TEST_F(TextFitTest, TheMeasureSeesATextThatIsCut) {
  Show();
  auto &label = Widget<FittedLabel>("UpdateLbl");
  const QFont font = label.font();
  const int whole =
      WholeInk(font, label.Text(), label.contentsRect(), label.Flags(), label.devicePixelRatioF());
  EXPECT_EQ(ShownInk(label), whole);
  label.SetText(label.Text() + label.Text() + label.Text());
  EXPECT_NE(ShownInk(label), 0);
  label.SetText(QString(400, 'W'));
  EXPECT_NE(ShownInk(label), WholeInk(label.font(), label.Text(), label.contentsRect(),
                                      label.Flags(), label.devicePixelRatioF()));
}

TEST_F(TextFitTest, TheTextsOfTheDesignFit) {
  Show();
  ExpectAllFits(*TheView().Main());
}

TEST_F(TextFitTest, AllPanelsFitWithTheirBoxesShown) {
  StoreAllServices();
  Show();
  for (TextBox *port :
       {&Server->Window.NTP_Ptxt, &Server->Window.DS_Ptxt, &Server->Window.SNTP_Ptxt,
        &Server->Window.Unix_Ptxt, &Server->Window.CVLS_Ptxt}) {
    port->SetText("65535");
  }
  Server->Window.SyncN.SetText("999999");
  for (TextBox &client : Server->Window.CVLRemHost) {
    client.SetText("255.255.255.255");
  }
  RequestCounters &requests = Server->State.Requests;
  for (std::int32_t *counter :
       {&requests.ReqTCP37, &requests.ReqUDP37, &requests.ReqTCP13, &requests.ReqUDP13,
        &requests.ReqTCP123, &requests.ReqUDP123, &requests.ReqTCP519, &requests.ReqUDP519,
        &requests.ReqTCP3777, &requests.ReqUDP3777}) {
    *counter = 88888;
  }
  for (std::int16_t node = 2; node <= 6; ++node) {
    Server->Window.CVL_TV.OnNodeClick(node);
    Refresh();
    SCOPED_TRACE(Server->Window.svrStatlbl.Caption);
    EXPECT_NE(Server->Window.svrStatlbl.Caption.find("88888/t - 88888/u"), std::string::npos);
    ExpectAllFits(*TheView().Main());
  }
}

TEST_F(TextFitTest, TheLinesOfATextAreNotBroken) {
  Show();
  const std::string status =
      "Server Status: 12/28/2028 12:58:58 PM\r"
      "# 88888 | /T 18888 | /D 18888 | /S 18888 | /U 18888 | /CVL 18888\r"
      "# UDP: 48888 --- # TCP: 48888\rLast Atomic Update: 12/28/2028 12:58:58 PM";
  const std::string service =
      "Server is: Disabled\r\nTCP: OFF - UDP: OFF\r\nRequests: 88888/t - 88888/u";
  for (const auto &[name, text] : {std::pair("Status", status), std::pair("svrStatlbl", service)}) {
    auto &label = Widget<FittedLabel>(name);
    label.SetText(FromModel(text));
    EXPECT_EQ(label.Flags() & Qt::TextWordWrap, 0) << name;
    const QFontMetrics metrics(label.font());
    for (const QString &line : label.Text().split('\n')) {
      EXPECT_LE(metrics.horizontalAdvance(line), label.contentsRect().width()) << Text(line);
    }
  }
  auto &label = Widget<FittedLabel>("Status");
  label.SetText("A text without lines");
  EXPECT_NE(label.Flags() & Qt::TextWordWrap, 0);
}

TEST_F(TextFitTest, NoLampCoversALetter) {
  Show();
  const QWidget &frame = Widget("LED_Display");
  for (const char *name : {"LEDLBL", "Label3"}) {
    auto &label = Widget<FittedLabel>(name);
    const QImage shown = ShownPicture(label);
    for (int lamp = 0; lamp < 5; ++lamp) {
      const QWidget &image = Widget(("LED(" + std::to_string(lamp) + ")").c_str());
      const QRect common = image.geometry() & label.geometry();
      if (common.isEmpty()) continue;
      const double scale = frame.devicePixelRatioF();
      const QRect covered = common.translated(-label.pos());
      EXPECT_EQ(InkOf(shown.copy(QRect(covered.topLeft() * scale, covered.size() * scale))), 0)
          << name << " under lamp " << lamp;
    }
  }
}

TEST_F(TextFitTest, TheServiceTextFitsWithItsLongestWords) {
  Show();
  ExpectLabelFits("svrStatlbl",
                  "Server is: Disabled\r\nTCP: OFF - UDP: OFF\r\nRequests: 88888/t - 88888/u");
}

TEST_F(TextFitTest, TheStatusFitsWithCountersOfFiveDigits) {
  Show();
  ExpectLabelFits("Status",
                  "Server Status: 12/28/2028 12:58:58 PM\r"
                  "# 88888 | /T 18888 | /D 18888 | /S 18888 | /U 18888 | /CVL 18888\r"
                  "# UDP: 48888 --- # TCP: 48888\r"
                  "Last Atomic Update: 12/28/2028 12:58:58 PM");
}

TEST_F(TextFitTest, TheClockFitsInItsLongestMonth) {
  Show();
  for (const char *day : {"WED SEPTEMBER 28", "MON NOVEMBER 28", "WED FEBRUARY 28"}) {
    auto &clock = Widget<LockedTextBox>("svrCurrent");
    clock.SetText(FromModel(std::string("   ") + day +
                            " 2028 10:58:58 AM\r\n   UTC SEPTEMBER 28 2028 10:58:58 PM"
                            "\r\n   Chronvale Server 5100"));
    ExpectFits(clock);
  }
}

TEST_F(TextFitTest, TheServersOfTheListFit) {
  System.Files.Contents[ServerFile] =
      "1\n2\n3\n4\n5\n10.0.0.1:::Internet Multifeed, Tokyo AP:::7:::0\n"
      "10.0.0.2:::National Institute of Standards, Boulder NA:::8:::0\n";
  Show();
  ExpectFits(Widget<QComboBox>("Servers"));
}

TEST_F(TextFitTest, TheUnitsOfTheIntervalFit) {
  Show();
  EXPECT_EQ(Widget<QComboBox>("SyncIntC").count(), 4);
  ExpectFits(Widget<QComboBox>("SyncIntC"));
}

TEST_F(TextFitTest, TheConfigurationWindowFits) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  QWidget &window = *TheView().Configuration();
  EXPECT_EQ(Widget<QComboBox>("Regions", &window).count(), 7);
  ExpectAllFits(window);
  ConfigurationWindow &model = Server->Others().Configuration();
  ExpectFits(model.CheckUpdate, Widget("CheckUpdate", &window));
  ExpectFits(model.SelTimeZone, Widget("SelTimeZone", &window));
  ExpectFits(model.cfgsvrOK, Widget("cfgsvrOK", &window));
}

TEST_F(TextFitTest, TheAboutBoxFits) {
  Show();
  Server->Others().ShowAbout();
  Refresh();
  QWidget &window = *TheView().About();
  ExpectAllFits(window);
  ExpectFits(Server->Others().About().Help, Widget("Help", &window));
}

}  // namespace
}  // namespace cvl
