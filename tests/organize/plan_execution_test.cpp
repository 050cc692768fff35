// Tests of carrying plans out, undoing them and keeping their logs, on real folders.
#include "organize/plan_engine.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "core/name_mapping.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::readFile;
using testing::writeFile;

class PlanExecutionTest : public ::testing::Test {
 protected:
  PlanExecutionTest() : m_root((m_temp.path() / "drive").string()) {
    m_env.set("HOME", (m_temp.path() / "home").string());
    m_env.set("XDG_DATA_HOME", (m_temp.path() / "data").string());
    writeFile(path("a.txt"), "a");
    writeFile(path("b.txt"), "b");
    writeFile(path("Music/song.mp3"), "song");
  }

  std::string path(const std::string& relative) const { return m_root + "/" + relative; }

  std::vector<PlanStep> validate(const std::vector<std::string>& folders,
                                 const std::vector<PlanMove>& moves) {
    OrganizationPlan plan;
    plan.newFolders = folders;
    plan.moves = moves;
    return PlanEngine::validate(plan, m_root, PlanStep::Kind::move);
  }

  PlanEngine::ExecuteResult apply(const std::vector<std::string>& folders,
                                  const std::vector<PlanMove>& moves) {
    return PlanEngine::execute(validate(folders, moves), m_root, "Test plan", /*saveLog=*/true);
  }

  // Every entry below the root, folders with a trailing "/", files with their contents.
  std::map<std::string, std::string> tree() const {
    std::map<std::string, std::string> out;
    for (auto it = fs::recursive_directory_iterator(m_root); it != fs::recursive_directory_iterator(); ++it) {
      std::string relative = fs::relative(it->path(), m_root).string();
      if (it->is_symlink())
        out[relative] = "-> " + fs::read_symlink(it->path()).string();
      else if (it->is_directory())
        out[relative + "/"] = "";
      else
        out[relative] = readFile(it->path());
    }
    return out;
  }

  TempDir m_temp;
  testing::ScopedEnv m_env;
  std::string m_root;
};

TEST_F(PlanExecutionTest, AppliesLogsExactlyWhatItDidAndUndoesIt) {
  fs::create_directories(path("x"));
  const auto before = tree();
  auto result = apply({"x/y/z", "Music"}, {{"a.txt", "Sorted/Text/a.txt"},
                                           {"b.txt", "x/y/z/b.txt"},
                                           {"a.txt", "Music"},  // Blocked by the dry run: no trace.
                                           {"Music/song.mp3", "song.mp3"}});
  EXPECT_TRUE(result.errors.empty()) << result.errors.front();
  const UndoLog& log = result.log;
  EXPECT_EQ(log.root, m_root);
  EXPECT_EQ(log.title, "Test plan");
  EXPECT_FALSE(log.undone);
  // "x" and "Music" existed already and are never claimed; parents come before children.
  EXPECT_EQ(log.createdFolders,
            (std::vector<std::string>{path("x/y"), path("x/y/z"), path("Sorted"), path("Sorted/Text")}));
  EXPECT_EQ(log.moves, (std::vector<PlanMove>{{path("a.txt"), path("Sorted/Text/a.txt")},
                                              {path("b.txt"), path("x/y/z/b.txt")},
                                              {path("Music/song.mp3"), path("song.mp3")}}));
  EXPECT_EQ(readFile(path("Sorted/Text/a.txt")), "a");
  EXPECT_EQ(readFile(path("song.mp3")), "song");

  auto saved = UndoLogStore::list();
  ASSERT_EQ(saved.size(), 1u);
  EXPECT_EQ(saved[0].id, log.id);
  EXPECT_EQ(saved[0].moves, log.moves);

  auto undone = PlanEngine::undo(saved[0], /*saveLog=*/true);
  EXPECT_EQ(undone.restored, 3);
  EXPECT_TRUE(undone.errors.empty());
  EXPECT_EQ(tree(), before);  // "Music" stays: it was not created by the plan.
  ASSERT_EQ(UndoLogStore::list().size(), 1u);
  EXPECT_TRUE(UndoLogStore::list()[0].undone);
}

