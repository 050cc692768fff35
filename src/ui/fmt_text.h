// The display texts of sizes, counts, dates and durations, for the screens (QML's `Fmt`).
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace orrelin {

class FmtText : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(Fmt)
  QML_SINGLETON

 public:
  using QObject::QObject;

  // "1.5 MB", in decimal units.
  Q_INVOKABLE QString size(double bytes) const;
  // "12,345", grouped as the locale groups.
  Q_INVOKABLE QString count(double value) const;
  // The date and time of `seconds` since 1970 in the locale's medium style; an em dash for a negative or
  // not finite value (the screens' "never").
  Q_INVOKABLE QString date(double seconds) const;
  // "M:SS" or "H:MM:SS"; an em dash for a value not above 0.
  Q_INVOKABLE QString duration(double seconds) const;
};

}  // namespace orrelin
