// The Rename Assistant's preview and apply over a catalog and its connected drive.
#include "organize/rename_pane.h"

#include <filesystem>
#include <system_error>

#include "core/name_mapping.h"
#include "organize/plan_engine.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/db_error.h"

namespace orrelin {

namespace {

constexpr size_t kErrorsShown = 10;

std::optional<Catalog> chosenCatalog(CatalogDB* store, const std::optional<int64_t>& id) {
  if (!store || !id) return std::nullopt;
  try {
    return store->catalog(*id);
  } catch (const DBError&) {
    return std::nullopt;  // A database that cannot answer counts as the catalog being gone.
  }
}

// Whether the catalog's own drive is connected now: a real root folder that exists, on the volume the
// catalog was made from (another drive mounted at the same place is not this drive).
bool driveConnected(const Catalog& catalog) {
  if (catalog.isSample || catalog.rootPath.empty()) return false;
  std::error_code error;
  std::filesystem::path root = NameMapping::diskPath(catalog.rootPath);
  if (!std::filesystem::is_directory(root, error)) return false;
  return catalog.volumeUUID.empty() || VolumeInfo::read(root.string()).uuid == catalog.volumeUUID;
}

// Why the catalog's drive cannot be reached, in the words the rest of the program uses.
std::string offlineMessage(const Catalog& catalog) {
  if (catalog.isSample)
    return "“" + catalog.name +
           "” is demonstration data, so there is no real drive to open. Catalog one of your own drives to "
           "use "
           "Reveal in Finder.";
  if (catalog.rootPath.empty())
    return "“" + catalog.name + "” was imported from a file, so its original location is unknown.";
  return "Drive offline — insert “" + catalog.displayVolume() +
         "” to open this item. You can keep browsing the catalog while the drive is disconnected.";
}

// Trims "/" and blanks from both ends.
std::string trimFolder(const std::string& text) {
  auto junk = [](char c) { return c == '/' || c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  size_t begin = 0, end = text.size();
  while (begin < end && junk(text[begin])) ++begin;
  while (end > begin && junk(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

}  // namespace

RenameOutcome RenamePane::preview(CatalogDB* store) {
  RenameOutcome outcome;
  std::optional<Catalog> catalog = chosenCatalog(store, catalogID);
  if (!catalog) return outcome;
  if (!driveConnected(*catalog)) {
    outcome.alert = RenameOutcome::Alert{"Drive Offline", offlineMessage(*catalog)};
    return outcome;
  }
  std::vector<FileRecord> all;
  try {
    all = store->allFiles(catalog->id);
  } catch (const DBError&) {
    // Read as an empty catalog: the preview then says that nothing matches.
  }
  std::vector<FileRecord> chosen =
      select(std::move(all), trimFolder(folder), filter, includeSub, includeFolders);
  if (chosen.empty()) {
    steps.clear();
    outcome.toast = "No items match that folder and filter";
    return outcome;
  }
  OrganizationPlan plan;
  plan.format = std::string(OrganizationPlan::kFormat);
  plan.version = OrganizationPlan::kVersion;
  plan.catalog = catalog->name;
  plan.description = "Batch rename in " + catalog->name;
  plan.newFolders = std::vector<std::string>{};
  plan.moves = childrenFirst(rule.plan(chosen), chosen);
  steps = PlanEngine::validate(plan, catalog->rootPath, PlanStep::Kind::rename);
  m_stepsCatalogID = catalog->id;
  if (steps.empty()) outcome.toast = "Those rules don’t change any names";
  return outcome;
}

RenameOutcome RenamePane::apply(CatalogDB* store) {
  RenameOutcome outcome;
  std::optional<Catalog> catalog = chosenCatalog(store, catalogID);
  if (!catalog || !driveConnected(*catalog)) return outcome;
  if (m_stepsCatalogID != catalog->id) {
    steps.clear();
    return outcome;
  }
  PlanEngine::ExecuteResult result =
      PlanEngine::execute(steps, catalog->rootPath, "Batch rename in " + catalog->name, /*saveLog=*/true);
  steps.clear();
  if (!result.errors.empty()) {
    std::string message;
    for (size_t i = 0; i < result.errors.size() && i < kErrorsShown; ++i)
      message += (i ? "\n" : "") + result.errors[i];
    outcome.alert = RenameOutcome::Alert{"Some Renames Failed", message};
  } else {
    outcome.toast = renamedMessage(result.log.moves.size());
  }
  outcome.log = std::move(result.log);
  outcome.errors = std::move(result.errors);
  outcome.rescanCatalogID = catalog->id;
  return outcome;
}

std::string renamedMessage(size_t count) {
  return "Renamed " + std::to_string(count) + " item" + (count == 1 ? "" : "s") +
         " — undo any time from Organization Plan";
}

}  // namespace orrelin
