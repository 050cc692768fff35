// Looks a screen's file up among the QML module's resources.
#include "ui/screen_files.h"

#include <QFile>

namespace orrelin {

QUrl ScreenFiles::url(const QString& name) const {
  // Only plain type names: no path may lead out of the module's folder.
  if (name.isEmpty() || !name.front().isUpper()) return {};
  for (QChar c : name) {
    if (!c.isLetterOrNumber()) return {};
  }
  const QString path = QStringLiteral(":/Orrelin/") + name + QStringLiteral(".qml");
  if (!QFile::exists(path)) return {};
  return QUrl(QStringLiteral("qrc") + path);
}

}  // namespace orrelin
