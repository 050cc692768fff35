// What the screens do with smart searches: save the search screen's fields under a name, run one,
// rename one, delete one. The list lives in AppModel.savedSearches and in the user's settings; every
// change here writes both. QML's `SavedSearches`; main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include <optional>
#include <vector>

#include "search/saved_search.h"

namespace orrelin {

class SavedSearchActions : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(SavedSearches)
  QML_SINGLETON

 public:
  using QObject::QObject;

  // Asks for a name (proposing the search text, or "My Search"), then keeps the search screen's current
  // fields under it, after the others, and says so with a toast. A cancelled or blank name keeps nothing.
  Q_INVOKABLE void saveCurrentSearch();
  // Puts the saved fields into the search screen, shows that screen and runs the search when a database
  // is open. An unknown id does nothing.
  Q_INVOKABLE void openSavedSearch(const QString& id);
  // Asks for a new name and stores it; a cancelled or empty answer, or an unknown id, changes nothing.
  Q_INVOKABLE void renameSavedSearch(const QString& id);
  // Removes every saved search with this id.
  Q_INVOKABLE void deleteSavedSearch(const QString& id);

 private:
  // The saved search with this id in AppModel's list, if any.
  static std::optional<SavedSearch> find(const QString& id);
  // Publishes `list` in AppModel and stores it in the settings.
  static void store(std::vector<SavedSearch> list);
};

}  // namespace orrelin
