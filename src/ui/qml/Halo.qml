// A soft round glow: `color` at the centre fading to nothing at the edge. Stands behind lights and
// blips; it draws no outline, so it stays smooth at every size.
import QtQuick
import QtQuick.Shapes

Shape {
    id: halo
    property color color: "white"
    // The opacity at the centre.
    property real strength: 0.6

    ShapePath {
        strokeWidth: -1
        strokeColor: "transparent"
        fillGradient: RadialGradient {
            centerX: halo.width / 2
            centerY: halo.height / 2
            centerRadius: Math.min(halo.width, halo.height) / 2
            focalX: centerX
            focalY: centerY
            GradientStop { position: 0; color: Qt.rgba(halo.color.r, halo.color.g, halo.color.b, halo.strength) }
            GradientStop { position: 0.45; color: Qt.rgba(halo.color.r, halo.color.g, halo.color.b, halo.strength * 0.45) }
            GradientStop { position: 1; color: Qt.rgba(halo.color.r, halo.color.g, halo.color.b, 0) }
        }
        startX: 0; startY: 0
        PathLine { x: halo.width; y: 0 }
        PathLine { x: halo.width; y: halo.height }
        PathLine { x: 0; y: halo.height }
        PathLine { x: 0; y: 0 }
    }
}
