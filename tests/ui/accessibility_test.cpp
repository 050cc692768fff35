// The window as a screen reader finds it: every control and clickable card named, the cartridges, icon
// buttons, alert and toast read out as a user would want, and the press action of a card doing what a
// click does. The accessible tree is walked through QAccessible, as the AT-SPI bridge walks it.
#include <QAccessible>
#include <QMetaMethod>
#include <QQmlProperty>
#include <QQuickItem>
#include <QQuickWindow>

#include <fstream>
#include <vector>

#include "app/qt/navigation.h"
#include "search/qt/search_state.h"
#include "search/saved_search.h"
#include "store/sqlite_db.h"
#include "sidebar_support.h"

namespace orrelin::testing {
namespace {

// The roles of what a user acts on; each must have a name to be told apart.
bool isControl(QAccessible::Role role) {
  switch (role) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
    case QAccessible::Link:
    case QAccessible::ListItem:
      return true;
    default:
      return false;
  }
}

bool canBePressed(QAccessibleInterface* iface) {
  QAccessibleActionInterface* actions = iface->actionInterface();
  if (!actions) return false;
  const QStringList names = actions->actionNames();
  return names.contains(QAccessibleActionInterface::pressAction()) ||
         names.contains(QAccessibleActionInterface::toggleAction());
}

// How a failure names an element: its object name, else its class, with the same of its parent.
QString describe(QObject* object) {
  if (!object) return QStringLiteral("?");
  auto label = [](QObject* o) {
    return o->objectName().isEmpty() ? QString::fromLatin1(o->metaObject()->className()) : o->objectName();
  };
  return object->parent() ? label(object) + " in " + label(object->parent()) : label(object);
}

// The element shown by `iface` and everything visible below it.
void collect(QAccessibleInterface* iface, std::vector<QAccessibleInterface*>& out, int depth = 0) {
  if (!iface || !iface->isValid() || depth > 200 || iface->state().invisible) return;
  out.push_back(iface);
  for (int i = 0; i < iface->childCount(); ++i) collect(iface->child(i), out, depth + 1);
}

// The `Accessible` attached to `item` by its QML, or null when it has none.
QObject* attachedAccessible(QObject* item) {
  for (QObject* child : item->children())
    if (child->inherits("QQuickAccessibleAttached")) return child;
  return nullptr;
}

// Whether a QML handler or a connection listens to the signal `name` of `object`.
bool listens(QObject* object, const char* name) {
  // isSignalConnected() is protected; it is the one call that also sees handlers written in QML.
  struct Probe : QObject {
    using QObject::isSignalConnected;
  };
  const QMetaObject* meta = object->metaObject();
  for (int i = 0; i < meta->methodCount(); ++i) {
    const QMetaMethod method = meta->method(i);
    if (method.methodType() == QMetaMethod::Signal && method.name() == name &&
        static_cast<Probe*>(object)->isSignalConnected(method))
      return true;
  }
  return false;
}

void collectItems(QQuickItem* item, std::vector<QQuickItem*>& out) {
  if (!item || !item->isVisible()) return;
  out.push_back(item);
  for (QQuickItem* child : item->childItems()) collectItems(child, out);
}

class AccessibilityTest : public SidebarTest {
 protected:
  void SetUp() override {
    SidebarTest::SetUp();
    window()->resize(1500, 1120);
  }
  void TearDown() override {
    // The smart search made here is not left for the next test.
    SavedSearch::setAll({});
    model().setSavedSearches({});
    SidebarTest::TearDown();
  }

  // The accessible element of the item named `name`, after making sure the controls have set up their
  // roles and names (the offscreen platform has no screen reader to ask for them).
  QAccessibleInterface* accessible(const QString& name) {
    QAccessible::setActive(true);
    QQuickItem* target = shown(name);
    return target ? QAccessible::queryAccessibleInterface(target) : nullptr;
  }

