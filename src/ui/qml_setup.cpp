// The image providers every screen relies on.
#include "ui/qml_setup.h"

#include <QQmlEngine>

#include "ui/icon_provider.h"
#include "ui/thumb_cache.h"

namespace orrelin {

void setUpQmlEngine(QQmlEngine& engine) {
  // The engine owns the providers.
  engine.addImageProvider(QStringLiteral("icon"), new IconProvider);
  engine.addImageProvider(QStringLiteral("thumb"), new ThumbImageProvider);
}

QUrl mainWindowUrl() { return QUrl(QStringLiteral("qrc:/Orrelin/Main.qml")); }

}  // namespace orrelin
