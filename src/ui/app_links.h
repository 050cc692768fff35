// The Help menu's links for QML: the user guide and the maker's web site.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

namespace orrelin {

class AppLinks : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  using QObject::QObject;

  // Opens the user guide in the default browser; false, doing nothing, when it cannot be found or opened.
  Q_INVOKABLE bool openHelp() const;
  // Opens the maker's web site in the default browser; false when it could not be opened.
  Q_INVOKABLE bool openWebsite() const;
};

}  // namespace orrelin
