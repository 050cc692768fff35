// Reading the program's launch arguments: "--key=value" values, plain flags, and matching a value
// against a list of raw texts the way every list-valued argument is matched.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace orrelin::LaunchArguments {

// The value of the first argument that begins with "--<key>=": what follows the equals sign (possibly
// empty). Absent when no argument begins so.
std::optional<QString> value(const QStringList& arguments, const QString& key);

// True when one argument equals `flag` exactly ("--sample").
bool has(const QStringList& arguments, const QString& flag);

// The index of the first entry of `rawTexts` that begins with `value`, ignoring case; an empty value
// matches the first entry. Absent when nothing matches.
std::optional<int> match(const QString& value, const QStringList& rawTexts);

}  // namespace orrelin::LaunchArguments
