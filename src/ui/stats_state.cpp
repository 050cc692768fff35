// The statistics screen's snapshot and the rows and scales its cards draw.
#include "ui/stats_state.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "app/qt/app_model.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin {

namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }
QString sizeText(int64_t bytes) { return qs(Fmt::size(bytes)); }
QString countText(int64_t count) { return qs(Fmt::count(count)); }

// An axis's title and its marks, each at its share of the axis and labelled by `label`.
template <class Label>
QVariantMap axisMap(const QString& title, const ChartScale& scale, Label label) {
  QVariantList ticks;
  for (double tick : scale.ticks) {
    ticks << QVariantMap{{"fraction", tick / scale.max}, {"text", label(static_cast<int64_t>(tick))}};
  }
  return {{"title", title}, {"ticks", ticks}};
}

ChartScale kindScale(const LibraryStats& stats, bool bySize) {
  double largest = 0;
  for (const KindStat& k : stats.byKind)
    largest = std::max(largest, static_cast<double>(bySize ? k.bytes : k.count));
  return chartScale(largest);
}

ChartScale spaceScale(const std::vector<Catalog>& catalogs) {
  double largest = 0;
  for (const Catalog& c : catalogs) largest = std::max(largest, static_cast<double>(c.totalSize));
  return chartScale(largest);
}

ChartScale yearScale(const LibraryStats& stats) {
  double largest = 0;
  for (const YearStat& y : stats.byYear) largest = std::max(largest, static_cast<double>(y.count));
  // Counts are whole: an axis of a few files is marked at whole numbers only.
  return chartScale(std::max(largest, 4.0));
}

}  // namespace

ChartScale chartScale(double largest, int maxTicks) {
  ChartScale scale;
  if (!(largest > 0) || !std::isfinite(largest) || maxTicks < 1) {
    scale.ticks = {0};
    return scale;
  }
  // The smallest step of 1, 2 or 5 times a power of ten that reaches `largest` in `maxTicks` steps.
  const double rough = largest / maxTicks;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  double step = 10 * power;
  for (double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= rough * (1 - 1e-12)) {
      step = factor * power;
      break;
    }
  }
  const int steps = std::max(1, static_cast<int>(std::ceil(largest / step - 1e-9)));
  scale.max = steps * step;
  for (int i = 0; i <= steps; ++i) scale.ticks.push_back(i * step);
  return scale;
}

StatsState::StatsState(QObject* parent) : QObject(parent) {
  AppModel& app = AppModel::shared();
  connect(&app, &AppModel::onlineIDsChanged, this, &StatsState::figuresChanged);
  connect(&app, &AppModel::catalogsChanged, this, &StatsState::figuresChanged);
}

void StatsState::setBySize(bool bySize) {
  if (bySize == m_bySize) return;
  m_bySize = bySize;
  emit bySizeChanged();
  emit kindsChanged();
}

void StatsState::reload() {
  const std::shared_ptr<CatalogDB>& store = AppModel::shared().store();
  if (!store) return;
  try {
    m_stats = store->stats();
  } catch (const std::exception&) {
    return;  // The screen keeps showing the last snapshot.
  }
  ++m_reloads;
  emit statsChanged();
  emit figuresChanged();
  emit kindsChanged();
}

QVariantList StatsState::figures() const {
  const AppModel& app = AppModel::shared();
  auto figure = [](const char* label, const QString& value, const char* symbol) {
    return QVariantMap{{"label", label}, {"value", value}, {"symbol", symbol}};
  };
  return {
      figure("Cartridges", countText(m_stats.catalogs), "square.stack.3d.up.fill"),
      figure("Online now", QString::number(app.onlineIDs().size()), "dot.radiowaves.left.and.right"),
      figure("Files", countText(m_stats.files), "doc.fill"),
      figure("Folders", countText(m_stats.folders), "folder.fill"),
      figure("Cataloged", sizeText(m_stats.bytes), "externaldrive.fill"),
  };
}

QVariantList StatsState::kinds() const {
  const ChartScale scale = kindScale(m_stats, m_bySize);
  QVariantList rows;
  for (const KindStat& k : m_stats.byKind) {
    const int64_t value = m_bySize ? k.bytes : k.count;
    rows << QVariantMap{{"kind", qs(k.kind)},
                        {"count", static_cast<double>(k.count)},
                        {"bytes", static_cast<double>(k.bytes)},
                        {"value", static_cast<double>(value)},
                        {"text", m_bySize ? sizeText(k.bytes) : countText(k.count)},
                        {"fraction", static_cast<double>(value) / scale.max}};
  }
  return rows;
}