TEST_F(PlanExecutionTest, LooksAgainAtTheLastMomentAndGoesOnAfterAFailure) {
  auto steps = validate({}, {{"a.txt", "new.txt"},
                             {"gone.txt", "g.txt"},
                             {"b.txt", "Deep/b.txt"},
                             {"Music/song.mp3", "Blocked/song.mp3"}});
  writeFile(path("gone.txt"), "");  // Makes no difference: the dry run already said "Source not found".
  // The disk changes between the dry run and execution.
  writeFile(path("new.txt"), "arrived meanwhile");
  writeFile(path("Blocked"), "a file where a folder is wanted");
  auto result = PlanEngine::execute(steps, m_root, "t", /*saveLog=*/false);
  EXPECT_EQ(result.errors, (std::vector<std::string>{"a.txt: \u201Cnew.txt\u201D already exists",
                                                     "Music/song.mp3: Not a directory"}));
  EXPECT_EQ(readFile(path("new.txt")), "arrived meanwhile");
  EXPECT_EQ(readFile(path("a.txt")), "a");
  EXPECT_EQ(readFile(path("Deep/b.txt")), "b");
  EXPECT_EQ(result.log.moves, (std::vector<PlanMove>{{path("b.txt"), path("Deep/b.txt")}}));
  EXPECT_EQ(result.log.createdFolders, std::vector<std::string>{path("Deep")});
  EXPECT_TRUE(UndoLogStore::list().empty());  // saveLog false writes nothing.

  // A second move of an already moved source fails at execution, as the dry run cannot know.
  auto twice = apply({}, {{"a.txt", "one.txt"}, {"a.txt", "two.txt"}});
  EXPECT_EQ(twice.errors, std::vector<std::string>{"a.txt: Source not found"});
  EXPECT_EQ(readFile(path("one.txt")), "a");

  // A folder step's failure is reported under its own path.
  auto folder = PlanEngine::execute(
      {{"id", PlanStep::Kind::folder, "", "Blocked/Inner", true, "Will be created"}}, m_root, "t", false);
  EXPECT_EQ(folder.errors, std::vector<std::string>{"Blocked/Inner: Not a directory"});
}

TEST_F(PlanExecutionTest, AnEmptyRunStillLeavesALog) {
  auto result = apply({"../out"}, {{"a.txt", "b.txt"}});
  EXPECT_TRUE(result.errors.empty());
  auto logs = UndoLogStore::list();
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_TRUE(logs[0].moves.empty());
  EXPECT_TRUE(logs[0].createdFolders.empty());
  EXPECT_TRUE(fs::exists(path("a.txt")));
}

TEST_F(PlanExecutionTest, UndoReportsWhatItCannotPutBackAndDoesTheRest) {
  auto result =
      apply({}, {{"a.txt", "One/a.txt"}, {"b.txt", "Two/b.txt"}, {"Music/song.mp3", "Three/song.mp3"}});
  ASSERT_TRUE(result.errors.empty());
  fs::remove(path("One/a.txt"));                 // The user deleted it meanwhile.
  writeFile(path("b.txt"), "new b");             // Someone took its old place.
  writeFile(path("Three/.DS_Store"), "finder");  // Only a Finder file: the folder goes with it.
  auto undone = PlanEngine::undo(result.log, /*saveLog=*/true);
  EXPECT_EQ(undone.restored, 1);
  EXPECT_EQ(undone.errors, (std::vector<std::string>{"b.txt: something already exists at " + path("b.txt"),
                                                     "a.txt: no longer at " + path("One/a.txt")}));
  EXPECT_EQ(readFile(path("Music/song.mp3")), "song");
  EXPECT_FALSE(fs::exists(path("Three")));
  EXPECT_FALSE(fs::exists(path("One")));        // Empty again.
  EXPECT_EQ(readFile(path("Two/b.txt")), "b");  // Stays, with its folder.
  EXPECT_EQ(readFile(path("b.txt")), "new b");
  EXPECT_TRUE(undone.log.undone);
  EXPECT_TRUE(UndoLogStore::list().at(0).undone);  // Even after a partial undo.
}

TEST_F(PlanExecutionTest, UndoLeavesFoldersTheUserFilledAndRecreatesMissingParents) {
  auto result = apply({}, {{"a.txt", "New/a.txt"}, {"Music/song.mp3", "song.mp3"}});
  ASSERT_TRUE(result.errors.empty());
  writeFile(path("New/mine.txt"), "user's file");
  fs::remove(path("Music"));  // Empty now, and removed by the user.
  auto undone = PlanEngine::undo(result.log, false);
  EXPECT_EQ(undone.restored, 2);
  EXPECT_TRUE(undone.errors.empty());
  EXPECT_EQ(readFile(path("New/mine.txt")), "user's file");
  EXPECT_EQ(readFile(path("Music/song.mp3")), "song");
  EXPECT_EQ(readFile(path("a.txt")), "a");
  EXPECT_TRUE(UndoLogStore::list().at(0).undone ==
              false);  // saveLog false: the file is as execution left it.
}

