// The kinds' icons and colours as the screens ask for them.
#include <gtest/gtest.h>

#include "scan/file_kind.h"
#include "ui/file_kinds.h"

namespace orrelin {
namespace {

TEST(FileKindStyleTest, EveryKindHasItsSymbolAndHueAndAnUnknownNameFallsBackToOther) {
  FileKindStyle style;
  ASSERT_EQ(style.names().size(), 12);
  EXPECT_EQ(style.names().front(), QStringLiteral("Folder"));
  EXPECT_EQ(style.names().back(), QStringLiteral("Other"));
  for (const QString& name : style.names()) {
    EXPECT_FALSE(style.symbol(name).isEmpty()) << name.toStdString();
    const QColor colour = style.color(name);
    EXPECT_NEAR(colour.hsvHueF(), style.hue(name), 0.01) << name.toStdString();
    EXPECT_NEAR(colour.hsvSaturationF(), 0.8, 0.01);
    EXPECT_NEAR(colour.valueF(), 1.0, 0.001);
  }
  EXPECT_EQ(style.symbol("Disk Image"), QStringLiteral("opticaldiscdrive.fill"));
  // Names are exact: another case, or no kind at all, draws as Other.
  for (const char* unknown : {"image", "", "Spreadsheet"}) {
    EXPECT_EQ(style.symbol(unknown), QStringLiteral("doc.fill")) << unknown;
    EXPECT_DOUBLE_EQ(style.hue(unknown), hue(FileKind::other)) << unknown;
  }
  EXPECT_NEAR(style.color("Video", 0.55).hsvSaturationF(), 0.55, 0.01);
  EXPECT_NEAR(style.color("Video", 3).hsvSaturationF(), 1.0, 0.001);
}

}  // namespace
}  // namespace orrelin
