// Media metadata read from real files made at test time by ffmpeg, exiftool and ImageMagick.
#include "scan/metadata_extractor.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>

#include "media_tools.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::exiftool;
using testing::ffmpeg;
using testing::shellQuote;
using testing::TempDir;
using Meta = std::map<std::string, std::string>;

class MetadataExtractorTest : public ::testing::Test {
 protected:
  // A plain image made by ImageMagick: `canvas` is its canvas ("xc:red", "gradient:"), `size` "WxH".
  std::string makeImage(const std::string& name, const std::string& size,
                        const std::string& canvas = "xc:gray50", const std::string& extra = "") {
    std::string path = dir.file(name);
    EXPECT_TRUE(testing::run("convert -size " + size + " " + canvas + " " + extra + " " + shellQuote(path)));
    return path;
  }

  TempDir dir;
};

TEST_F(MetadataExtractorTest, PhotoWithFullExifReadsEveryKey) {
  REQUIRE_TOOLS("convert", "exiftool");
  std::string path = makeImage("photo.jpg", "640x480", "gradient:red-blue");
  ASSERT_TRUE(exiftool(path,
                       "-Make=Canon -Model='Canon EOS R5' -LensModel='RF24-70mm F2.8 L IS USM' "
                       "-ExposureTime=0.004 -FNumber=2.8 -ISO=400 '-DateTimeOriginal=2023:07:14 10:22:33' "
                       "-GPSLatitude=22.9068 -GPSLatitudeRef=S -GPSLongitude=43.1729 -GPSLongitudeRef=W "
                       "-GPSAltitude=12.4 -GPSAltitudeRef=0"));

  MetadataExtractor::Output out = MetadataExtractor::extract(path, FileKind::image);
  EXPECT_EQ(out.meta, (Meta{
                          {"Dimensions", "640 \u00d7 480"},
                          {"Camera", "Canon EOS R5"},
                          {"Lens", "RF24-70mm F2.8 L IS USM"},
                          {"Date Taken", "2023:07:14 10:22:33"},
                          {"Aperture", "f/2.8"},
                          {"Shutter", "1/250 s"},
                          {"ISO", "400"},
                          {"GPS", "-22.90680, -43.17290"},
                          {"Altitude", "12 m"},
                          {"Color Model", "RGB"},
                      }));
  EXPECT_EQ(out.width, 640);
  EXPECT_EQ(out.height, 480);
  EXPECT_EQ(out.duration, 0);
}

TEST_F(MetadataExtractorTest, CameraTextJoinsMakeAndModelUnlessTheModelCarriesTheMake) {
  REQUIRE_TOOLS("convert", "exiftool");
  struct Case {
    std::string make, model;
    std::optional<std::string> camera;
  };
  const Case cases[] = {
      {"Canon", "Canon EOS R5", "Canon EOS R5"},
      {"  Apple ", "iPhone 15 Pro ", "Apple iPhone 15 Pro"},
      {"NIKON CORPORATION", "NIKON D850",
       "NIKON CORPORATION NIKON D850"},                // The make's suffix breaks the match.
      {"FUJIFILM", "fujifilm X-T5", "fujifilm X-T5"},  // Compared without case.
      {"", "DMC-GH5", "DMC-GH5"},
      {"SONY", "", "SONY"},
      {"", "", std::nullopt},
  };
  std::string base = makeImage("base.jpg", "64x48");
  for (const Case& c : cases) {
    std::string path = dir.file("camera.jpg");
    std::filesystem::copy_file(base, path, std::filesystem::copy_options::overwrite_existing);
    std::string tags;
    if (!c.make.empty()) tags += "-Make=" + shellQuote(c.make) + " ";
    if (!c.model.empty()) tags += "-Model=" + shellQuote(c.model) + " ";
    if (!tags.empty()) {
      ASSERT_TRUE(exiftool(path, tags));
    }
    Meta meta = MetadataExtractor::image(path).meta;
    SCOPED_TRACE("make '" + c.make + "', model '" + c.model + "'");
    if (c.camera) {
      EXPECT_EQ(meta["Camera"], *c.camera);
    } else {
      EXPECT_FALSE(meta.contains("Camera"));
    }
  }
}

