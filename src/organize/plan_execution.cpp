// Carrying out a validated plan, and undoing it from its log.
#include "organize/plan_engine.h"

#include <algorithm>

#include "core/uuid_string.h"
#include "organize/disk_ops.h"
#include "organize/path_text.h"

namespace orrelin::PlanEngine {

namespace {

constexpr const char* kTemporaryPrefix = ".orln-rename-";

// A sibling of `path` under a fresh temporary name, for the first hop of a case-only rename.
std::string temporarySibling(const std::string& path) {
  return PathText::parent(path) + "/" + kTemporaryPrefix + newUUIDString().substr(0, 6);
}

// Makes `folder` and whatever it lacks above it, down from the first existing location (or the root),
// topmost first, logging each folder as soon as it is made. Returns an empty text or the failure.
std::string makeFolders(const std::string& folder, const std::string& root, UndoLog& log) {
  std::vector<std::string> missing;
  for (std::string at = folder; !DiskOps::exists(at) && at.size() > root.size(); at = PathText::parent(at))
    missing.push_back(at);
  for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
    if (int error = DiskOps::makeFolder(*it)) return DiskOps::describe(error);
    log.createdFolders.push_back(*it);
  }
  return {};
}

// Moves `from` to `to`; a change of case alone goes through a temporary name in the source's folder, since
// a case-insensitive volume sees the new name as the old one. Returns an empty text or the failure.
std::string moveItem(const std::string& from, const std::string& to, bool caseOnly) {
  if (!caseOnly) {
    int error = DiskOps::moveNoReplace(from, to);
    return error ? DiskOps::describe(error) : std::string();
  }
  std::string hop = temporarySibling(from);
  if (int error = DiskOps::moveNoReplace(from, hop)) return DiskOps::describe(error);
  if (int error = DiskOps::moveNoReplace(hop, to)) {
    // Moving back could fail in its turn; the item is left where it is and its name is reported.
    return DiskOps::describe(error) + " (the item is now named \u201C" + PathText::lastComponent(hop) + "\u201D)";
  }
  return {};
}

bool caseOnlyChange(const std::string& a, const std::string& b) {
  return PathText::lowercased(a) == PathText::lowercased(b);
}

// Runs one ok step. Returns an empty text or the reason it failed.
std::string runStep(const PlanStep& step, const std::string& root, UndoLog& log) {
  // The dry run accepted these paths; if they fail now, a link has moved into their way since, and the
  // step is reported rather than dropped without a word.
  constexpr const char* kOutside = "Path outside the drive \u2014 blocked";
  if (step.kind == PlanStep::Kind::folder) {
    std::optional<std::string> folder = resolve(step.to, root);
    return folder ? makeFolders(*folder, root, log) : kOutside;
  }
  std::optional<std::string> from = resolve(step.from, root);
  std::optional<std::string> to = resolve(step.to, root);
  if (!from || !to) return kOutside;
  if (*from == *to) return "Source and destination are the same";
  // A source that an earlier step took away fails here, before any folder is made for it.
  if (!DiskOps::exists(*from)) return "Source not found";
  if (std::string failed = makeFolders(PathText::parent(*to), root, log); !failed.empty()) return failed;
  const bool caseOnly = caseOnlyChange(*from, *to);
  // The disk may have changed since the dry run: look again at the last moment. A name differing only in
  // case is the source itself on a case-insensitive volume, and another item on a case-sensitive one.
  if (DiskOps::exists(*to) && (!caseOnly || !DiskOps::sameItem(*from, *to)))
    return "\u201C" + step.to + "\u201D already exists";
  if (std::string failed = moveItem(*from, *to, caseOnly); !failed.empty()) return failed;
  log.moves.push_back({*from, *to});
  return {};
}

}  // namespace

