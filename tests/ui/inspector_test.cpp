// The file inspector and the file menu over records of real folders the program scanned: the rows of a
// file, a folder and a hidden file, media details in key order from a photo made by real tools, the map
// link of a location, and the actions on the file itself.
#include <QClipboard>
#include <QGuiApplication>
#include <QUrlQuery>

#include <sys/xattr.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "panel_support.h"
#include "scan/media_tools.h"
#include "store/finder_label.h"
#include "store/fmt.h"
#include "ui/map_link.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

TEST(MapLinkTest, ALocationNeedsExactlyTwoPieces) {
  const MapLink link;
  struct Case {
    QString gps, ll;  // ll empty: no map.
  };
  const std::vector<Case> cases = {
      {"48.8584, 2.2945", "48.8584,2.2945"},
      {"  -33.85678 ,151.21500  ", "-33.85678,151.21500"},
      {"48.8584,2.2945", "48.8584,2.2945"},
      {"48.8584", ""},
      {"1, 2, 3", ""},
      {"48.8584; 2.2945", ""},
      {"", ""},
      {" , 2.2945", ""},
      {"48.8584,", ""},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(k.gps.toStdString());
    const QString address = link.address(k.gps);
    if (k.ll.isEmpty()) {
      EXPECT_EQ(address, "");
      EXPECT_FALSE(link.openMap(k.gps));
      continue;
    }
    EXPECT_TRUE(address.startsWith(MapLink::kMapAddress));
    EXPECT_TRUE(address.endsWith("&q=Photo%20Location")) << address.toStdString();
    const QUrlQuery query(QUrl(address).query());
    EXPECT_EQ(query.queryItemValue("ll"), k.ll);
    EXPECT_EQ(query.queryItemValue("q", QUrl::FullyDecoded), "Photo Location");
    EXPECT_EQ(query.queryItems().size(), 2);
  }
  // A value with query characters in it stays inside the one key.
  const QUrlQuery query(QUrl(link.address("48.8&z=3#x, 2")).query());
  EXPECT_EQ(query.queryItems().size(), 2);
  EXPECT_EQ(query.queryItemValue("ll", QUrl::FullyDecoded), "48.8&z=3#x,2");
}

class InspectorTest : public PanelTest {
 protected:
  QQuickItem* inspect(const QVariantMap& file, const QVariantMap& catalog) {
    return make("FileInspector", {{"file", file}, {"catalog", catalog}}, 360, 760);
  }
  QString row(const QString& label) { return text("inspectorRow:" + label, "value"); }

  // The names of the shown items whose object name starts with `prefix`, top to bottom.
  QStringList shownInOrder(const QString& prefix) {
    std::vector<std::pair<qreal, QString>> found;
    collect(window()->contentItem(), prefix, found);
    std::sort(found.begin(), found.end());
    QStringList names;
    for (const auto& [y, name] : found) names << name.mid(prefix.size());
    return names;
  }

 private:
  static void collect(QQuickItem* item, const QString& prefix, std::vector<std::pair<qreal, QString>>& out) {
    if (!item->isVisible()) return;
    if (item->objectName().startsWith(prefix)) out.emplace_back(item->mapToScene({0, 0}).y(), item->objectName());
    for (QQuickItem* child : item->childItems()) collect(child, prefix, out);
  }
};

