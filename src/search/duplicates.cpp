// Duplicate detection in two stages: one aggregate chooses and ranks the sets, one query per set reads its
// members.
#include "search/duplicates.h"

#include <unordered_map>

#include "search/catalog_filter.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "store/safe_int.h"

namespace orrelin {

std::string_view rawValue(DuplicateMode mode) {
  switch (mode) {
    case DuplicateMode::nameSize:
      return "Name + Size";
    case DuplicateMode::hash:
      return "SHA-256 Checksum";
    case DuplicateMode::sizeOnly:
      return "Size Only";
  }
  return "Name + Size";
}

std::optional<DuplicateMode> duplicateModeFromRaw(std::string_view text) {
  for (DuplicateMode mode : kAllDuplicateModes)
    if (rawValue(mode) == text) return mode;
  return std::nullopt;
}

int64_t DuplicateGroup::wasted() const {
  int64_t copies = members.empty() ? 1 : static_cast<int64_t>(members.size());
  return SafeInt::multiplied(size, copies - 1, "the wasted space of a duplicate set");
}

int64_t totalWasted(const std::vector<DuplicateGroup>& groups) {
  int64_t sum = 0;
  for (const DuplicateGroup& g : groups) sum = SafeInt::added(sum, g.wasted(), "the total wasted space");
  return sum;
}

namespace {

struct AggregateRow {
  std::string first;  // The checksum, the name, or empty for size-only sets.
  int64_t size;
};

}  // namespace

std::vector<DuplicateGroup> CatalogDB::duplicates(DuplicateMode mode, int64_t minSize,
                                                  const std::set<int64_t>& catalogIDs, bool crossCatalogOnly,
                                                  int limit) {
  SQLArgs filterArgs{minSize};
  std::string filter = "is_dir = 0 AND size >= ?" + catalogInClause("catalog_id", catalogIDs, filterArgs);

  std::unordered_map<int64_t, std::string> catalogNames;
  for (const Catalog& c : catalogs()) catalogNames.try_emplace(c.id, c.name);  // The first name wins.
  auto nameOf = [&](int64_t id) {
    auto it = catalogNames.find(id);
    return it == catalogNames.end() ? std::string("?") : it->second;
  };

  std::string having =
      crossCatalogOnly ? "HAVING COUNT(*) > 1 AND COUNT(DISTINCT catalog_id) > 1" : "HAVING COUNT(*) > 1";
  std::string aggregate;
  if (mode == DuplicateMode::hash) {
    aggregate = "SELECT sha256, MAX(size), COUNT(*) FROM files WHERE " + filter +
                " AND sha256 != '' GROUP BY sha256 " + having +
                " ORDER BY MAX(size) * (COUNT(*) - 1) DESC LIMIT " + std::to_string(limit);
  } else {
    bool byName = mode == DuplicateMode::nameSize;
    aggregate = std::string("SELECT ") + (byName ? "name" : "''") + ", size, COUNT(*) FROM files WHERE " +
                filter + " GROUP BY " + (byName ? "name, size" : "size") + " " + having +
                " ORDER BY size * (COUNT(*) - 1) DESC LIMIT " + std::to_string(limit);
  }

  // Each statement takes the connection's lock on its own: held for the whole run, it would stall the
  // main thread, which shares this connection, for as long as the run takes.
  std::vector<AggregateRow> rows = m_db.query(aggregate, filterArgs, [](const Statement& r) {
    return AggregateRow{r.text(0), r.int64(1)};
  });

  auto readMembers = [&](const std::string& sql, const SQLArgs& args) {
    std::vector<DuplicateMember> members;
    m_db.forEachRow(sql, args, [&](const Statement& r) {
      FileRecord file = mapFile(r);
      if (mode == DuplicateMode::hash && !catalogIDs.empty() && !catalogIDs.count(file.catalogID)) return;
      std::string catalogName = nameOf(file.catalogID);
      members.push_back({std::move(file), std::move(catalogName)});
    });
    return members;
  };

  const std::string select = std::string("SELECT ") + fileColumns + " FROM files f WHERE ";
  std::vector<DuplicateGroup> groups;
  groups.reserve(rows.size());
  if (mode == DuplicateMode::hash) {
    // The member statement has no catalog filter; readMembers drops the rows of other catalogs.
    const std::string sql = select + "f.sha256 = ? AND f.is_dir = 0 ORDER BY f.catalog_id, f.path";
    for (const AggregateRow& row : rows) {
      std::vector<DuplicateMember> members = readMembers(sql, {row.first});
      if (members.size() <= 1) continue;
      std::string name = members.front().file.name;
      groups.push_back({"hash|" + row.first, std::move(name), row.size, std::move(members)});
    }
    return groups;
  }

  bool byName = mode == DuplicateMode::nameSize;
  SQLArgs idArgs;
  const std::string sql = select + "f.is_dir = 0 AND f.size = ?" + (byName ? " AND f.name = ?" : "") +
                          catalogInClause("f.catalog_id", catalogIDs, idArgs) +
                          " ORDER BY f.catalog_id, f.path";
  for (const AggregateRow& row : rows) {
    SQLArgs args{row.size};
    if (byName) args.emplace_back(row.first);
    args.insert(args.end(), idArgs.begin(), idArgs.end());
    std::vector<DuplicateMember> members = readMembers(sql, args);
    if (members.size() < 2) continue;
    std::string name =
        byName ? row.first : std::to_string(members.size()) + " files of " + Fmt::size(row.size);
    std::string key = std::string(rawValue(mode)) + "|" + row.first + "|" + std::to_string(row.size);
    groups.push_back({std::move(key), std::move(name), row.size, std::move(members)});
  }
  return groups;
}

}  // namespace orrelin
