// Smart searches in the sidebar: listed by name, run with a click, renamed and deleted from their menu,
// with the settings following every change.
#include "search/qt/search_state.h"
#include "search/saved_search.h"
#include "sidebar_support.h"
#include "ui/saved_search_actions.h"

namespace orrelin::testing {
namespace {

SavedSearch savedSearch(const std::string& name, const std::string& text) {
  SavedSearch s;
  s.id = SavedSearch::newID();
  s.name = name;
  s.text = text;
  s.mode = "Contains";
  s.kinds = {"Image"};
  return s;
}

std::vector<std::string> storedNames() {
  std::vector<std::string> names;
  for (const SavedSearch& s : SavedSearch::all()) names.push_back(s.name);
  return names;
}

TEST_F(SidebarTest, SmartSearchRowsRunRenameAndDelete) {
  const std::vector<SavedSearch> list = {savedSearch("Holiday Photos", "beach"), savedSearch("Mixes", "mix")};
  ASSERT_TRUE(SavedSearch::setAll(list));
  model().setSavedSearches(list);
  shown("smartSearch:Holiday Photos");
  shown("smartSearch:Mixes");
  EXPECT_FALSE(item("noSmartSearches")->isVisible());

  // A click puts its fields into the search screen and shows it.
  model().setSection(AppSection::stats);
  click("smartSearch:Holiday Photos");
  EXPECT_EQ(model().section(), AppSection::search);
  EXPECT_EQ(SearchState::shared().text(), QStringLiteral("beach"));
  EXPECT_EQ(SearchState::shared().kinds(), QStringList{"Image"});
  ASSERT_TRUE(waitUntil([&] { return !SearchState::shared().busy(); }));

  // "Run Search" does the same from the menu.
  rightClick("smartSearch:Mixes");
  click("smartSearchMenu.run");
  EXPECT_EQ(SearchState::shared().text(), QStringLiteral("mix"));
  ASSERT_TRUE(waitUntil([&] { return !SearchState::shared().busy(); }));

  // Rename: a cancelled or empty answer changes nothing; a name of blanks is kept as typed.
  for (const Dialogs::Answer& answer : {Dialogs::Answer::cancel(), Dialogs::Answer::withText("")}) {
    Dialogs::setAnswerer([&](const Dialogs::Request&) { return answer; });
    rightClick("smartSearch:Mixes");
    click("smartSearchMenu.rename");
    EXPECT_EQ(storedNames(), (std::vector<std::string>{"Holiday Photos", "Mixes"}));
  }
  QString title;
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    title = request.title;
    return Dialogs::Answer::withText("Club Mixes");
  });
  rightClick("smartSearch:Mixes");
  click("smartSearchMenu.rename");
  EXPECT_EQ(title, QStringLiteral("Rename Smart Search"));
  EXPECT_EQ(storedNames(), (std::vector<std::string>{"Holiday Photos", "Club Mixes"}));
  shown("smartSearch:Club Mixes");

  // Delete removes it from the sidebar and the settings; with none left the hint returns.
  rightClick("smartSearch:Holiday Photos");
  click("smartSearchMenu.delete");
  EXPECT_EQ(storedNames(), (std::vector<std::string>{"Club Mixes"}));
  EXPECT_TRUE(waitUntil([&] { return item("smartSearch:Holiday Photos") == nullptr; }));
  rightClick("smartSearch:Club Mixes");
  click("smartSearchMenu.delete");
  EXPECT_TRUE(SavedSearch::all().empty());
  shown("noSmartSearches");
}

TEST_F(SidebarTest, SavingTheCurrentSearchTrimsBlanksAndNamesItInTheToast) {
  model().setSavedSearches({});
  SavedSearch::setAll({});
  SearchState::shared().setText(QString());
  QString proposed;
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    proposed = request.initial;
    return Dialogs::Answer::withText("  Raw Files  ");
  });
  SavedSearchActions actions;
  actions.saveCurrentSearch();
  EXPECT_EQ(proposed, QStringLiteral("My Search"));
  EXPECT_EQ(storedNames(), (std::vector<std::string>{"Raw Files"}));
  EXPECT_EQ(model().toast(),
            std::optional<QString>(QStringLiteral("Smart search \u201C  Raw Files  \u201D saved")));
  shown("smartSearch:Raw Files");

  // A blank name keeps nothing.
  Dialogs::setAnswerer([](const Dialogs::Request&) { return Dialogs::Answer::withText("   "); });
  actions.saveCurrentSearch();
  EXPECT_EQ(SavedSearch::all().size(), 1U);
}

}  // namespace
}  // namespace orrelin::testing
