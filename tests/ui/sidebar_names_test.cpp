// Names as users give them: a right-to-left name keeps to the left edge like every other line, a name too
// long for its row is cut short and shown whole on hover, and each cartridge's help texts say what it is.
#include <QQmlProperty>

#include "sidebar_support.h"

namespace orrelin::testing {
namespace {

// The sidebar's rows lay text out from the left; a name in Hebrew or Arabic must not drift to the right.
int alignmentOf(QObject* text) {
  return QQmlProperty::read(text, "effectiveHorizontalAlignment").toInt() & Qt::AlignHorizontal_Mask;
}

TEST_F(SidebarTest, RightToLeftAndOverlongNamesKeepToTheLeftAndShowWholeOnHover) {
  removeAllCatalogs();
  TempDir temp;
  const QString hebrew = QString::fromUtf8("ארכיון הקלטות שדה");
  const QString longName = "The Very Long Archive Name Of Field Recordings, Reel Sixty";
  makeTree(temp.path() / "a");
  makeTree(temp.path() / "b");
  makeTree(temp.path() / "c");
  const Catalog rtl = scanFolder(temp.path() / "a", hebrew);
  scanFolder(temp.path() / "b", longName);
  const Catalog plain = scanFolder(temp.path() / "c", "Field");
  const int64_t arabic = model().store()->createGroup("\xD9\x85\xD8\xAC\xD9\x85\xD9\x88\xD8\xB9\xD8\xA9");
  model().store()->setGroup(rtl.id, arabic);
  model().reload();

  struct Case {
    QString owner;
    const char* text;
  };
  for (const Case& c : {Case{"cartridge:" + hebrew, "name"}, Case{"cartridge:" + hebrew, "totals"},
                        Case{"cartridge:" + longName, "name"},
                        Case{QString::fromUtf8("group:\xD9\x85\xD8\xAC\xD9\x85\xD9\x88\xD8\xB9\xD8\xA9"), "name"}}) {
    QObject* text = findNamed(shown(c.owner), c.text);
    ASSERT_NE(text, nullptr) << c.owner.toStdString() << " " << c.text;
    EXPECT_EQ(alignmentOf(text), int(Qt::AlignLeft)) << c.owner.toStdString() << " " << c.text;
  }

  // The long name is cut short inside its cartridge, and its help text is the whole name; a name that
  // fits needs none.
  QQuickItem* cartridge = shown("cartridge:" + longName);
  auto* name = qobject_cast<QQuickItem*>(findNamed(cartridge, "name"));
  ASSERT_NE(name, nullptr);
  EXPECT_TRUE(name->property("truncated").toBool());
  EXPECT_LE(name->mapToItem(cartridge, QPointF(name->width(), 0)).x(), cartridge->width());
  EXPECT_EQ(findNamed(cartridge, "cartridgeHelp")->property("text").toString(), longName);
  EXPECT_EQ(findNamed(shown("cartridge:Field"), "cartridgeHelp")->property("text").toString(), QString());

  // A watched cartridge's eye explains itself; a sample says it is one.
  model().toggleWatch(plain.id);
  QObject* eye = findNamed(shown("cartridge:Field"), "watchedEye");
  ASSERT_TRUE(waitUntil([&] { return eye->property("visible").toBool(); }));
  EXPECT_EQ(findNamed(eye, "watchedHelp")->property("text").toString(),
            "Auto-update is on: changes on the drive update this catalog automatically");
  EXPECT_FALSE(findNamed(shown("cartridge:" + longName), "watchedEye")->property("visible").toBool());
  model().toggleWatch(plain.id);
  model().loadSampleData();
  EXPECT_EQ(findNamed(shown("cartridge:Photo Vault"), "cartridgeHelp")->property("text").toString(),
            "Sample cartridge");
}

}  // namespace
}  // namespace orrelin::testing
