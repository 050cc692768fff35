// A file kind as a capsule: its icon and name in its colour. `kind` is the kind's display name ("Disk
// Image"); with `compact` only the icon shows.
import QtQuick
import Orrelin

Rectangle {
    id: badge
    property string kind: "Other"
    property bool compact: false
    readonly property color tint: FileKinds.color(kind, 0.55)

    implicitWidth: row.implicitWidth + 2 * Theme.s(compact ? 4 : 7)
    implicitHeight: Theme.s(20)
    width: implicitWidth
    height: implicitHeight
    radius: height / 2
    color: Theme.alpha(tint, 0.13)
    border.width: Math.max(1, Theme.s(0.75))
    border.color: Theme.alpha(tint, 0.4)

    Row {
        id: row
        anchors.centerIn: parent
        spacing: Theme.s(4)
        SvgIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: FileKinds.symbol(badge.kind)
            color: badge.tint
            size: Theme.s(12)
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: !badge.compact
            text: badge.kind
            font: Theme.f(10.5, Font.DemiBold)
            color: badge.tint
        }
    }
}
