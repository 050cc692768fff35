// The search screen's state, and the search that runs on the thread pool and reports back.
#include "search/qt/search_state.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQmlEngine>
#include <QThreadPool>

#include <chrono>
#include <cmath>

#include "app/qt/app_model.h"
#include "store/catalog_db.h"

namespace orrelin {

namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }

QDateTime toQt(Date date) {
  return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(date.seconds * 1000.0)));
}

Date fromQt(const QDateTime& value) { return Date{static_cast<double>(value.toMSecsSinceEpoch()) / 1000.0}; }

}  // namespace

SearchState::SearchState(QObject* parent)
    : QObject(parent), m_form(SearchForm::withDefaultDates(Date::now())) {}

SearchState& SearchState::shared() {
  static SearchState* instance = new SearchState();  // Lives as long as the process.
  return *instance;
}

SearchState* SearchState::create(QQmlEngine*, QJSEngine*) {
  SearchState* instance = &shared();
  QQmlEngine::setObjectOwnership(instance, QQmlEngine::CppOwnership);
  return instance;
}

void SearchState::setForm(const SearchForm& form) {
  SearchForm old = m_form;
  m_form = form;
  if (old.text != form.text) emit textChanged();
  if (old.mode != form.mode) emit modeChanged();
  if (old.searchMetadata != form.searchMetadata) emit searchMetadataChanged();
  if (old.kinds != form.kinds) emit kindsChanged();
  if (old.minSizeText != form.minSizeText) emit minSizeTextChanged();
  if (old.maxSizeText != form.maxSizeText) emit maxSizeTextChanged();
  if (old.sizeUnit != form.sizeUnit) emit sizeUnitChanged();
  if (old.useDates != form.useDates) emit useDatesChanged();
  if (old.from != form.from) emit fromChanged();
  if (old.to != form.to) emit toChanged();
  if (old.tag != form.tag) emit tagChanged();
  if (old.catalogIDs != form.catalogIDs) emit catalogIDsChanged();
  if (old.includeFolders != form.includeFolders) emit includeFoldersChanged();
}

void SearchState::apply(const SavedSearch& saved) {
  SearchForm form = m_form;
  form.apply(saved);
  setForm(form);
}

void SearchState::resetFilters() {
  SearchForm form = m_form;
  form.resetFilters();
  setForm(form);
}

void SearchState::run(std::shared_ptr<CatalogDB> store) {
  if (!store) return;
  SearchQuery query = m_form.query();
  setBusy(true);
  setError(std::nullopt);
  // The pointer is made here and read only back on this thread, where the object is destroyed if ever;
  // the result is posted to the application object, which outlives every state.
  QPointer<SearchState> self(this);
  QThreadPool::globalInstance()->start([self = std::move(self), store = std::move(store), query]() mutable {
    std::vector<SearchHit> hits;
    std::optional<std::string> error;
    double elapsed = 0;
    auto started = std::chrono::steady_clock::now();
    try {
      hits = store->search(query);
      elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    } catch (const std::exception& e) {
      error = e.what();
    }
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self = std::move(self), hits = std::move(hits), error = std::move(error), elapsed]() mutable {
          if (self) self->finish(std::move(hits), std::move(error), elapsed);
        },
        Qt::QueuedConnection);
  });
}

void SearchState::run() { run(AppModel::shared().store()); }

void SearchState::finish(std::vector<SearchHit> hits, std::optional<std::string> error, double elapsed) {
  if (error) {
    m_hits.clear();
    emit hitsChanged();
    setError(std::move(error));
  } else {
    m_hits = std::move(hits);
    emit hitsChanged();
    if (m_elapsed != elapsed) {
      m_elapsed = elapsed;
      emit elapsedChanged();
    }
  }
  setBusy(false);
  if (!m_searched) {
    m_searched = true;
    emit searchedChanged();
  }
}

void SearchState::setBusy(bool value) {
  if (m_busy == value) return;
  m_busy = value;
  emit busyChanged();
}

void SearchState::setError(std::optional<std::string> value) {
  if (m_error == value) return;
  m_error = std::move(value);
  emit errorChanged();
}

QString SearchState::errorText() const { return m_error ? qs(*m_error) : QString(); }

QString SearchState::text() const { return qs(m_form.text); }
void SearchState::setText(const QString& value) {
  SearchForm form = m_form;
  form.text = value.toStdString();
  setForm(form);
}

QString SearchState::mode() const { return qs(std::string(rawValue(m_form.mode))); }
void SearchState::setMode(const QString& value) {
  SearchForm form = m_form;
  form.mode = searchModeFromRaw(value.toStdString()).value_or(SearchQuery::Mode::contains);
  setForm(form);
}

void SearchState::setSearchMetadata(bool value) {
  SearchForm form = m_form;
  form.searchMetadata = value;
  setForm(form);
}

QStringList SearchState::kinds() const {
  QStringList out;
  for (FileKind kind : m_form.kinds) out << qs(std::string(rawValue(kind)));
  return out;
}
void SearchState::setKinds(const QStringList& value) {
  SearchForm form = m_form;
  form.kinds.clear();
  for (const QString& name : value) {
    if (std::optional<FileKind> kind = fileKindFromRaw(name.toStdString())) form.kinds.insert(*kind);
  }
  setForm(form);
}

QString SearchState::minSizeText() const { return qs(m_form.minSizeText); }
void SearchState::setMinSizeText(const QString& value) {
  SearchForm form = m_form;
  form.minSizeText = value.toStdString();
  setForm(form);
}

QString SearchState::maxSizeText() const { return qs(m_form.maxSizeText); }
void SearchState::setMaxSizeText(const QString& value) {
  SearchForm form = m_form;
  form.maxSizeText = value.toStdString();
  setForm(form);
}

void SearchState::setSizeUnit(qint64 value) {
  SearchForm form = m_form;
  form.sizeUnit = value;
  setForm(form);
}

void SearchState::setUseDates(bool value) {
  SearchForm form = m_form;
  form.useDates = value;
  setForm(form);
}

QDateTime SearchState::from() const { return toQt(m_form.from); }
void SearchState::setFrom(const QDateTime& value) {
  SearchForm form = m_form;
  form.from = fromQt(value);
  setForm(form);
}

QDateTime SearchState::to() const { return toQt(m_form.to); }
void SearchState::setTo(const QDateTime& value) {
  SearchForm form = m_form;
  form.to = fromQt(value);
  setForm(form);
}

QString SearchState::tag() const { return qs(m_form.tag); }
void SearchState::setTag(const QString& value) {
  SearchForm form = m_form;
  form.tag = value.toStdString();
  setForm(form);
}

QVariantList SearchState::catalogIDs() const {
  QVariantList out;
  for (int64_t id : m_form.catalogIDs) out << QVariant::fromValue<qint64>(id);
  return out;
}
void SearchState::setCatalogIDs(const QVariantList& value) {
  SearchForm form = m_form;
  form.catalogIDs.clear();
  for (const QVariant& id : value) {
    bool ok = false;
    qint64 number = id.toLongLong(&ok);
    if (ok) form.catalogIDs.insert(number);
  }
  setForm(form);
}

void SearchState::setIncludeFolders(bool value) {
  SearchForm form = m_form;
  form.includeFolders = value;
  setForm(form);
}

}  // namespace orrelin
