// Loading plans, path containment and the dry run.
#include "organize/plan_engine.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <system_error>

#include "core/name_mapping.h"
#include "core/uuid_string.h"
#include "organize/disk_ops.h"
#include "organize/path_text.h"

namespace orrelin::PlanEngine {

namespace {

constexpr const char* kNotAPlan =
    "This is not a valid organization plan. Expected JSON like {\"newFolders\": [...], \"moves\": "
    "[{\"from\": \"\u2026\", \"to\": \"\u2026\"}]}. (";

// White space and line breaks of any script, as a text field's trimming knows them.
bool isBlank(UChar32 c) {
  return (c >= 0x09 && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029 ||
         u_charType(c) == U_SPACE_SEPARATOR;
}

std::string_view trimmed(std::string_view text) {
  const char* s = text.data();
  int32_t length = static_cast<int32_t>(text.size());
  int32_t start = 0, end = length;
  while (start < end) {
    int32_t next = start;
    UChar32 c;
    U8_NEXT(s, next, end, c);
    if (c < 0 || !isBlank(c)) break;
    start = next;
  }
  while (end > start) {
    int32_t prev = end;
    UChar32 c;
    U8_PREV(s, start, prev, c);
    if (c < 0 || !isBlank(c)) break;
    end = prev;
  }
  return text.substr(static_cast<size_t>(start), static_cast<size_t>(end - start));
}

// Strips nlohmann's "[json.exception.parse_error.101] " tag from its message.
std::string decoderMessage(const std::exception& e) {
  std::string message = e.what();
  if (message.rfind("[json.exception.", 0) == 0) {
    size_t close = message.find("] ");
    if (close != std::string::npos) message.erase(0, close + 2);
  }
  return message;
}

}  // namespace

OrganizationPlan parse(std::string_view text) {
  try {
    return OrganizationPlan::fromJSON(nlohmann::json::parse(text));
  } catch (const nlohmann::json::exception& e) {
    throw ExportError(kNotAPlan + decoderMessage(e) + ")");
  } catch (const std::invalid_argument& e) {
    throw ExportError(kNotAPlan + std::string(e.what()) + ")");
  }
}

OrganizationPlan load(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::system_error(errno, std::generic_category(), "Could not read \u201C" + file.string() + "\u201D");
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) throw std::system_error(EIO, std::generic_category(), "Could not read \u201C" + file.string() + "\u201D");
  return parse(text);
}

std::string standardize(std::string_view path) { return PathText::standardize(path); }

std::optional<std::string> resolve(std::string_view path, std::string_view root) {
  std::string_view text = trimmed(path);
  if (text.empty() || text.find('\0') != std::string_view::npos) return std::nullopt;
  const std::string rootPath = PathText::standardize(root);
  const std::string candidate =
      PathText::standardize(text.front() == '/' ? std::string(text) : rootPath + "/" + std::string(text));
  // The root itself is no target, so "." or "Docs/.." are refused here.
  if (!PathText::isBelow(candidate, rootPath)) return std::nullopt;

  // Links: the nearest existing ancestor of the candidate, resolved, must still be the root or below it.
  // The candidate's own last component is not looked at, so a link standing in the root may be moved.
  const std::string rootReal = DiskOps::realPath(rootPath).value_or(rootPath);
  std::string location = PathText::parent(candidate);
  while (!DiskOps::exists(location) && location.size() >= 2) location = PathText::parent(location);
  std::optional<std::string> real = DiskOps::realPath(location);
  if (!real) return std::nullopt;  // A link that leads nowhere, or a folder we may not look into.
  bool inside = *real == rootReal || PathText::isBelow(*real, rootReal) || PathText::isBelow(*real, rootPath) ||
                *real == rootPath;
  if (!inside) return std::nullopt;
  return candidate;
}

std::string relative(std::string_view path, std::string_view root) {
  std::string p = PathText::standardize(path), r = PathText::standardize(root);
  if (r == "/") return p.size() > 1 ? p.substr(1) : p;
  if (PathText::isBelow(p, r)) return p.substr(r.size() + 1);
  return p;
}

std::vector<PlanStep> validate(const OrganizationPlan& plan, std::string_view root, PlanStep::Kind kind) {
  std::vector<PlanStep> steps;
  std::set<std::string> planned;  // Paths that will exist once the accepted steps so far have run.
  std::set<std::string> vacated;  // Sources that accepted moves take away.

  if (plan.newFolders) {
    for (const std::string& entry : *plan.newFolders) {
      PlanStep step{newUUIDString(), PlanStep::Kind::folder, "", entry, false, ""};
      std::optional<std::string> path = resolve(entry, root);
      if (!path) {
        step.status = "Outside the drive \u2014 blocked";
      } else if (DiskOps::isFolder(*path)) {
        step.ok = true;
        step.status = "Already exists \u2014 nothing to do";
      } else if (DiskOps::exists(*path)) {
        step.status = "A file with this name exists";
      } else {
        step.ok = true;
        step.status = "Will be created";
        planned.insert(*path);
      }
      steps.push_back(std::move(step));
    }
  }

  if (plan.moves) {
    for (const PlanMove& move : *plan.moves) {
      PlanStep step{newUUIDString(), kind, move.from, move.to, false, ""};
      std::optional<std::string> from = resolve(move.from, root);
      std::optional<std::string> to = from ? resolve(move.to, root) : std::nullopt;
      if (!from || !to) {
        step.status = "Path outside the drive \u2014 blocked";
      } else if (*from == *to) {
        step.status = "Source and destination are the same";
      } else if (PathText::isBelow(*to, *from)) {
        step.status = "Cannot move a folder inside itself";
      } else if (!DiskOps::exists(*from) && !planned.count(*from)) {
        step.status = "Source not found";
      } else if (DiskOps::exists(*to) && !vacated.count(*to) &&
                 (PathText::lowercased(*from) != PathText::lowercased(*to) || !DiskOps::sameItem(*from, *to))) {
        // A name that differs only in case passes when it is the source itself (a case-insensitive
        // volume shows the new name as existing); on a case-sensitive volume it is another item.
        step.status = "Destination already exists \u2014 nothing is overwritten";
      } else if (planned.count(*to)) {
        step.status = "Destination already exists \u2014 nothing is overwritten";
      } else {
        step.ok = true;
        planned.insert(*to);
        vacated.insert(*from);
        std::string parent = PathText::parent(*to);
        step.status = DiskOps::exists(parent) || planned.count(parent) ? "Ready"
                                                                        : "Ready \u2014 parent folder will be created";
      }
      steps.push_back(std::move(step));
    }
  }
  return steps;
}

}  // namespace orrelin::PlanEngine
