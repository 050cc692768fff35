// The program's icons for QML: image://icon/<symbol>?<colour> draws the SVG of that symbol in one colour
// at the size asked for, so one drawing serves every theme and every zoom.
#pragma once

#include <QQuickImageProvider>
#include <QString>

namespace orrelin {

class IconProvider : public QQuickImageProvider {
 public:
  IconProvider();

  // `id` is "<symbol>" or "<symbol>?<colour>" with a colour QColor reads ("#19e6ff", "#8019e6ff").
  // An unknown symbol draws a small ring, so a missing drawing shows instead of leaving a hole.
  QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

  // The resource path of a symbol's drawing.
  static QString resourcePath(const QString& symbol);
  // Whether the program ships a drawing for `symbol`.
  static bool hasIcon(const QString& symbol);
};

}  // namespace orrelin
