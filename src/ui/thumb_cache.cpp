// The memory cache of decoded thumbnails and the asynchronous image provider over it.
#include "ui/thumb_cache.h"

#include <QByteArray>
#include <QImageReader>
#include <QBuffer>
#include <QObject>
#include <QPointer>
#include <QQuickTextureFactory>
#include <QRunnable>
#include <QUrl>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "core/name_mapping.h"
#include "scan/regular_file.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

// Thumbnails are JPEGs of at most 320 pixels, a few tens of kilobytes; anything far larger at a thumbnail's
// path is not one, and is not read into memory whole.
constexpr long long kMaxFileBytes = 64LL * 1024 * 1024;

// Reads the whole regular file at `path` with its size and modification time, from one open descriptor, so
// the stamp and the bytes belong to the same file even if it is replaced meanwhile.
bool readFile(const fs::path& path, QByteArray& bytes, struct stat& info) {
  RegularFile file(path);
  if (!file.ok() || file.size() > kMaxFileBytes) return false;
  if (::fstat(file.fd(), &info) != 0) return false;
  bytes.resize(static_cast<qsizetype>(info.st_size));
  qsizetype done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::read(file.fd(), bytes.data() + done, static_cast<size_t>(bytes.size() - done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += n;
  }
  bytes.truncate(done);
  return true;
}

QImage decode(const QByteArray& bytes) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  return reader.read();
}

}  // namespace

ThumbCache& ThumbCache::shared() {
  static ThumbCache cache;
  return cache;
}

ThumbCache::Stamp ThumbCache::stampOf(const struct stat& info) {
  return {static_cast<std::uintmax_t>(info.st_ino), static_cast<std::uintmax_t>(info.st_size),
          static_cast<std::int64_t>(info.st_mtim.tv_sec) * 1'000'000'000 + info.st_mtim.tv_nsec};
}

QImage ThumbCache::image(const fs::path& path) {
  const std::string key = path.native();
  struct stat now {};
  const bool exists = ::stat(path.c_str(), &now) == 0;
  const Stamp current = exists ? stampOf(now) : Stamp{};
  {
    std::lock_guard lock(m_mutex);
    auto found = m_entries.find(key);
    if (found != m_entries.end()) {
      if (exists && found->second->stamp == current) {
        m_order.splice(m_order.begin(), m_order, found->second);
        return found->second->image;
      }
      // Rewritten by a rescan, or gone with its catalog: what was decoded is no longer that file.
      m_order.erase(found->second);
      m_entries.erase(found);
    }
  }
  if (!exists) return {};

  QByteArray bytes;
  struct stat info {};
  if (!readFile(path, bytes, info)) return {};
  QImage decoded = decode(bytes);
  if (decoded.isNull()) return {};
  const Stamp stamp = stampOf(info);

  std::lock_guard lock(m_mutex);
  auto found = m_entries.find(key);
  if (found != m_entries.end()) {
    // Another thread decoded the same file meanwhile; one copy is enough.
    found->second->stamp = stamp;
    found->second->image = decoded;
    m_order.splice(m_order.begin(), m_order, found->second);
    return decoded;
  }
  m_order.push_front(Entry{key, stamp, decoded});
  m_entries.emplace(key, m_order.begin());
  while (m_order.size() > m_limit) {
    m_entries.erase(m_order.back().key);
    m_order.pop_back();
  }
  return decoded;
}

void ThumbCache::clear() {
  Order dropped;
  {
    std::lock_guard lock(m_mutex);
    m_entries.clear();
    dropped.swap(m_order);
  }
  // The images are freed here, outside the lock.
}

std::size_t ThumbCache::count() const {
  std::lock_guard lock(m_mutex);
  return m_order.size();
}

bool ThumbCache::contains(const fs::path& path) const {
  std::lock_guard lock(m_mutex);
  return m_entries.count(path.native()) != 0;
}

QString ThumbCache::imageUrl(const fs::path& path) {
  const QByteArray stored = QByteArray::fromStdString(NameMapping::storedPath(path));
  return QStringLiteral("image://thumb/") + QString::fromLatin1(stored.toPercentEncoding());
}

// --- The image provider ---

namespace {

// One decode on the provider's pool; it hands its image to the response that asked for it, which may be
// gone by then (a delegate scrolled away): the queued connection then simply delivers to no one.
class ThumbJob : public QObject, public QRunnable {
  Q_OBJECT
 public:
  ThumbJob(fs::path path, QSize requestedSize) : m_path(std::move(path)), m_size(requestedSize) {}

  void run() override {
    QImage image = ThumbCache::shared().image(m_path);
    if (!image.isNull() && m_size.isValid() && !m_size.isEmpty() &&
        (image.width() > m_size.width() || image.height() > m_size.height())) {
      image = image.scaled(m_size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    emit done(image);
  }

 signals:
  void done(QImage image);

 private:
  fs::path m_path;
  QSize m_size;
};

class ThumbResponse : public QQuickImageResponse {
  Q_OBJECT
 public:
  ThumbResponse(fs::path path, QSize requestedSize, QThreadPool& pool) {
    auto* job = new ThumbJob(std::move(path), requestedSize);
    job->setAutoDelete(true);
    connect(job, &ThumbJob::done, this, &ThumbResponse::deliver, Qt::QueuedConnection);
    pool.start(job);
  }

  QQuickTextureFactory* textureFactory() const override {
    return QQuickTextureFactory::textureFactoryForImage(m_image);
  }
  QString errorString() const override {
    return m_image.isNull() ? QStringLiteral("No thumbnail") : QString();
  }

 private:
  void deliver(const QImage& image) {
    m_image = image;
    emit finished();
  }

  QImage m_image;
};

}  // namespace

ThumbImageProvider::ThumbImageProvider() {
  // Decoding is short and I/O-bound; two threads keep a gallery filling without taking the machine.
  m_pool.setMaxThreadCount(2);
}

QQuickImageResponse* ThumbImageProvider::requestImageResponse(const QString& id, const QSize& requestedSize) {
  return new ThumbResponse(pathOfId(id), requestedSize, m_pool);
}

fs::path ThumbImageProvider::pathOfId(const QString& id) {
  // The engine hands over the id partly decoded (UTF-8 sequences as text, a "%" always still as "%25"),
  // so one more decoding of its UTF-8 gives the stored path exactly.
  const QByteArray stored = QByteArray::fromPercentEncoding(id.toUtf8());
  return NameMapping::diskPath(stored.toStdString());
}

}  // namespace orrelin

#include "thumb_cache.moc"
