// A rounded panel of smoked glass in the palette's panel and stroke colours: a faint sheen along the top
// edge, and with `highlight` an edge and a glow in the accent.
import QtQuick
import Orrelin

Rectangle {
    id: panel
    property bool highlight: false

    radius: Theme.s(14)
    color: Theme.p.panel
    border.width: Math.max(1, Theme.s(1))
    border.color: highlight ? Theme.alpha(Theme.p.accent, 0.6) : Theme.p.stroke

    // The glow of a highlighted panel: two widening translucent outlines outside the edge.
    Repeater {
        model: panel.highlight ? 2 : 0
        delegate: Rectangle {
            required property int index
            readonly property real spread: Theme.s(2 + index * 3)
            z: -1
            anchors.fill: parent
            anchors.margins: -spread
            radius: panel.radius + spread
            color: "transparent"
            border.width: Theme.s(2 + index)
            border.color: Theme.alpha(Theme.p.glow, index === 0 ? 0.22 : 0.08)
        }
    }

    // Light catching the top of the glass.
    Rectangle {
        anchors.fill: parent
        anchors.margins: panel.border.width
        radius: Math.max(0, panel.radius - panel.border.width)
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(1, 1, 1, 0.055) }
            GradientStop { position: 0.35; color: Qt.rgba(1, 1, 1, 0.0) }
        }
    }
}