  // Every shown element of `host`'s accessible tree that a user can act on but that has no name, and
  // every shown mouse area with a click handler that no named, pressable element stands for.
  std::string unnamedControls(QQuickWindow* host) {
    QAccessible::setActive(true);
    spin(50);
    QStringList problems;
    std::vector<QAccessibleInterface*> elements;
    collect(QAccessible::queryAccessibleInterface(host), elements);
    EXPECT_GT(elements.size(), 1u) << "the accessible tree of " << host->title().toStdString() << " is empty";
    for (QAccessibleInterface* e : elements) {
      // Any button counts, whatever role its control reports (a menu bar's entry says it is the bar).
      const bool control = isControl(e->role()) || canBePressed(e) ||
                           (e->object() && e->object()->inherits("QQuickAbstractButton"));
      if (control && e->text(QAccessible::Name).trimmed().isEmpty())
        problems << QStringLiteral("no name: role %1, %2").arg(e->role()).arg(describe(e->object()));
    }

    std::vector<QQuickItem*> items;
    collectItems(host->contentItem(), items);
    for (QQuickItem* area : items) {
      if (!area->inherits("QQuickMouseArea") || !area->isEnabled()) continue;
      if (!listens(area, "clicked") && !listens(area, "pressed") && !listens(area, "doubleClicked")) continue;
      if (QObject* own = attachedAccessible(area); own && own->property("ignored").toBool()) continue;
      QAccessibleInterface* owner = nullptr;
      for (QQuickItem* it = area; it && !owner; it = it->parentItem()) {
        QAccessibleInterface* e = QAccessible::queryAccessibleInterface(it);
        if (e && isControl(e->role())) owner = e;
      }
      if (!owner)
        problems << "a clickable area no accessible control stands for: " + describe(area);
      else if (owner->text(QAccessible::Name).trimmed().isEmpty() || !canBePressed(owner))
        problems << "a clickable area whose control has no name or press action: " + describe(owner->object());
    }
    return problems.join('\n').toStdString();
  }

  static void press(QAccessibleInterface* e) {
    ASSERT_NE(e, nullptr);
    ASSERT_NE(e->actionInterface(), nullptr);
    e->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
  }
};

TEST_F(AccessibilityTest, EveryControlOfTheWindowItsSheetsAndMenusHasAName) {
  removeAllCatalogs();
  // The empty library first: its panel and the placeholder's buttons.
  EXPECT_EQ(unnamedControls(window()), "");

  model().loadSampleData();
  ASSERT_TRUE(waitUntil([&] { return model().catalogs().size() >= 4; }));
  SavedSearch search;
  search.id = SavedSearch::newID();
  search.name = "Holiday Photos";
  search.text = "beach";
  ASSERT_TRUE(SavedSearch::setAll({search}));
  model().setSavedSearches({search});
  shown("smartSearch:Holiday Photos");
  EXPECT_EQ(unnamedControls(window()), "");

  // A narrow window, where "Catalog a Drive" keeps only its icon.
  window()->resize(900, 800);
  spin(100);
  EXPECT_EQ(unnamedControls(window()), "");
  window()->resize(1500, 1120);

  click("addCartridgeButton");
  shown("addMenu.sample");
  EXPECT_EQ(unnamedControls(window()), "");
  key(Qt::Key_Escape);
  click("cartridge:DJ Crates SSD", Qt::RightButton);
  shown("cartridgeMenu.browse");
  EXPECT_EQ(unnamedControls(window()), "");
  key(Qt::Key_Escape);
  click("zoomPercentButton");
  shown("zoomLevel100");
  EXPECT_EQ(unnamedControls(window()), "");
  key(Qt::Key_Escape);
  ASSERT_TRUE(waitUntil([&] { return !item("zoomLevel100") || !item("zoomLevel100")->isVisible(); }));

  model().setNewCatalogSheet(true);
  shown("newCatalogSheet");
  EXPECT_EQ(unnamedControls(window()), "");
  model().setNewCatalogSheet(false);

  // A real scan brings up the scan panel while it runs and the result sheet when it ends. Its first
  // write waits while another connection holds the write lock, so the panel stays up to be read.
  TempDir dir;
  for (int i = 0; i < 40; ++i) std::ofstream(dir.path() / ("track" + std::to_string(i) + ".txt")) << "x";
  {
    SQLiteDB blocker(model().databasePath().string());
    blocker.exec("BEGIN IMMEDIATE");
    ScanOptions options;
    options.metadata = false;
    options.thumbnails = false;
    model().beginScan(dir.path(), QStringLiteral("Scratch"), std::nullopt, options);
    shown("hudToggle");
    EXPECT_EQ(accessible("hudToggle")->text(QAccessible::Name), "Minimize");
    EXPECT_EQ(unnamedControls(window()), "");
    blocker.exec("ROLLBACK");
  }
  ASSERT_TRUE(waitUntil([&] { return model().scanResult().has_value(); }));
  QAccessibleInterface* added = accessible("resultTileAdded");
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->text(QAccessible::Name), "Added, 40");
  EXPECT_TRUE(added->state().selected);
  press(accessible("resultTileRemoved"));
  EXPECT_TRUE(accessible("resultTileRemoved")->state().selected);
  EXPECT_FALSE(added->state().selected);
  EXPECT_EQ(unnamedControls(window()), "");
  model().dismissScanResult();

