// The operations on organization plans: loading, path containment, the dry run, execution and undo.
//
// The safety promises live here: a plan never touches a path outside its root, never overwrites anything
// and never deletes anything (undo removes only empty folders that execution itself created). Paths are
// stored text (names that were not UTF-8 on disk are mapped, see core/name_mapping.h); they are mapped back
// to the real bytes whenever the disk is touched.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "organize/export_error.h"
#include "organize/organization_plan.h"
#include "organize/undo_log.h"

namespace orrelin::PlanEngine {

// Reads and decodes a plan file. A file that cannot be read throws std::system_error with the path; one that
// does not decode throws ExportError("This is not a valid organization plan. Expected JSON like … (reason)").
OrganizationPlan load(const std::filesystem::path& file);
// Decodes plan text, failing as load does for text that does not decode.
OrganizationPlan parse(std::string_view text);

// Lexical normal form of an absolute path: "." and empty components dropped, ".." removing the component
// before it (never above "/"), no trailing slash. A relative path is taken relative to the working folder.
std::string standardize(std::string_view path);

// Returns the absolute stored path that a plan path names under `root`, or nullopt when it is not
// acceptable: empty after trimming white space, containing NUL, the root itself, lexically outside the
// root, or reaching out of it through a symbolic link in its nearest existing ancestor. The link rule
// never looks at the path's own last component, so a link that stands inside the root may itself be moved.
std::optional<std::string> resolve(std::string_view path, std::string_view root);

// The path of `path` relative to `root` when it lies below it, else its standardized form.
std::string relative(std::string_view path, std::string_view root);

// The dry run: one step per entry of newFolders, then one per move (of kind `kind`), in the plan's order.
// Each is judged against the disk and the effect of the accepted steps before it. Touches nothing.
std::vector<PlanStep> validate(const OrganizationPlan& plan, std::string_view root, PlanStep::Kind kind);

struct ExecuteResult {
  UndoLog log;
  std::vector<std::string> errors;  // One line per failed step, in step order.
};

// Carries out the ok steps in order, looking at the disk again before each one, never replacing an
// existing item. Failures of single steps are collected and the run goes on. When `saveLog` is true the
// log is saved (even when empty). Never throws.
ExecuteResult execute(const std::vector<PlanStep>& steps, std::string_view root, std::string_view title,
                      bool saveLog);

struct UndoResult {
  int restored = 0;                 // Moves put back; folders do not count.
  std::vector<std::string> errors;  // One line per move that could not be put back.
  UndoLog log;                      // The log as it stands afterwards: undone is true.
};

// Moves the log's items back, last first, then removes the folders it created that are empty again (a lone
// ".DS_Store" aside), children first. Marks the log undone, saving it when `saveLog` is true, even when some
// moves failed. Never throws.
UndoResult undo(const UndoLog& log, bool saveLog);

}  // namespace orrelin::PlanEngine
