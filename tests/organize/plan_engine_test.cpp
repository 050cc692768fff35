// Tests of plan loading, path containment and the dry run, on real folders.
#include "organize/plan_engine.h"

#include <unistd.h>

#include <fstream>

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::writeFile;

constexpr const char* kBlockedFolder = "Outside the drive \u2014 blocked";
constexpr const char* kBlockedMove = "Path outside the drive \u2014 blocked";
constexpr const char* kTaken = "Destination already exists \u2014 nothing is overwritten";
constexpr const char* kReadyNewParent = "Ready \u2014 parent folder will be created";

class PlanEngineTest : public ::testing::Test {
 protected:
  PlanEngineTest() : m_root((m_temp.path() / "drive").string()) {
    writeFile(path("a.txt"), "a");
    writeFile(path("b.txt"), "b");
    writeFile(path("Docs/report.pdf"), "pdf");
    writeFile(m_temp.path() / "outside/secret.txt", "secret");
    fs::create_symlink(m_temp.path() / "outside", path("escape"));
    fs::create_symlink(path("Docs"), path("DocsLink"));
  }

  std::string path(const std::string& relative) const { return m_root + "/" + relative; }
  std::string outside(const std::string& relative) const { return (m_temp.path() / "outside" / relative).string(); }

  std::vector<PlanStep> run(const std::vector<std::string>& folders, const std::vector<PlanMove>& moves,
                            PlanStep::Kind kind = PlanStep::Kind::move) {
    OrganizationPlan plan;
    plan.newFolders = folders;
    plan.moves = moves;
    return PlanEngine::validate(plan, m_root, kind);
  }

  std::string status(const PlanMove& move) { return run({}, {move}).at(0).status; }

  TempDir m_temp;
  std::string m_root;
};

TEST(PlanLoadTest, KeysAreOptionalUnknownOnesIgnoredAndWrongTypesFail) {
  EXPECT_EQ(PlanEngine::parse("{}"), OrganizationPlan{});
  OrganizationPlan plan = PlanEngine::parse(R"({"format": "something-else", "version": 99, "catalog": "X",
      "extra": {"nested": [1, 2]}, "moves": [{"from": "a", "to": "b", "note": "why"}], "description": null})");
  EXPECT_EQ(plan.format, "something-else");
  EXPECT_EQ(plan.version, 99);
  EXPECT_FALSE(plan.description.has_value());
  EXPECT_FALSE(plan.newFolders.has_value());
  ASSERT_TRUE(plan.moves.has_value());
  EXPECT_EQ(*plan.moves, (std::vector<PlanMove>{{"a", "b"}}));
  EXPECT_EQ(PlanEngine::parse(R"({"version": 1.0})").version, 1);

  const std::string expected =
      "This is not a valid organization plan. Expected JSON like {\"newFolders\": [...], \"moves\": "
      "[{\"from\": \"\u2026\", \"to\": \"\u2026\"}]}. (";
  struct Bad {
    const char* text;
    const char* reason;
  };
  for (const Bad& bad : std::initializer_list<Bad>{
           {R"({"moves": [{"from": "a"}]})", "Move 1 has no \"to\""},
           {R"({"moves": [{"from": "a", "to": "b"}, {"to": "b"}]})", "Move 2 has no \"from\""},
           {R"({"moves": [{"from": "a", "to": 3}]})", "Move 1's \"to\" must be text, not a number"},
           {R"({"moves": {"from": "a", "to": "b"}})", "\"moves\" must be a list of moves, not an object"},
           {R"({"newFolders": "Sorted"})", "\"newFolders\" must be a list of texts, not text"},
           {R"({"newFolders": ["ok", false]})", "Entry 2 of \"newFolders\" must be text, not true or false"},
           {R"({"version": "1"})", "\"version\" must be a whole number, not text"},
           {R"({"version": 1.5})", "\"version\" must be a whole number, not a number"},
           {R"({"description": 7})", "\"description\" must be text, not a number"},
           {R"([])", "The plan must be a JSON object, not a list"},
           {R"({"moves": [)", "parse error"},
           {"", "parse error"},
       }) {
    try {
      PlanEngine::parse(bad.text);
      ADD_FAILURE() << bad.text << " loaded";
    } catch (const ExportError& e) {
      std::string message = e.what();
      EXPECT_EQ(message.rfind(expected, 0), 0u) << message;
      EXPECT_NE(message.find(bad.reason), std::string::npos) << message;
      EXPECT_EQ(message.back(), ')') << message;
      EXPECT_EQ(message.find("[json.exception"), std::string::npos) << message;
    }
  }
}

