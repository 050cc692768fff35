// The desktop services where no desktop is: what they return and that they neither block nor crash.
#include "app/qt/desktop_services.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QUrl>

#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

TEST(DesktopServicesTest, FileURLsCarryTheBytesOfTheName) {
  const struct {
    std::string path;
    const char* encoded;
  } cases[] = {
      {"/media/ann/Drive/a b.txt", "file:///media/ann/Drive/a%20b.txt"},
      {"/data/caf\xe9/\xff.jpg", "file:///data/caf%E9/%FF.jpg"},
      {"/data/caf\xc3\xa9#1?.txt", "file:///data/caf%C3%A9%231%3F.txt"},
      {"/", "file:///"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.encoded);
    const QUrl url = DesktopServices::fileUrl(c.path);
    EXPECT_TRUE(url.isValid());
    EXPECT_TRUE(url.isLocalFile());
    EXPECT_EQ(url.toEncoded().toStdString(), c.encoded);
    // What a file manager or xdg-open decodes is the name on disk.
    EXPECT_EQ(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString(), c.path);
  }
  // A relative path is made absolute from the working folder.
  EXPECT_EQ(DesktopServices::fileUrl("x").toEncoded().toStdString(),
            "file://" + (std::filesystem::current_path() / "x").string());
}

TEST(DesktopServicesTest, WebAddresses) {
  for (const char* good : {"https://example.com/", "http://localhost:8080/a?b=c#d", "mailto:ann@example.com",
                           "  https://example.com/x  ", "file:///tmp/index.html"}) {
    EXPECT_TRUE(DesktopServices::webAddress(good).isValid()) << good;
  }
  for (const char* bad : {"", "example.com", "/tmp/index.html", "https://", "http:///path", "C:\\x",
                          "https://exa mple.com", "not a url at all"}) {
    EXPECT_FALSE(DesktopServices::webAddress(bad).isValid()) << bad;
    EXPECT_FALSE(DesktopServices::openUrl(bad)) << bad;
  }
}

// These tests run under a QCoreApplication with no session bus: nothing can be shown, and saying so must
// neither block nor crash.
TEST(DesktopServicesTest, WithoutADesktopEveryCallFailsQuietly) {
  testing::TempDir dir;
  testing::writeFile(dir.path() / "file.txt", "x");
  testing::ScopedEnv env;
  env.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (dir.path() / "no-bus").string());
  env.set("DISPLAY", std::nullopt);
  env.set("WAYLAND_DISPLAY", std::nullopt);

  EXPECT_FALSE(DesktopServices::reveal(dir.path() / "file.txt"));
  EXPECT_FALSE(DesktopServices::reveal(dir.path() / ""));
  EXPECT_FALSE(DesktopServices::open(dir.path() / "file.txt"));
  EXPECT_FALSE(DesktopServices::openUrl("https://example.com/"));
  DesktopServices::copyText("some path");
}

}  // namespace
}  // namespace orrelin
