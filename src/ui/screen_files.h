// Which screens the program has: the main window shows a screen's own file when it is built into the QML
// module, and a placeholder otherwise.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QUrl>

namespace orrelin {

class ScreenFiles : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  using QObject::QObject;

  // The address of the module's file "<name>.qml" (qrc:/Orrelin/<name>.qml), or an empty address when
  // the module has no such file.
  Q_INVOKABLE QUrl url(const QString& name) const;
};

}  // namespace orrelin
