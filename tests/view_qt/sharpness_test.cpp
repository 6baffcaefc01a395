// Pictures and buttons have the pixels of the display, at every scale.

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTreeWidget>
#include <map>

#include "tests/view_qt/window_bench.h"
#include "ui/art/artwork.h"
#include "view/qt/button_widget.h"

namespace cvl {
namespace {

class SharpnessTest : public WindowTest {
 protected:
  double Scale() const { return TheView().Main()->devicePixelRatioF(); }

  /// PICTURE is WANTED, each of its pixels a whole square of the display's.
  void ExpectPicture(const QPixmap &picture, const ArtPicture &wanted) const {
    const int factor = static_cast<int>(Scale());
    EXPECT_EQ(picture.devicePixelRatio(), Scale());
    ASSERT_EQ(picture.size(), QSize(wanted.Width, wanted.Height) * factor);
    const QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const auto at = static_cast<std::size_t>(y / factor * wanted.Width + x / factor);
        const QRgb pixel = wanted.Pixels[at];
        ASSERT_EQ(qAlpha(image.pixel(x, y)), qAlpha(pixel)) << x << "," << y;
        if (qAlpha(pixel) == 0) continue;
        ASSERT_EQ(image.pixel(x, y), pixel) << x << "," << y;
      }
    }
  }

  QPixmap IconOf(const QIcon &icon) const { return icon.pixmap(QSize(16, 16), Scale()); }
};

TEST_F(SharpnessTest, LampsAndLogoHaveThePixelsOfTheDisplay) {
  Show();
  Advance(1000);
  for (const char *name : {"LED(1)", "LED(2)", "LED(3)", "LED(4)"}) {
    ExpectPicture(Widget<QLabel>(name).pixmap(), ImageOf(LampDarkImage));
  }
  Server->Window.LED[3].Image = LampLitImage;
  Refresh();
  ExpectPicture(Widget<QLabel>("LED(3)").pixmap(), ImageOf(LampLitImage));
  ExpectPicture(Widget<QLabel>("Image1").pixmap(), Logo());
}

TEST_F(SharpnessTest, PicturesAreNotCut) {
  Show();
  Advance(1000);
  for (const char *name : {"LED(1)", "LED(4)", "Image1"}) {
    const auto &label = Widget<QLabel>(name);
    const QSize size = label.pixmap().deviceIndependentSize().toSize();
    EXPECT_LE(size.width(), label.width()) << name;
    EXPECT_LE(size.height(), label.height()) << name;
  }
}

TEST_F(SharpnessTest, TheTreeShowsItsPicturesOfTheTable) {
  Show();
  const auto &tree = Widget<QTreeWidget>("CVL_TV");
  for (int at = 0; at < 3; ++at) {
    ExpectPicture(IconOf(tree.topLevelItem(at)->icon(0)), ImageOf(1));
  }
  for (int at = 0; at < 5; ++at) {
    ExpectPicture(IconOf(tree.topLevelItem(0)->child(at)->icon(0)), ImageOf(35));
  }
}

TEST_F(SharpnessTest, TheServersShowTheirFlags) {
  Show();
  const auto &servers = Widget<QComboBox>("Servers");
  ASSERT_EQ(servers.count(), 2);
  ExpectPicture(IconOf(servers.itemIcon(0)), ImageOf(7));
  ExpectPicture(IconOf(servers.itemIcon(1)), ImageOf(8));
}

TEST_F(SharpnessTest, ButtonsHaveASurfaceOfThePixelsOfTheDisplay) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  const QWidget &widget = Widget("CheckUpdate", TheView().Configuration());
  const QRBButtons &button = Server->Others().Configuration().CheckUpdate;
  EXPECT_EQ(button.Width(), widget.width() * Scale());
  EXPECT_EQ(button.Height(), widget.height() * Scale());
}

TEST_F(SharpnessTest, TheScreenShowsTheSurfaceOfAButtonPixelByPixel) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  QWidget &widget = Widget("SelTimeZone", TheView().Configuration());
  const Canvas &surface = Server->Others().Configuration().SelTimeZone.Surface();
  const QImage shown = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
  ASSERT_EQ(shown.size(), QSize(surface.Width(), surface.Height()));
  const QImage painted(reinterpret_cast<const uchar *>(surface.Pixels()), surface.Width(),
                       surface.Height(), QImage::Format_RGB32);
  EXPECT_EQ(shown, painted);
}

TEST_F(SharpnessTest, TheWindowIsPaintedInThePixelsOfTheDisplay) {
  Show();
  EXPECT_EQ(TheView().Main()->grab().toImage().size(), QSize(403, 401) * Scale());
}

}  // namespace
}  // namespace cvl
