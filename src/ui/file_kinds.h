// The file kinds as the screens draw them: each kind's icon and colour, for QML's `FileKinds`.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QObject>
#include <QString>
#include <QStringList>

namespace orrelin {

class FileKindStyle : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(FileKinds)
  QML_SINGLETON

  // The display names of every kind, in their order ("Folder" … "Other").
  Q_PROPERTY(QStringList names READ names CONSTANT)

 public:
  using QObject::QObject;

  QStringList names() const;
  // The symbol of the kind named `kind` ("photo.fill" for "Image"); a name that is no kind gets the
  // symbol of "Other", so a row with an unexpected kind still shows an icon.
  Q_INVOKABLE QString symbol(const QString& kind) const;
  // The kind's hue from 0 to 1; "Other"'s for an unknown name.
  Q_INVOKABLE double hue(const QString& kind) const;
  // The kind's colour: its hue at full brightness and opacity, with `saturation` (0.8 by default; the
  // quieter places use 0.55).
  Q_INVOKABLE QColor color(const QString& kind, double saturation = 0.8) const;
};

}  // namespace orrelin
