// File records as the screens see them: one plain map per record, and the `Files` singleton that looks
// records up and names their label colours.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include "search/search_query.h"
#include "store/records.h"

namespace orrelin {

// A record for QML. Keys: id, catalogID, parentID, path, name, isDir, size, itemCount, kind (the kind's
// raw value), uti, ext, created and modified (seconds since 1970, -1 when absent), sortModified, tags
// (list of text), label, hidden, sha256, hasThumb, thumb (an image:// address of the thumbnail when its
// file exists, else empty), duration, width, height, meta (list of {key, value} in key order) and gps
// (the "GPS" entry of meta, or empty).
QVariantMap fileMap(const FileRecord& file);
// fileMap of the hit's file, with catalogName added.
QVariantMap hitMap(const SearchHit& hit);

class FileLookup : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(Files)
  QML_SINGLETON

 public:
  using QObject::QObject;

  // The record `id` read now from the open database; an empty map when it is gone or none is open.
  Q_INVOKABLE QVariantMap file(qint64 id) const;
  // The colour of the Finder label a tag names, or label 4's colour when it names none.
  Q_INVOKABLE QColor tagColor(const QString& tag) const;
  // The colour of label `index` (1 to 7); grey outside that range.
  Q_INVOKABLE QColor labelColor(int index) const;
  // The name of label `index`: "Red" … "Gray", "None" outside 1 to 7.
  Q_INVOKABLE QString labelName(int index) const;
};

}  // namespace orrelin
