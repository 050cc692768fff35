// A small lamp: lit in the "ok" colour with a soft glow while a catalog's drive is online, a dim grey ring
// while offline.
import QtQuick
import Orrelin

Rectangle {
    id: lamp
    property bool online: false
    property real size: Theme.s(7)

    width: size
    height: size
    radius: size / 2
    color: online ? Theme.p.ok : Theme.alpha(Theme.p.subtext, 0.45)
    border.width: online ? 0 : Math.max(1, Theme.s(1))
    border.color: Theme.alpha(Theme.p.subtext, 0.6)
    Accessible.role: Accessible.Indicator
    Accessible.name: online ? "Online" : "Offline"

    Halo {
        visible: lamp.online
        z: -1
        anchors.centerIn: parent
        width: lamp.size * 2.6
        height: width
        color: Theme.p.ok
        strength: 0.5
    }
}
