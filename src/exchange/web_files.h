// Files of the inventory web site: its folders, and copies of cached thumbnails that never leave the
// thumbnails folder through a link. Pages and data scripts are written with AtomicFile (exchange_file.h).
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace orrelin::web {

// Creates `folder` and its parents (an existing folder is fine). Throws ExportError.
void createFolder(const std::filesystem::path& folder);

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
