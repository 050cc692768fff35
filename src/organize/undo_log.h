// The record of one applied plan, kept as a JSON file in "Undo Logs" of the data folder, and the store of
// those files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/date.h"
#include "organize/organization_plan.h"

namespace orrelin {

struct UndoLog {
  std::string id;  // Upper-case canonical UUID; also the file's name (id + ".json").
  Date created;    // When execution began.
  std::string title;
  std::string root;  // Stored path of the drive or folder root.
  std::vector<std::string>
      createdFolders;           // Absolute stored paths that execution really created, parents first.
  std::vector<PlanMove> moves;  // Absolute stored paths of the moves that happened, in order.
  bool undone = false;

  bool operator==(const UndoLog&) const = default;

  // The log as JSON: seven keys, "created" as ISO 8601 with whole seconds and "Z".
  nlohmann::json toJSON() const;
  // Decodes a log; nullopt when a key is missing or of the wrong type, or the date does not parse.
  static std::optional<UndoLog> fromJSON(const nlohmann::json& json);
};

namespace UndoLogStore {

// Returns AppPaths::undoLogs(), creating it with its parents (a failure to create is ignored).
std::filesystem::path folder();

// Writes the log atomically as folder()/<id>.json, pretty printed with sorted keys, replacing an earlier
// file of the same id. Failures are swallowed: the caller learns nothing.
void save(const UndoLog& log);

// All logs in folder() that read and decode, newest first. Anything else there is skipped without a word;
// a folder that cannot be listed gives an empty list.
std::vector<UndoLog> list();

}  // namespace UndoLogStore

}  // namespace orrelin
