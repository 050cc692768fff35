// Reading an exchange file whole, and writing one atomically through a temporary file beside it.
#pragma once

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
  // Flushes, syncs and renames the temporary file over the target. Throws ExportError.
  void commit();

 private:
  void flush();
  [[noreturn]] void fail(int error);

  std::filesystem::path m_target;
  std::string m_temp;
  std::string m_buffer;  // Written out in large pieces: documents are made of many small ones.
  int m_fd = -1;
  bool m_committed = false;
};

}  // namespace orrelin
