// Reading an exchange file in pieces, and the incremental CSV and UTF-8 readers.
#include "exchange/import_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "core/name_mapping.h"
#include "organize/export_error.h"

namespace orrelin::Exporter {

namespace {

constexpr size_t kPieceSize = 1 << 20;

[[noreturn]] void cannotRead(const std::filesystem::path& path, int error) {
  throw ExportError("Could not read \u201C" + NameMapping::storedPath(path) + "\u201D: " + std::strerror(error) +
                    ".");
}

// How many bytes a character that starts with `lead` has; 1 for anything that cannot start one.
size_t sequenceLength(unsigned char lead) {
  if (lead >= 0xF0 && lead <= 0xF7) return 4;
  if (lead >= 0xE0) return lead <= 0xEF ? 3 : 1;
  if (lead >= 0xC0) return 2;
  return 1;
}

}  // namespace

ImportSource::ImportSource(std::filesystem::path path) : m_path(std::move(path)) {
  m_fd = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
  if (m_fd < 0) cannotRead(m_path, errno);
  m_buffer.resize(kPieceSize);
}

ImportSource::~ImportSource() {
  if (m_fd >= 0) ::close(m_fd);
}

std::string_view ImportSource::read() {
  while (true) {
    ssize_t n = ::read(m_fd, m_buffer.data(), m_buffer.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) fail(errno);
    m_piece = std::string_view(m_buffer.data(), static_cast<size_t>(n));
    m_at = 0;
    return m_piece;
  }
}

void ImportSource::rewind() {
  if (::lseek(m_fd, 0, SEEK_SET) < 0) fail(errno);
  m_piece = {};
  m_at = 0;
}

void ImportSource::fail(int error) const { cannotRead(m_path, error); }

bool ImportSource::Bytes::atEnd() const {
  if (!m_source) return true;
  if (m_source->m_at < m_source->m_piece.size()) return false;
  return m_source->read().empty();
}

void CSVReader::endField() {
  if (m_count == m_fields.size()) m_fields.emplace_back();
  m_fields[m_count].swap(m_field);
  m_field.clear();
  ++m_count;
}

void UTF8Check::feed(std::string_view text) {
  if (!m_valid || text.empty()) return;
  if (!m_carry.empty()) {
    // Complete the character the last piece cut off, then go on with the rest.
    size_t need = sequenceLength(static_cast<unsigned char>(m_carry[0])) - m_carry.size();
    size_t take = std::min(need, text.size());
    m_carry.append(text.substr(0, take));
    text.remove_prefix(take);
    if (take < need) return;
    m_valid = NameMapping::isValidUTF8(m_carry);
    m_carry.clear();
    if (!m_valid) return;
  }
  // Leave a character that this piece does not finish for the next one.
  size_t cut = text.size();
  for (size_t back = 1; back <= 3 && back <= text.size(); ++back) {
    unsigned char c = static_cast<unsigned char>(text[text.size() - back]);
    if ((c & 0xC0) == 0x80) continue;  // A continuation byte: look further back for its start.
    if (sequenceLength(c) > back) cut = text.size() - back;
    break;
  }
  m_valid = NameMapping::isValidUTF8(text.substr(0, cut));
  m_carry.assign(text.substr(cut));
}

}  // namespace orrelin::Exporter