TEST_F(MetadataExtractorTest, ExposureAndPositionEdges) {
  REQUIRE_TOOLS("convert", "exiftool");
  std::string base = makeImage("base.jpg", "32x32");
  struct Case {
    std::string tags;
    Meta expected;  // Of the keys Shutter, GPS and Altitude.
  };
  const Case cases[] = {
      {"-ExposureTime=1", {{"Shutter", "1.0 s"}}},
      {"-ExposureTime=2.5", {{"Shutter", "2.5 s"}}},
      {"-ExposureTime=0.0333333", {{"Shutter", "1/30 s"}}},
      {"-ExposureTime=0", {}},
      // No references: both signs stay positive.
      {"-GPSLatitude=48.8584 -GPSLongitude=2.2945", {{"GPS", "48.85840, 2.29450"}}},
      {"-GPSLatitude=35.6586 -GPSLatitudeRef=N -GPSLongitude=139.7454 -GPSLongitudeRef=E -GPSAltitude=333.4",
       {{"GPS", "35.65860, 139.74540"}, {"Altitude", "333 m"}}},
      // An altitude below sea level is written without its reference, as the value reads.
      {"-GPSLatitude=31.5 -GPSLongitude=35.5 -GPSAltitude=430 -GPSAltitudeRef=1",
       {{"GPS", "31.50000, 35.50000"}, {"Altitude", "430 m"}}},
      // An altitude without a full position writes nothing.
      {"-GPSLatitude=10 -GPSLatitudeRef=S -GPSAltitude=100", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    std::string path = dir.file("edge.jpg");
    std::filesystem::copy_file(base, path, std::filesystem::copy_options::overwrite_existing);
    ASSERT_TRUE(exiftool(path, c.tags));
    Meta meta = MetadataExtractor::image(path).meta;
    Meta picked;
    for (const char* key : {"Shutter", "GPS", "Altitude"}) {
      if (meta.contains(key)) picked[key] = meta[key];
    }
    EXPECT_EQ(picked, c.expected);
  }
}

TEST_F(MetadataExtractorTest, ImagesWithoutExifStillGiveSizeAndColourModel) {
  REQUIRE_TOOLS("convert");
  MetadataExtractor::Output grey =
      MetadataExtractor::image(makeImage("grey.png", "300x200", "gradient:", "-colorspace Gray"));
  EXPECT_EQ(grey.meta, (Meta{{"Dimensions", "300 \u00d7 200"}, {"Color Model", "Gray"}}));
  EXPECT_EQ(grey.width, 300);
  EXPECT_EQ(grey.height, 200);

  MetadataExtractor::Output cmyk =
      MetadataExtractor::image(makeImage("print.jpg", "40x30", "xc:cyan", "-colorspace CMYK"));
  EXPECT_EQ(cmyk.meta["Color Model"], "CMYK");
  EXPECT_EQ(cmyk.meta["Dimensions"], "40 \u00d7 30");

  // The pixel size is the stored one; an orientation tag does not swap it.
  std::string turned = makeImage("turned.jpg", "120x60");
  ASSERT_TRUE(exiftool(turned, "-Orientation#=6"));
  EXPECT_EQ(MetadataExtractor::image(turned).meta["Dimensions"], "120 \u00d7 60");

  MetadataExtractor::Output gif = MetadataExtractor::image(makeImage("anim.gif", "17x9", "xc:red"));
  EXPECT_EQ(gif.meta["Dimensions"], "17 \u00d7 9");
}

TEST_F(MetadataExtractorTest, UnreadableOrSpecialFilesGiveNothing) {
  std::string garbage = dir.file("garbage.jpg");
  testing::writeFile(garbage, "this is not an image at all, only some words");
  std::string empty = dir.file("empty.pdf");
  testing::writeFile(empty, "");
  std::string broken = dir.file("broken.pdf");
  testing::writeFile(broken, "%PDF-1.4\n1 0 obj << /Type /Catalog garbage");
  std::string text = dir.file("notes.mp4");
  testing::writeFile(text, "plain words pretending to be a movie\n");
  std::string fifo = dir.file("pipe.mov");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);  // Opening it for reading must not block.
  std::string missing = dir.file("missing.jpg");

  for (const std::string& path : {garbage, empty, broken, text, fifo, missing}) {
    SCOPED_TRACE(path);
    for (FileKind kind : {FileKind::image, FileKind::video, FileKind::audio, FileKind::pdf}) {
      MetadataExtractor::Output out = MetadataExtractor::extract(path, kind);
      EXPECT_TRUE(out.meta.empty()) << out.meta.begin()->first;
      EXPECT_EQ(out.width, 0);
      EXPECT_EQ(out.duration, 0);
    }
  }
}

