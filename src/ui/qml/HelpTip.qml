// A help text in the program's look: a small dark glass label with the accent's edge. Put one inside
// the item it explains and bind `shown` to that item's hover.
import QtQuick
import QtQuick.Controls
import Orrelin

ToolTip {
    id: tip
    property bool shown: false

    visible: shown && text.length > 0
    delay: 600
    font: Theme.f(11.5)
    padding: Theme.s(7)
    leftPadding: Theme.s(9)
    rightPadding: Theme.s(9)

    contentItem: Text {
        text: tip.text
        font: tip.font
        color: Theme.p.text
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: Theme.s(7)
        color: Qt.tint(Theme.p.bgTop, Theme.alpha(Theme.p.panel, 0.9))
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.alpha(Theme.p.accent, 0.4)
    }
}
