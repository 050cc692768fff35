// The statistics screen's data: one snapshot of the library read on request, and everything the screen
// draws from it (the five figures, each card's rows and the charts' scales) as lists ready for QML.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <vector>

#include "search/library_stats.h"

namespace orrelin {

// A value axis from 0 to a round maximum: `ticks` are the round values it is marked at, 0 first.
struct ChartScale {
  double max = 1;
  std::vector<double> ticks;

  bool operator==(const ChartScale&) const = default;
};

// The axis for values up to `largest`, marked at most `maxTicks` + 1 times (0 included) in steps of 1, 2
// or 5 times a power of ten; a largest value of 0 or less gives the axis from 0 to 1.
ChartScale chartScale(double largest, int maxTicks = 4);

class StatsState : public QObject {
  Q_OBJECT
  QML_ELEMENT

  // Whether "Files by kind" measures bytes (true, the start) or file counts.
  Q_PROPERTY(bool bySize READ bySize WRITE setBySize NOTIFY bySizeChanged)
  // How many snapshots were read; 0 until the first reload.
  Q_PROPERTY(int reloads READ reloads NOTIFY statsChanged)
  // Whether the library holds any catalog, at the last reload.
  Q_PROPERTY(bool hasCatalogs READ hasCatalogs NOTIFY statsChanged)
  // The five figures, in order: {label, value, symbol}.
  Q_PROPERTY(QVariantList figures READ figures NOTIFY figuresChanged)
  // "Files by kind", largest total size first: {kind, count, bytes, value, text, fraction}; `value` and
  // `text` follow bySize; `fraction` is value over the axis maximum.
  Q_PROPERTY(QVariantList kinds READ kinds NOTIFY kindsChanged)
  // The kind chart's axis: {title, ticks: [{fraction, text}]}.
  Q_PROPERTY(QVariantMap kindAxis READ kindAxis NOTIFY kindsChanged)
  // "Space by catalog", in the sidebar's order: {id, name, bytes, text, fraction}.
  Q_PROPERTY(QVariantList space READ space NOTIFY figuresChanged)
  Q_PROPERTY(QVariantMap spaceAxis READ spaceAxis NOTIFY figuresChanged)
  // "Files by year modified", oldest first: {year, count, bytes, text, fraction}.
  Q_PROPERTY(QVariantList years READ years NOTIFY statsChanged)
  Q_PROPERTY(QVariantMap yearAxis READ yearAxis NOTIFY statsChanged)
  // "Drive capacity", catalogs whose capacity is known: {id, name, online, text, fraction}.
  Q_PROPERTY(QVariantList capacity READ capacity NOTIFY figuresChanged)
  // "Largest files", largest first: {rank, id, name, catalogName, kind, size, text}.
  Q_PROPERTY(QVariantList largest READ largest NOTIFY statsChanged)
  // "Top extensions", commonest first: {ext, count, text, fraction of the commonest}.
  Q_PROPERTY(QVariantList extensions READ extensions NOTIFY statsChanged)
  // "Recent scans", newest first: {id, catalogName, line, badges: [{text, tone}]}, the tones being
  // "added", "changed" and "removed".
  Q_PROPERTY(QVariantList scans READ scans NOTIFY statsChanged)

 public:
  // Follows the application's catalogs and online set, so "Online now", the space and the capacity
  // lamps stay current between reloads.
  explicit StatsState(QObject* parent = nullptr);

  bool bySize() const { return m_bySize; }
  void setBySize(bool bySize);
  int reloads() const { return m_reloads; }
  bool hasCatalogs() const { return m_stats.catalogs > 0; }
  const LibraryStats& stats() const { return m_stats; }

  QVariantList figures() const;
  QVariantList kinds() const;
  QVariantMap kindAxis() const;
  QVariantList space() const;
  QVariantMap spaceAxis() const;
  QVariantList years() const;
  QVariantMap yearAxis() const;
  QVariantList capacity() const;
  QVariantList largest() const;
  QVariantList extensions() const;
  QVariantList scans() const;

  // Reads a new snapshot from the application's database. Does nothing when none is open; when the read
  // fails, the previous snapshot stays, without a message.
  Q_INVOKABLE void reload();

 signals:
  void bySizeChanged();
  void statsChanged();
  void figuresChanged();
  void kindsChanged();

 private:
  LibraryStats m_stats;
  bool m_bySize = true;
  int m_reloads = 0;
};

}  // namespace orrelin
