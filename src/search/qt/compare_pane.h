// The state of the comparison pane: the two catalogs, the last result and the list shown.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <cstdint>
#include <optional>
#include <vector>

#include "search/catalog_compare.h"

namespace orrelin {

class CatalogDB;

class ComparePane : public QObject {
  Q_OBJECT
  QML_ELEMENT
  // For the interface, 0 stands for no choice (catalog ids start at 1).
  Q_PROPERTY(qint64 a READ aOrZero WRITE setAOrZero NOTIFY aChanged)
  Q_PROPERTY(qint64 b READ bOrZero WRITE setBOrZero NOTIFY bChanged)
  Q_PROPERTY(int tab READ tab WRITE setTab NOTIFY tabChanged)
  Q_PROPERTY(bool hasResult READ hasResult NOTIFY resultChanged)
  Q_PROPERTY(bool compareDisabled READ compareDisabled NOTIFY choiceChanged)
  // The chips above the list, one map each: label, count, tab (-1: a plain figure). Empty without a
  // result.
  Q_PROPERTY(QVariantList chips READ chipList NOTIFY resultChanged)

 public:
  explicit ComparePane(QObject* parent = nullptr) : QObject(parent) {}

  // The database compare() reads; null: none is open.
  void setStore(CatalogDB* store) { m_store = store; }
  // The catalog selected in the sidebar, which B avoids while A is empty.
  void setSelectedCatalog(std::optional<int64_t> id) { m_selected = id; }

  std::optional<int64_t> a() const { return m_a; }
  std::optional<int64_t> b() const { return m_b; }
  // Choosing A fills an empty B (see shown()).
  void setA(std::optional<int64_t> id);
  void setB(std::optional<int64_t> id);
  qint64 aOrZero() const { return m_a.value_or(0); }
  qint64 bOrZero() const { return m_b.value_or(0); }
  void setAOrZero(qint64 id) { setA(id > 0 ? std::optional<int64_t>(id) : std::nullopt); }
  void setBOrZero(qint64 id) { setB(id > 0 ? std::optional<int64_t>(id) : std::nullopt); }
  int tab() const { return m_tab; }
  // Only the chips with a list (0, 1, 2) select one; "Identical" (-1) changes nothing.
  Q_INVOKABLE void setTab(int tab);
  const std::optional<CompareResult>& result() const { return m_result; }
  bool hasResult() const { return m_result.has_value(); }
  bool compareDisabled() const { return orrelin::compareDisabled(m_a, m_b); }
  QVariantList chipList() const;

  // The pane came on screen: fills an empty B with the first other catalog.
  Q_INVOKABLE void shown();
  // "Compare": with both catalogs chosen and a database open, compares them now; an error leaves no
  // result. The tab stays.
  Q_INVOKABLE void compare();
  // Drops the result (the database was replaced); the choices and the tab stay.
  Q_INVOKABLE void clearResult();
  // The rows of the current tab, for the results table.
  std::vector<SearchHit> rows() const;

 signals:
  void aChanged();
  void bChanged();
  void choiceChanged();
  void tabChanged();
  void resultChanged();

 private:
  void fillB();
  std::optional<Catalog> catalog(std::optional<int64_t> id) const;

  CatalogDB* m_store = nullptr;
  std::optional<int64_t> m_selected;
  std::optional<int64_t> m_a;
  std::optional<int64_t> m_b;
  std::optional<CompareResult> m_result;
  int m_tab = 0;
};

}  // namespace orrelin
