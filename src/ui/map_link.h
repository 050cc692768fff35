// A photo's recorded location on a web map: the address built from a "GPS" metadata value, and opening it
// in the default browser (QML's `MapLink`).
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace orrelin {

class MapLink : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  using QObject::QObject;

  // The web map that shows a location: a pin at `ll` labelled with `q`.
  static constexpr const char* kMapAddress = "https://maps.google.com/";

  // The map address for a "GPS" value such as "48.8584, 2.2945": the value split at commas with each piece
  // trimmed, which must give exactly two pieces, neither empty; each is percent-encoded into
  // the query. An empty text for any other value.
  Q_INVOKABLE QString address(const QString& gps) const;

  // Opens address(gps) in the default browser. False, doing nothing, for a value that gives no address
  // or when the browser could not be started.
  Q_INVOKABLE bool openMap(const QString& gps) const;
};

}  // namespace orrelin
