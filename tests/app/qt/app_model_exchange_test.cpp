// The exchange actions through the application state, with answered panels, on real trees, real files and
// a real database: what each panel proposes, where the result lands, what the user is told, and that a
// cancelled panel or a bad file changes nothing.
#include "app/qt/app_model.h"

#include <nlohmann/json.hpp>

#include <regex>

#include "app/watched_catalogs.h"
#include "app_fixture.h"
#include "exchange/exporter.h"
#include "exchange/sample_data.h"
#include "search/qt/report_panes.h"
#include "store/fmt.h"

namespace orrelin {
namespace {

using testing::AppModelTest;
using testing::readFile;
using testing::writeFile;
using Answer = Dialogs::Answer;
using Kind = Dialogs::Request::Kind;
namespace fs = std::filesystem;

class AppExchangeTest : public AppModelTest {
 protected:
  AppExchangeTest() {
    // Showing a result in the file manager must find no desktop to open one on.
    m_env.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (m_temp.path() / "no-bus").string());
    m_env.set("DISPLAY", std::nullopt);
    m_env.set("WAYLAND_DISPLAY", std::nullopt);
  }

  // A folder of the test's own where the panels are answered.
  fs::path out(const std::string& name) {
    fs::path folder = m_temp.path() / "out" / name;
    fs::create_directories(folder);
    return folder;
  }

  // The names of the entries of `folder`.
  static std::vector<std::string> entries(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  int64_t recordCount(const std::vector<Catalog>& catalogs) {
    int64_t count = 0;
    for (const Catalog& c : catalogs) count += static_cast<int64_t>(model->store()->allFiles(c.id).size());
    return count;
  }

  std::vector<Catalog> catalogsNamed(std::initializer_list<const char*> names) {
    std::vector<Catalog> list;
    for (const char* name : names)
      for (const Catalog& c : model->catalogs())
        if (c.name == name) list.push_back(c);
    return list;
  }
};

TEST_F(AppExchangeTest, CatalogExportsProposeANameAndSayHowManyRecordsWentOut) {
  makeModel();
  model->exportCSV(std::vector<Catalog>{});
  EXPECT_EQ(alertTitle(), "Nothing to Export");
  EXPECT_EQ(alertMessage(), "Choose at least one catalog first.");
  EXPECT_TRUE(requests.empty());
  model->dismissAlert();

  const int64_t photos = scan(makeTree("Photos", {"a.jpg", "b, \"c\".jpg", "trip/d.jpg"}), "Photos");
  const int64_t music = scan(makeTree("Music", {"x.mp3"}), "Music");

  // One catalog: its name is proposed, in the home folder at first. Cancelling writes and says nothing.
  model->exportCSV(std::vector<Catalog>{get(photos)});
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].kind, Kind::savePanel);
  EXPECT_EQ(requests[0].initial, "Photos.csv");
  EXPECT_EQ(requests[0].extensions, QStringList{"csv"});
  EXPECT_EQ(requests[0].directory, m_temp.path() / "home");
  EXPECT_FALSE(model->toast().has_value());

  const fs::path csv = out("csv") / "photos.csv";
  answer(Answer::withPath(csv));
  model->exportCSV(QVariantList{QVariant::fromValue<qint64>(photos)});
  EXPECT_EQ(recordCount({get(photos)}), 4);  // Three files and the folder "trip".
  EXPECT_EQ(toast(), "Exported 4 records to CSV");
  const std::string text = readFile(csv);
  EXPECT_TRUE(text.starts_with("Catalog,Path,Name,Folder,Kind,"));
  EXPECT_NE(text.find("\"b, \"\"c\"\".jpg\""), std::string::npos);
  EXPECT_FALSE(model->hasAlert());

  // Several catalogs, chosen by id: the listing's order, the joint name, and the folder chosen last.
  const fs::path json = out("json") / "both.json";
  answer(Answer::withPath(json));
  model->exportJSON(QVariantList{QVariant::fromValue<qint64>(photos), QVariant::fromValue<qint64>(music),
                                 QVariant::fromValue<qint64>(999)});
  EXPECT_EQ(requests.back().initial, "TVRL Orrelin Catalogs.json");
  EXPECT_EQ(requests.back().directory, csv.parent_path());
  const int64_t records = recordCount({get(music), get(photos)});
  EXPECT_EQ(toast(), "Exported " + QString::fromStdString(Fmt::count(records)) + " records to JSON");
  const nlohmann::json archive = nlohmann::json::parse(readFile(json));
  ASSERT_EQ(archive["catalogs"].size(), 2u);
  EXPECT_EQ(archive["catalogs"][0]["name"], "Music");
  EXPECT_EQ(archive["catalogs"][1]["name"], "Photos");

