// The icons: every symbol the screens, the file kinds, the catalogs and the navigation name has a drawing
// that the SVG renderer reads, and every drawing is a one-colour silhouette that survives the tinting.
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include "app/qt/navigation.h"
#include "scan/file_kind.h"
#include "store/records.h"
#include "ui/icon_provider.h"

namespace orrelin {
namespace {

const QString kModuleFolder = QStringLiteral(":/Orrelin");
const QString kIconFolder = QStringLiteral(":/Orrelin/icons");
const QString kAppIcon = QStringLiteral("app.orrelin");

QString readAll(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll());
}

// The symbol names in QML text: the string literals on lines that set a symbol or an icon
// (`symbol: "folder.fill"`, `icon: cond ? "a.fill" : "b"`, `property string fooSymbol: "scope"`), or
// that a function returns as a symbol (`return "film.fill" // symbol`). A literal counts when it looks like
// a symbol name and either has a dot or stands as a value (after ":", "?" or "return"), so the words a
// line merely tests for ("offline" in `title.includes("offline") ? …`) are not taken for symbols.
QSet<QString> symbolsInQml(const QString& text) {
  static const QRegularExpression symbolLine(QStringLiteral(R"re((symbol|Symbol|icon|Icon)\w*\s*[:=(])re"));
  static const QRegularExpression literal(QStringLiteral(R"re((:|\?|return|\[|,)?\s*"([a-z][a-z0-9]*(\.[a-z0-9]+)*)")re"));
  QSet<QString> found;
  bool symbolContext = false;
  for (const QString& line : text.split(QLatin1Char('\n'))) {
    const QString code = line.section(QStringLiteral("//"), 0, 0);
    // A ternary that goes on to the next line (starting with "?" or ":") still gives the symbol.
    const QString trimmed = code.trimmed();
    const bool continues = symbolContext && (trimmed.startsWith(QLatin1Char('?')) || trimmed.startsWith(QLatin1Char(':')));
    symbolContext = continues || symbolLine.match(code).hasMatch();
    if (!symbolContext) continue;
    auto it = literal.globalMatch(code);
    while (it.hasNext()) {
      const auto match = it.next();
      const QString name = match.captured(2);
      if (name.contains(QLatin1Char('.')) || !match.captured(1).isEmpty()) found.insert(name);
    }
  }
  return found;
}

// Every symbol the program asks for, with where it was asked.
QMap<QString, QString> allUsedSymbols() {
  QMap<QString, QString> used;
  const QStringList screens = QDir(kModuleFolder).entryList({QStringLiteral("*.qml")}, QDir::Files);
  EXPECT_TRUE(screens.contains(QStringLiteral("Main.qml"))) << "the screens are not in the module's resources";
  for (const QString& screen : screens) {
    for (const QString& name : symbolsInQml(readAll(kModuleFolder + QLatin1Char('/') + screen))) used[name] = screen;
  }
  for (AppSection section : allSections()) used[symbol(section)] = QStringLiteral("section ") + rawText(section);
  for (ToolTab tab : allToolTabs()) used[symbol(tab)] = QStringLiteral("tool tab ") + rawText(tab);
  for (FileKind kind : kAllFileKinds) {
    used[QString::fromUtf8(symbol(kind).data(), static_cast<qsizetype>(symbol(kind).size()))] =
        QStringLiteral("file kind");
  }
  for (int flags = 0; flags < 8; ++flags) {
    Catalog catalog;
    catalog.isNetwork = flags & 1;
    catalog.isFolder = flags & 2;
    catalog.isRemovable = flags & 4;
    used[QString::fromStdString(catalog.symbol())] = QStringLiteral("catalog");
  }
  return used;
}

TEST(IconsTest, TheSymbolReaderFindsValuesButNotTheWordsALineTests) {
  const QString qml = QStringLiteral(
      "SvgIcon { symbol: \"folder.fill\" }\n"
      "    symbol: model.title.toLowerCase().includes(\"offline\") ? \"externaldrive.badge.exclamationmark\"\n"
      "                                                           : \"exclamationmark.triangle.fill\"\n"
      "IconButton { symbol: busy ? \"stop.fill\" : \"scope\"; tip: \"Search\" }\n"
      "Text { text: \"catalog.xml\" }\n"
      "LaserButton { text: \"Search\"; symbol: \"dot.radiowaves.right\" }  // \"not.this\"\n");
  const QSet<QString> found = symbolsInQml(qml);
  EXPECT_EQ(found, (QSet<QString>{QStringLiteral("folder.fill"), QStringLiteral("externaldrive.badge.exclamationmark"),
                                  QStringLiteral("exclamationmark.triangle.fill"),
                                  QStringLiteral("stop.fill"), QStringLiteral("scope"),
                                  QStringLiteral("dot.radiowaves.right")}));
}

TEST(IconsTest, EverySymbolInUseHasADrawingTheRendererReads) {
  const QMap<QString, QString> used = allUsedSymbols();
  // The six sections, seven tool tabs, twelve kinds and four catalog looks alone name more than this.
  ASSERT_GE(used.size(), 25);
  for (auto it = used.cbegin(); it != used.cend(); ++it) {
    const QString& name = it.key();
    EXPECT_TRUE(IconProvider::hasIcon(name)) << "no drawing for \"" << name.toStdString() << "\" (used by "
                                             << it.value().toStdString() << ")";
    if (!IconProvider::hasIcon(name)) continue;
    QSvgRenderer renderer(IconProvider::resourcePath(name));
    EXPECT_TRUE(renderer.isValid()) << name.toStdString() << " is not a valid SVG";
  }
}

// Each drawing is tinted by keeping its shape and replacing its colour: a detail drawn in white would
// vanish, a drawing off its 24 by 24 grid would be scaled unlike the others, and an empty or full
// square means a broken path.
TEST(IconsTest, EveryDrawingIsABlackSilhouetteOnTheGrid) {
  const QStringList files = QDir(kIconFolder).entryList({QStringLiteral("*.svg")}, QDir::Files);
  ASSERT_FALSE(files.isEmpty());
  static const QRegularExpression colour(QStringLiteral(R"re((fill|stroke|stop-color)\s*=\s*"([^"]*)")re"));
  for (const QString& file : files) {
    const QString name = file.chopped(4);
    if (name == kAppIcon) continue;
    const QString text = readAll(kIconFolder + QLatin1Char('/') + file);
    EXPECT_TRUE(text.contains(QStringLiteral("viewBox=\"0 0 24 24\""))) << file.toStdString();
    auto it = colour.globalMatch(text);
    while (it.hasNext()) {
      const QString value = it.next().captured(2);
      EXPECT_TRUE(value == QStringLiteral("none") || QColor(value) == QColor(Qt::black))
          << file.toStdString() << " draws in " << value.toStdString();
    }

    QSvgRenderer renderer(kIconFolder + QLatin1Char('/') + file);
    ASSERT_TRUE(renderer.isValid()) << file.toStdString();
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) inked += qAlpha(image.pixel(x, y)) > 128;
    }
    const double coverage = inked / double(image.width() * image.height());
    EXPECT_GT(coverage, 0.02) << file.toStdString() << " is nearly empty";
    EXPECT_LT(coverage, 0.8) << file.toStdString() << " is nearly a full square";
  }
}

TEST(IconsTest, TheTintedIconTakesTheColourAskedForAndAMissingOneShowsARing) {
  IconProvider provider;
  QSize size;
  const QImage drive = provider.requestImage(QStringLiteral("externaldrive.fill?#ff8000"), &size, QSize(32, 32));
  EXPECT_EQ(size, QSize(32, 32));
  int inked = 0;
  for (int y = 0; y < drive.height(); ++y) {
    for (int x = 0; x < drive.width(); ++x) {
      const QColor pixel = drive.pixelColor(x, y);
      if (pixel.alpha() < 255) continue;
      ++inked;
      EXPECT_EQ(pixel.rgb(), QColor(0xff, 0x80, 0x00).rgb());
    }
  }
  EXPECT_GT(inked, 100);

  // The ring of a missing drawing leaves its middle empty; no real drawing is that thin at the centre of
  // a drive.
  const QImage missing = provider.requestImage(QStringLiteral("no.such.symbol?#ffffff"), &size, QSize(32, 32));
  EXPECT_EQ(qAlpha(missing.pixel(16, 16)), 0);
  EXPECT_GT(qAlpha(missing.pixel(16, 7)), 0);
}

TEST(IconsTest, TheProgramIconIsAColourDrawingInTheModule) {
  ASSERT_TRUE(IconProvider::hasIcon(kAppIcon));
  QSvgRenderer renderer(IconProvider::resourcePath(kAppIcon));
  ASSERT_TRUE(renderer.isValid());
  QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  // Not a silhouette: the cartridge's dark body and the radar's cyan both show.
  bool dark = false, cyan = false;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() < 250) continue;
      dark = dark || pixel.value() < 60;
      cyan = cyan || (pixel.blue() > 200 && pixel.green() > 180 && pixel.red() < 120);
    }
  }
  EXPECT_TRUE(dark);
  EXPECT_TRUE(cyan);
}

}  // namespace
}  // namespace orrelin