TEST_F(PlanExecutionTest, ChainsUndoInReverse) {
  auto result = apply({}, {{"a.txt", "c.txt"}, {"c.txt", "d.txt"}, {"b.txt", "a.txt"}});
  ASSERT_TRUE(result.errors.empty());
  EXPECT_EQ(readFile(path("d.txt")), "a");
  EXPECT_EQ(readFile(path("a.txt")), "b");
  auto undone = PlanEngine::undo(result.log, false);
  EXPECT_EQ(undone.restored, 3);
  EXPECT_EQ(readFile(path("a.txt")), "a");
  EXPECT_EQ(readFile(path("b.txt")), "b");
  EXPECT_FALSE(fs::exists(path("c.txt")));
  EXPECT_FALSE(fs::exists(path("d.txt")));
}

TEST_F(PlanExecutionTest, UndoBringsBackAFolderWhosePlaceTheRunFilledAgain) {
  // A folder moves away and a later move makes a new folder of the same name; the user's own empty
  // subfolder, of the same name as one the run made, must survive the undo.
  fs::create_directories(path("Docs/Empty"));
  writeFile(path("Docs/r.txt"), "r");
  const auto before = tree();
  for (const std::vector<PlanMove>& moves : std::vector<std::vector<PlanMove>>{
           {{"Docs", "Archive"}, {"a.txt", "Docs/Empty/a.txt"}},
           {{"Music", "MUSIC"}, {"b.txt", "Music/b.txt"}},  // The same through a change of case.
       }) {
    auto result = apply({}, moves);
    ASSERT_TRUE(result.errors.empty()) << result.errors.front();
    ASSERT_EQ(result.log.moves.size(), 2u);
    auto undone = PlanEngine::undo(result.log, false);
    EXPECT_TRUE(undone.errors.empty()) << undone.errors.front();
    EXPECT_EQ(undone.restored, 2);
    EXPECT_EQ(tree(), before);
  }
}

TEST_F(PlanExecutionTest, CaseOnlyRenamesGoThroughATemporaryNameAndLeaveNoneBehind) {
  auto result = apply({}, {{"a.txt", "A.TXT"}, {"Music", "MUSIC"}});
  ASSERT_TRUE(result.errors.empty()) << result.errors.front();
  EXPECT_EQ(readFile(path("A.TXT")), "a");
  EXPECT_EQ(readFile(path("MUSIC/song.mp3")), "song");
  EXPECT_FALSE(fs::exists(path("a.txt")));
  PlanEngine::undo(result.log, false);
  auto names = tree();
  EXPECT_EQ(names, (std::map<std::string, std::string>{
                       {"a.txt", "a"}, {"b.txt", "b"}, {"Music/", ""}, {"Music/song.mp3", "song"}}));
}

TEST_F(PlanExecutionTest, ACaseOnlyRenameNeverReplacesAnotherItem) {
  writeFile(path("A.txt"), "capital");
  // Handed a stale ok step, execution still refuses: on this volume A.txt is another file.
  PlanStep step{"id", PlanStep::Kind::rename, "a.txt", "A.txt", true, "Ready"};
  auto result = PlanEngine::execute({step}, m_root, "t", false);
  EXPECT_EQ(result.errors, std::vector<std::string>{"a.txt: \u201CA.txt\u201D already exists"});
  EXPECT_EQ(readFile(path("a.txt")), "a");
  EXPECT_EQ(readFile(path("A.txt")), "capital");

  // Two hard links whose names differ in case are one item, so the rename is tried, and its second hop
  // meets the other name. Nothing is replaced, and the item goes back to its own name.
  fs::remove(path("A.txt"));
  fs::create_hard_link(path("a.txt"), path("A.txt"));
  result = PlanEngine::execute({step}, m_root, "t", false);
  EXPECT_EQ(result.errors, std::vector<std::string>{"a.txt: Something with that name is already there"});
  EXPECT_EQ(tree(),
            (std::map<std::string, std::string>{
                {"A.txt", "a"}, {"a.txt", "a"}, {"b.txt", "b"}, {"Music/", ""}, {"Music/song.mp3", "song"}}));
  EXPECT_TRUE(result.log.moves.empty());
}

