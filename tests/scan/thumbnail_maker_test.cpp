// Thumbnails of real images, videos and PDFs, checked by what ImageMagick decodes from them.
#include "scan/thumbnail_maker.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "media_tools.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::ffmpeg;
using testing::imageSize;
using testing::isBlue;
using testing::isRed;
using testing::isWhite;
using testing::pixel;
using testing::shellQuote;
using testing::TempDir;

class ThumbnailMakerTest : public ::testing::Test {
 protected:
  // The thumbnail's path for one row, as the scan lays them out: <catalog>/<file>.jpg.
  std::string thumb(const std::string& name) const {
    return (dir.path() / "Thumbnails" / "7" / (name + ".jpg")).string();
  }

  // Every file below `folder`, by name.
  static std::vector<std::string> filesIn(const fs::path& folder) {
    std::vector<std::string> names;
    if (!fs::exists(folder)) return names;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  static bool isJpeg(const std::string& path) {
    return testing::output("convert " + shellQuote(path) + " -format %m info:") == "JPEG";
  }

  TempDir dir;
};

TEST_F(ThumbnailMakerTest, ImagesShrinkToThreeHundredTwentyAndStandUpright) {
  REQUIRE_TOOLS("convert", "exiftool");
  // Stored as 1200 × 600, left half red, right half blue, tagged "rotate 90° clockwise to view": upright
  // it is 600 × 1200 with red on top.
  std::string photo = dir.file("portrait.jpg");
  ASSERT_TRUE(
      testing::run("convert -size 600x600 xc:red -size 600x600 xc:blue +append " + shellQuote(photo)));
  ASSERT_TRUE(testing::exiftool(photo, "-Orientation#=6 -Make=Canon -GPSLatitude=10 -GPSLongitude=10"));

  ASSERT_TRUE(ThumbnailMaker::make(photo, FileKind::image, thumb("1")));
  EXPECT_TRUE(isJpeg(thumb("1")));
  EXPECT_EQ(imageSize(thumb("1")), "160 320");
  EXPECT_TRUE(isRed(pixel(thumb("1"), 80, 40)));
  EXPECT_TRUE(isBlue(pixel(thumb("1"), 80, 280)));
  // Metadata is stripped: no camera, no position travels with the preview.
  EXPECT_EQ(testing::output("exiftool -s3 -Make -GPSLatitude " + shellQuote(thumb("1"))), "");

  // A wide PNG is fitted by its width; transparency lies over white.
  std::string wide = dir.file("wide.png");
  ASSERT_TRUE(testing::run("convert -size 1000x250 xc:none -fill red -draw 'rectangle 500,0 999,249' " +
                           shellQuote(wide)));
  ASSERT_TRUE(ThumbnailMaker::make(wide, FileKind::image, thumb("2")));
  EXPECT_EQ(imageSize(thumb("2")), "320 80");
  EXPECT_TRUE(isWhite(pixel(thumb("2"), 40, 40)));
  EXPECT_TRUE(isRed(pixel(thumb("2"), 280, 40)));

  // A small image is not enlarged.
  std::string small = dir.file("small.gif");
  ASSERT_TRUE(testing::run("convert -size 90x40 xc:blue " + shellQuote(small)));
  ASSERT_TRUE(ThumbnailMaker::make(small, FileKind::image, thumb("3")));
  EXPECT_EQ(imageSize(thumb("3")), "90 40");

  // 16-bit greyscale comes out as an ordinary 8-bit JPEG.
  std::string deep = dir.file("deep.png");
  ASSERT_TRUE(testing::run("convert -size 700x500 gradient: -colorspace Gray -depth 16 " + shellQuote(deep)));
  ASSERT_TRUE(ThumbnailMaker::make(deep, FileKind::image, thumb("4")));
  EXPECT_EQ(imageSize(thumb("4")), "320 229");
  EXPECT_TRUE(isJpeg(thumb("4")));
}

TEST_F(ThumbnailMakerTest, VideoFrameIsTurnedByTheDisplayMatrix) {
  REQUIRE_TOOLS("ffmpeg", "convert");
  // 640 × 320 frames, red left and blue right, with a display matrix that turns them a quarter turn
  // counter-clockwise, as ffmpeg itself shows them: 320 × 640 with blue on top.
  std::string stored = dir.file("stored.mp4"), video = dir.file("phone.mp4");
  ASSERT_TRUE(
      ffmpeg("-f lavfi -i color=red:size=320x320:rate=10 -f lavfi -i color=blue:size=320x320:rate=10 "
             "-filter_complex hstack -t 4 -c:v libx264 -pix_fmt yuv420p " +
             shellQuote(stored)));
  ASSERT_TRUE(testing::remuxRotated(stored, video, 90));
  ASSERT_TRUE(ThumbnailMaker::make(video, FileKind::video, thumb("10")));
  EXPECT_TRUE(isJpeg(thumb("10")));
  EXPECT_EQ(imageSize(thumb("10")), "160 320");
  EXPECT_TRUE(isBlue(pixel(thumb("10"), 80, 40)));
  EXPECT_TRUE(isRed(pixel(thumb("10"), 80, 280)));
  // Half a turn keeps the shape and swaps the sides.
  std::string upsideDown = dir.file("upside-down.mp4");
  ASSERT_TRUE(testing::remuxRotated(stored, upsideDown, 180));
  ASSERT_TRUE(ThumbnailMaker::make(upsideDown, FileKind::video, thumb("13")));
  EXPECT_EQ(imageSize(thumb("13")), "320 160");
  EXPECT_TRUE(isBlue(pixel(thumb("13"), 40, 80)));
  EXPECT_TRUE(isRed(pixel(thumb("13"), 280, 80)));

  // Without a flag the frame stays as stored; the frame comes from about a tenth in, past a red opening.
  std::string plain = dir.file("plain.mkv");
  ASSERT_TRUE(
      ffmpeg("-f lavfi -i color=red:size=400x300:rate=10:duration=1 "
             "-f lavfi -i color=blue:size=400x300:rate=10:duration=9 "
             "-filter_complex concat=n=2:v=1 -c:v libx264 -g 5 -pix_fmt yuv420p " +
             shellQuote(plain)));
  ASSERT_TRUE(ThumbnailMaker::make(plain, FileKind::video, thumb("11")));
  EXPECT_EQ(imageSize(thumb("11")), "320 240");
  EXPECT_TRUE(isBlue(pixel(thumb("11"), 160, 120)));

  // Anamorphic frames are shown at their display shape: 200 × 200 pixels twice as wide as high.
  std::string wide = dir.file("anamorphic.mov");
  ASSERT_TRUE(
      ffmpeg("-f lavfi -i testsrc=size=200x200:rate=10 -t 1 -vf setsar=2/1 -c:v mpeg4 " + shellQuote(wide)));
  ASSERT_TRUE(ThumbnailMaker::make(wide, FileKind::video, thumb("12")));
  EXPECT_EQ(imageSize(thumb("12")), "320 160");
}

TEST_F(ThumbnailMakerTest, PdfFirstPageFitsThreeHundredTwenty) {
  REQUIRE_TOOLS("convert");
  std::string letter = dir.file("letter.pdf");
  testing::writeFile(letter, testing::makePdf({{612, 792}, {792, 612}}, "Letter", "Me", /*redTopHalf=*/true));
  ASSERT_TRUE(ThumbnailMaker::make(letter, FileKind::pdf, thumb("20")));
  EXPECT_TRUE(isJpeg(thumb("20")));
  std::string size = imageSize(thumb("20"));
  EXPECT_TRUE(size == "247 320" || size == "248 320") << size;
  EXPECT_TRUE(isRed(pixel(thumb("20"), 120, 60)));
  EXPECT_TRUE(isWhite(pixel(thumb("20"), 120, 260)));

  // A small page is drawn up to the full size: a PDF has no pixel size of its own.
  std::string card = dir.file("card.pdf");
  testing::writeFile(card, testing::makePdf({{144, 72}}, "", ""));
  ASSERT_TRUE(ThumbnailMaker::make(card, FileKind::pdf, thumb("21")));
  EXPECT_EQ(imageSize(thumb("21")), "320 160");

  std::string empty = dir.file("nopages.pdf");
  testing::writeFile(empty, testing::makePdf({}, "", ""));
  EXPECT_FALSE(ThumbnailMaker::make(empty, FileKind::pdf, thumb("22")));
}

TEST_F(ThumbnailMakerTest, FailuresLeaveNothingBehind) {
  REQUIRE_TOOLS("convert");
  std::string words = dir.file("words.jpg");
  testing::writeFile(words, "not a picture");
  std::string broken = dir.file("broken.pdf");
  testing::writeFile(broken, "%PDF-1.7\ngarbage without objects");
  std::string noVideo = dir.file("silence.mp4");
  testing::writeFile(noVideo, std::string(4096, '\0'));
  std::string fifo = dir.file("pipe.jpg");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  std::string real = dir.file("real.png");
  ASSERT_TRUE(testing::run("convert -size 50x50 xc:red " + shellQuote(real)));
  std::string link = dir.file("link.png");
  fs::create_symlink(real, link);

  const std::pair<std::string, FileKind> cases[] = {
      {words, FileKind::image},
      {words, FileKind::video},
      {broken, FileKind::pdf},
      {noVideo, FileKind::video},
      {fifo, FileKind::image},
      {link, FileKind::image},
      {dir.file("gone.jpg"), FileKind::image},
      {real, FileKind::document},
      {real, FileKind::audio},
  };
  for (const auto& [source, kind] : cases) {
    SCOPED_TRACE(source);
    EXPECT_FALSE(ThumbnailMaker::make(source, kind, thumb("30")));
  }
  EXPECT_EQ(filesIn(dir.path() / "Thumbnails"), std::vector<std::string>{});
}

TEST_F(ThumbnailMakerTest, WritesCreateTheFolderAndReplaceAtomically) {
  REQUIRE_TOOLS("convert");
  std::string red = dir.file("red.png"), blue = dir.file("blue.png");
  ASSERT_TRUE(testing::run("convert -size 64x64 xc:red " + shellQuote(red)));
  ASSERT_TRUE(testing::run("convert -size 64x64 xc:blue " + shellQuote(blue)));

  std::string target = (dir.path() / "deep" / "er" / "5.jpg").string();
  ASSERT_TRUE(ThumbnailMaker::make(red, FileKind::image, target));
  EXPECT_TRUE(isRed(pixel(target, 32, 32)));
  ASSERT_TRUE(ThumbnailMaker::make(blue, FileKind::image, target));
  EXPECT_TRUE(isBlue(pixel(target, 32, 32)));
  // A failed remake keeps the previous thumbnail, and no temporary file is left beside it.
  testing::writeFile(red, "now broken");
  EXPECT_FALSE(ThumbnailMaker::make(red, FileKind::image, target));
  EXPECT_TRUE(isBlue(pixel(target, 32, 32)));
  EXPECT_EQ(filesIn(dir.path() / "deep"), (std::vector<std::string>{"5.jpg", "er"}));

  // A destination whose folder cannot be made: false, nothing written.
  testing::writeFile(dir.file("blocker"), "a file where a folder should be");
  EXPECT_FALSE(ThumbnailMaker::make(blue, FileKind::image, dir.file("blocker") + "/1.jpg"));
}

}  // namespace
}  // namespace orrelin