QVariantMap StatsState::kindAxis() const {
  if (m_bySize) return axisMap(QStringLiteral("Bytes"), kindScale(m_stats, true), sizeText);
  return axisMap(QStringLiteral("Files"), kindScale(m_stats, false), countText);
}

QVariantList StatsState::space() const {
  const std::vector<Catalog>& catalogs = AppModel::shared().catalogs();
  const ChartScale scale = spaceScale(catalogs);
  QVariantList rows;
  for (const Catalog& c : catalogs) {
    rows << QVariantMap{{"id", static_cast<qint64>(c.id)},
                        {"name", qs(c.name)},
                        {"bytes", static_cast<double>(c.totalSize)},
                        {"text", sizeText(c.totalSize)},
                        {"fraction", static_cast<double>(c.totalSize) / scale.max}};
  }
  return rows;
}

QVariantMap StatsState::spaceAxis() const {
  return axisMap(QStringLiteral("Bytes"), spaceScale(AppModel::shared().catalogs()), sizeText);
}

QVariantList StatsState::years() const {
  const ChartScale scale = yearScale(m_stats);
  QVariantList rows;
  for (const YearStat& y : m_stats.byYear) {
    rows << QVariantMap{{"year", qs(y.year)},
                        {"count", static_cast<double>(y.count)},
                        {"bytes", static_cast<double>(y.bytes)},
                        {"text", countText(y.count)},
                        {"fraction", static_cast<double>(y.count) / scale.max}};
  }
  return rows;
}

QVariantMap StatsState::yearAxis() const {
  return axisMap(QStringLiteral("Files"), yearScale(m_stats), countText);
}

QVariantList StatsState::capacity() const {
  const AppModel& app = AppModel::shared();
  QVariantList rows;
  for (const Catalog& c : app.catalogs()) {
    if (c.capacity < 1) continue;
    rows << QVariantMap{{"id", static_cast<qint64>(c.id)},
                        {"name", qs(c.name)},
                        {"online", app.isOnline(c.id)},
                        {"text", sizeText(c.freeSpace) + " free of " + sizeText(c.capacity)},
                        {"fraction", c.usedFraction()}};
  }
  return rows;
}

QVariantList StatsState::largest() const {
  QVariantList rows;
  int rank = 0;
  for (const SearchHit& hit : m_stats.largest) {
    const std::string_view kind = hit.kindName();
    rows << QVariantMap{{"rank", ++rank},
                        {"id", static_cast<qint64>(hit.id())},
                        {"name", qs(hit.name())},
                        {"catalogName", qs(hit.catalogName)},
                        {"kind", QString::fromUtf8(kind.data(), static_cast<qsizetype>(kind.size()))},
                        {"size", static_cast<double>(hit.size())},
                        {"text", sizeText(hit.size())}};
  }
  return rows;
}

QVariantList StatsState::extensions() const {
  int64_t most = 1;
  for (const ExtStat& e : m_stats.topExtensions) most = std::max(most, e.count);
  QVariantList rows;
  for (const ExtStat& e : m_stats.topExtensions) {
    rows << QVariantMap{{"ext", qs(e.ext)},
                        {"count", static_cast<double>(e.count)},
                        {"text", countText(e.count)},
                        {"fraction", static_cast<double>(e.count) / static_cast<double>(most)}};
  }
  return rows;
}

QVariantList StatsState::scans() const {
  QVariantList rows;
  for (const ScanLogEntry& entry : m_stats.log) {
    QString line = qs(Fmt::date(entry.at));
    if (!entry.note.empty()) line += QStringLiteral(" · ") + qs(entry.note);
    // Always all three, zeros included, so the columns of badges line up from row to row.
    const QVariantList badges{
        QVariantMap{{"text", "+" + QString::number(entry.added)}, {"tone", "added"}},
        QVariantMap{{"text", "~" + QString::number(entry.changed)}, {"tone", "changed"}},
        QVariantMap{{"text", QStringLiteral("\u2212") + QString::number(entry.removed)}, {"tone", "removed"}},
    };
    rows << QVariantMap{{"id", static_cast<qint64>(entry.id)},
                        {"catalogName", qs(entry.catalogName)},
                        {"line", line},
                        {"badges", badges}};
  }
  return rows;
}

}  // namespace orrelin