TEST_F(PlanExecutionTest, NamesThatAreNotUTF8OnDisk) {
  const std::string diskName = "caf\xE9.txt";  // Latin-1, as an old drive may hold it.
  writeFile(fs::path(m_root) / diskName, "latin");
  const std::string stored = NameMapping::fromDisk(diskName);
  auto result = apply({"Sorted"}, {{stored, "Sorted/" + stored}});
  ASSERT_TRUE(result.errors.empty()) << result.errors.front();
  EXPECT_EQ(readFile(fs::path(m_root) / "Sorted" / diskName), "latin");
  EXPECT_EQ(result.log.moves.at(0).to, path("Sorted/" + stored));
  EXPECT_TRUE(NameMapping::isValidUTF8(result.log.moves.at(0).to));
  auto logs = UndoLogStore::list();
  ASSERT_EQ(logs.size(), 1u);  // The mapped names write and read as JSON.
  EXPECT_EQ(PlanEngine::undo(logs[0], true).restored, 1);
  EXPECT_EQ(readFile(fs::path(m_root) / diskName), "latin");
  EXPECT_FALSE(fs::exists(path("Sorted")));
}

TEST_F(PlanExecutionTest, AnEditedLogCannotReachOutsideItsRoot) {
  writeFile(m_temp.path() / "outside/victim.txt", "keep me");
  UndoLog log;
  log.id = "EDITED";
  log.root = m_root;
  log.moves = {
      {(m_temp.path() / "outside/moved.txt").string(), (m_temp.path() / "outside/victim.txt").string()},
      {path("../outside/x.txt"), path("a.txt")}};
  log.createdFolders = {(m_temp.path() / "outside").string()};
  auto undone = PlanEngine::undo(log, false);
  EXPECT_EQ(undone.restored, 0);
  EXPECT_EQ(undone.errors, (std::vector<std::string>{"a.txt: Path outside the drive \u2014 blocked",
                                                     "victim.txt: Path outside the drive \u2014 blocked"}));
  EXPECT_EQ(readFile(m_temp.path() / "outside/victim.txt"), "keep me");
  EXPECT_EQ(readFile(path("a.txt")), "a");
}

TEST_F(PlanExecutionTest, LogFilesArePrettySortedAndListedNewestFirst) {
  UndoLog older{"AAAA-OLD",  Date::fromSeconds(1700000000.75), "Older", m_root,
                {path("N")}, {{path("x"), path("N/x")}},       false};
  UndoLog newer{"BBBB-NEW", Date::fromSeconds(1800000000), "Newer", m_root, {}, {}, true};
  UndoLogStore::save(older);
  UndoLogStore::save(newer);
  const fs::path folder = m_temp.path() / "data/TVRL Orrelin/Undo Logs";
  EXPECT_EQ(UndoLogStore::folder(), folder);
  EXPECT_EQ(readFile(folder / "AAAA-OLD.json"),
            "{\n"
            "  \"created\": \"2023-11-14T22:13:20Z\",\n"
            "  \"createdFolders\": [\n    \"" +
                path("N") +
                "\"\n  ],\n"
                "  \"id\": \"AAAA-OLD\",\n"
                "  \"moves\": [\n    {\n      \"from\": \"" +
                path("x") + "\",\n      \"to\": \"" + path("N/x") +
                "\"\n    }\n  ],\n"
                "  \"root\": \"" +
                m_root +
                "\",\n"
                "  \"title\": \"Older\",\n"
                "  \"undone\": false\n"
                "}\n");
  // Strays: another text file, a log lacking a key, a log with a bad date, a folder.
  writeFile(folder / "notes.txt", "not json");
  auto partial = older.toJSON();
  partial.erase("undone");
  writeFile(folder / "partial.json", partial.dump());
  auto badDate = older.toJSON();
  badDate["created"] = "yesterday";
  writeFile(folder / "baddate.json", badDate.dump());
  fs::create_directories(folder / "sub.json");

  auto logs = UndoLogStore::list();
  ASSERT_EQ(logs.size(), 2u);
  EXPECT_EQ(logs[0].id, "BBBB-NEW");
  EXPECT_EQ(logs[1].title, "Older");
  EXPECT_EQ(logs[1].created, Date::fromSeconds(1700000000));  // Whole seconds in the file.
  EXPECT_EQ(logs[1].moves, older.moves);

  older.undone = true;  // Saving again replaces the file of the same id.
  UndoLogStore::save(older);
  EXPECT_TRUE(UndoLogStore::list()[1].undone);
  size_t files = 0;
  for (const auto& entry : fs::directory_iterator(folder))
    files += entry.path().filename().string()[0] == '.';
  EXPECT_EQ(files, 0u);  // No temporary file left behind.
}

}  // namespace
}  // namespace orrelin
