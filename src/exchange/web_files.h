// Files of the inventory web site: whole-or-nothing writes of pages and data scripts, and copies of cached
// thumbnails that never leave the thumbnails folder through a link.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace orrelin::web {

// Creates `folder` and its parents (an existing folder is fine). Throws ExportError.
void createFolder(const std::filesystem::path& folder);

// A file written in pieces to a temporary beside its final path, which replaces the final file only on
// commit(): a reader never sees half a file, and a failed export leaves any earlier version in place.
class AtomicFile {
 public:
  // Creates the temporary in the folder of `path`. Throws ExportError.
  explicit AtomicFile(std::filesystem::path path);
  // Removes the temporary unless commit() succeeded.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // The text not yet written. Callers append to it and call flushIfFull() now and then, so that a large
  // file never sits in memory whole.
  std::string& buffer() { return m_buffer; }
  void flushIfFull() {
    if (m_buffer.size() >= kFlushSize) flush();
  }
  // Writes the rest, syncs the file to disk and renames it over `path`. Throws ExportError.
  void commit();

  // Bytes written so far, the buffer included.
  int64_t size() const { return m_written + static_cast<int64_t>(m_buffer.size()); }

  static constexpr size_t kFlushSize = 1 << 20;

 private:
  void flush();
  [[noreturn]] void fail(int error) const;

  std::filesystem::path m_path;
  std::filesystem::path m_temporary;
  int m_fd = -1;
  std::string m_buffer;
  int64_t m_written = 0;
};

// Writes `text` to `path` atomically, as AtomicFile does. Throws ExportError.
void writeFileAtomically(const std::filesystem::path& path, std::string_view text);

// Copies one catalog's cached thumbnails (<thumbsRoot>/<catalog id>/<file id>.jpg) into a site's
// thumbs/<catalog id>/ folder. The catalog's folder and each picture must be a real folder and a regular
// file: a symbolic link in their place is never followed, so a copy cannot read outside the thumbnails
// folder. Folders stay open for the whole catalog, so a copy costs no path lookups.
class ThumbnailCopier {
 public:
  ThumbnailCopier(const std::filesystem::path& thumbsRoot, const std::filesystem::path& siteRoot,
                  int64_t catalogID);
  ~ThumbnailCopier();
  ThumbnailCopier(const ThumbnailCopier&) = delete;
  ThumbnailCopier& operator=(const ThumbnailCopier&) = delete;

  // Copies the thumbnail of `fileID` over any earlier copy. Returns true when the site holds a complete
  // copy; false, leaving no partial file, when there is no thumbnail or any step fails.
  bool copy(int64_t fileID);

 private:
  // Opens (creating as needed) the site's folder for this catalog, once; -1 when that fails.
  int targetFolder();

  std::filesystem::path m_siteRoot;
  std::string m_catalogName;  // The catalog id in decimal, the name of both folders.
  int m_source = -1;          // <thumbsRoot>/<catalog id>, or -1 when missing.
  int m_target = -1;          // The site's thumbs/<catalog id>, once opened.
  bool m_targetTried = false;
};

}  // namespace orrelin::web
