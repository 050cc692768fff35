// A small light: steady, or pulsing while something runs. Its glow reaches 5 beyond the dot when steady;
// pulsing, the glow breathes between 2 and 8 and the light between 45% and full opacity.
import QtQuick
import Orrelin

Item {
    id: led
    property color color: Theme.p.ok
    property real size: Theme.s(8)
    property bool pulsing: false

    // The glow's reach beyond the dot, in design units, and the light's opacity; animated while pulsing.
    property real glowRadius: 5
    property real level: 1

    width: size
    height: size

    Halo {
        readonly property real reach: Theme.s(led.glowRadius) * 1.6
        anchors.centerIn: parent
        width: led.size + 2 * reach
        height: width
        color: led.color
        strength: 0.55 * led.level
    }

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: led.color
        opacity: led.level
        // A bright core makes the dot read as a light rather than a coloured disc.
        Rectangle {
            anchors.centerIn: parent
            width: parent.width * 0.45
            height: width
            radius: width / 2
            color: Qt.lighter(led.color, 1.6)
            // A dim colour is a light that is off: no hot core.
            opacity: 0.8 * led.color.a * led.color.a
        }
    }

    SequentialAnimation {
        running: led.pulsing && led.visible
        loops: Animation.Infinite
        ParallelAnimation {
            NumberAnimation { target: led; property: "glowRadius"; from: 2; to: 8; duration: 700; easing.type: Easing.InOutSine }
            NumberAnimation { target: led; property: "level"; from: 0.45; to: 1; duration: 700; easing.type: Easing.InOutSine }
        }
        ParallelAnimation {
            NumberAnimation { target: led; property: "glowRadius"; from: 8; to: 2; duration: 700; easing.type: Easing.InOutSine }
            NumberAnimation { target: led; property: "level"; from: 1; to: 0.45; duration: 700; easing.type: Easing.InOutSine }
        }
        onRunningChanged: if (!running) { led.glowRadius = 5; led.level = 1 }
    }
}
