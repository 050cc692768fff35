// Finding and matching launch arguments.
#include "app/qt/launch_arguments.h"

namespace orrelin::LaunchArguments {

std::optional<QString> value(const QStringList& arguments, const QString& key) {
  const QString prefix = QStringLiteral("--") + key + QLatin1Char('=');
  for (const QString& argument : arguments)
    if (argument.startsWith(prefix)) return argument.mid(prefix.size());
  return std::nullopt;
}

bool has(const QStringList& arguments, const QString& flag) { return arguments.contains(flag); }

std::optional<int> match(const QString& value, const QStringList& rawTexts) {
  for (int i = 0; i < rawTexts.size(); ++i)
    if (rawTexts[i].startsWith(value, Qt::CaseInsensitive)) return i;
  return std::nullopt;
}

}  // namespace orrelin::LaunchArguments
