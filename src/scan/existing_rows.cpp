// The stored rows of a catalog being rescanned.
#include "scan/existing_rows.h"

#include <algorithm>
#include <functional>

#include "store/sqlite_db.h"

namespace orrelin {

void ExistingRows::load(SQLiteDB& db, int64_t catalogID) {
  clear();
  db.forEachRow(
      "SELECT id, path, size, COALESCE(modified,0), is_dir, COALESCE(tags,''), COALESCE(label,0), "
      "COALESCE(hidden,0) FROM files WHERE catalog_id=?",
      {catalogID}, [&](const Statement& st) {
        Row row;
        row.id = st.int64(0);
        const std::string path = st.text(1);
        row.size = st.int64(2);
        row.modified = st.real(3);
        row.isDir = st.boolean(4);
        const std::string tags = st.text(5);
        row.label = st.integer(6);
        row.hidden = st.boolean(7);
        row.pathOffset = m_text.size();
        row.pathLength = static_cast<uint32_t>(path.size());
        row.tagsLength = static_cast<uint32_t>(tags.size());
        m_text += path;
        m_text += tags;
        m_rows.push_back(row);
      });
  m_text.shrink_to_fit();
  m_rows.shrink_to_fit();
  buildIndex();
}

void ExistingRows::buildIndex() {
  size_t capacity = 16;
  while (capacity < m_rows.size() * 2) capacity *= 2;
  m_slots.assign(capacity, 0);
  const size_t mask = capacity - 1;
  for (size_t i = 0; i < m_rows.size(); ++i) {
    const std::string_view key = path(m_rows[i]);
    for (size_t slot = std::hash<std::string_view>{}(key)&mask;; slot = (slot + 1) & mask) {
      if (m_slots[slot] == 0) {
        m_slots[slot] = static_cast<uint32_t>(i + 1);
        break;
      }
      Row& other = m_rows[m_slots[slot] - 1];
      if (path(other) == key) {
        // The earlier row of the same path is no longer reachable; it must not be removed as unseen.
        other.seen = true;
        m_slots[slot] = static_cast<uint32_t>(i + 1);
        break;
      }
    }
  }
}

ExistingRows::Row* ExistingRows::find(std::string_view key) {
  if (m_rows.empty()) return nullptr;
  const size_t mask = m_slots.size() - 1;
  for (size_t slot = std::hash<std::string_view>{}(key)&mask; m_slots[slot] != 0; slot = (slot + 1) & mask) {
    Row& row = m_rows[m_slots[slot] - 1];
    if (path(row) == key) return &row;
  }
  return nullptr;
}

std::vector<const ExistingRows::Row*> ExistingRows::unseenByPath() const {
  std::vector<const Row*> out;
  for (const Row& row : m_rows)
    if (!row.seen) out.push_back(&row);
  // Byte order, as SQLite's BINARY collation sorts paths.
  std::sort(out.begin(), out.end(), [&](const Row* a, const Row* b) { return path(*a) < path(*b); });
  return out;
}

void ExistingRows::clear() {
  std::vector<Row>().swap(m_rows);
  std::string().swap(m_text);
  std::vector<uint32_t>().swap(m_slots);
}

}  // namespace orrelin
