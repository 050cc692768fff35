// A small light: steady, or pulsing while something runs.
import QtQuick
import Orrelin

Item {
    id: led
    property color color: Theme.p.ok
    property real size: Theme.s(8)
    property bool pulsing: false

    width: size
    height: size

    Rectangle {
        id: dot
        anchors.fill: parent
        radius: width / 2
        color: led.color
    }
}