  // A file that cannot be written: the alert, no toast, and nothing left behind.
  model->dismissAlert();
  model->flash("before");
  answer(Answer::withPath(m_temp.path() / "no such folder" / "x.json"));
  model->exportJSON(std::vector<Catalog>{get(music)});
  EXPECT_EQ(alertTitle(), "Export Failed");
  EXPECT_FALSE(alertMessage().isEmpty());
  EXPECT_EQ(toast(), "before");
  EXPECT_FALSE(fs::exists(m_temp.path() / "no such folder"));
}

TEST_F(AppExchangeTest, SearchAndReportHitsExportAsResultsAndRows) {
  makeModel();
  const fs::path root = makeTree("Drive", {"one.txt", "two.txt", "empty/.keep"});
  fs::remove(root / "empty/.keep");
  const int64_t id = scan(root, "Drive");

  SearchQuery query;
  query.text = "txt";
  const std::vector<SearchHit> hits = model->store()->search(query);
  ASSERT_EQ(hits.size(), 2u);
  const fs::path json = out("search") / "found.json";
  answer(Answer::withPath(json));
  model->exportSearchHits(hits, /*csv=*/false);
  EXPECT_EQ(requests.back().initial, "Search Results.json");
  EXPECT_EQ(requests.back().extensions, QStringList{"json"});
  EXPECT_EQ(toast(), "Exported 2 results");
  const nlohmann::json results = nlohmann::json::parse(readFile(json))["results"];
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results[0]["catalog"], "Drive");

  // A report pane's rows, as the pane's button hands them over.
  EmptyFoldersPane pane;
  pane.setStore(model->store().get());
  pane.setIds({id});
  pane.find();
  ASSERT_EQ(pane.hits().size(), 1u);
  const fs::path csv = out("report") / "empty.csv";
  answer(Answer::withPath(csv));
  model->exportReport(&pane);
  EXPECT_EQ(requests.back().initial, "Report.csv");
  EXPECT_EQ(toast(), "Exported 1 rows");
  EXPECT_NE(readFile(csv).find("\r\nDrive,empty,empty,Yes,Folder,"), std::string::npos);

  // Anything but a report pane is ignored; a cancelled panel exports nothing.
  const size_t asked = requests.size();
  model->exportReport(model.get());
  EXPECT_EQ(requests.size(), asked);
  model->exportSearchHits(hits, /*csv=*/true);
  EXPECT_EQ(requests.back().initial, "Search Results.csv");
  EXPECT_EQ(toast(), "Exported 1 rows");
}

