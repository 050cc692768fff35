// The search screen's state: the fields the user has entered, the last result, and the search running
// off the main thread. One shared instance lives for the whole run of the program.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "search/search_form.h"
#include "search/search_query.h"

class QJSEngine;
class QQmlEngine;

namespace orrelin {

class CatalogDB;

class SearchState : public QObject {
  Q_OBJECT
  // QML's singleton `SearchState`: see ui/qml_singletons.h.

  Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
  // The mode's raw value: "Contains", "Starts With", "Exact Name" or "Regex".
  Q_PROPERTY(QString mode READ mode WRITE setMode NOTIFY modeChanged)
  Q_PROPERTY(bool searchMetadata READ searchMetadata WRITE setSearchMetadata NOTIFY searchMetadataChanged)
  // Raw values of file kinds, in the kinds' order; empty means any kind.
  Q_PROPERTY(QStringList kinds READ kinds WRITE setKinds NOTIFY kindsChanged)
  Q_PROPERTY(QString minSizeText READ minSizeText WRITE setMinSizeText NOTIFY minSizeTextChanged)
  Q_PROPERTY(QString maxSizeText READ maxSizeText WRITE setMaxSizeText NOTIFY maxSizeTextChanged)
  Q_PROPERTY(qint64 sizeUnit READ sizeUnit WRITE setSizeUnit NOTIFY sizeUnitChanged)
  Q_PROPERTY(bool useDates READ useDates WRITE setUseDates NOTIFY useDatesChanged)
  Q_PROPERTY(QDateTime from READ from WRITE setFrom NOTIFY fromChanged)
  Q_PROPERTY(QDateTime to READ to WRITE setTo NOTIFY toChanged)
  Q_PROPERTY(QString tag READ tag WRITE setTag NOTIFY tagChanged)
  // Catalog ids as numbers; empty means all catalogs.
  Q_PROPERTY(QVariantList catalogIDs READ catalogIDs WRITE setCatalogIDs NOTIFY catalogIDsChanged)
  Q_PROPERTY(bool includeFolders READ includeFolders WRITE setIncludeFolders NOTIFY includeFoldersChanged)
  Q_PROPERTY(int hitCount READ hitCount NOTIFY hitsChanged)
  Q_PROPERTY(bool searched READ searched NOTIFY searchedChanged)
  Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
  Q_PROPERTY(double elapsed READ elapsed NOTIFY elapsedChanged)
  // The message of the last failed search; empty when the last search did not fail.
  Q_PROPERTY(QString error READ errorText NOTIFY errorChanged)

 public:
  // A state with the fields' defaults: the date range runs from one year ago to now.
  explicit SearchState(QObject* parent = nullptr);

  // The instance the screens share; made on first use, on the main thread.
  static SearchState& shared();
  // The shared instance, for QML's singleton registration; it stays owned by C++.
  static SearchState* create(QQmlEngine*, QJSEngine*);

  // All input fields at once, as plain data.
  const SearchForm& form() const { return m_form; }
  // Replaces the input fields, announcing each one that changed.
  void setForm(const SearchForm& form);

  // The query for the current fields.
  SearchQuery query() const { return m_form.query(); }

  // Builds the query here, then searches `store` on a worker thread and hands the result back to this
  // thread: on success hits, elapsed, busy and searched change in that order; on failure hits become
  // empty, error is set, then busy and searched change. The old hits stay visible while it runs.
  // Overlapping runs are not prevented: the last to finish wins.
  void run(std::shared_ptr<CatalogDB> store);
  // The same on the program's open database (AppModel's store); nothing when none is open.
  Q_INVOKABLE void run();

  // A new saved search of the current fields under `name`.
  SavedSearch snapshot(const std::string& name) const { return m_form.snapshot(name); }
  // Takes over the fields of `saved`; the result fields stay as they are.
  void apply(const SavedSearch& saved);
  // Clears the filters; the text, size unit, dates and hits stay.
  Q_INVOKABLE void resetFilters();

  const std::vector<SearchHit>& hits() const { return m_hits; }
  const std::optional<std::string>& error() const { return m_error; }

  QString text() const;
  void setText(const QString& value);
  QString mode() const;
  // A text that names no mode selects contains.
  void setMode(const QString& value);
  bool searchMetadata() const { return m_form.searchMetadata; }
  void setSearchMetadata(bool value);
  QStringList kinds() const;
  // Unknown names are dropped.
  void setKinds(const QStringList& value);
  QString minSizeText() const;
  void setMinSizeText(const QString& value);
  QString maxSizeText() const;
  void setMaxSizeText(const QString& value);
  qint64 sizeUnit() const { return m_form.sizeUnit; }
  void setSizeUnit(qint64 value);
  bool useDates() const { return m_form.useDates; }
  void setUseDates(bool value);
  QDateTime from() const;
  void setFrom(const QDateTime& value);
  QDateTime to() const;
  void setTo(const QDateTime& value);
  QString tag() const;
  void setTag(const QString& value);
  QVariantList catalogIDs() const;
  void setCatalogIDs(const QVariantList& value);
  bool includeFolders() const { return m_form.includeFolders; }
  void setIncludeFolders(bool value);
  int hitCount() const { return static_cast<int>(m_hits.size()); }
  bool searched() const { return m_searched; }
  bool busy() const { return m_busy; }
  double elapsed() const { return m_elapsed; }
  QString errorText() const;

 signals:
  void textChanged();
  void modeChanged();
  void searchMetadataChanged();
  void kindsChanged();
  void minSizeTextChanged();
  void maxSizeTextChanged();
  void sizeUnitChanged();
  void useDatesChanged();
  void fromChanged();
  void toChanged();
  void tagChanged();
  void catalogIDsChanged();
  void includeFoldersChanged();
  void hitsChanged();
  void searchedChanged();
  void busyChanged();
  void elapsedChanged();
  void errorChanged();

 private:
  // Back on this object's thread with a search's outcome.
  void finish(std::vector<SearchHit> hits, std::optional<std::string> error, double elapsed);
  void setBusy(bool value);
  void setError(std::optional<std::string> value);

  SearchForm m_form;
  std::vector<SearchHit> m_hits;
  bool m_searched = false;
  bool m_busy = false;
  double m_elapsed = 0;
  std::optional<std::string> m_error;
};

}  // namespace orrelin
