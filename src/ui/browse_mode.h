// How the browser shows a folder: as columns (each open folder beside its parent) or as a sortable list.
// The choice is the user's preference "browseMode", kept by its raw text.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace orrelin {
namespace Browse {
Q_NAMESPACE
QML_NAMED_ELEMENT(Browse)

enum class BrowseMode { columns, list };
Q_ENUM_NS(BrowseMode)

}  // namespace Browse

using BrowseMode = Browse::BrowseMode;

// "Columns" or "List": the label, and the text stored in the preference.
QString rawText(BrowseMode mode);
// "rectangle.split.3x1" or "list.bullet".
QString symbol(BrowseMode mode);
// The stored preference: list for "List", columns for anything else (missing included).
BrowseMode storedBrowseMode();
// Writes the mode's raw text to the preference.
void storeBrowseMode(BrowseMode mode);

}  // namespace orrelin