TEST(PlanLoadTest, ReadsFilesAndPassesReadFailuresOn) {
  TempDir temp;
  writeFile(temp.path() / "plan.json", R"({"newFolders": ["Sorted"], "moves": [{"from": "a", "to": "Sorted/a"}]})");
  OrganizationPlan plan = PlanEngine::load(temp.path() / "plan.json");
  EXPECT_EQ(plan.newFolders, std::vector<std::string>{"Sorted"});
  EXPECT_THROW(PlanEngine::load(temp.path() / "missing.json"), std::system_error);
  EXPECT_THROW(PlanEngine::load(temp.path()), std::system_error);  // A folder is no file to read.

  // Writing leaves absent keys out, and what is written reads back the same.
  EXPECT_EQ(plan.toJSON().dump(), R"({"moves":[{"from":"a","to":"Sorted/a"}],"newFolders":["Sorted"]})");
  plan.description = "Tidy";
  plan.version = 1;
  EXPECT_EQ(OrganizationPlan::fromJSON(plan.toJSON()), plan);
}

TEST_F(PlanEngineTest, ResolveKeepsEveryPathInsideTheRoot) {
  struct Case {
    std::string path;
    std::optional<std::string> expected;
  };
  for (const Case& c : std::vector<Case>{
           {"a.txt", path("a.txt")},
           {"  Docs/report.pdf\n", path("Docs/report.pdf")},
           {"./Docs//report.pdf/", path("Docs/report.pdf")},
           {"Docs/../notes.md", path("notes.md")},
           {"New/Deeper/x", path("New/Deeper/x")},  // Nothing of it exists yet.
           {"~/x", path("~/x")},                    // "~" is an ordinary name.
           {path("b.txt"), path("b.txt")},          // Absolute inside the root.
           {"DocsLink/report.pdf", path("DocsLink/report.pdf")},  // A link that stays inside.
           {"escape", path("escape")},                            // The link itself may be moved.
           {"", std::nullopt},
           {" \t\n", std::nullopt},
           {"\u00A0\u3000", std::nullopt},  // Blanks of other scripts count as blanks.
           {std::string("a\0b", 3), std::nullopt},
           {".", std::nullopt},
           {"Docs/..", std::nullopt},
           {m_root, std::nullopt},
           {"../escape.txt", std::nullopt},
           {"Docs/../../drive2/x", std::nullopt},
           {outside("secret.txt"), std::nullopt},
           {m_root + "2/x", std::nullopt},  // Shares the root's letters, not its folder.
           {"escape/secret.txt", std::nullopt},
           {"escape/new/deeper.txt", std::nullopt},
       }) {
    EXPECT_EQ(PlanEngine::resolve(c.path, m_root), c.expected) << "path: " << c.path;
  }
  // A root given with a trailing slash or dots means the same folder.
  EXPECT_EQ(PlanEngine::resolve("a.txt", m_root + "/./"), path("a.txt"));
}

TEST_F(PlanEngineTest, ResolveAcceptsARootReachedThroughALink) {
  std::string linkedRoot = (m_temp.path() / "via").string();
  fs::create_symlink(m_root, linkedRoot);
  EXPECT_EQ(PlanEngine::resolve("Docs/report.pdf", linkedRoot), linkedRoot + "/Docs/report.pdf");
  EXPECT_EQ(PlanEngine::resolve("escape/secret.txt", linkedRoot), std::nullopt);
}

TEST(PathTest, RelativeAndStandardForms) {
  EXPECT_EQ(PlanEngine::relative("/r/x/y.txt", "/r"), "x/y.txt");
  EXPECT_EQ(PlanEngine::relative("/r/x/../y.txt", "/r/"), "y.txt");
  EXPECT_EQ(PlanEngine::relative("/rx/y.txt", "/r"), "/rx/y.txt");
  EXPECT_EQ(PlanEngine::relative("/r", "/r"), "/r");
  EXPECT_EQ(PlanEngine::relative("/a/b", "/"), "a/b");
  EXPECT_EQ(PlanEngine::standardize("//a/./b/../../../c/"), "/c");
  EXPECT_EQ(PlanEngine::standardize("/.."), "/");
}

TEST_F(PlanEngineTest, FolderSteps) {
  writeFile(path("Docs/Sub/x"), "x");
  auto steps = run({"Sorted/Audio", "Docs", "a.txt", "../Out", "", ".", "DocsLink", "escape/Inner"}, {});
  std::vector<std::pair<bool, std::string>> got;
  for (const PlanStep& s : steps) {
    EXPECT_EQ(s.kind, PlanStep::Kind::folder);
    EXPECT_EQ(s.from, "");
    got.emplace_back(s.ok, s.status);
  }
  EXPECT_EQ(got, (std::vector<std::pair<bool, std::string>>{
                     {true, "Will be created"},
                     {true, "Already exists \u2014 nothing to do"},
                     {false, "A file with this name exists"},
                     {false, kBlockedFolder},
                     {false, kBlockedFolder},
                     {false, kBlockedFolder},
                     {true, "Already exists \u2014 nothing to do"},
                     {false, kBlockedFolder},
                 }));
  EXPECT_EQ(steps[0].to, "Sorted/Audio");  // As the plan wrote it, never normalised.
  EXPECT_TRUE(PlanEngine::validate(OrganizationPlan{}, m_root, PlanStep::Kind::move).empty());
}

