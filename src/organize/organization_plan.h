// Organization plans: the JSON document that says which folders to create and what to move or rename, and
// the steps of its dry run.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace orrelin {

// One move or rename. In a plan read from a file the paths are as its author wrote them (relative to the
// root, or absolute); in an undo log they are absolute stored paths.
struct PlanMove {
  std::string from;
  std::string to;

  bool operator==(const PlanMove&) const = default;
};

// The plan document. Every key is optional; absent keys stay absent and are omitted when written.
struct OrganizationPlan {
  static constexpr std::string_view kFormat = "tvrl-organization-plan";
  static constexpr int64_t kVersion = 1;

  std::optional<std::string> format;       // Carried, never looked at.
  std::optional<int64_t> version;          // Carried, never looked at.
  std::optional<std::string> catalog;      // Name of the catalog it was written for; carried only.
  std::optional<std::string> description;  // Becomes the title of the undo log.
  std::optional<std::vector<std::string>> newFolders;  // Relative to the root, or absolute.
  std::optional<std::vector<PlanMove>> moves;

  bool operator==(const OrganizationPlan&) const = default;

  // Decodes a plan from parsed JSON. Unknown keys are ignored and null counts as absent; a key of the wrong
  // type, or a move without "from" or "to", throws std::invalid_argument with a readable reason.
  static OrganizationPlan fromJSON(const nlohmann::json& json);
  // The plan as JSON, absent keys omitted.
  nlohmann::json toJSON() const;
};

// One line of a dry run: a folder to create or a move, with its verdict.
struct PlanStep {
  enum class Kind { folder, move, rename };

  std::string id;  // A fresh UUID for each validation: the identity of the row on screen.
  Kind kind = Kind::move;
  std::string from;  // Exactly as the plan wrote it; empty for a folder step.
  std::string to;    // Exactly as the plan wrote it.
  bool ok = false;   // Whether execution will carry the step out.
  std::string status;

  bool operator==(const PlanStep&) const = default;
};

// The label of a kind, which is also its stored raw text: "New Folder", "Move", "Rename".
std::string_view rawValue(PlanStep::Kind kind);

}  // namespace orrelin

template <>
struct std::hash<orrelin::PlanMove> {
  size_t operator()(const orrelin::PlanMove& m) const noexcept;
};
template <>
struct std::hash<orrelin::PlanStep> {
  size_t operator()(const orrelin::PlanStep& s) const noexcept;
};
