// Reading an exchange file whole, and writing one atomically through a temporary file beside it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace orrelin {

// Returns the whole contents of the file at `path`. Throws ExportError naming the file when it cannot be
// read (missing, a folder, no permission).
std::string readExchangeFile(const std::filesystem::path& path);

// A new file that replaces its target only when committed. The text goes to a temporary file made in the
// target's folder (so the final rename stays on one filesystem and is atomic); the target is never opened
// for writing, so a failure at any point leaves it exactly as it was, and no other file is touched.
class AtomicFile {
 public:
  // Creates the temporary file. Throws ExportError when the folder is missing or cannot be written.
  explicit AtomicFile(std::filesystem::path target);
  // Removes the temporary file unless commit() succeeded.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // Appends `text`. Throws ExportError when the disk refuses it (full, quota, I/O error).
  void write(std::string_view text);
  // The text not yet written, for writers that build many small pieces in place: append to it and call
  // flushIfFull() now and then, so a large file never sits in memory whole.
  std::string& buffer() { return m_buffer; }
  void flushIfFull() {
    if (m_buffer.size() >= kFlushSize) flush();
  }
  // Flushes, syncs and renames the temporary file over the target. Throws ExportError.
  void commit();

  // Bytes written so far, the buffer included.
  int64_t size() const { return m_written + static_cast<int64_t>(m_buffer.size()); }

  static constexpr size_t kFlushSize = 1 << 20;

 private:
  void flush();
  [[noreturn]] void fail(int error);

  std::filesystem::path m_target;
  std::string m_temp;
  std::string m_buffer;  // Written out in large pieces: documents are made of many small ones.
  int64_t m_written = 0;
  int m_fd = -1;
  bool m_committed = false;
};

// Writes `text` to `path` atomically, as AtomicFile does. Throws ExportError.
void writeFileAtomically(const std::filesystem::path& path, std::string_view text);

}  // namespace orrelin