TEST_F(AppExchangeTest, ImportAddsTheCatalogsSelectsTheNewestAndABadFileChangesNothing) {
  makeModel();
  const int64_t original = scan(makeTree("Archive", {"docs/a.pdf", "docs/b.pdf", "c.txt"}), "Archive");
  const fs::path json = out("in") / "archive.json";
  answer(Answer::withPath(json));
  model->exportJSON(std::vector<Catalog>{get(original)});

  // Cancelled: nothing asked of the store, nothing said.
  const int version = model->dataVersion();
  model->importCatalogs();
  EXPECT_EQ(requests.back().kind, Kind::openPanel);
  EXPECT_EQ(requests.back().title, "Choose a catalog exported from TVRL Orrelin (JSON or CSV).");
  EXPECT_EQ(requests.back().extensions, (QStringList{"json", "csv"}));
  EXPECT_FALSE(requests.back().folders);
  EXPECT_EQ(model->dataVersion(), version);

  // The JSON archive comes back under its own name, as the newest catalog, which is selected.
  model->setSelectedCatalogID(original);
  answer(Answer::withPath(json));
  model->importCatalogs();
  ASSERT_EQ(model->catalogs().size(), 2u);
  const int64_t copy = std::max(model->catalogs()[0].id, model->catalogs()[1].id);
  EXPECT_EQ(model->selectedCatalogID(), copy);
  EXPECT_EQ(get(copy).name, "Archive");
  EXPECT_EQ(get(copy).fileCount, get(original).fileCount);
  EXPECT_EQ(toast(), "Imported 1 catalog");
  EXPECT_GT(model->dataVersion(), version);

  // A CSV with two catalogs, read as CSV whatever the case of its extension.
  const fs::path csv = out("in") / "two.CSV";
  writeFile(
      csv,
      "Catalog,Path,Name,Folder,Kind,Size\r\nLeft,a.txt,a.txt,No,Other,5\r\nRight,b/c.txt,c.txt,No,Other,7");
  answer(Answer::withPath(csv));
  model->importCatalogs();
  EXPECT_EQ(toast(), "Imported 2 catalogs");
  ASSERT_EQ(catalogsNamed({"Left (Imported)", "Right (Imported)"}).size(), 2u);
  EXPECT_EQ(model->selectedCatalog()->name, "Right (Imported)");
  EXPECT_EQ(model->selectedCatalog()->totalSize, 7);

  // Files that are no export: the alert in the reader's words, and the catalogs and selection as they were.
  const std::vector<Catalog> before = model->catalogs();
  const std::optional<int64_t> selected = model->selectedCatalogID();
  model->flash("before");
  struct Bad {
    const char* name;
    const char* text;
    std::string message;
  } bad[] = {
      {"shape.json", "{\"catalogs\": 5}", std::string(Exporter::kNotJSONExport)},
      {"list.json", "[1, 2]", std::string(Exporter::kNotJSONExport)},
      {"columns.csv", "Name,Size\r\nx,1", std::string(Exporter::kNotCSVExport)},
      {"notes.txt", "not json at all", ""},
  };
  for (const Bad& b : bad) {
    SCOPED_TRACE(b.name);
    model->dismissAlert();
    writeFile(out("bad") / b.name, b.text);
    answer(Answer::withPath(out("bad") / b.name));
    model->importCatalogs();
    EXPECT_EQ(alertTitle(), "Import Failed");
    if (!b.message.empty()) {
      EXPECT_EQ(alertMessage().toStdString(), b.message);
    }
    EXPECT_FALSE(alertMessage().isEmpty());
    EXPECT_EQ(model->store()->catalogs(), before);
    EXPECT_EQ(model->selectedCatalogID(), selected);
    EXPECT_EQ(toast(), "before");
  }
}

TEST_F(AppExchangeTest, TheClaudeExportLandsInANewFolderInsideTheChosenOne) {
  makeModel();
  const int64_t id = scan(makeTree("Studio", {"mix.wav", "notes/todo.txt"}), "Studio");
  model->exportForClaude(get(id));  // Cancelled.
  EXPECT_EQ(requests.back().kind, Kind::openPanel);
  EXPECT_TRUE(requests.back().folders);
  EXPECT_EQ(requests.back().buttons, QStringList{"Export Here"});
  EXPECT_EQ(requests.back().title,
            "Choose where to save the Claude export. A new folder will be created inside it.");
  const fs::path parent = out("claude");
  EXPECT_TRUE(entries(parent).empty());

  // Twice into the same folder: two bundles, the second never written over the first.
  for (int i = 0; i < 2; ++i) {
    answer(Answer::withPath(parent));
    model->exportForClaude(qint64{id});
    EXPECT_EQ(toast(), "Claude export ready: SUMMARY.md, files.jsonl, catalog.xml, README.md");
  }
  const std::vector<std::string> bundles = entries(parent);
  ASSERT_EQ(bundles.size(), 2u);
  const std::regex name("Studio \u2014 Claude Export \\d{4}-\\d{2}-\\d{2} \\d{4}( 2)?");
  for (const std::string& bundle : bundles) {
    EXPECT_TRUE(std::regex_match(bundle, name)) << bundle;
    EXPECT_EQ(entries(parent / bundle),
              (std::vector<std::string>{"README.md", "SUMMARY.md", "catalog.xml", "files.jsonl",
                                        "organization-plan.template.json"}));
  }
  EXPECT_NE(readFile(parent / bundles[0] / "files.jsonl").find("\"path\":\"notes/todo.txt\""),
            std::string::npos);
  EXPECT_EQ(requests.back().directory, parent);

  // A chosen "folder" that is a file: the alert, and no toast.
  model->flash("before");
  writeFile(parent / "plain", "x");
  answer(Answer::withPath(parent / "plain"));
  model->exportForClaude(get(id));
  EXPECT_EQ(alertTitle(), "Export Failed");
  EXPECT_EQ(toast(), "before");
}

