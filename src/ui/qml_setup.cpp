// The image providers every screen relies on.
#include "ui/qml_setup.h"

#include <QQmlEngine>

#include "ui/icon_provider.h"

namespace orrelin {

void setUpQmlEngine(QQmlEngine& engine) {
  engine.addImageProvider(QStringLiteral("icon"), new IconProvider);  // The engine owns it.
}

QUrl mainWindowUrl() { return QUrl(QStringLiteral("qrc:/Orrelin/Main.qml")); }

}  // namespace orrelin
