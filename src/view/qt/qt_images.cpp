#include "view/qt/qt_images.h"

#include <QImage>
#include <cmath>

#include "ui/art/artwork.h"

namespace cvl {

namespace {

/// The picture with each of its pixels FACTOR pixels wide, so that it stays sharp.
QPixmap Enlarged(const ArtPicture &picture, int factor) {
  const QImage image(reinterpret_cast<const uchar *>(picture.Pixels.data()), picture.Width,
                     picture.Height, QImage::Format_ARGB32);
  QPixmap made = QPixmap::fromImage(image.scaled(picture.Width * factor, picture.Height * factor,
                                                 Qt::IgnoreAspectRatio, Qt::FastTransformation));
  made.setDevicePixelRatio(factor);
  return made;
}

int FactorOf(double scale) {
  return std::max(1, static_cast<int>(std::ceil(scale)));
}

}  // namespace

QPixmap TablePixmap(int number, double scale) {
  return Enlarged(ImageOf(number), FactorOf(scale));
}

QIcon TableIcon(int number) {
  QIcon icon(TablePixmap(number, 1));
  icon.addPixmap(TablePixmap(number, 2));
  return icon;
}

QPixmap LogoPixmap(double scale) {
  return Enlarged(Logo(), FactorOf(scale));
}

QIcon WindowIcon() {
  QIcon icon;
  for (const ArtPicture &picture : WindowIcons())
    icon.addPixmap(Enlarged(picture, 1));
  return icon;
}

}  // namespace cvl
