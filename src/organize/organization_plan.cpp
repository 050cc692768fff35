#include "organize/organization_plan.h"

#include <cmath>
#include <stdexcept>

namespace orrelin {

namespace {

using nlohmann::json;

std::string typeName(const json& value) {
  if (value.is_string()) return "text";
  if (value.is_number()) return "a number";
  if (value.is_boolean()) return "true or false";
  if (value.is_array()) return "a list";
  if (value.is_object()) return "an object";
  return "null";
}

[[noreturn]] void wrongType(const std::string& where, const char* expected, const json& value) {
  throw std::invalid_argument(where + " must be " + expected + ", not " + typeName(value));
}

// A present, non-null key of the object, or nullptr.
const json* member(const json& object, const char* key) {
  auto it = object.find(key);
  return it == object.end() || it->is_null() ? nullptr : &*it;
}

std::optional<std::string> optionalText(const json& object, const char* key) {
  const json* value = member(object, key);
  if (!value) return std::nullopt;
  if (!value->is_string()) wrongType(std::string("\"") + key + "\"", "text", *value);
  return value->get<std::string>();
}

std::optional<int64_t> optionalInteger(const json& object, const char* key) {
  const json* value = member(object, key);
  if (!value) return std::nullopt;
  if (value->is_number_integer()) {
    if (value->is_number_unsigned() && value->get<uint64_t>() > uint64_t(INT64_MAX))
      throw std::invalid_argument(std::string("\"") + key + "\" is too large");
    return value->get<int64_t>();
  }
  // 1.0 is still the integer 1; 1.5 is not an integer.
  if (value->is_number_float()) {
    double d = value->get<double>();
    if (std::isfinite(d) && d == std::trunc(d) && std::fabs(d) < 9.2e18) return static_cast<int64_t>(d);
  }
  wrongType(std::string("\"") + key + "\"", "a whole number", *value);
}

std::string requiredText(const json& object, const char* key, const std::string& where) {
  const json* value = member(object, key);
  if (!value) throw std::invalid_argument(where + " has no \"" + key + "\"");
  if (!value->is_string()) wrongType(where + "'s \"" + key + "\"", "text", *value);
  return value->get<std::string>();
}

}  // namespace

OrganizationPlan OrganizationPlan::fromJSON(const json& value) {
  if (!value.is_object()) wrongType("The plan", "a JSON object", value);
  OrganizationPlan plan;
  plan.format = optionalText(value, "format");
  plan.version = optionalInteger(value, "version");
  plan.catalog = optionalText(value, "catalog");
  plan.description = optionalText(value, "description");
  if (const json* folders = member(value, "newFolders")) {
    if (!folders->is_array()) wrongType("\"newFolders\"", "a list of texts", *folders);
    plan.newFolders.emplace();
    for (size_t i = 0; i < folders->size(); ++i) {
      const json& entry = (*folders)[i];
      if (!entry.is_string())
        wrongType("Entry " + std::to_string(i + 1) + " of \"newFolders\"", "text", entry);
      plan.newFolders->push_back(entry.get<std::string>());
    }
  }
  if (const json* moves = member(value, "moves")) {
    if (!moves->is_array()) wrongType("\"moves\"", "a list of moves", *moves);
    plan.moves.emplace();
    for (size_t i = 0; i < moves->size(); ++i) {
      const json& entry = (*moves)[i];
      std::string where = "Move " + std::to_string(i + 1);
      if (!entry.is_object()) wrongType(where, "an object with \"from\" and \"to\"", entry);
      PlanMove move;
      move.from = requiredText(entry, "from", where);
      move.to = requiredText(entry, "to", where);
      plan.moves->push_back(std::move(move));
    }
  }
  return plan;
}

json OrganizationPlan::toJSON() const {
  json out = json::object();
  if (format) out["format"] = *format;
  if (version) out["version"] = *version;
  if (catalog) out["catalog"] = *catalog;
  if (description) out["description"] = *description;
  if (newFolders) out["newFolders"] = *newFolders;
  if (moves) {
    json list = json::array();
    for (const PlanMove& m : *moves) list.push_back({{"from", m.from}, {"to", m.to}});
    out["moves"] = std::move(list);
  }
  return out;
}

std::string_view rawValue(PlanStep::Kind kind) {
  switch (kind) {
    case PlanStep::Kind::folder:
      return "New Folder";
    case PlanStep::Kind::move:
      return "Move";
    case PlanStep::Kind::rename:
      return "Rename";
  }
  return "Move";
}

}  // namespace orrelin

namespace {

size_t combine(size_t seed, size_t value) { return seed ^ (value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2)); }

}  // namespace

size_t std::hash<orrelin::PlanMove>::operator()(const orrelin::PlanMove& m) const noexcept {
  std::hash<std::string> h;
  return combine(h(m.from), h(m.to));
}

size_t std::hash<orrelin::PlanStep>::operator()(const orrelin::PlanStep& s) const noexcept {
  std::hash<std::string> h;
  size_t seed = combine(h(s.id), static_cast<size_t>(s.kind));
  seed = combine(seed, h(s.from));
  seed = combine(seed, h(s.to));
  seed = combine(seed, s.ok ? 1 : 0);
  return combine(seed, h(s.status));
}
