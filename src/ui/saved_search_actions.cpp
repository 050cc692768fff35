// Smart searches: saving, running, renaming and deleting, over AppModel's list and the settings.
#include "ui/saved_search_actions.h"

#include <algorithm>
#include <string>
#include <utility>

#include "app/qt/app_model.h"
#include "app/qt/dialogs.h"
#include "search/qt/search_state.h"

namespace orrelin {

namespace {

// Blanks only: a name keeps any newline the user managed to type.
QString trimBlanks(const QString& text) {
  qsizetype begin = 0;
  qsizetype end = text.size();
  while (begin < end && (text[begin] == u' ' || text[begin] == u'\t')) ++begin;
  while (end > begin && (text[end - 1] == u' ' || text[end - 1] == u'\t')) --end;
  return text.mid(begin, end - begin);
}

}  // namespace

std::optional<SavedSearch> SavedSearchActions::find(const QString& id) {
  const std::string key = id.toStdString();
  for (const SavedSearch& saved : AppModel::shared().savedSearches())
    if (saved.id == key) return saved;
  return std::nullopt;
}

void SavedSearchActions::store(std::vector<SavedSearch> list) {
  SavedSearch::setAll(list);
  AppModel::shared().setSavedSearches(std::move(list));
}

void SavedSearchActions::saveCurrentSearch() {
  SearchState& search = SearchState::shared();
  const QString proposed = search.text().isEmpty() ? QStringLiteral("My Search") : search.text();
  const std::optional<QString> typed = Dialogs::prompt(
      QStringLiteral("Save Smart Search"),
      QStringLiteral("Saved searches appear in the sidebar and always show current results across your "
                     "catalogs."),
      proposed, QStringLiteral("Save"));
  if (!typed) return;
  const QString name = trimBlanks(*typed);
  if (name.isEmpty()) return;
  std::vector<SavedSearch> list = AppModel::shared().savedSearches();
  list.push_back(search.snapshot(name.toStdString()));
  store(std::move(list));
  // The toast repeats the name as it was typed, blanks and all.
  AppModel::shared().flash(QStringLiteral("Smart search \u201C%1\u201D saved").arg(*typed));
}

void SavedSearchActions::openSavedSearch(const QString& id) {
  const std::optional<SavedSearch> saved = find(id);
  if (!saved) return;
  AppModel& model = AppModel::shared();
  SearchState::shared().apply(*saved);
  model.setSection(AppSection::search);
  if (model.store()) SearchState::shared().run(model.store());
}

void SavedSearchActions::renameSavedSearch(const QString& id) {
  const std::optional<SavedSearch> saved = find(id);
  if (!saved) return;
  const std::optional<QString> name =
      Dialogs::prompt(QStringLiteral("Rename Smart Search"), QString(), QString::fromStdString(saved->name),
                      QStringLiteral("Rename"));
  if (!name || name->isEmpty()) return;
  std::vector<SavedSearch> list = AppModel::shared().savedSearches();
  // The first entry with the id: the list was re-read after the question, which another window may
  // have changed meanwhile.
  auto entry =
      std::find_if(list.begin(), list.end(), [&](const SavedSearch& s) { return s.id == saved->id; });
  if (entry == list.end()) return;
  entry->name = name->toStdString();
  store(std::move(list));
}

void SavedSearchActions::deleteSavedSearch(const QString& id) {
  std::vector<SavedSearch> list = AppModel::shared().savedSearches();
  const std::string key = id.toStdString();
  std::erase_if(list, [&](const SavedSearch& s) { return s.id == key; });
  store(std::move(list));
}

}  // namespace orrelin