TEST_F(PlanEngineTest, MoveVerdictsInTheirOrder) {
  writeFile(path("Docs/Sub/x"), "x");
  writeFile(path("Docsier/y"), "y");
  struct Case {
    PlanMove move;
    const char* status;
  };
  for (const Case& c : std::vector<Case>{
           {{"a.txt", "../escape.txt"}, kBlockedMove},
           {{"../a.txt", "missing/../b.txt"}, kBlockedMove},  // The source is judged first.
           {{"escape/secret.txt", "stolen.txt"}, kBlockedMove},
           {{"a.txt", "escape/a.txt"}, kBlockedMove},
           {{"./a.txt", "a.txt"}, "Source and destination are the same"},
           {{"Docs", "Docs/Sub/Docs"}, "Cannot move a folder inside itself"},
           {{"Docs", "Docsier/Docs"}, "Ready"},  // Same letters, not the same folder.
           {{"nothing.txt", "b2.txt"}, "Source not found"},
           {{"a.txt", "b.txt"}, kTaken},
           {{"a.txt", "Docs"}, kTaken},
           {{"a.txt", "A.TXT"}, "Ready"},  // Case only, on any volume.
           {{"a.txt", "Docs/a.txt"}, "Ready"},
           {{"a.txt", "New/Deeper/a.txt"}, kReadyNewParent},
           {{"escape", "Docs/escape-link"}, "Ready"},  // A link inside the root, moved as itself.
           {{"Docs/../a.txt", "Docs/notes.md"}, "Ready"},
       }) {
    EXPECT_EQ(status(c.move), c.status) << c.move.from << " -> " << c.move.to;
  }
}

TEST_F(PlanEngineTest, CaseOnlyRenameOntoAnotherItemIsTaken) {
  // On a case-sensitive volume "A.txt" can be a different file from "a.txt": moving onto it would replace it.
  writeFile(path("A.txt"), "another");
  EXPECT_EQ(status({"a.txt", "A.txt"}), kTaken);
}

TEST_F(PlanEngineTest, StepsAreJudgedAgainstTheEffectOfEarlierOnes) {
  struct Case {
    const char* name;
    std::vector<std::string> folders;
    std::vector<PlanMove> moves;
    std::vector<std::string> statuses;  // Of the moves.
  };
  for (const Case& c : std::vector<Case>{
           {"into planned folders",
            {"Sorted/Audio"},
            {{"a.txt", "Sorted/Audio/a.txt"}, {"b.txt", "Sorted/Images/b.png"}},
            {"Ready", kReadyNewParent}},
           {"two onto one", {}, {{"a.txt", "c.txt"}, {"b.txt", "c.txt"}}, {"Ready", kTaken}},
           {"swap without a free name", {}, {{"a.txt", "b.txt"}, {"b.txt", "a.txt"}}, {kTaken, kTaken}},
           {"into a vacated place", {}, {{"b.txt", "c.txt"}, {"a.txt", "b.txt"}}, {"Ready", "Ready"}},
           {"chain", {}, {{"a.txt", "c.txt"}, {"c.txt", "d.txt"}}, {"Ready", "Ready"}},
           {"source in a planned folder", {"New"}, {{"New", "Renamed"}}, {"Ready"}},
           {"same source twice", {}, {{"a.txt", "c.txt"}, {"a.txt", "d.txt"}}, {"Ready", "Ready"}},
           {"blocked steps leave no trace",
            {"../Out"},
            {{"a.txt", "b.txt"}, {"nothing", "n.txt"}, {"b.txt", "a.txt"}},
            {kTaken, "Source not found", kTaken}},
           {"moved folder becomes a parent",
            {},
            {{"Docs", "Papers"}, {"a.txt", "Papers/a.txt"}},
            {"Ready", "Ready"}},
       }) {
    auto steps = run(c.folders, c.moves, PlanStep::Kind::rename);
    ASSERT_EQ(steps.size(), c.folders.size() + c.moves.size()) << c.name;
    std::vector<std::string> statuses;
    for (size_t i = c.folders.size(); i < steps.size(); ++i) {
      EXPECT_EQ(steps[i].kind, PlanStep::Kind::rename);
      EXPECT_EQ(steps[i].ok, steps[i].status.rfind("Ready", 0) == 0) << c.name;
      statuses.push_back(steps[i].status);
    }
    EXPECT_EQ(statuses, c.statuses) << c.name;
  }
}

TEST_F(PlanEngineTest, EveryValidationMakesNewIdentities) {
  OrganizationPlan plan;
  plan.moves = std::vector<PlanMove>{{"a.txt", "c.txt"}, {"a.txt", "c.txt"}};
  auto first = PlanEngine::validate(plan, m_root, PlanStep::Kind::move);
  auto second = PlanEngine::validate(plan, m_root, PlanStep::Kind::move);
  EXPECT_NE(first[0].id, first[1].id);
  EXPECT_NE(first[0].id, second[0].id);
  EXPECT_EQ(first[0].id.size(), 36u);
  EXPECT_EQ(rawValue(PlanStep::Kind::folder), "New Folder");
  EXPECT_EQ(rawValue(PlanStep::Kind::move), "Move");
  EXPECT_EQ(rawValue(PlanStep::Kind::rename), "Rename");
}

}  // namespace
}  // namespace orrelin
