// A small turning arc in the accent colour: the sign that a search or a sweep is running.
import QtQuick
import QtQuick.Shapes
import Orrelin

Item {
    id: spinner
    property real size: Theme.s(16)
    property bool running: visible

    width: size
    height: size
    Accessible.role: Accessible.Animation
    Accessible.name: "Busy"

    Shape {
        anchors.fill: parent
        layer.enabled: true
        layer.samples: 4
        RotationAnimator on rotation {
            from: 0
            to: 360
            duration: 900
            loops: Animation.Infinite
            running: spinner.running
        }
        // A faint full ring with a bright quarter running round it.
        ShapePath {
            strokeColor: Theme.alpha(Theme.p.accent, 0.2)
            strokeWidth: Math.max(1.5, spinner.size * 0.14)
            fillColor: "transparent"
            PathAngleArc {
                centerX: spinner.size / 2
                centerY: spinner.size / 2
                radiusX: spinner.size / 2 - Math.max(1.5, spinner.size * 0.14) / 2
                radiusY: radiusX
                startAngle: 0
                sweepAngle: 360
            }
        }
        ShapePath {
            strokeColor: Theme.p.accent
            strokeWidth: Math.max(1.5, spinner.size * 0.14)
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap
            PathAngleArc {
                centerX: spinner.size / 2
                centerY: spinner.size / 2
                radiusX: spinner.size / 2 - Math.max(1.5, spinner.size * 0.14) / 2
                radiusY: radiusX
                startAngle: -90
                sweepAngle: 100
            }
        }
    }
}
