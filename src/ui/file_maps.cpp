#include "ui/file_maps.h"

#include <QVariantList>

#include "app/qt/app_model.h"
#include "store/catalog_db.h"
#include "store/finder_label.h"
#include "ui/thumb_cache.h"

namespace orrelin {

namespace {

QString text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

double seconds(const OptionalDate& date) { return date ? date->seconds : -1.0; }

QColor color(const LabelColor& c) {
  return QColor::fromRgbF(static_cast<float>(c.red), static_cast<float>(c.green), static_cast<float>(c.blue));
}

}  // namespace

QVariantMap fileMap(const FileRecord& file) {
  QStringList tags;
  for (const std::string& tag : file.tags) tags << text(tag);
  QVariantList meta;
  QString gps;
  for (const auto& [key, value] : file.meta) {  // std::map: already in key order.
    meta << QVariantMap{{"key", text(key)}, {"value", text(value)}};
    if (key == "GPS") gps = text(value);
  }
  QString thumb;
  if (const auto path = AppModel::shared().thumbnailURL(file)) thumb = ThumbCache::imageUrl(*path);
  return QVariantMap{{"id", QVariant::fromValue<qint64>(file.id)},
                     {"catalogID", QVariant::fromValue<qint64>(file.catalogID)},
                     {"parentID", QVariant::fromValue<qint64>(file.parentID)},
                     {"path", text(file.path)},
                     {"name", text(file.name)},
                     {"isDir", file.isDir},
                     {"size", static_cast<double>(file.size)},
                     {"itemCount", static_cast<double>(file.itemCount)},
                     {"kind", text(file.kindName())},
                     {"uti", text(file.uti)},
                     {"ext", text(file.ext)},
                     {"created", seconds(file.created)},
                     {"modified", seconds(file.modified)},
                     {"sortModified", file.sortModified()},
                     {"tags", tags},
                     {"label", file.label},
                     {"hidden", file.hidden},
                     {"sha256", text(file.sha256)},
                     {"hasThumb", file.hasThumb},
                     {"thumb", thumb},
                     {"duration", file.duration},
                     {"width", static_cast<double>(file.width)},
                     {"height", static_cast<double>(file.height)},
                     {"meta", meta},
                     {"gps", gps}};
}

QVariantMap hitMap(const SearchHit& hit) {
  QVariantMap map = fileMap(hit.file);
  map.insert("catalogName", text(hit.catalogName));
  return map;
}

QVariantMap FileLookup::file(qint64 id) const {
  const auto& store = AppModel::shared().store();
  if (!store) return {};
  try {
    if (auto record = store->file(id)) return fileMap(*record);
  } catch (const std::exception&) {
    // A record that cannot be read is shown as gone.
  }
  return {};
}

QColor FileLookup::tagColor(const QString& tag) const {
  const int index = FinderLabel::colorIndex(tag.toStdString());
  return color(FinderLabel::rgb(index > 0 ? index : 4));
}

QColor FileLookup::labelColor(int index) const { return color(FinderLabel::rgb(index)); }

QString FileLookup::labelName(int index) const { return text(FinderLabel::name(index)); }

}  // namespace orrelin
