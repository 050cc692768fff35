// The Rename Assistant: which records of a catalog a batch covers, the dry run of a rule over them, and
// carrying the previewed renames out with an undo log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "organize/organization_plan.h"
#include "organize/rename_rule.h"
#include "organize/undo_log.h"
#include "store/records.h"

namespace orrelin {

class CatalogDB;

// What the user is told after an operation of the pane, and what the program should do next.
struct RenameOutcome {
  struct Alert {
    std::string title;
    std::string message;
    bool operator==(const Alert&) const = default;
  };

  std::optional<Alert> alert;
  std::optional<std::string> toast;
  // After an apply: the undo log that was written, the failures of single renames (all of them; the alert
  // shows the first ten), and the catalog whose records are now out of date and want a quiet rescan.
  std::optional<UndoLog> log;
  std::vector<std::string> errors;
  std::optional<int64_t> rescanCatalogID;
};

class RenamePane {
 public:
  std::optional<int64_t> catalogID;
  std::string folder;  // Inside the catalog's root; blank means the top level.
  std::string filter;  // Only names containing this, ignoring case; blank means all.
  bool includeSub = false;
  bool includeFolders = false;
  RenameRule rule;
  std::vector<PlanStep> steps;  // The dry run of the last preview; emptied by apply.

  // Selects the records, applies the rule and validates the plan against the drive, into `steps`. Does
  // nothing without a database, a chosen catalog that still exists, or (with an alert) when the catalog's
  // drive is not connected.
  RenameOutcome preview(CatalogDB* store);

  // Carries out the ready steps of the last preview on the drive and writes an undo log; `steps` becomes
  // empty. Does nothing without a database, or when the catalog is gone or offline. Steps previewed for
  // another catalog than the one chosen now are dropped unapplied: their paths mean other files there.
  RenameOutcome apply(CatalogDB* store);

  // The records of `all` that a batch covers: those in `folder` (with `includeSub`, anywhere below it),
  // files only unless `includeFolders`, whose name contains `filter`; sorted by path as a file manager
  // lists them ("file2" before "file10"). `folder` is taken as given, not trimmed.
  static std::vector<FileRecord> select(std::vector<FileRecord> all, const std::string& folder,
                                        const std::string& filter, bool includeSub, bool includeFolders);

  // The moves of `plan` reordered so that deeper records come first, path order kept within one depth:
  // children are renamed before their folders, so every source is still where it was when its turn comes.
  // `records` are those the plan was made from, in the plan's order.
  static std::vector<PlanMove> childrenFirst(const OrganizationPlan& plan,
                                             const std::vector<FileRecord>& records);

 private:
  std::optional<int64_t> m_stepsCatalogID;  // The catalog whose drive `steps` were validated against.
};

// The toast after a successful apply: "Renamed 3 items — undo any time from Organization Plan".
std::string renamedMessage(size_t count);

}  // namespace orrelin
