// The screens of the main window (AppSection) and the panes of the Tools screen (ToolTab), with the
// texts the interface shows for them. Their raw texts are also what launch arguments are matched against.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace orrelin {
namespace Nav {
Q_NAMESPACE
QML_NAMED_ELEMENT(Nav)

// The six screens, in the sidebar's order.
enum class AppSection { browse, search, duplicates, stats, web, tools };
Q_ENUM_NS(AppSection)

// The panes of the Tools screen, in their tab order.
enum class ToolTab { claude, plan, rename, empty, largeOld, missing, compare };
Q_ENUM_NS(ToolTab)

}  // namespace Nav

using AppSection = Nav::AppSection;
using ToolTab = Nav::ToolTab;

// Every section, in order.
const std::vector<AppSection>& allSections();
// The shown name ("Browse", "Statistics", "Web & Export", …).
QString rawText(AppSection section);
// The line under the title in the header.
QString subtitle(AppSection section);
// The name of the section's icon.
QString symbol(AppSection section);
// The raw texts of allSections(), in order.
QStringList sectionRawTexts();

// Every tool tab, in order.
const std::vector<ToolTab>& allToolTabs();
// The tab's label, which is also its raw text ("Export for Claude", "Large & Old Files", …).
QString rawText(ToolTab tab);
QString symbol(ToolTab tab);
// The raw texts of allToolTabs(), in order.
QStringList toolTabRawTexts();

}  // namespace orrelin