  model().show(QStringLiteral("Drive Offline"), QStringLiteral("Connect the drive and try again."));
  shown("alertPanel");
  EXPECT_EQ(unnamedControls(window()), "");
  model().dismissAlert();

  auto* settings = qobject_cast<QQuickWindow*>(find("settingsWindow"));
  ASSERT_NE(settings, nullptr);
  QMetaObject::invokeMethod(settings, "open");
  ASSERT_TRUE(waitUntil([&] { return settings->isVisible(); }));
  for (int tab = 0; tab < 4; ++tab) {
    settings->setProperty("currentTab", tab);
    spin(50);
    EXPECT_EQ(unnamedControls(settings), "") << "Settings tab " << tab;
  }
  settings->close();

  auto* about = qobject_cast<QQuickWindow*>(find("aboutWindow"));
  ASSERT_NE(about, nullptr);
  QMetaObject::invokeMethod(about, "open");
  ASSERT_TRUE(waitUntil([&] { return about->isVisible(); }));
  EXPECT_EQ(unnamedControls(about), "");
  about->close();
}

TEST_F(AccessibilityTest, EveryScreenAndToolTabNamesItsControlsEmptyAndFilled) {
  // The screens with nothing to show: their empty states and start buttons.
  removeAllCatalogs();
  for (AppSection section : allSections()) {
    model().setSection(section);
    spin(100);
    EXPECT_EQ(unnamedControls(window()), "") << "empty " << rawText(section).toStdString();
  }

  // With the sample library, a cartridge selected and a search and its results on screen.
  model().loadSampleData();
  ASSERT_TRUE(waitUntil([&] { return model().catalogs().size() >= 4; }));
  model().setSelectedCatalogID(catalogNamed("DJ Crates SSD").id);
  SearchState::shared().setText("a");
  SearchState::shared().run(model().store());
  ASSERT_TRUE(waitUntil([&] { return SearchState::shared().searched() && !SearchState::shared().busy(); }));
  for (AppSection section : allSections()) {
    model().setSection(section);
    spin(150);
    if (section != AppSection::tools) {
      EXPECT_EQ(unnamedControls(window()), "") << rawText(section).toStdString();
      continue;
    }
    for (ToolTab tab : allToolTabs()) {
      model().setToolTab(tab);
      spin(150);
      EXPECT_EQ(unnamedControls(window()), "") << "tool tab " << static_cast<int>(tab);
    }
  }
}

TEST_F(AccessibilityTest, CartridgesGroupsAndScreensReadAsTheyLookAndPressAsAClickDoes) {
  removeAllCatalogs();
  model().loadSampleData();
  ASSERT_TRUE(waitUntil([&] { return model().catalogs().size() >= 4; }));
  model().setSection(AppSection::stats);

  QAccessibleInterface* cartridge = accessible("cartridge:DJ Crates SSD");
  ASSERT_NE(cartridge, nullptr);
  EXPECT_EQ(cartridge->role(), QAccessible::Button);
  EXPECT_EQ(cartridge->text(QAccessible::Name), "DJ Crates SSD, 130 files, 2.68 GB, sample, offline");
  EXPECT_TRUE(cartridge->text(QAccessible::Description).contains("Sample cartridge"));
  const Catalog crates = catalogNamed("DJ Crates SSD");
  model().setSelectedCatalogID(std::nullopt);
  press(cartridge);
  EXPECT_EQ(model().selectedCatalogID(), std::optional<int64_t>(crates.id));
  EXPECT_EQ(model().section(), AppSection::browse);
  EXPECT_TRUE(cartridge->state().selected);

  // A group says how many cartridges it holds and whether it is folded; pressing folds it.
  QAccessibleInterface* group = accessible("group:Studio (Sample)");
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->role(), QAccessible::Button);
  EXPECT_EQ(group->text(QAccessible::Name), "Studio (Sample), 2 cartridges, expanded");
  press(group);
  EXPECT_TRUE(waitUntil([&] { return group->text(QAccessible::Name).endsWith("collapsed"); }));
  press(group);
  EXPECT_TRUE(waitUntil([&] { return group->text(QAccessible::Name).endsWith("expanded"); }));

  // The screens are tabs, the current one selected.
  QAccessibleInterface* stats = accessible("nav:Statistics");
  ASSERT_NE(stats, nullptr);
  EXPECT_EQ(stats->role(), QAccessible::PageTab);
  EXPECT_EQ(stats->text(QAccessible::Name), "Statistics");
  EXPECT_FALSE(stats->state().selected);
  press(stats);
  EXPECT_EQ(model().section(), AppSection::stats);
  EXPECT_TRUE(stats->state().selected);

  QAccessibleInterface* status = accessible("statusBar");
  ASSERT_NE(status, nullptr);
  EXPECT_EQ(status->role(), QAccessible::StatusBar);
  EXPECT_EQ(status->text(QAccessible::Name), QQmlProperty::read(item("statusText"), "text").toString());
}

