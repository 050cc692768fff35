// Decoded thumbnails kept in memory for the screens, so that scrolling back over a gallery does not read
// and decode the same JPEGs again; and the "thumb" image provider that serves them to QML without ever
// decoding on the interface's thread.
#pragma once

#include <QImage>
#include <QQuickAsyncImageProvider>
#include <QString>
#include <QThreadPool>

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <list>
#include <mutex>
#include <string>
#include <unordered_map>

namespace orrelin {

class ThumbCache {
 public:
  // How many decoded images the program keeps; the least recently used goes first beyond that.
  static constexpr std::size_t kLimit = 800;

  explicit ThumbCache(std::size_t limit = kLimit) : m_limit(limit == 0 ? 1 : limit) {}
  ThumbCache(const ThumbCache&) = delete;
  ThumbCache& operator=(const ThumbCache&) = delete;

  // The program's one cache, made on first use. Safe from any thread.
  static ThumbCache& shared();

  // The decoded image of the file at `path`: from memory when it was decoded before and the file has not
  // changed since (same size and modification time), else read and decoded now and kept. A null image,
  // and nothing kept, when the file is missing or does not decode. Safe from any thread; the decoding
  // itself runs outside the lock, so a slow file holds up no other caller.
  QImage image(const std::filesystem::path& path);

  // Forgets every image. The files stay.
  void clear();

  // How many images are kept now, and whether `path` is one of them.
  std::size_t count() const;
  bool contains(const std::filesystem::path& path) const;

  // "image://thumb/<path>" for QML, the path (as the catalog spells it, see NameMapping) percent-encoded.
  static QString imageUrl(const std::filesystem::path& path);

 private:
  // What tells a rewritten or replaced thumbnail from the one that was decoded.
  struct Stamp {
    std::uintmax_t inode = 0;
    std::uintmax_t size = 0;
    std::int64_t modified = 0;  // Nanoseconds since the epoch of the file clock.
    bool operator==(const Stamp&) const = default;
  };
  struct Entry {
    std::string key;
    Stamp stamp;
    QImage image;
  };
  using Order = std::list<Entry>;  // Most recently used first.

  static Stamp stampOf(const struct stat& info);

  const std::size_t m_limit;
  mutable std::mutex m_mutex;
  Order m_order;                                                // Under m_mutex.
  std::unordered_map<std::string, Order::iterator> m_entries;  // Under m_mutex.
};

// Serves image://thumb/<percent-encoded path> from ThumbCache::shared(), decoding on a pool of its own
// threads. A requested size scales the image down (never up), keeping its proportions. A file that does
// not decode answers with an error, so the Image shows its status as Error and draws nothing.
class ThumbImageProvider : public QQuickAsyncImageProvider {
 public:
  ThumbImageProvider();
  QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

  // The file that an image id names: the id percent-decoded, then mapped to the bytes on disk.
  static std::filesystem::path pathOfId(const QString& id);

 private:
  QThreadPool m_pool;
};

}  // namespace orrelin
