// The rows a catalog already holds, as a rescan needs them: found by relative path, marked when the walk
// meets them, and what is left unmarked listed by path at the end. Compact, since a drive may have
// millions of rows: the paths sit in one buffer and the index is an open-addressing table of row numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orrelin {

class SQLiteDB;

class ExistingRows {
 public:
  struct Row {
    int64_t id = 0;
    int64_t size = 0;
    double modified = 0;  // 0 where the stored value is NULL.
    uint64_t pathOffset = 0;
    uint32_t pathLength = 0;
    uint32_t tagsLength = 0;  // The stored tag text follows the path in the buffer.
    int32_t label = 0;
    bool isDir = false;
    bool hidden = false;
    bool seen = false;
  };

  // Reads every row of the catalog. A later row of the same path replaces an earlier one. Throws DBError.
  void load(SQLiteDB& db, int64_t catalogID);

  // The row stored under `path`, or null.
  Row* find(std::string_view path);
  std::string_view path(const Row& row) const { return {m_text.data() + row.pathOffset, row.pathLength}; }
  std::string_view tags(const Row& row) const {
    return {m_text.data() + row.pathOffset + row.pathLength, row.tagsLength};
  }

  // The rows the walk has not met, sorted by path in byte order.
  std::vector<const Row*> unseenByPath() const;

  size_t size() const { return m_rows.size(); }
  // Frees everything.
  void clear();

 private:
  void buildIndex();

  std::vector<Row> m_rows;
  std::string m_text;
  std::vector<uint32_t> m_slots;  // Row number + 1; 0 marks an empty slot. Size is a power of two.
};

}  // namespace orrelin