TEST_F(MetadataExtractorTest, LinksAreNotFollowedAndOtherKindsAreNotRead) {
  REQUIRE_TOOLS("convert");
  std::string real = makeImage("real.png", "10x10");
  std::string link = dir.file("link.png");
  std::filesystem::create_symlink(real, link);
  EXPECT_TRUE(MetadataExtractor::image(link).meta.empty());
  EXPECT_FALSE(MetadataExtractor::image(real).meta.empty());
  for (FileKind kind : {FileKind::document, FileKind::other, FileKind::folder, FileKind::archive}) {
    EXPECT_TRUE(MetadataExtractor::extract(real, kind).meta.empty());
  }
}

TEST_F(MetadataExtractorTest, MovieWithTagsAndRotation) {
  REQUIRE_TOOLS("ffmpeg");
  std::string encoded = dir.file("encoded.mp4"), path = dir.file("clip.mp4");
  ASSERT_TRUE(ffmpeg(
      "-f lavfi -i testsrc=size=320x240:rate=25 -f lavfi -i sine=frequency=440:sample_rate=44100 "
      "-t 3 -c:v libx264 -pix_fmt yuv420p -b:v 300k -c:a aac -ac 1 -b:a 96k "
      "-metadata title='Harbour at Dawn' -metadata artist='Ana Souza' -metadata album='Lisbon' "
      "-metadata genre=Documentary -metadata copyright='2024 Ana Souza' -metadata composer='Rui Lopes' "
      "-metadata comment=ignored " +
      shellQuote(encoded)));
  ASSERT_TRUE(testing::remuxRotated(encoded, path, 90));

  MetadataExtractor::Output out = MetadataExtractor::extract(path, FileKind::video);
  EXPECT_NEAR(out.duration, 3.0, 0.1);
  // The stored frame size: the rotation flag turns the picture, not the track's natural size.
  EXPECT_EQ(out.width, 320);
  EXPECT_EQ(out.height, 240);
  EXPECT_EQ(out.meta["Duration"], "0:03");
  EXPECT_EQ(out.meta["Resolution"], "320 \u00d7 240");
  EXPECT_EQ(out.meta["Video Codec"], "H.264");
  EXPECT_EQ(out.meta["Frame Rate"], "25 fps");
  EXPECT_EQ(out.meta["Audio Codec"], "AAC");
  EXPECT_EQ(out.meta["Sample Rate"], "44.1 kHz");
  EXPECT_EQ(out.meta["Channels"], "Mono");
  EXPECT_EQ(out.meta["Title"], "Harbour at Dawn");
  EXPECT_EQ(out.meta["Artist"], "Ana Souza");
  EXPECT_EQ(out.meta["Album"], "Lisbon");
  EXPECT_EQ(out.meta["Genre"], "Documentary");
  EXPECT_EQ(out.meta["Copyright"], "2024 Ana Souza");
  EXPECT_EQ(out.meta["Creator"], "Rui Lopes");
  EXPECT_TRUE(std::regex_match(out.meta["Video Bitrate"], std::regex("[1-9][0-9]* kbps")))
      << out.meta["Video Bitrate"];
  EXPECT_TRUE(std::regex_match(out.meta["Bitrate"], std::regex("[1-9][0-9]* kbps"))) << out.meta["Bitrate"];
  EXPECT_EQ(out.meta.size(), 15u);  // Nothing else, the comment included.

  // The flag only says what the file holds; the tracks decide.
  EXPECT_EQ(MetadataExtractor::av(path, /*isVideo=*/false).meta, out.meta);
}

