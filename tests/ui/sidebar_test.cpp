// The sidebar as a user meets it: the empty library, the screens, the cartridges by group, folding a
// group, selecting a cartridge, and scrolling at a large zoom.
#include <QQmlProperty>

#include "sidebar_support.h"

namespace orrelin::testing {
namespace {

TEST_F(SidebarTest, AnEmptyLibraryShowsThePanelWhoseButtonOpensTheNewCatalogSheet) {
  removeAllCatalogs();
  QQuickItem* panel = shown("noCartridgesPanel");
  ASSERT_NE(panel, nullptr);
  EXPECT_TRUE(shown("noSmartSearches")->isVisible());
  EXPECT_FALSE(item("ungroupedHeading")->isVisible());

  click("sidebarCatalogDrive");
  EXPECT_TRUE(model().newCatalogSheet());
  model().setNewCatalogSheet(false);

  // With a cartridge, the panel goes; without one again, it comes back.
  model().loadSampleData();
  EXPECT_TRUE(waitUntil([&] { return !panel->isVisible(); }));
  removeAllCatalogs();
  EXPECT_TRUE(waitUntil([&] { return panel->isVisible(); }));

  // A group made before any catalog waits behind the panel; the first catalog brings it out.
  model().createGroup("Archive");
  spin(100);
  EXPECT_TRUE(panel->isVisible());
  EXPECT_EQ(item("group:Archive"), nullptr);
  model().loadSampleData();
  EXPECT_TRUE(waitUntil([&] { return item("group:Archive") && item("group:Archive")->isVisible(); }));
}

TEST_F(SidebarTest, NavButtonsShowTheirScreenAndLightTheCurrentOne) {
  struct Case {
    const char* title;
    AppSection section;
  };
  for (const Case& c : {Case{"Statistics", AppSection::stats}, Case{"Web & Export", AppSection::web},
                        Case{"Tools", AppSection::tools}, Case{"Browse", AppSection::browse}}) {
    click(QStringLiteral("nav:") + c.title);
    EXPECT_EQ(model().section(), c.section) << c.title;
    for (AppSection section : allSections()) {
      EXPECT_EQ(item("nav:" + rawText(section))->property("current").toBool(), section == c.section)
          << c.title << " lights " << rawText(section).toStdString();
    }
  }
}

TEST_F(SidebarTest, SampleCartridgesStandUnderTheirGroupsWithTheirTotalsAndStatus) {
  removeAllCatalogs();
  loadSampleThroughMenu();

  QQuickItem* studio = shown("group:Studio (Sample)");
  QQuickItem* media = shown("group:Media (Sample)");
  ASSERT_TRUE(studio && media);
  EXPECT_EQ(studio->property("count").toInt(), 2);
  EXPECT_EQ(media->property("count").toInt(), 2);
  // Every cartridge sits below its own group's heading and above the next group's.
  struct Case {
    const char* cartridge;
    QQuickItem* group;
  };
  const double studioY = studio->mapToScene({0, 0}).y();
  const double mediaY = media->mapToScene({0, 0}).y();
  for (const Case& c : {Case{"DJ Crates SSD", studio}, Case{"Studio Archive 4TB", studio},
                        Case{"Photo Vault", media}, Case{"Home NAS \u2014 Business", media}}) {
    const QString name = QStringLiteral("cartridge:") + QString::fromUtf8(c.cartridge);
    const double y = shown(name)->mapToScene({0, 0}).y();
    if (c.group == studio) {
      EXPECT_TRUE(y > studioY && y < mediaY) << c.cartridge;
    } else {
      EXPECT_GT(y, mediaY) << c.cartridge;
    }
    EXPECT_EQ(textOf(name, "status"), QStringLiteral("SAMPLE \u00B7 OFFLINE")) << c.cartridge;
    EXPECT_TRUE(findNamed(item(name), "capacityBar")->property("visible").toBool()) << c.cartridge;
  }
  const Catalog vault = catalogNamed("Photo Vault");
  EXPECT_EQ(
      textOf("cartridge:Photo Vault", "totals"),
      QString::fromStdString(Fmt::count(vault.fileCount) + " files \u00B7 " + Fmt::size(vault.totalSize)));
  // With no catalog outside a group there is no "UNGROUPED" heading.
  EXPECT_FALSE(item("ungroupedHeading")->isVisible());
  // A sample is selected, and only its cartridge is lit.
  ASSERT_TRUE(model().selectedCatalog().has_value());
  for (const Catalog& c : model().catalogs()) {
    EXPECT_EQ(item(QString::fromStdString("cartridge:" + c.name))->property("selected").toBool(),
              c.id == model().selectedCatalog()->id)
        << c.name;
  }
}

TEST_F(SidebarTest, ClickingAGroupFoldsItAndClickingAgainOpensIt) {
  removeAllCatalogs();
  model().loadSampleData();
  QQuickItem* header = shown("group:Studio (Sample)");
  ASSERT_NE(header, nullptr);
  const int64_t groupID = header->property("group").toMap().value("id").toLongLong();
  shown("cartridge:DJ Crates SSD");

  click(header);
  EXPECT_TRUE(model().collapsedGroups().count(groupID));
  EXPECT_TRUE(waitUntil([&] { return item("cartridge:DJ Crates SSD") == nullptr; }));
  // The other group stays open.
  shown("cartridge:Photo Vault");
  // Reloading the data does not unfold it.
  model().reload();
  spin(50);
  EXPECT_EQ(item("cartridge:DJ Crates SSD"), nullptr);

  click(header);
  EXPECT_FALSE(model().collapsedGroups().count(groupID));
  shown("cartridge:DJ Crates SSD");
}

TEST_F(SidebarTest, ClickingACartridgeSelectsItAndShowsTheBrowser) {
  removeAllCatalogs();
  model().loadSampleData();
  model().setSection(AppSection::duplicates);
  const Catalog vault = catalogNamed("Photo Vault");
  ASSERT_NE(model().selectedCatalogID(), std::optional(vault.id));

  click("cartridge:Photo Vault");
  EXPECT_EQ(model().selectedCatalogID(), std::optional(vault.id));
  EXPECT_EQ(model().section(), AppSection::browse);
  EXPECT_TRUE(item("cartridge:Photo Vault")->property("selected").toBool());
  EXPECT_FALSE(item("cartridge:DJ Crates SSD")->property("selected").toBool());
}

TEST_F(SidebarTest, ManyCartridgesScrollAndEverythingGrowsWithTheZoom) {
  removeAllCatalogs();
  model().loadSampleData();
  auto* scroller = item("sidebarScroller");
  ASSERT_NE(scroller, nullptr);
  ui().setZoom(1.0);
  spin(50);
  const double heightAt1 = shown("cartridge:Photo Vault")->height();
  const double navAt1 = shown("nav:Browse")->height();

  ui().setZoom(2.0);
  spin(50);
  EXPECT_NEAR(item("cartridge:Photo Vault")->height(), 2 * heightAt1, 0.08 * heightAt1);
  EXPECT_DOUBLE_EQ(item("nav:Browse")->height(), 2 * navAt1);

  // At 250% the column is taller than the window: it scrolls, and the last cartridge can be reached.
  ui().setZoom(2.5);
  spin(50);
  const double contentHeight = QQmlProperty::read(scroller, "contentHeight").toDouble();
  ASSERT_GT(contentHeight, scroller->height());
  QQmlProperty::write(scroller, "contentY", contentHeight - scroller->height());
  spin(50);
  QQuickItem* last = item("cartridge:Photo Vault");
  const QRectF inView = last->mapRectToItem(scroller, QRectF(0, 0, last->width(), last->height()));
  EXPECT_GE(inView.top(), 0);
  EXPECT_LE(inView.bottom(), scroller->height());
  click(last);
  EXPECT_EQ(model().selectedCatalogID(), std::optional(catalogNamed("Photo Vault").id));

  ui().setZoom(0.5);
  spin(50);
  EXPECT_NEAR(item("cartridge:Photo Vault")->height(), 0.5 * heightAt1, 0.08 * heightAt1);
  EXPECT_LE(QQmlProperty::read(scroller, "contentHeight").toDouble(), scroller->height());
  ui().resetZoom();
}

}  // namespace
}  // namespace orrelin::testing