TEST_F(InspectorTest, AFileAFolderAndAHiddenFileShowTheirRows) {
  removeAllCatalogs();
  TempDir temp;
  const fs::path root = temp.path() / "Desk";
  writeFile(root / "Docs" / "report.txt", std::string(1234, 'r'));
  fs::create_directories(root / "Empty");
  writeFile(root / ".secret.txt", "psst");
  const std::string tags = "Red,Projects";
  ASSERT_EQ(::setxattr((root / "Docs" / "report.txt").c_str(), "user.xdg.tags", tags.data(), tags.size(), 0), 0);
  ScanOptions options;
  options.includeHidden = true;
  options.hashes = true;
  options.metadata = false;
  options.thumbnails = false;
  const Catalog c = scanFolder(root, "Desk", options);
  const FileRecord report = fileAt(c.id, "Docs/report.txt");

  // Nothing selected.
  inspect({}, catalogMap(c.id));
  EXPECT_TRUE(visible("inspectorEmpty"));
  EXPECT_EQ(text("inspectorEmptyText"),
            "Select a file or folder to see its details, tags, media information and thumbnail.");
  EXPECT_FALSE(visible("inspectorScroller"));

  // A file: its rows in order, each as its rule says.
  inspect(fileMap(report), catalogMap(c.id));
  EXPECT_FALSE(visible("inspectorEmpty"));
  EXPECT_EQ(text("inspectorName"), "report.txt");
  EXPECT_EQ(item("inspectorKind")->property("kind").toString(), QString::fromStdString(std::string(report.kindName())));
  EXPECT_EQ(shownInOrder("inspectorRow:"),
            QStringList({"Size", "Modified", "Created", "Catalog", "Path", "Type (UTI)", "SHA-256"}));
  EXPECT_EQ(row("Size"), QString::fromStdString(Fmt::size(1234) + " (" + Fmt::count(1234) + " bytes)"));
  EXPECT_EQ(row("Modified"), QString::fromStdString(Fmt::date(report.modified)));
  EXPECT_EQ(row("Created"), QString::fromStdString(Fmt::date(report.created)));
  EXPECT_EQ(row("Catalog"), "Desk");
  EXPECT_EQ(row("Path"), "Docs/report.txt");
  EXPECT_EQ(row("Type (UTI)"), "text/plain");
  EXPECT_EQ(row("SHA-256").size(), 64);
  EXPECT_EQ(row("SHA-256"), QString::fromStdString(report.sha256));
  EXPECT_FALSE(visible("hiddenChip"));
  EXPECT_TRUE(visible("inspectorTags"));
  EXPECT_EQ(item("inspectorTags")->property("tags").toStringList(), QStringList({"Red", "Projects"}));
  EXPECT_FALSE(visible("mediaDetails"));
  EXPECT_FALSE(visible("showMapButton"));
  EXPECT_FALSE(visible("inspectorPicture"));
  EXPECT_TRUE(visible("inspectorTile"));

  // Copy Path puts the full path on the clipboard, the drive being connected.
  QGuiApplication::clipboard()->clear();
  click("inspectorCopyPath");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString((root / "Docs" / "report.txt").string()));
  EXPECT_EQ(model().toast(), QStringLiteral("Path copied to the clipboard"));

  // Without its catalog the row of the catalog's name goes.
  inspect(fileMap(report), {});
  EXPECT_FALSE(visible("inspectorRow:Catalog"));

  // A folder with nothing in it: its size with its item count, and no checksum.
  inspect(fileMap(fileAt(c.id, "Empty")), catalogMap(c.id));
  EXPECT_EQ(row("Size"), QString::fromStdString(Fmt::size(0)) + " in 0 items");
  EXPECT_FALSE(visible("inspectorRow:SHA-256"));
  EXPECT_FALSE(visible("inspectorTags"));

  // A hidden file says so.
  inspect(fileMap(fileAt(c.id, ".secret.txt")), catalogMap(c.id));
  EXPECT_TRUE(visible("hiddenChip"));
  EXPECT_EQ(row("Size"), QString::fromStdString(Fmt::size(4) + " (4 bytes)"));
}

TEST_F(InspectorTest, MediaDetailsComeInKeyOrderWithTheMapOnlyForALocation) {
  REQUIRE_TOOLS("convert", "exiftool");
  removeAllCatalogs();
  TempDir temp;
  const fs::path root = temp.path() / "Card";
  fs::create_directories(root);
  ASSERT_TRUE(run("convert -size 160x100 xc:red " + shellQuote((root / "photo.jpg").string())));
  ASSERT_TRUE(exiftool((root / "photo.jpg").string(),
                       "-Make=Canon -Model='EOS R5' -GPSLatitude=48.8584 -GPSLatitudeRef=N "
                       "-GPSLongitude=2.2945 -GPSLongitudeRef=E"));
  ASSERT_TRUE(run("convert -size 160x100 xc:blue " + shellQuote((root / "plain.jpg").string())));
  ScanOptions options;
  options.metadata = true;
  options.thumbnails = true;
  const Catalog c = scanFolder(root, "Card", options);

  const FileRecord photo = fileAt(c.id, "photo.jpg");
  ASSERT_TRUE(photo.meta.count("GPS"));
  inspect(fileMap(photo), catalogMap(c.id));
  ASSERT_TRUE(visible("mediaDetails"));
  QStringList keys;
  for (const auto& [key, value] : photo.meta) keys << QString::fromStdString(key);
  QStringList sorted = keys;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(keys, sorted);
  EXPECT_GE(keys.size(), 3);
  EXPECT_EQ(shownInOrder("mediaRow:"), keys);
  EXPECT_EQ(text("mediaRow:Camera", "value"), "Canon EOS R5");
  EXPECT_EQ(text("mediaRow:GPS", "value"), QString::fromStdString(photo.meta.at("GPS")));
  EXPECT_TRUE(visible("showMapButton"));
  // Its thumbnail stands in for the tile.
  EXPECT_TRUE(waitUntil([&] { return visible("inspectorPicture"); }, 5000));
  EXPECT_FALSE(visible("inspectorTile"));

  const FileRecord plain = fileAt(c.id, "plain.jpg");
  ASSERT_FALSE(plain.meta.count("GPS"));
  inspect(fileMap(plain), catalogMap(c.id));
  EXPECT_FALSE(visible("showMapButton"));
  EXPECT_FALSE(visible("mediaRow:GPS"));
}

