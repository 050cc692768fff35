// Random trees and random organization plans, and the checks that must hold around each dry run, execution
// and undo. Shared by the regular property test and the long run in bench/, so it depends on the core only.
#pragma once

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/name_mapping.h"
#include "organize/plan_engine.h"

namespace orrelin::testing::plan_property {

namespace fs = std::filesystem;

// What one item on disk is: its type, and the contents of a file or the target of a link. Outside the
// root the times are kept too, so that any touch shows.
struct Item {
  char type = 'f';  // 'f' file, 'd' folder, 'l' link, 'o' other.
  std::string data;
  int64_t mtime = 0, ctime = 0;
  bool operator==(const Item&) const = default;
};
using Snapshot = std::map<std::string, Item>;  // By path relative to the walked folder, as bytes.

inline std::string readBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

inline Snapshot snapshot(const fs::path& folder, bool withTimes) {
  Snapshot out;
  std::error_code ec;
  for (auto it = fs::recursive_directory_iterator(folder, ec); !ec && it != fs::recursive_directory_iterator();
       it.increment(ec)) {
    struct stat st;
    if (::lstat(it->path().c_str(), &st) != 0) continue;
    Item item;
    if (S_ISREG(st.st_mode)) item.type = 'f', item.data = readBytes(it->path());
    else if (S_ISDIR(st.st_mode)) item.type = 'd';
    else if (S_ISLNK(st.st_mode)) item.type = 'l', item.data = fs::read_symlink(it->path()).native();
    else item.type = 'o';
    if (withTimes) {
      item.mtime = int64_t(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
      item.ctime = int64_t(st.st_ctim.tv_sec) * 1000000000 + st.st_ctim.tv_nsec;
    }
    out[it->path().lexically_relative(folder).native()] = item;
  }
  return out;
}

// The multiset of file contents and link targets: what must survive any plan, wherever it ends up.
inline std::multiset<std::string> contents(const Snapshot& s) {
  std::multiset<std::string> out;
  for (const auto& [path, item] : s)
    if (item.type != 'd') out.insert(std::string(1, item.type) + item.data);
  return out;
}

struct Tally {
  int64_t plans = 0, steps = 0, ok = 0, errors = 0, blocked = 0, moved = 0, undoErrors = 0, failures = 0;
  std::vector<std::string> failureTexts;  // The first few, with their seed.
};

// One sandbox: <base>/root, the drive, and <base>/outside, which no plan may touch.
class Sandbox {
 public:
  Sandbox() {
    std::string pattern = (fs::temp_directory_path() / "orrelin-plan-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    m_base = pattern;
  }
  ~Sandbox() {
    std::error_code ec;
    fs::remove_all(m_base, ec);
  }
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  fs::path root() const { return m_base / "root"; }
  fs::path outside() const { return m_base / "outside"; }
  void reset() {
    std::error_code ec;
    fs::remove_all(root(), ec);
    fs::remove_all(outside(), ec);
    fs::create_directories(root());
    fs::create_directories(outside());
  }

 private:
  fs::path m_base;
};

class Generator {
 public:
  explicit Generator(uint64_t seed) : m_rng(seed) {}

  // Fills the sandbox with a random tree: nested folders, files of random contents (some duplicated),
  // names that differ only in case, a name that is not UTF-8, and links inside, outside and nowhere.
  void makeTree(const Sandbox& box) {
    static const std::vector<std::string> names = {"a", "A", "b", "B", "c.txt", "C.TXT", "d.jpg", "e",
                                                   "Photos", "photos", "x y", "\xC3\xBC", "f\xFF", "g.md"};
    for (int i = 0; i < 3; ++i) writeFile(box.outside() / ("o" + std::to_string(i)), randomContents());
    fs::create_directories(box.outside() / "dir");
    writeFile(box.outside() / "dir/inner", randomContents());
    std::vector<fs::path> folders = {box.root()};
    int count = pick(6, 22);
    for (int i = 0; i < count; ++i) {
      fs::path parent = folders[pick(0, int(folders.size()) - 1)];
      if (parent.lexically_relative(box.root()).native().size() > 20) parent = box.root();
      fs::path at = parent / names[pick(0, int(names.size()) - 1)];
      std::error_code ec;
      if (fs::symlink_status(at, ec).type() != fs::file_type::not_found) continue;
      int kind = pick(0, 9);
      if (kind < 3) {
        if (fs::create_directory(at, ec)) folders.push_back(at);
      } else if (kind < 8) {
        writeFile(at, pick(0, 6) == 0 && !m_lastContents.empty() ? m_lastContents : randomContents());
      } else {
        fs::path targets[] = {box.outside(), box.outside() / "o1", box.outside() / "dir",
                              folders[pick(0, int(folders.size()) - 1)], box.root() / "nowhere",
                              fs::path("..") / "..", fs::path("a")};
        fs::create_symlink(targets[pick(0, 6)], at, ec);
      }
    }
  }

  // A random plan over the tree: real paths and their variants ("./", "..", absolute, through links,
  // other case), fresh names, outside paths, blanks; with chains, swaps, collisions and folders into
  // themselves.
  OrganizationPlan makePlan(const Sandbox& box) {
    std::vector<std::string> existing;
    for (const auto& [path, item] : snapshot(box.root(), false)) existing.push_back(NameMapping::fromDisk(path));
    auto any = [&]() -> std::string { return existing.empty() ? "a" : existing[pick(0, int(existing.size()) - 1)]; };
    const std::string root = NameMapping::storedPath(box.root());
    auto variant = [&](const std::string& p) -> std::string {
      switch (pick(0, 14)) {
        case 0: return "./" + p;
        case 1: return "zz/../" + p;
        case 2: return root + "/" + p;
        case 3: return flipCase(p);
        case 4: return "../" + p;
        case 5: return "  " + p + "\n";
        default: return p;
      }
    };
    auto fresh = [&]() -> std::string {
      static const char* leaves[] = {"n1", "N1", "moved", "Sorted/x", "new/deep/y", "c.txt", "A"};
      std::string leaf = leaves[pick(0, 6)];
      int where = pick(0, 3);
      if (where == 0) return leaf;
      if (where == 1) return any() + "/" + leaf;
      if (where == 2) return "Sorted/" + leaf;
      return any();
    };
    auto odd = [&]() -> std::string {
      static const std::vector<std::string> texts = {"", " ", ".", "..", "../outside/o1", "/etc/passwd",
                                                     "Sorted/..", "a/../../outside"};
      int i = pick(0, int(texts.size()));
      return i == int(texts.size()) ? NameMapping::storedPath(box.outside() / "o2") : texts[i];
    };
    auto path = [&](bool source) -> std::string {
      int r = pick(0, 19);
      if (r == 0) return odd();
      if (r < 12 || source) return variant(any());
      return variant(fresh());
    };

    OrganizationPlan plan;
    if (pick(0, 2) > 0) {
      plan.newFolders.emplace();
      for (int i = pick(0, 3); i > 0; --i) plan.newFolders->push_back(pick(0, 5) == 0 ? odd() : variant(fresh()));
    }
    plan.moves.emplace();
    for (int i = pick(0, 8); i > 0; --i) {
      switch (pick(0, 7)) {
        case 0: {  // Swap.
          std::string x = any(), y = any();
          plan.moves->push_back({x, y});
          plan.moves->push_back({y, x});
          break;
        }
        case 1: {  // Chain.
          std::string x = any(), y = fresh(), z = fresh();
          plan.moves->push_back({x, y});
          plan.moves->push_back({y, z});
          break;
        }
        case 2: {  // Collision.
          std::string target = fresh();
          plan.moves->push_back({any(), target});
          plan.moves->push_back({any(), target});
          break;
        }
        case 3:  // Case only.
          {
            std::string x = any();
            plan.moves->push_back({x, flipCase(x)});
          }
          break;
        case 4: {  // Into itself, or below itself.
          std::string x = any();
          plan.moves->push_back({x, x + "/inner/" + PathTextLeaf(x)});
          break;
        }
        default:
          plan.moves->push_back({path(true), path(false)});
      }
    }
    return plan;
  }

  int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_rng); }

 private:
  static std::string PathTextLeaf(const std::string& p) {
    size_t slash = p.rfind('/');
    return slash == std::string::npos ? p : p.substr(slash + 1);
  }

  std::string flipCase(std::string p) {
    for (char& c : p) {
      if (std::isalpha(static_cast<unsigned char>(c)) && pick(0, 1))
        c = std::isupper(static_cast<unsigned char>(c)) ? char(std::tolower(c)) : char(std::toupper(c));
    }
    return p;
  }

  std::string randomContents() {
    std::string s = "#" + std::to_string(m_serial++) + ":";
    for (int n = pick(0, 40); n > 0; --n) s += char(pick(0, 255));
    return m_lastContents = s;
  }

  static void writeFile(const fs::path& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary);
    out << contents;
  }