TEST_F(AppExchangeTest, TheWebExportReturnsTheIndexOfANewSiteFolder) {
  makeModel();
  const int64_t zulu = scan(makeTree("Zulu", {"z.txt"}), "Zulu");
  const int64_t alpha = scan(makeTree("Alpha", {"a.txt"}), "Alpha");
  WebExporter::Options options;
  options.title = "Tapes / Reels";
  EXPECT_EQ(model->exportWeb({}, options), std::nullopt);
  EXPECT_EQ(alertTitle(), "Nothing to Export");
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(model->exportWeb({get(alpha)}, options), std::nullopt);  // Cancelled.
  EXPECT_EQ(requests.back().buttons, QStringList{"Generate Here"});
  EXPECT_EQ(requests.back().title,
            "Choose where to save the inventory web site. A new folder will be created inside it.");
  EXPECT_TRUE(requests.back().folders);

  // The title names the folder, a "/" in it made harmless; the catalogs go in the listing's order.
  const fs::path parent = out("web");
  answer(Answer::withPath(parent));
  const QString index = model->exportWeb(
      QVariantList{QVariant::fromValue<qint64>(zulu), QVariant::fromValue<qint64>(alpha)}, "Tapes / Reels",
      /*includeThumbnails=*/true, /*includeHidden=*/false);
  EXPECT_EQ(toast(), "Inventory web site generated");
  ASSERT_EQ(entries(parent).size(), 1u);
  const std::string folder = entries(parent)[0];
  EXPECT_TRUE(std::regex_match(folder, std::regex("Tapes - Reels \\d{4}-\\d{2}-\\d{2} \\d{4}"))) << folder;
  EXPECT_EQ(index.toStdString(), (parent / folder / "index.html").string());
  const std::string page = readFile(parent / folder / "index.html");
  const size_t a = page.find("data/cat-" + std::to_string(alpha) + ".js");
  const size_t z = page.find("data/cat-" + std::to_string(zulu) + ".js");
  ASSERT_NE(a, std::string::npos);
  ASSERT_NE(z, std::string::npos);
  EXPECT_LT(a, z);
  EXPECT_NE(page.find("<title>Tapes / Reels</title>"), std::string::npos);

  // An empty title gives the default name; the same minute gives a second folder beside the first.
  for (int i = 0; i < 2; ++i) {
    answer(Answer::withPath(parent));
    EXPECT_TRUE(model->exportWeb({get(zulu)}, WebExporter::Options{"", false, false}).has_value());
  }
  const std::vector<std::string> folders = entries(parent);
  ASSERT_EQ(folders.size(), 3u);
  EXPECT_TRUE(std::regex_match(folders[0], std::regex("Drive Inventory \\d{4}-\\d{2}-\\d{2} \\d{4}")));
  EXPECT_TRUE(std::regex_match(folders[1], std::regex("Drive Inventory \\d{4}-\\d{2}-\\d{2} \\d{4}( 2)?")));

  // A place that cannot hold a folder: the alert, and no result.
  writeFile(parent / "plain", "x");
  answer(Answer::withPath(parent / "plain"));
  EXPECT_EQ(model->exportWeb({get(zulu)}, options), std::nullopt);
  EXPECT_EQ(alertTitle(), "Web Export Failed");
}