TEST_F(InspectorTest, ALabelShowsAsARowAndADotWhenThereAreNoTags) {
  removeAllCatalogs();
  model().loadSampleData();
  std::optional<FileRecord> labelled;
  for (const Catalog& c : model().catalogs()) {
    for (const FileRecord& f : model().store()->allFiles(c.id))
      if (f.label >= 1 && f.tags.empty()) labelled = f;
    if (labelled) break;
  }
  ASSERT_TRUE(labelled.has_value());
  inspect(fileMap(*labelled), catalogMap(labelled->catalogID));
  EXPECT_EQ(row("Label"), QString::fromStdString(std::string(FinderLabel::name(labelled->label))));
  EXPECT_TRUE(visible("inspectorTags"));
  EXPECT_TRUE(visible("labelDot"));

  // The sample's drive is not there: Open and Reveal explain instead of failing.
  click("inspectorOpen");
  ASSERT_TRUE(model().alert().has_value());
  EXPECT_EQ(model().alert()->title, "Drive Offline");
  EXPECT_EQ(model().alert()->message, model().offlineMessage(qint64(labelled->catalogID)));
  model().dismissAlert();
  click("inspectorReveal");
  ASSERT_TRUE(model().alert().has_value());
  EXPECT_EQ(model().alert()->title, "Drive Offline");
  model().dismissAlert();
}

TEST_F(InspectorTest, TheFileMenuCopiesThePathShowsTheFileInTheBrowserAndReportsAGoneFile) {
  removeAllCatalogs();
  TempDir temp;
  const fs::path root = temp.path() / "Desk";
  writeFile(root / "Docs" / "report.txt", "report");
  writeFile(root / "Docs" / "draft.txt", "draft");
  ScanOptions options;
  options.metadata = false;
  options.thumbnails = false;
  const Catalog c = scanFolder(root, "Desk", options);
  const FileRecord report = fileAt(c.id, "Docs/report.txt");

  QObject* menu = makeObject("FileContextMenu", {});
  ASSERT_NE(menu, nullptr);
  auto openFor = [&](const FileRecord& file) {
    QMetaObject::invokeMethod(menu, "openFor", Q_ARG(QVariant, QVariant::fromValue<qint64>(file.id)));
    ASSERT_TRUE(waitUntil([&] { return menu->property("opened").toBool(); }, 2000));
  };

  openFor(report);
  EXPECT_EQ(shownInOrder("fileMenu"), QStringList({"Open", "Reveal", "CopyPath", "ShowInBrowser"}));
  QGuiApplication::clipboard()->clear();
  click("fileMenuCopyPath");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString((root / "Docs" / "report.txt").string()));

  model().setSection(AppSection::search);
  model().setSelectedCatalogID(std::nullopt);
  openFor(report);
  click("fileMenuShowInBrowser");
  EXPECT_EQ(model().section(), AppSection::browse);
  EXPECT_EQ(model().selectedCatalogID(), c.id);
  ASSERT_TRUE(model().pendingRevealFile().has_value());
  EXPECT_EQ(model().pendingRevealFile()->id, report.id);
  model().takePendingRevealFile();

  // A file gone from the disk since the scan is reported, not opened.
  fs::remove(root / "Docs" / "draft.txt");
  openFor(fileAt(c.id, "Docs/draft.txt"));
  click("fileMenuReveal");
  ASSERT_TRUE(model().alert().has_value());
  EXPECT_EQ(model().alert()->title, "Item Not Found");
  EXPECT_TRUE(model().alert()->message.startsWith(QStringLiteral("\u201Cdraft.txt\u201D is no longer")));
  model().dismissAlert();
  openFor(fileAt(c.id, "Docs/draft.txt"));
  click("fileMenuOpen");
  ASSERT_TRUE(model().alert().has_value());
  EXPECT_EQ(model().alert()->title, "Item Not Found");
  model().dismissAlert();
}

}  // namespace
}  // namespace orrelin::testing
