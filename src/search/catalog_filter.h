// The "catalog id is one of these" condition that the analysis statements share.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "store/sql_value.h"

namespace orrelin {

// Returns " AND <column> IN (?,?,…)" with one parameter per id and appends the ids to `args`, in the set's
// order; returns "" for an empty set, which stands for every catalog.
inline std::string catalogInClause(const char* column, const std::set<int64_t>& ids, SQLArgs& args) {
  if (ids.empty()) return {};
  std::string sql = std::string(" AND ") + column + " IN (";
  for (auto it = ids.begin(); it != ids.end(); ++it) {
    sql += it == ids.begin() ? "?" : ",?";
    args.emplace_back(*it);
  }
  return sql + ")";
}

}  // namespace orrelin