TEST_F(AppExchangeTest, SampleDataLoadsSelectedAndLeavesOnlyWhatIsNotSample) {
  makeModel();
  const int64_t own = scan(makeTree("Own Drive", {"a"}), "Own Drive");
  model->setSection(AppSection::stats);
  model->loadSampleData();
  EXPECT_EQ(toast(), "Sample cartridges loaded");
  EXPECT_EQ(model->section(), AppSection::browse);
  ASSERT_EQ(model->catalogs().size(), 5u);
  std::optional<Catalog> firstSample;
  for (const Catalog& c : model->catalogs())
    if (c.isSample && !firstSample) firstSample = c;
  ASSERT_TRUE(firstSample);
  EXPECT_EQ(model->selectedCatalogID(), firstSample->id);
  EXPECT_EQ(firstSample->name, "DJ Crates SSD");  // The first by name, ignoring case.
  EXPECT_EQ(model->groups().size(), 2u);

  // The user moved a real catalog into a sample group, and switched a sample cartridge to auto-update.
  std::optional<int64_t> studio;
  for (const CatalogGroup& g : model->groups())
    if (g.name == SampleData::kStudioGroup) studio = g.id;
  ASSERT_TRUE(studio);
  model->moveCatalog(get(own), studio);
  model->toggleWatch(*firstSample);
  ASSERT_TRUE(WatchedCatalogs::read().count(model->selectedCatalogID().value()));

  // Removal keeps that group and the real catalog, which the selection moves to, and forgets the watch.
  model->removeSampleData();
  EXPECT_EQ(toast(), "Sample data removed");
  ASSERT_EQ(model->catalogs().size(), 1u);
  EXPECT_EQ(model->selectedCatalogID(), own);
  ASSERT_EQ(model->groups().size(), 1u);
  EXPECT_EQ(model->groups()[0].name, SampleData::kStudioGroup);
  EXPECT_TRUE(WatchedCatalogs::read().empty());
  EXPECT_TRUE(model->watchedIDs().empty());

  const int version = model->dataVersion();
  model->removeSampleData();
  EXPECT_EQ(toast(), "There is no sample data to remove");
  EXPECT_EQ(model->dataVersion(), version);
}

TEST_F(AppExchangeTest, SampleDataFailuresAreShownUnderTheirTitles) {
  makeModel();
  model->store()->db().exec(
      "CREATE TRIGGER no_new_catalogs BEFORE INSERT ON catalogs BEGIN SELECT RAISE(ABORT, 'locked'); END;");
  model->loadSampleData();
  EXPECT_EQ(alertTitle(), "Could Not Load Sample Data");
  EXPECT_EQ(alertMessage(), "Database error: locked");
  EXPECT_FALSE(model->toast().has_value());
  EXPECT_EQ(model->section(), AppSection::browse);

  model->store()->db().exec("DROP TRIGGER no_new_catalogs;");
  model->loadSampleData();
  model->store()->db().exec(
      "CREATE TRIGGER no_deletes BEFORE DELETE ON catalogs BEGIN SELECT RAISE(ABORT, 'kept'); END;");
  const int version = model->dataVersion();
  model->removeSampleData();
  EXPECT_EQ(alertTitle(), "Could Not Remove Sample Data");
  EXPECT_EQ(alertMessage(), "Database error: kept");
  EXPECT_EQ(model->dataVersion(), version);
  EXPECT_EQ(model->catalogs().size(), 4u);
}

TEST_F(AppExchangeTest, LaunchWithSampleLoadsItOnceBeforeTheOtherArguments) {
  makeModel();
  model->applyLaunchArguments({"--sample", "--section=search", "--select=photo"});
  ASSERT_EQ(model->catalogs().size(), 4u);
  EXPECT_EQ(model->section(), AppSection::search);
  EXPECT_EQ(model->selectedCatalog()->name, "Photo Vault");

  model->applyLaunchArguments({"--sample"});
  EXPECT_EQ(model->store()->catalogs().size(), 4u);
  makeModel().applyLaunchArguments({"--sample"});
  EXPECT_EQ(model->store()->catalogs().size(), 4u);

  // A look-alike argument is not the flag.
  model->removeSampleData();
  model->applyLaunchArguments({"--samples", "--sample=yes"});
  EXPECT_TRUE(model->store()->catalogs().empty());
}

TEST_F(AppExchangeTest, WithoutADatabaseNothingIsAsked) {
  fs::create_directories(m_temp.path() / "data/TVRL Orrelin/Catalogs.sqlite");
  makeModel();
  ASSERT_FALSE(model->hasStore());
  model->dismissAlert();
  model->exportCSV(QVariantList{1});
  model->exportJSON(std::vector<Catalog>{Catalog{}});
  model->importCatalogs();
  model->exportForClaude(Catalog{});
  EXPECT_EQ(model->exportWeb({Catalog{}}, {}), std::nullopt);
  model->loadSampleData();
  model->removeSampleData();
  model->applyLaunchArguments({"--sample"});
  EXPECT_TRUE(requests.empty());
  EXPECT_FALSE(model->hasAlert());
  EXPECT_FALSE(model->toast().has_value());
}

}  // namespace
}  // namespace orrelin
