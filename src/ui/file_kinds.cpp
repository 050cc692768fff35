// The kinds' icons and colours, read from the scanner's classification so the two never disagree.
#include "ui/file_kinds.h"

#include <algorithm>
#include <string>

#include "scan/file_kind.h"

namespace orrelin {

namespace {

FileKind kindNamed(const QString& name) {
  return fileKindFromRaw(name.toStdString()).value_or(FileKind::other);
}

}  // namespace

QStringList FileKindStyle::names() const {
  QStringList list;
  for (FileKind kind : kAllFileKinds) {
    const std::string_view raw = rawValue(kind);
    list << QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
  }
  return list;
}

QString FileKindStyle::symbol(const QString& kind) const {
  const std::string_view name = orrelin::symbol(kindNamed(kind));
  return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

double FileKindStyle::hue(const QString& kind) const { return orrelin::hue(kindNamed(kind)); }

QColor FileKindStyle::color(const QString& kind, double saturation) const {
  return QColor::fromHsvF(static_cast<float>(hue(kind)), static_cast<float>(std::clamp(saturation, 0.0, 1.0)),
                          1.0F, 1.0F);
}

}  // namespace orrelin
