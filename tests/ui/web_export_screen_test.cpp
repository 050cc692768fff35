// The Web & Export screen driven as a user drives it: which catalogs are chosen and the count line, a real
// inventory site generated into a temporary folder, a CSV export of the chosen catalogs, and a JSON export
// brought back in through the Import card. The file panels are answered through Dialogs.
#include <QQmlProperty>

#include "sidebar_support.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class WebExportScreenTest : public SidebarTest {
 protected:
  void SetUp() override {
    SidebarTest::SetUp();
    removeAllCatalogs();
  }
  void TearDown() override {
    model().setSection(AppSection::browse);
    model().dismissAlert();
    SidebarTest::TearDown();
  }

  void showWeb() {
    model().setSection(AppSection::web);
    shown(QStringLiteral("webExportView"));
    settle();
  }
  QString countLine() {
    return textOf(QStringLiteral("webCatalogList"), QStringLiteral("webSelectionCount"));
  }
  QString checkSymbol(int row) {
    QObject* icon = findNamed(shown("webCatalog_" + QString::number(row)), QStringLiteral("checkIcon"));
    return icon ? icon->property("symbol").toString() : QString();
  }

  // Answers every file panel with `path`, recording what was asked.
  void answerPanels(const fs::path& path) {
    Dialogs::setAnswerer([this, path](const Dialogs::Request& request) {
      m_asked.push_back(request);
      return path.empty() ? Dialogs::Answer::cancel() : Dialogs::Answer::withPath(path);
    });
  }

  std::vector<Dialogs::Request> m_asked;
};

TEST_F(WebExportScreenTest, ChoosingCatalogsAndTheCountLine) {
  showWeb();
  EXPECT_EQ(textOf(QStringLiteral("webExportEmpty"), QStringLiteral("emptyStateTitle")),
            "Publish your drive inventory");

  // The sample arrives while another screen is up; the first visit chooses every catalog.
  model().loadSampleData();
  showWeb();
  EXPECT_EQ(countLine(), "4 of 4 selected");
  EXPECT_EQ(checkSymbol(0), "checkmark.square.fill");

  click(QStringLiteral("webCatalog_0"));
  EXPECT_EQ(countLine(), "3 of 4 selected");
  EXPECT_EQ(checkSymbol(0), "square");
  EXPECT_EQ(checkSymbol(1), "checkmark.square.fill");

  // With nothing chosen, each export says so instead of asking where to write.
  click(QStringLiteral("webSelectNone"));
  EXPECT_EQ(countLine(), "0 of 4 selected");
  answerPanels({});
  for (const char* button : {"generateSiteButton", "exportCSVButton", "exportJSONButton"}) {
    SCOPED_TRACE(button);
    model().dismissAlert();
    click(QString::fromLatin1(button));
    ASSERT_TRUE(model().hasAlert());
    EXPECT_EQ(model().alert()->title, "Nothing to Export");
    EXPECT_EQ(model().alert()->message, "Choose at least one catalog first.");
  }
  model().dismissAlert();
  EXPECT_TRUE(m_asked.empty());

  // Coming back with nothing chosen chooses all again; a choice of some is kept.
  model().setSection(AppSection::stats);
  showWeb();
  EXPECT_EQ(countLine(), "4 of 4 selected");
  click(QStringLiteral("webSelectNone"));
  click(QStringLiteral("webCatalog_2"));
  model().setSection(AppSection::browse);
  showWeb();
  EXPECT_EQ(countLine(), "1 of 4 selected");
  EXPECT_EQ(checkSymbol(2), "checkmark.square.fill");
  click(QStringLiteral("webSelectAll"));
  EXPECT_EQ(countLine(), "4 of 4 selected");

  // A chosen catalog that is deleted leaves the count.
  model().store()->deleteCatalog(model().catalogs().front().id, model().thumbnailsPath());
  model().reload();
  settle();
  EXPECT_EQ(countLine(), "3 of 3 selected");
}

