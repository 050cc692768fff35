// The thumbnail memory cache on real JPEG files: the limit and which image goes first, files that do not
// decode, a thumbnail rewritten by a rescan, two threads at once, and the "thumb" image provider as QML
// loads from it.
#include "ui/thumb_cache.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/temp_dir.h"
#include "ui/qml_setup.h"
#include "ui_fixture.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

// Writes a JPEG of `width` by `height` in one colour, as the scan's thumbnails are written.
fs::path writeJpeg(const fs::path& path, int width, int height, QColor color = Qt::darkCyan) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(color);
  // Encoded in memory, so names that are not UTF-8 reach the disk as their bytes.
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, "JPG", 78)) << path;
  writeFile(path, bytes.toStdString());
  return path;
}

TEST(ThumbCacheTest, KeepsTheLimitDroppingTheLeastRecentlyUsed) {
  TempDir dir;
  ThumbCache cache;
  std::vector<fs::path> files;
  for (size_t i = 0; i <= ThumbCache::kLimit; ++i) {
    files.push_back(writeJpeg(dir.path() / (std::to_string(i) + ".jpg"), 8 + int(i % 5), 6));
  }

  for (size_t i = 0; i < ThumbCache::kLimit; ++i) {
    const QImage image = cache.image(files[i]);
    ASSERT_FALSE(image.isNull()) << i;
    EXPECT_EQ(image.width(), 8 + int(i % 5));
  }
  EXPECT_EQ(cache.count(), ThumbCache::kLimit);

  // The first is used again, so the second is now the oldest and makes room for one more.
  EXPECT_FALSE(cache.image(files[0]).isNull());
  EXPECT_FALSE(cache.image(files[ThumbCache::kLimit]).isNull());
  EXPECT_EQ(cache.count(), ThumbCache::kLimit);
  EXPECT_TRUE(cache.contains(files[0]));
  EXPECT_FALSE(cache.contains(files[1]));
  EXPECT_TRUE(cache.contains(files[2]));
  EXPECT_TRUE(cache.contains(files[ThumbCache::kLimit]));

  // A dropped image is read again from its file.
  EXPECT_EQ(cache.image(files[1]).width(), 9);
  EXPECT_TRUE(cache.contains(files[1]));

  cache.clear();
  EXPECT_EQ(cache.count(), 0u);
  EXPECT_TRUE(fs::exists(files[0])) << "clearing the cache leaves the files";
}

TEST(ThumbCacheTest, KeepsNothingForAFileThatDoesNotDecode) {
  TempDir dir;
  ThumbCache cache;
  const fs::path text = dir.path() / "text.jpg";
  writeFile(text, "not a picture at all");
  const fs::path empty = dir.path() / "empty.jpg";
  writeFile(empty, "");
  const fs::path good = writeJpeg(dir.path() / "good.jpg", 40, 30);
  const fs::path truncated = dir.path() / "truncated.jpg";
  writeFile(truncated, readFile(good).substr(0, 20));
  fs::create_directories(dir.path() / "folder.jpg");

  for (const fs::path& bad : {text, empty, truncated, dir.path() / "missing.jpg", dir.path() / "folder.jpg"}) {
    EXPECT_TRUE(cache.image(bad).isNull()) << bad;
    EXPECT_FALSE(cache.contains(bad)) << bad;
  }
  EXPECT_EQ(cache.count(), 0u);

  // A broken file that is later written properly decodes then: no failure was remembered.
  writeJpeg(text, 12, 10);
  EXPECT_EQ(cache.image(text).size(), QSize(12, 10));
  EXPECT_EQ(cache.count(), 1u);
}

TEST(ThumbCacheTest, ARewrittenThumbnailIsReadAgainAndADeletedOneIsForgotten) {
  TempDir dir;
  ThumbCache cache;
  const fs::path file = writeJpeg(dir.path() / "7" / "42.jpg", 32, 24);
  EXPECT_EQ(cache.image(file).size(), QSize(32, 24));

  // A rescan replaces the file under the same name (a new inode, as a writer's rename makes).
  const fs::path fresh = writeJpeg(dir.path() / "7" / "new.jpg", 24, 32);
  fs::rename(fresh, file);
  EXPECT_EQ(cache.image(file).size(), QSize(24, 32));
  EXPECT_EQ(cache.count(), 1u);

  fs::remove(file);
  EXPECT_TRUE(cache.image(file).isNull());
  EXPECT_FALSE(cache.contains(file));
}

