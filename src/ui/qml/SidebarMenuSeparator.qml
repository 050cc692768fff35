// A thin rule between groups of entries in a SidebarMenu.
import QtQuick
import QtQuick.Controls
import Orrelin

MenuSeparator {
    topPadding: Theme.s(4)
    bottomPadding: Theme.s(4)
    leftPadding: Theme.s(8)
    rightPadding: Theme.s(8)
    contentItem: Rectangle {
        implicitHeight: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
    }
}