TEST_F(AccessibilityTest, IconButtonsAreNamedByTheirHelpAndTheSearchFieldByItsPrompt) {
  struct Case {
    const char* object;
    QAccessible::Role role;
    const char* name;
  };
  for (const Case& c : {Case{"addCartridgeButton", QAccessible::Button, "Add a catalog or group"},
                        Case{"zoomOutButton", QAccessible::Button, "Zoom out"},
                        Case{"zoomInButton", QAccessible::Button, "Zoom in"},
                        Case{"headerCatalogButton", QAccessible::Button, "Catalog a Drive"},
                        Case{"quickSearchField", QAccessible::EditableText, "Quick search all drives"}}) {
    QAccessibleInterface* e = accessible(QString::fromLatin1(c.object));
    ASSERT_NE(e, nullptr) << c.object;
    EXPECT_EQ(e->role(), c.role) << c.object;
    EXPECT_EQ(e->text(QAccessible::Name), QString::fromUtf8(c.name)) << c.object;
  }

  // The menu bar's entries are named by their titles.
  QAccessible::setActive(true);
  std::vector<QAccessibleInterface*> elements;
  collect(QAccessible::queryAccessibleInterface(window()), elements);
  QStringList menus;
  for (QAccessibleInterface* e : elements)
    if (e->object() && e->object()->inherits("QQuickMenuBarItem")) {
      menus << e->text(QAccessible::Name);
    }
  EXPECT_EQ(menus, QStringList({"Orrelin", "File", "Edit", "Catalog", "View", "Help"}));

  // Pressed through its action, an icon button does what a click does.
  ui().resetZoom();
  press(accessible("zoomInButton"));
  EXPECT_GT(ui().zoom(), 1.0);
  ui().resetZoom();

  // In a narrow window the big button shows only its icon and keeps its name.
  window()->resize(900, 800);
  EXPECT_TRUE(waitUntil([&] { return QQmlProperty::read(item("headerCatalogButton"), "text").toString().isEmpty(); }));
  EXPECT_EQ(accessible("headerCatalogButton")->text(QAccessible::Name), "Catalog a Drive");
  EXPECT_FALSE(accessible("headerCatalogButton")->text(QAccessible::Description).isEmpty());
}

TEST_F(AccessibilityTest, TheAlertAndTheToastAreAlertMessages) {
  model().show(QStringLiteral("Drive Offline"), QStringLiteral("Connect “Photo Vault” and try again."));
  QAccessibleInterface* alert = accessible("alertPanel");
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->role(), QAccessible::AlertMessage);
  EXPECT_EQ(alert->text(QAccessible::Name), "Drive Offline");
  EXPECT_EQ(alert->text(QAccessible::Description), "Connect “Photo Vault” and try again.");
  EXPECT_EQ(accessible("alertOKButton")->text(QAccessible::Name), "OK");
  model().dismissAlert();

  model().flash(QStringLiteral("Backup saved"));
  QAccessibleInterface* toast = accessible("toast");
  ASSERT_NE(toast, nullptr);
  EXPECT_EQ(toast->role(), QAccessible::AlertMessage);
  EXPECT_EQ(toast->text(QAccessible::Name), "Backup saved");
}

}  // namespace
}  // namespace orrelin::testing
