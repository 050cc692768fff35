// The main window as it first opens.
#include "ui_fixture.h"

namespace orrelin::testing {
namespace {

TEST_F(MainWindowTest, OpensAtItsSizeWithItsTitle) {
  EXPECT_EQ(window()->title(), QStringLiteral("Orrelin · TVRL"));
  EXPECT_EQ(window()->width(), 1500);
  EXPECT_EQ(window()->height(), 1120);
  EXPECT_NE(item("sidebar"), nullptr);
  EXPECT_NE(item("headerBar"), nullptr);
  EXPECT_NE(item("statusBar"), nullptr);
}

}  // namespace
}  // namespace orrelin::testing
