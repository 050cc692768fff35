// The texts and icon names of the screens and tool panes.
#include "app/qt/navigation.h"

namespace orrelin {

namespace {

struct SectionText {
  const char* raw;
  const char* subtitle;
  const char* symbol;
};

// Indexed by AppSection.
constexpr SectionText kSections[] = {
    {"Browse", "Explore any cataloged drive \u2014 online or offline", "square.grid.3x1.below.line.grid.1x2"},
    {"Search", "Search every cartridge at once", "scope"},
    {"Duplicates", "Track down copies across all your drives", "square.on.square"},
    {"Statistics", "Your whole library at a glance", "chart.bar.xaxis"},
    {"Web & Export", "Publish inventory web pages, CSV and JSON", "globe"},
    {"Tools", "Export for Claude, organization plans, batch rename and drive reports",
     "wrench.and.screwdriver"},
};

struct TabText {
  const char* raw;
  const char* symbol;
};

// Indexed by ToolTab.
constexpr TabText kTabs[] = {
    {"Export for Claude", "brain.head.profile"},
    {"Organization Plan", "arrow.triangle.branch"},
    {"Rename Assistant", "character.cursor.ibeam"},
    {"Empty Folders", "folder.badge.questionmark"},
    {"Large & Old Files", "clock.badge.exclamationmark"},
    {"Missing Files", "exclamationmark.magnifyingglass"},
    {"Compare Catalogs", "arrow.left.arrow.right.square"},
};

const SectionText& texts(AppSection section) { return kSections[static_cast<int>(section)]; }
const TabText& texts(ToolTab tab) { return kTabs[static_cast<int>(tab)]; }

}  // namespace

const std::vector<AppSection>& allSections() {
  static const std::vector<AppSection> all = {AppSection::browse, AppSection::search, AppSection::duplicates,
                                              AppSection::stats,  AppSection::web,    AppSection::tools};
  return all;
}

QString rawText(AppSection section) { return QString::fromUtf8(texts(section).raw); }
QString subtitle(AppSection section) { return QString::fromUtf8(texts(section).subtitle); }
QString symbol(AppSection section) { return QString::fromUtf8(texts(section).symbol); }

QStringList sectionRawTexts() {
  QStringList list;
  for (AppSection section : allSections()) list << rawText(section);
  return list;
}

const std::vector<ToolTab>& allToolTabs() {
  static const std::vector<ToolTab> all = {ToolTab::claude, ToolTab::plan,     ToolTab::rename,
                                           ToolTab::empty,  ToolTab::largeOld, ToolTab::missing,
                                           ToolTab::compare};
  return all;
}

QString rawText(ToolTab tab) { return QString::fromUtf8(texts(tab).raw); }
QString symbol(ToolTab tab) { return QString::fromUtf8(texts(tab).symbol); }

QStringList toolTabRawTexts() {
  QStringList list;
  for (ToolTab tab : allToolTabs()) list << rawText(tab);
  return list;
}

}  // namespace orrelin
