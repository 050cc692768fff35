// The comparison pane: choosing the catalogs, running the comparison on the main thread, the lists.
#include "search/qt/compare_pane.h"

#include <QVariantMap>

#include "store/catalog_db.h"
#include "store/db_error.h"

namespace orrelin {

void ComparePane::setA(std::optional<int64_t> id) {
  if (id == m_a) return;
  m_a = id;
  emit aChanged();
  emit choiceChanged();
  fillB();
}

void ComparePane::setB(std::optional<int64_t> id) {
  if (id == m_b) return;
  m_b = id;
  emit bChanged();
  emit choiceChanged();
}

void ComparePane::setTab(int tab) {
  if (tab < 0 || tab == m_tab) return;
  m_tab = tab;
  emit tabChanged();
}

void ComparePane::shown() { fillB(); }

void ComparePane::fillB() {
  if (m_b || !m_store) return;
  std::vector<Catalog> catalogs;
  try {
    catalogs = m_store->catalogs();
  } catch (const DBError&) {
    return;
  }
  setB(defaultCompareB(catalogs, m_a, m_selected));
}

void ComparePane::compare() {
  if (!m_a || !m_b || !m_store) return;
  try {
    m_result = m_store->compare(*m_a, *m_b);
  } catch (const DBError&) {
    m_result.reset();  // The lists vanish, with no message.
  }
  emit resultChanged();
}

void ComparePane::clearResult() {
  if (!m_result) return;
  m_result.reset();
  emit resultChanged();
}

QVariantList ComparePane::chipList() const {
  QVariantList list;
  if (!m_result) return list;
  for (const CompareChip& chip : compareChips(*m_result)) {
    list.push_back(QVariantMap{{QStringLiteral("label"), QString::fromUtf8(chip.label)},
                               {QStringLiteral("count"), QVariant::fromValue<qint64>(chip.count)},
                               {QStringLiteral("tab"), chip.tab}});
  }
  return list;
}

std::optional<Catalog> ComparePane::catalog(std::optional<int64_t> id) const {
  if (!id || !m_store) return std::nullopt;
  try {
    return m_store->catalog(*id);
  } catch (const DBError&) {
    return std::nullopt;
  }
}

std::vector<SearchHit> ComparePane::rows() const {
  if (!m_result) return {};
  return compareTabHits(*m_result, m_tab, catalog(m_a), catalog(m_b));
}

}  // namespace orrelin
