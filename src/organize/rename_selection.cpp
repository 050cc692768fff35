// Which records a batch rename covers, and the order in which their renames run.
#include "organize/rename_pane.h"

#include <algorithm>
#include <unordered_map>

#include "organize/name_text.h"
#include "organize/standard_order.h"

namespace orrelin {

namespace {

size_t depth(const std::string& path) {
  return static_cast<size_t>(std::count(path.begin(), path.end(), '/')) + 1;
}

}  // namespace

std::vector<FileRecord> RenamePane::select(std::vector<FileRecord> all, const std::string& folder,
                                           const std::string& filter, bool includeSub, bool includeFolders) {
  const std::string below = folder + "/";
  std::erase_if(all, [&](const FileRecord& f) {
    bool placed = includeSub ? folder.empty() || f.path.starts_with(below) : parentPath(f.path) == folder;
    if (!placed) return true;
    if (f.isDir && !includeFolders) return true;
    return !filter.empty() && !NameText::containsIgnoringCase(f.name, filter);
  });
  StandardOrder().sort(all, [](const FileRecord& f) -> const std::string& { return f.path; });
  return all;
}

std::vector<PlanMove> RenamePane::childrenFirst(const OrganizationPlan& plan,
                                                const std::vector<FileRecord>& records) {
  std::unordered_map<std::string_view, const PlanMove*> bySource;
  if (plan.moves)
    for (const PlanMove& move : *plan.moves) bySource.emplace(move.from, &move);
  // Depths are counted once, not at every comparison of the sort.
  std::vector<std::pair<size_t, const FileRecord*>> deepest;
  deepest.reserve(records.size());
  for (const FileRecord& r : records) deepest.emplace_back(depth(r.path), &r);
  std::stable_sort(deepest.begin(), deepest.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<PlanMove> moves;
  moves.reserve(bySource.size());
  for (const auto& [level, r] : deepest) {
    auto it = bySource.find(r->path);
    if (it != bySource.end()) moves.push_back(*it->second);
  }
  return moves;
}

}  // namespace orrelin