ExecuteResult execute(const std::vector<PlanStep>& steps, std::string_view root, std::string_view title,
                      bool saveLog) {
  ExecuteResult result;
  UndoLog& log = result.log;
  log.id = newUUIDString();
  log.created = Date::now();
  log.title = std::string(title);
  log.root = PathText::standardize(root);
  for (const PlanStep& step : steps) {
    if (!step.ok) continue;
    std::string failed;
    try {
      failed = runStep(step, log.root, log);
    } catch (const std::exception& e) {  // Out of memory and the like: the step fails, the run goes on.
      failed = e.what();
    }
    if (!failed.empty()) result.errors.push_back((step.from.empty() ? step.to : step.from) + ": " + failed);
  }
  if (saveLog) UndoLogStore::save(log);
  return result;
}

namespace {

// Removes a folder that execution created when nothing but a ".DS_Store" file is left in it. Returns
// whether it was removed.
bool removeIfEmpty(const std::string& folder, const std::string& root) {
  if (resolve(folder, root) != folder) return false;
  std::optional<std::vector<std::string>> entries = DiskOps::folderEntries(folder);
  if (!entries) return false;  // Not listable, or no longer a folder: treated as not empty.
  std::erase(*entries, ".DS_Store");
  if (!entries->empty()) return false;
  std::string dsStore = folder + "/.DS_Store";
  if (DiskOps::exists(dsStore) && !DiskOps::isFolder(dsStore)) DiskOps::removeFile(dsStore);
  return DiskOps::removeEmptyFolder(folder) == 0;
}

// Puts one logged move back. `removed` marks the entries of createdFolders already taken away. Returns an
// empty text or the reason it could not.
std::string undoMove(const PlanMove& move, const UndoLog& log, const std::string& root,
                     std::vector<bool>& removed) {
  // A log is a file the user can edit; its paths are held to the same containment as a plan's.
  if (resolve(move.from, root) != move.from || resolve(move.to, root) != move.to)
    return "Path outside the drive \u2014 blocked";
  if (!DiskOps::exists(move.to)) return "no longer at " + move.to;
  const bool caseOnly = caseOnlyChange(move.from, move.to);
  // Folders this run created may stand at a place an earlier move had vacated (a folder moved away, then
  // a file moved into a new folder of its old name). When they are empty again by now, they are removed
  // here rather than after all moves, so that the item that stood there can come back; and they are not
  // looked at again afterwards, since their paths then belong to what came back.
  if (DiskOps::exists(move.from) && !DiskOps::sameItem(move.from, move.to)) {
    for (size_t i = log.createdFolders.size(); i-- > 0;) {
      const std::string& folder = log.createdFolders[i];
      if (!removed[i] && (folder == move.from || PathText::isBelow(folder, move.from)))
        removed[i] = removeIfEmpty(folder, root);
    }
  }
  if (DiskOps::exists(move.from) && (!caseOnly || !DiskOps::sameItem(move.from, move.to)))
    return "something already exists at " + move.from;
  if (int error = DiskOps::makeFolders(PathText::parent(move.from))) return DiskOps::describe(error);
  if (!caseOnly) {
    int error = DiskOps::moveNoReplace(move.to, move.from);
    return error ? DiskOps::describe(error) : std::string();
  }
  return moveItem(move.to, move.from, /*caseOnly=*/true);
}

}  // namespace

UndoResult undo(const UndoLog& log, bool saveLog) {
  UndoResult result;
  const std::string root = PathText::standardize(log.root);
  std::vector<bool> removed(log.createdFolders.size(), false);
  for (auto it = log.moves.rbegin(); it != log.moves.rend(); ++it) {
    std::string failed;
    try {
      failed = undoMove(*it, log, root, removed);
    } catch (const std::exception& e) {
      failed = e.what();
    }
    if (failed.empty()) {
      ++result.restored;
    } else {
      result.errors.push_back(PathText::lastComponent(it->to) + ": " + failed);
    }
  }
  for (size_t i = log.createdFolders.size(); i-- > 0;) {
    if (removed[i]) continue;
    try {
      removeIfEmpty(log.createdFolders[i], root);
    } catch (const std::exception&) {
      // A folder that cannot be looked at stays, without a word.
    }
  }
  result.log = log;
  result.log.undone = true;
  if (saveLog) UndoLogStore::save(result.log);
  return result;
}

}  // namespace orrelin::PlanEngine
