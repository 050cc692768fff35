#include "core/name_mapping.h"

#include <gtest/gtest.h>

#include <random>

#include "support/temp_dir.h"

namespace orrelin {
namespace {

TEST(NameMapping, ValidNamesPassUnchangedAndStrayBytesBecomePrivateUseCharacters) {
  EXPECT_EQ(NameMapping::fromDisk("Fotos 2024/Café ☕ 😀.jpg"), "Fotos 2024/Café ☕ 😀.jpg");
  // Latin-1 "é" (0xE9) alone is not UTF-8: U+EF80 + 0x69 = U+EFE9.
  EXPECT_EQ(NameMapping::fromDisk("caf\xE9"), "caf\xEE\xBF\xA9");
  // Overlong "/" and an encoded surrogate are invalid byte by byte.
  EXPECT_EQ(NameMapping::fromDisk("\xC0\xAF"), "\xEE\xBF\x80\xEE\xBE\xAF");
  EXPECT_TRUE(NameMapping::isValidUTF8(NameMapping::fromDisk("\xED\xA0\x80x")));
  // A truncated sequence at the end.
  EXPECT_EQ(NameMapping::toDisk(NameMapping::fromDisk("ab\xE2\x82")), "ab\xE2\x82");
}

TEST(NameMapping, RealEscapeCharactersAreEscapedSoNamesNeverCollide) {
  std::string literal = "\xEE\xBF\xA9";  // The character U+EFE9 itself, valid UTF-8.
  std::string stray = "\xE9";            // The byte it would stand for.
  EXPECT_NE(NameMapping::fromDisk(literal), NameMapping::fromDisk(stray));
  EXPECT_EQ(NameMapping::toDisk(NameMapping::fromDisk(literal)), literal);
  EXPECT_EQ(NameMapping::toDisk(NameMapping::fromDisk(stray)), stray);
}

TEST(NameMapping, RandomByteStringsRoundTripAndAlwaysGiveValidText) {
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> byte(1, 255), length(0, 24);
  const std::string pool[] = {"\xEE\xBE\x80", "\xEF\xBF\xBF", "é", "😀", "\xED\xA0\x80", "\xF4\x90\x80\x80"};
  for (int round = 0; round < 20000; ++round) {
    std::string s;
    for (int n = length(rng); n > 0; --n) {
      if (rng() % 4 == 0) s += pool[rng() % std::size(pool)];
      else s += static_cast<char>(byte(rng));
    }
    std::string stored = NameMapping::fromDisk(s);
    ASSERT_TRUE(NameMapping::isValidUTF8(stored)) << round;
    ASSERT_EQ(NameMapping::toDisk(stored), s) << round;
  }
}

TEST(NameMapping, DiskPathReachesAFileWithANonUTF8Name) {
  testing::TempDir dir;
  std::string raw = "r\xE9sum\xE9.txt";
  testing::writeFile(dir.path() / raw, "cv");
  std::string stored = NameMapping::storedPath(dir.path() / raw);
  ASSERT_TRUE(NameMapping::isValidUTF8(stored));
  EXPECT_TRUE(std::filesystem::exists(NameMapping::diskPath(stored)));
}

}  // namespace
}  // namespace orrelin
