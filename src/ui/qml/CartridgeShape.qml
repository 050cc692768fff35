// The outline of a cartridge: a body of straight edges with three rounded corners and the top right one
// cut off, like the notch of a tape cartridge, with grip ridges beside the cut. `selected` lights the
// edge in the accent with a glow; `hovered` brightens it.
import QtQuick
import Orrelin

Item {
    id: shape
    property bool selected: false
    property bool hovered: false

    // The glow reaches this far outside the outline; the canvas is larger by as much on every side.
    readonly property real glowReach: Theme.s(8)
    readonly property real corner: Theme.s(10)
    readonly property real notch: Theme.s(16)

    Canvas {
        id: canvas
        anchors.fill: parent
        anchors.margins: -shape.glowReach
        antialiasing: true

        property color panel: Theme.p.panel
        property color stroke: Theme.p.stroke
        property color accent: Theme.p.accent
        property color glow: Theme.p.glow
        property color ground: Theme.p.bgTop
        property real zoom: Theme.zoom
        property bool lit: shape.selected
        property bool hot: shape.hovered
        onPanelChanged: requestPaint()
        onAccentChanged: requestPaint()
        onZoomChanged: requestPaint()
        onLitChanged: requestPaint()
        onHotChanged: requestPaint()
        onWidthChanged: requestPaint()
        onHeightChanged: requestPaint()

        // The outline as a path, inset by `m` from the canvas's edge.
        function outline(ctx, m, w, h) {
            const r = shape.corner, c = shape.notch
            ctx.beginPath()
            ctx.moveTo(m + r, m)
            ctx.lineTo(m + w - c, m)
            ctx.lineTo(m + w, m + c)
            ctx.arcTo(m + w, m + h, m + w - r, m + h, r)
            ctx.arcTo(m, m + h, m, m + h - r, r)
            ctx.arcTo(m, m, m + r, m, r)
            ctx.closePath()
        }

        onPaint: {
            const ctx = getContext("2d")
            ctx.reset()
            const m = shape.glowReach
            const w = width - 2 * m, h = height - 2 * m
            if (w <= 0 || h <= 0) return
            const line = Math.max(1, Theme.s(1))

            // The glow of the selected one: the outline stroked with a blurred shadow.
            if (lit) {
                ctx.save()
                ctx.shadowColor = Qt.rgba(glow.r, glow.g, glow.b, 0.75)
                ctx.shadowBlur = m * 0.9
                ctx.strokeStyle = Qt.rgba(accent.r, accent.g, accent.b, 0.9)
                ctx.lineWidth = line * 1.5
                outline(ctx, m, w, h)
                ctx.stroke()
                ctx.restore()
            }

            // The body: the panel over the dark ground so the glow does not shine through, a little
            // lighter at the top.
            outline(ctx, m, w, h)
            ctx.fillStyle = Qt.rgba(ground.r, ground.g, ground.b, 0.55)
            ctx.fill()
            const body = ctx.createLinearGradient(0, m, 0, m + h)
            const lift = lit ? 0.16 : hot ? 0.1 : 0.05
            body.addColorStop(0, Qt.rgba(Math.min(1, panel.r + lift), Math.min(1, panel.g + lift),
                                         Math.min(1, panel.b + lift), panel.a))
            body.addColorStop(1, panel)
            ctx.fillStyle = body
            ctx.fill()
            if (lit) {
                ctx.fillStyle = Qt.rgba(accent.r, accent.g, accent.b, 0.07)
                ctx.fill()
            }

            ctx.lineWidth = lit ? line * 1.5 : line
            ctx.strokeStyle = lit ? Qt.rgba(accent.r, accent.g, accent.b, 0.95)
                            : hot ? Qt.rgba(accent.r, accent.g, accent.b, 0.5)
                            : stroke
            ctx.stroke()

            // Grip ridges running parallel to the cut corner.
            ctx.strokeStyle = lit ? Qt.rgba(accent.r, accent.g, accent.b, 0.55)
                                  : Qt.rgba(stroke.r, stroke.g, stroke.b, Math.min(1, stroke.a * 1.8))
            ctx.lineWidth = line
            const step = Theme.s(4.5)
            ctx.beginPath()
            for (let i = 1; i <= 3; ++i) {
                const x = m + w - shape.notch - step * i - Theme.s(4)
                ctx.moveTo(x, m + Theme.s(3))
                ctx.lineTo(x + Theme.s(5), m + Theme.s(8))
            }
            ctx.stroke()
        }
    }
}