  std::mt19937_64 m_rng;
  int64_t m_serial = 0;
  std::string m_lastContents;
};

// Runs one seeded round: a tree, a plan, its dry run, execution and undo, checking after each step that
// nothing outside the root changed, that no contents were lost or overwritten, that every step the dry run
// passed either happened or gave an error line, and that undo brings the tree back. In some rounds the
// tree is changed between the steps, as a user might, and the checks allow for exactly that change.
inline void runRound(uint64_t seed, Sandbox& box, Tally& tally) {
  Generator gen(seed);
  box.reset();
  gen.makeTree(box);
  const std::string root = NameMapping::storedPath(box.root());
  std::vector<std::string> failures;
  auto check = [&](bool condition, const std::string& what) {
    if (!condition) failures.push_back(what);
  };

  const Snapshot outside0 = snapshot(box.outside(), true);
  const Snapshot tree0 = snapshot(box.root(), false);
  OrganizationPlan plan = gen.makePlan(box);
  auto kind = gen.pick(0, 1) ? PlanStep::Kind::move : PlanStep::Kind::rename;
  std::vector<PlanStep> steps = PlanEngine::validate(plan, root, kind);
  check(snapshot(box.root(), false) == tree0, "the dry run changed the tree");
  check(steps.size() == plan.newFolders.value_or(std::vector<std::string>{}).size() + plan.moves->size(),
        "the dry run dropped steps");

  // Sometimes the user drops a file where the plan wants to put something, after the dry run.
  std::multiset<std::string> expected = contents(tree0);
  const int mutation = gen.pick(0, 5);  // 0: before execution, 1: before undo, else none.
  auto plantFile = [&](const std::string& stored, const std::string& text) {
    fs::path at = NameMapping::diskPath(stored);
    std::error_code ec;
    if (fs::symlink_status(at, ec).type() != fs::file_type::not_found) return;
    if (!fs::is_directory(at.parent_path(), ec)) return;
    std::ofstream(at, std::ios::binary) << text;
    expected.insert("f" + text);
  };
  if (mutation == 0) {
    for (const PlanStep& s : steps)
      if (s.ok && s.kind != PlanStep::Kind::folder && gen.pick(0, 1))
        if (auto to = PlanEngine::resolve(s.to, root)) plantFile(*to, "planted before execution " + s.id);
  }

  // Where each step's paths lead, seen before execution, to recognise its logged move.
  std::vector<std::optional<std::string>> froms, tos;
  for (const PlanStep& s : steps) {
    froms.push_back(PlanEngine::resolve(s.from, root));
    tos.push_back(PlanEngine::resolve(s.to, root));
  }

  auto result = PlanEngine::execute(steps, root, "property", /*saveLog=*/false);
  check(snapshot(box.outside(), true) == outside0, "execution touched something outside the root");
  check(contents(snapshot(box.root(), false)) == expected, "execution lost or overwrote contents");

  // Every ok step either happened (a logged move, a created or existing folder) or has its error line,
  // in step order, and there are no other error lines. Evidence of success is looked at first, since
  // error lines are told apart only by their first path.
  size_t moveAt = 0, errorAt = 0;
  for (size_t i = 0; i < steps.size(); ++i) {
    const PlanStep& s = steps[i];
    ++tally.steps;
    if (!s.ok) {
      ++tally.blocked;
      continue;
    }
    ++tally.ok;
    const std::string label = (s.from.empty() ? s.to : s.from) + ": ";
    const bool reported = errorAt < result.errors.size() && result.errors[errorAt].rfind(label, 0) == 0;
    if (s.kind == PlanStep::Kind::folder) {
      const auto& made = result.log.createdFolders;
      if (s.status.rfind("Already", 0) == 0 || (tos[i] && std::find(made.begin(), made.end(), *tos[i]) != made.end())) {
        continue;
      }
      check(reported, "folder step neither made nor reported: " + s.to);
      errorAt += reported;
      continue;
    }
    if (moveAt < result.log.moves.size() && froms[i] && tos[i] &&
        result.log.moves[moveAt] == PlanMove{*froms[i], *tos[i]}) {
      ++moveAt;
      ++tally.moved;
    } else if (reported) {
      ++errorAt;
      ++tally.errors;
    } else {
      check(false, "ok step neither happened nor reported: " + s.from + " -> " + s.to);
    }
  }
  check(moveAt == result.log.moves.size(), "logged moves that no step accounts for");
  check(errorAt == result.errors.size(), "error lines that no step accounts for");

  if (mutation == 1 && !result.log.moves.empty()) {
    // The user adds a file in a place the plan filled, and one at a place it vacated.
    const PlanMove& m = result.log.moves[gen.pick(0, int(result.log.moves.size()) - 1)];
    plantFile(m.from, "planted before undo (old place)");
    plantFile(PlanEngine::standardize(m.to + "/../user-file"), "planted before undo (new folder)");
  }
  auto reread = UndoLog::fromJSON(nlohmann::json::parse(result.log.toJSON().dump()));
  check(reread && reread->moves == result.log.moves && reread->createdFolders == result.log.createdFolders,
        "the log does not read back as written");
  auto undone = PlanEngine::undo(reread ? *reread : result.log, /*saveLog=*/false);
  tally.undoErrors += int64_t(undone.errors.size());
  const Snapshot after = snapshot(box.root(), false);
  check(snapshot(box.outside(), true) == outside0, "undo touched something outside the root");
  check(contents(after) == expected, "undo lost or overwrote contents");
  if (mutation > 1 || (mutation == 1 && result.log.moves.empty())) {
    check(after == tree0, "undo did not bring the tree back");
    check(undone.errors.empty(), "undo reported errors on an unchanged tree");
    check(undone.restored == int(result.log.moves.size()), "undo did not restore every move");
  }

  ++tally.plans;
  if (!failures.empty()) {
    ++tally.failures;
    if (tally.failureTexts.size() < 10) {
      std::string text = "seed " + std::to_string(seed) + ": ";
      for (const std::string& f : failures) text += f + "; ";
      text += "plan " + plan.toJSON().dump();
      for (const std::string& e : result.errors) text += "\n  error: " + e;
      for (const std::string& e : undone.errors) text += "\n  undo error: " + e;
      for (const PlanMove& m : result.log.moves) text += "\n  moved: " + m.from + " -> " + m.to;
      for (const std::string& f : result.log.createdFolders) text += "\n  made: " + f;
      text += "\n  tree:";
      for (const auto& [path, item] : tree0) text += " " + path + (item.type == 'l' ? "->" + item.data : std::string(1, item.type));
      for (const auto& [path, item] : tree0)
        if (!after.count(path) || !(after.at(path) == item)) text += "\n  before, not after: " + path;
      for (const auto& [path, item] : after)
        if (!tree0.count(path)) text += "\n  after, not before: " + path;
      tally.failureTexts.push_back(text);
    }
  }
}

}  // namespace orrelin::testing::plan_property
