// SvgIcon's source binding under a garbage collector that runs at every allocation, so a JavaScript value
// the binding leaves unprotected is freed at once and the load crashes here rather than one time in many.
#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QUrl>

#include <gtest/gtest.h>

#include <memory>

#include "ui/qml_setup.h"
#include "ui/ui_state.h"

namespace orrelin::testing {
namespace {

// An engine whose collector runs at every allocation. The setting is read when the engine is made, so
// it is removed again at once and later engines of the process run normally.
std::unique_ptr<QQmlEngine> collectingEngine() {
  qputenv("QV4_MM_AGGRESSIVE_GC", "1");
  auto engine = std::make_unique<QQmlEngine>();
  qunsetenv("QV4_MM_AGGRESSIVE_GC");
  setUpQmlEngine(*engine);
  return engine;
}

TEST(IconBindingTest, TheSourceCarriesTheColourWhileTheCollectorRuns) {
  auto engine = collectingEngine();
  QQmlComponent icon(engine.get(), QUrl(QStringLiteral("qrc:/Orrelin/SvgIcon.qml")));
  ASSERT_TRUE(icon.isReady()) << icon.errorString().toStdString();

  // Opaque colours are written #rrggbb, translucent ones #aarrggbb: both read back by the icon provider.
  const struct {
    QColor color;
    const char* source;
  } cases[] = {
      {QColor(0x19, 0xe6, 0xff), "image://icon/folder.fill?#19e6ff"},
      {QColor(0x19, 0xe6, 0xff, 0x80), "image://icon/folder.fill?#8019e6ff"},
  };
  for (const auto& c : cases) {
    std::unique_ptr<QObject> made(
        icon.createWithInitialProperties({{"symbol", "folder.fill"}, {"color", c.color}}));
    ASSERT_NE(made, nullptr) << icon.errorString().toStdString();
    EXPECT_EQ(made->property("source").toUrl().toString(), QString::fromLatin1(c.source));
  }

  // Without a colour of its own the icon takes the theme's text colour, and an icon without a symbol
  // has no source.
  const QColor text = UIState::shared().palette().text;
  std::unique_ptr<QObject> themed(icon.createWithInitialProperties({{"symbol", "star"}}));
  ASSERT_NE(themed, nullptr);
  EXPECT_EQ(themed->property("source").toUrl().toString(),
            "image://icon/star?" + text.name(text.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb));
  std::unique_ptr<QObject> blank(icon.create());
  ASSERT_NE(blank, nullptr);
  EXPECT_TRUE(blank->property("source").toUrl().isEmpty());
}

}  // namespace
}  // namespace orrelin::testing