TEST_F(MetadataExtractorTest, LaterTracksWinAndCodecsHaveDisplayNames) {
  REQUIRE_TOOLS("ffmpeg");
  // Two video tracks of different sizes and two audio tracks: the later ones stand.
  std::string two = dir.file("two.mov");
  ASSERT_TRUE(
      ffmpeg("-f lavfi -i testsrc=size=160x120:rate=30 -f lavfi -i testsrc=size=64x48:rate=12 "
             "-f lavfi -i sine=sample_rate=22050 -f lavfi -i sine=sample_rate=48000 -t 1 "
             "-map 0 -map 1 -map 2 -map 3 -c:v:0 mpeg4 -c:v:1 mjpeg -c:a:0 aac -ac:a:0 1 "
             "-c:a:1 pcm_s16le -ac:a:1 2 " +
             shellQuote(two)));
  MetadataExtractor::Output out = MetadataExtractor::av(two, true);
  EXPECT_EQ(out.width, 64);
  EXPECT_EQ(out.height, 48);
  EXPECT_EQ(out.meta["Resolution"], "64 \u00d7 48");
  EXPECT_EQ(out.meta["Video Codec"], "Motion JPEG");
  EXPECT_EQ(out.meta["Frame Rate"], "12 fps");
  EXPECT_EQ(out.meta["Audio Codec"], "Linear PCM");
  EXPECT_EQ(out.meta["Sample Rate"], "48.0 kHz");
  EXPECT_EQ(out.meta["Channels"], "Stereo");
  EXPECT_EQ(out.meta["Bitrate"], "1536 kbps");

  struct Case {
    std::string file, arguments, key, name;
  };
  const Case cases[] = {
      {"hevc.mp4", "-f lavfi -i testsrc=size=64x64 -t 0.5 -c:v libx265 -tag:v hvc1", "Video Codec",
       "HEVC (H.265)"},
      {"prores.mov", "-f lavfi -i testsrc=size=64x64 -t 0.2 -c:v prores_ks -profile:v 3", "Video Codec",
       "Apple ProRes (apch)"},
      {"prores.mkv", "-f lavfi -i testsrc=size=64x64 -t 0.2 -c:v prores_ks -profile:v 0", "Video Codec",
       "Apple ProRes (apco)"},
      {"mpeg4.mkv", "-f lavfi -i testsrc=size=64x64 -t 0.5 -c:v mpeg4", "Video Codec", "MPEG-4"},
      {"h264.mkv", "-f lavfi -i testsrc=size=64x64 -t 0.5 -c:v libx264", "Video Codec", "H.264"},
      {"ffv1.mkv", "-f lavfi -i testsrc=size=64x64 -t 0.2 -c:v ffv1", "Video Codec", "ffv1"},
      {"song.mp3", "-f lavfi -i sine -t 2 -c:a libmp3lame -b:a 128k", "Audio Codec", "MP3"},
      {"song.m4a", "-f lavfi -i sine -t 1 -c:a alac", "Audio Codec", "Apple Lossless"},
      {"song.opus", "-f lavfi -i sine -t 1 -c:a libopus", "Audio Codec", "opus"},
      {"surround.wav", "-f lavfi -i sine -t 1 -ac 6", "Channels", "6"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    std::string path = dir.file(c.file);
    ASSERT_TRUE(ffmpeg(c.arguments + " " + shellQuote(path)));
    EXPECT_EQ(MetadataExtractor::av(path, true).meta[c.key], c.name);
  }
}

TEST_F(MetadataExtractorTest, AudioBitrateFromTheStreamOrEstimatedFromTheFile) {
  REQUIRE_TOOLS("ffmpeg");
  std::string mp3 = dir.file("tone.mp3");
  ASSERT_TRUE(
      ffmpeg("-f lavfi -i sine=sample_rate=44100 -t 4 -c:a libmp3lame -b:a 128k -ac 2 "
             "-metadata title=Tone -metadata artist=Oscillator -metadata album=Tests " +
             shellQuote(mp3)));
  MetadataExtractor::Output out = MetadataExtractor::extract(mp3, FileKind::audio);
  EXPECT_EQ(out.meta["Bitrate"], "128 kbps");
  EXPECT_EQ(out.meta["Channels"], "Stereo");
  EXPECT_EQ(out.meta["Duration"], "0:04");
  EXPECT_EQ(out.meta["Title"], "Tone");
  EXPECT_EQ(out.meta["Artist"], "Oscillator");
  EXPECT_FALSE(out.meta.contains("Resolution"));
  EXPECT_EQ(out.width, 0);

  // FLAC carries no bit rate of its own: it comes from the file's size over its duration. Vorbis
  // comments are read as well, whatever their case.
  std::string flac = dir.file("tone.flac");
  ASSERT_TRUE(
      ffmpeg("-f lavfi -i anoisesrc=d=5:a=0.3 -c:a flac -metadata TITLE=Noise -metadata GENRE=Ambient " +
             shellQuote(flac)));
  out = MetadataExtractor::extract(flac, FileKind::audio);
  ASSERT_GT(out.duration, 4.9);
  int64_t expected = static_cast<int64_t>(std::filesystem::file_size(flac) * 8.0 / out.duration / 1000.0);
  EXPECT_GT(expected, 100);
  EXPECT_EQ(out.meta["Bitrate"], std::to_string(expected) + " kbps");
  EXPECT_EQ(out.meta["Audio Codec"], "FLAC");
  EXPECT_EQ(out.meta["Title"], "Noise");
  EXPECT_EQ(out.meta["Genre"], "Ambient");

  // Ogg keeps tags on the stream.
  std::string ogg = dir.file("tone.ogg");
  ASSERT_TRUE(ffmpeg("-f lavfi -i sine -t 1 -c:a libvorbis -metadata ALBUM=Streams " + shellQuote(ogg)));
  EXPECT_EQ(MetadataExtractor::av(ogg, false).meta["Album"], "Streams");
}

TEST_F(MetadataExtractorTest, FourCharacterCodes) {
  const std::pair<const char*, const char*> table[] = {
      {"avc1", "H.264"},
      {"hvc1", "HEVC (H.265)"},
      {"hev1", "HEVC (H.265)"},
      {"ap4h", "Apple ProRes (ap4h)"},
      {"apcs", "Apple ProRes (apcs)"},
      {"ap4x", "Apple ProRes (ap4x)"},
      {"mp4v", "MPEG-4"},
      {"jpeg", "Motion JPEG"},
      {"aac ", "AAC"},
      {".mp3", "MP3"},
      {"lpcm", "Linear PCM"},
      {"alac", "Apple Lossless"},
      {"flac", "FLAC"},
      {"vp09", "vp09"},
      {"AVC1", "AVC1"},
      {"aac\t", "aac"},
      {" ab ", "ab"},
      {"    ", ""},
  };
  for (const auto& [text, name] : table) {
    uint32_t code = static_cast<uint32_t>(static_cast<unsigned char>(text[0])) << 24 |
                    static_cast<uint32_t>(static_cast<unsigned char>(text[1])) << 16 |
                    static_cast<uint32_t>(static_cast<unsigned char>(text[2])) << 8 |
                    static_cast<unsigned char>(text[3]);
    EXPECT_EQ(MetadataExtractor::fourCC(code), name) << text;
  }
  EXPECT_EQ(MetadataExtractor::fourCC(0x61766380), "?");  // "avc" and a byte outside ASCII.
  EXPECT_EQ(MetadataExtractor::fourCC(0xff766331), "?");
}

TEST_F(MetadataExtractorTest, PdfPagesSizeTitleAndAuthor) {
  std::string report = dir.file("report.pdf");
  testing::writeFile(
      report, testing::makePdf({{612, 792}, {842, 595}, {100, 100}}, "Annual Report 2023", "M. Okafor"));
  MetadataExtractor::Output out = MetadataExtractor::extract(report, FileKind::pdf);
  EXPECT_EQ(out.meta, (Meta{{"Pages", "3"},
                            {"Page Size", "612 \u00d7 792 pt"},
                            {"Title", "Annual Report 2023"},
                            {"Author", "M. Okafor"}}));
  EXPECT_EQ(out.width, 612);
  EXPECT_EQ(out.height, 792);

  // A4 in points has fractions, which are cut, not rounded; empty info texts are left out.
  std::string a4 = dir.file("a4.pdf");
  testing::writeFile(a4, testing::makePdf({{595.28, 841.89}}, "", ""));
  out = MetadataExtractor::pdf(a4);
  EXPECT_EQ(out.meta, (Meta{{"Pages", "1"}, {"Page Size", "595 \u00d7 841 pt"}}));
  EXPECT_EQ(out.width, 595);
  EXPECT_EQ(out.height, 841);

  std::string none = dir.file("none.pdf");
  testing::writeFile(none, testing::makePdf({}, "Empty", ""));
  out = MetadataExtractor::pdf(none);
  EXPECT_EQ(out.meta, (Meta{{"Pages", "0"}, {"Title", "Empty"}}));
  EXPECT_EQ(out.width, 0);
  EXPECT_EQ(out.height, 0);
}

}  // namespace
}  // namespace orrelin
