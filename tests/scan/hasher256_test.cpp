// SHA-256 of real files, checked against known digests and against sha256sum.
#include "scan/hasher256.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "media_tools.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::TempDir;

TEST(Hasher256Test, KnownDigests) {
  TempDir dir;
  const std::pair<std::string, std::string> cases[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
  };
  for (const auto& [contents, digest] : cases) {
    std::string path = dir.file("known");
    testing::writeFile(path, contents);
    EXPECT_EQ(Hasher256::hash(path), digest) << contents.size() << " bytes";
  }
}

TEST(Hasher256Test, FilesAcrossChunkBoundariesMatchSha256sum) {
  REQUIRE_TOOLS("sha256sum");
  TempDir dir;
  std::mt19937_64 random(20240611);
  constexpr size_t kChunk = 4 * 1024 * 1024;
  // Sizes around the 4 MiB read size, where an off-by-one in the loop would show.
  for (size_t size : {kChunk - 1, kChunk, kChunk + 1, 2 * kChunk + 12345}) {
    std::string contents(size, '\0');
    for (auto& c : contents) c = static_cast<char>(random());
    std::string path = dir.file("random.bin");
    testing::writeFile(path, contents);
    std::string expected = testing::output("sha256sum " + testing::shellQuote(path)).substr(0, 64);
    EXPECT_EQ(Hasher256::hash(path), expected) << size << " bytes";
  }
}

TEST(Hasher256Test, OnlyRegularFilesAreRead) {
  TempDir dir;
  std::string real = dir.file("real.txt");
  testing::writeFile(real, "abc");
  std::string link = dir.file("link.txt");
  std::filesystem::create_symlink(real, link);
  std::string fifo = dir.file("pipe");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);  // Would block a plain open for reading.

  EXPECT_EQ(Hasher256::hash(link), std::nullopt);
  EXPECT_EQ(Hasher256::hash(fifo), std::nullopt);
  EXPECT_EQ(Hasher256::hash(dir.path()), std::nullopt);
  EXPECT_EQ(Hasher256::hash(dir.file("missing")), std::nullopt);
  EXPECT_EQ(Hasher256::hash("/dev/zero"), std::nullopt);  // Endless: a device is never read.
  EXPECT_TRUE(Hasher256::hash(real).has_value());

  if (::geteuid() != 0) {  // The superuser reads anything.
    ASSERT_EQ(::chmod(real.c_str(), 0), 0);
    EXPECT_EQ(Hasher256::hash(real), std::nullopt);
  }
}

}  // namespace
}  // namespace orrelin
