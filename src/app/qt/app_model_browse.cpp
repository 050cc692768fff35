// The actions of the browser's drive panel that the sidebar does not already offer: editing a catalog's
// notes.
#include "app/qt/app_model.h"
#include "app/qt/dialogs.h"

namespace orrelin {

void AppModel::promptNotes(const Catalog& catalog) {
  const auto notes = Dialogs::prompt(
      QStringLiteral("Edit Notes"),
      QStringLiteral("Notes for \u201C%1\u201D: where the drive is kept, what is on it, anything worth "
                     "remembering.")
          .arg(QString::fromStdString(catalog.name)),
      QString::fromStdString(catalog.notes), QStringLiteral("Save Notes"));
  // Unlike a name, notes are kept exactly as typed; clearing the field clears them.
  if (notes) setNotes(catalog, *notes);
}

void AppModel::promptNotes(qint64 catalogID) {
  if (auto c = catalog(catalogID)) promptNotes(*c);
}

}  // namespace orrelin
