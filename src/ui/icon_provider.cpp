// Tinted SVG icons: each drawing is a black silhouette whose shape is kept and whose colour is replaced.
#include "ui/icon_provider.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace orrelin {

namespace {

constexpr int kDefaultSide = 64;

}  // namespace

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QString IconProvider::resourcePath(const QString& symbol) {
  return QStringLiteral(":/Orrelin/icons/") + symbol + QStringLiteral(".svg");
}

bool IconProvider::hasIcon(const QString& symbol) { return QFile::exists(resourcePath(symbol)); }

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
  const qsizetype mark = id.indexOf(QLatin1Char('?'));
  const QString symbol = mark < 0 ? id : id.left(mark);
  QColor color = mark < 0 ? QColor(Qt::white) : QColor(id.mid(mark + 1));
  if (!color.isValid()) color = Qt::white;

  const int width = requestedSize.width() > 0 ? requestedSize.width() : kDefaultSide;
  const int height = requestedSize.height() > 0 ? requestedSize.height() : width;
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);

  QSvgRenderer renderer(resourcePath(symbol));
  if (renderer.isValid()) {
    // Keep the drawing's proportions inside the square asked for.
    QSizeF drawn = renderer.defaultSize();
    drawn.scale(width, height, Qt::KeepAspectRatio);
    const QRectF box((width - drawn.width()) / 2, (height - drawn.height()) / 2, drawn.width(), drawn.height());
    renderer.render(&painter, box);
  } else {
    painter.setPen(QPen(Qt::black, std::max(1.0, width / 12.0)));
    painter.drawEllipse(QRectF(width * 0.2, height * 0.2, width * 0.6, height * 0.6));
  }
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), color);
  painter.end();

  if (size) *size = image.size();
  return image;
}

}  // namespace orrelin