TEST_F(WebExportScreenTest, GeneratesASiteIntoTheChosenFolderAndKeepsItsButtons) {
  TempDir source, out;
  makeTree(source.path());
  scanFolder(source.path(), "Shed Drive");
  showWeb();
  EXPECT_EQ(countLine(), "1 of 1 selected");
  EXPECT_FALSE(item(QStringLiteral("generatedPanel"))->isVisible());

  // The title typed here names the site and its folder.
  QQuickItem* field = shown(QStringLiteral("siteTitleField"));
  EXPECT_EQ(field->property("text").toString(), "Drive Inventory");
  field->setProperty("text", QString());
  click(field);
  type(QStringLiteral("Garden Shed"));
  answerPanels(out.path());
  click(QStringLiteral("generateSiteButton"));
  ASSERT_EQ(m_asked.size(), 1u);
  EXPECT_TRUE(m_asked[0].folders);
  ASSERT_TRUE(waitUntil([&] { return item(QStringLiteral("generatedPanel"))->isVisible(); }));

  // Exactly one new folder in the chosen one, holding the site.
  std::vector<fs::path> made;
  for (const auto& entry : fs::directory_iterator(out.path())) made.push_back(entry.path());
  ASSERT_EQ(made.size(), 1u);
  EXPECT_EQ(made[0].filename().string().rfind("Garden Shed", 0), 0u) << made[0];
  ASSERT_TRUE(fs::exists(made[0] / "index.html"));
  EXPECT_NE(readFile(made[0] / "index.html").find("Garden Shed"), std::string::npos);
  const QString line = textOf(QStringLiteral("generatedPanel"), QStringLiteral("generatedLine"));
  EXPECT_EQ(line, "Generated: " + QString::fromStdString(made[0].string()));
  EXPECT_TRUE(shown(QStringLiteral("openInBrowserButton"))->isVisible());
  EXPECT_TRUE(shown(QStringLiteral("showInFinderButton"))->isVisible());

  // A cancelled panel is no new site: the last one stays offered.
  answerPanels({});
  click(QStringLiteral("generateSiteButton"));
  EXPECT_EQ(m_asked.size(), 2u);
  EXPECT_EQ(textOf(QStringLiteral("generatedPanel"), QStringLiteral("generatedLine")), line);

  // The next site goes into a folder of its own, and the line follows it.
  answerPanels(out.path());
  click(QStringLiteral("generateSiteButton"));
  ASSERT_TRUE(waitUntil(
      [&] { return textOf(QStringLiteral("generatedPanel"), QStringLiteral("generatedLine")) != line; }));
  EXPECT_EQ(std::distance(fs::directory_iterator(out.path()), fs::directory_iterator()), 2);
}

TEST_F(WebExportScreenTest, ExportsTheChosenCatalogsAndImportsAnExportBack) {
  TempDir source, out;
  makeTree(source.path());
  const Catalog shed = scanFolder(source.path(), "Shed Drive");
  model().loadSampleData();
  showWeb();
  ASSERT_EQ(countLine(), "5 of 5 selected");

  // Only the scanned catalog: one header row and one row per record, CRLF between them.
  click(QStringLiteral("webSelectNone"));
  int shedRow = -1;
  for (int i = 0; i < static_cast<int>(model().catalogs().size()); ++i)
    if (model().catalogs()[i].id == shed.id) shedRow = i;
  ASSERT_GE(shedRow, 0);
  click("webCatalog_" + QString::number(shedRow));
  ASSERT_EQ(countLine(), "1 of 5 selected");
  const fs::path csv = out.path() / "shed.csv";
  answerPanels(csv);
  click(QStringLiteral("exportCSVButton"));
  ASSERT_TRUE(fs::exists(csv));
  const std::string text = readFile(csv);
  size_t rows = 1;
  for (size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2)) ++rows;
  EXPECT_EQ(rows, 1 + model().store()->allFiles(shed.id).size());
  EXPECT_NE(text.find("Shed Drive"), std::string::npos);
  EXPECT_EQ(text.find("DJ Crates SSD"), std::string::npos);

  // Its JSON export, imported through the Import card, comes back as a new catalog, not yet chosen.
  const fs::path json = out.path() / "shed.json";
  answerPanels(json);
  click(QStringLiteral("exportJSONButton"));
  ASSERT_TRUE(fs::exists(json));
  answerPanels(json);
  click(QStringLiteral("importButton"));
  ASSERT_EQ(model().catalogs().size(), 6u);
  EXPECT_FALSE(model().hasAlert()) << model().alert()->message.toStdString();
  int shedNamed = 0;
  for (const Catalog& c : model().catalogs()) shedNamed += c.name == "Shed Drive";
  EXPECT_EQ(shedNamed, 2);
  settle();
  EXPECT_EQ(countLine(), "1 of 6 selected");
}

}  // namespace
}  // namespace orrelin::testing