TEST(ThumbCacheTest, TwoThreadsShareOneCacheSafely) {
  TempDir dir;
  constexpr int kFiles = 120;
  std::vector<fs::path> files;
  for (int i = 0; i < kFiles; ++i) files.push_back(writeJpeg(dir.path() / (std::to_string(i) + ".jpg"), 10 + i, 8));

  // A small limit, so the threads evict each other's images as they go.
  ThumbCache cache(40);
  std::atomic<int> wrong{0};
  auto reader = [&](int start, int step) {
    for (int round = 0; round < 12; ++round) {
      for (int n = 0; n < kFiles; ++n) {
        const int i = (start + n * step) % kFiles;
        const QImage image = cache.image(files[i]);
        if (image.isNull() || image.width() != 10 + i) ++wrong;
      }
      if (round % 4 == 3) cache.clear();
    }
  };
  std::thread first(reader, 0, 1);
  std::thread second(reader, kFiles - 1, kFiles - 1);  // The same files backwards.
  first.join();
  second.join();
  EXPECT_EQ(wrong.load(), 0);
  EXPECT_LE(cache.count(), 40u);
}

// QML's Image with a source from ThumbCache::imageUrl, until it has loaded or failed.
class ThumbProviderTest : public ::testing::Test {
 protected:
  void SetUp() override { setUpQmlEngine(m_engine); }

  std::unique_ptr<QQuickItem> loadImage(const QString& source, int sourceSize = 0) {
    QQmlComponent component(&m_engine);
    component.setData(QStringLiteral("import QtQuick\nImage { asynchronous: true; cache: false }").toUtf8(), QUrl());
    std::unique_ptr<QQuickItem> image(qobject_cast<QQuickItem*>(component.create()));
    EXPECT_NE(image, nullptr) << component.errorString().toStdString();
    if (!image) return image;
    if (sourceSize > 0) image->setProperty("sourceSize", QSize(sourceSize, sourceSize));
    image->setProperty("source", source);
    // Image.Loading is 2; Ready 1, Error 3.
    EXPECT_TRUE(waitUntil([&] { return image->property("status").toInt() != 2; }, 10000));
    return image;
  }

  QQmlEngine m_engine;
};

TEST_F(ThumbProviderTest, ServesThumbnailsWhateverTheirPathHolds) {
  TempDir dir;
  ThumbCache::shared().clear();
  // Characters a URL treats specially, a non-ASCII name, and a name that is not UTF-8.
  const fs::path odd = writeJpeg(dir.path() / "Thumbnails 100% #1?x=y&z" / "Café.jpg", 64, 48);
  const fs::path raw = writeJpeg(dir.path() / std::string("caf\xE9") / "1.jpg", 30, 20);

  for (const fs::path& file : {odd, raw}) {
    const QString url = ThumbCache::imageUrl(file);
    EXPECT_TRUE(url.startsWith("image://thumb/")) << url.toStdString();
    auto image = loadImage(url);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->property("status").toInt(), 1) << url.toStdString();
    EXPECT_TRUE(ThumbCache::shared().contains(file)) << file;
  }
  EXPECT_EQ(loadImage(ThumbCache::imageUrl(odd))->implicitWidth(), 64);

  // A requested size scales down, keeping the proportions; the cache keeps the image as decoded.
  auto small = loadImage(ThumbCache::imageUrl(odd), 32);
  EXPECT_EQ(small->implicitWidth(), 32);
  EXPECT_EQ(small->implicitHeight(), 24);
  EXPECT_EQ(ThumbCache::shared().image(odd).width(), 64);

  const fs::path broken = dir.path() / "broken.jpg";
  writeFile(broken, "garbage");
  EXPECT_EQ(loadImage(ThumbCache::imageUrl(broken))->property("status").toInt(), 3);
  EXPECT_FALSE(ThumbCache::shared().contains(broken));
}

}  // namespace
}  // namespace orrelin::testing
