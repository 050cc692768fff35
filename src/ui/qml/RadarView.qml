// The radar emblem: concentric rings, cross hairs, blips and a sweep that turns once every 2.8 seconds
// while `active`. The sweep's angle is read from the clock (time mod 2.8 / 2.8), so every radar on
// screen points the same way and a busy frame never slows it down.
import QtQuick
import Orrelin

Item {
    id: radar
    property real size: Theme.s(40)
    property bool active: true
    property int rings: 3
    property int blips: 3

    // Where the sweep is in its turn, from 0 to 1.
    property real phase: 0.12
    readonly property real period: 2.8

    width: size
    height: size

    function clockPhase() { return (Date.now() / 1000 % period) / period }

    Timer {
        interval: 33
        repeat: true
        running: radar.active && radar.visible
        triggeredOnStart: true
        onTriggered: radar.phase = radar.clockPhase()
    }

    // The scope's face: a dark disc, the rings and the cross hairs. Painted again only when the size or
    // the theme changes.
    Canvas {
        id: face
        anchors.fill: parent
        antialiasing: true
        property color accent: Theme.p.accent
        property color glow: Theme.p.glow
        property color ground: Theme.p.bgBottom
        property int ringCount: radar.rings
        onAccentChanged: requestPaint()
        onGroundChanged: requestPaint()
        onRingCountChanged: requestPaint()
        onWidthChanged: requestPaint()
        onHeightChanged: requestPaint()
        onPaint: {
            const ctx = getContext("2d")
            const w = width, r = w / 2
            ctx.reset()
            if (w <= 0) return
            const line = Math.max(1, w / 60)
            // The disc, darker at the rim like a screen under glass.
            const disc = ctx.createRadialGradient(r, r, 0, r, r, r)
            disc.addColorStop(0, Qt.rgba(glow.r, glow.g, glow.b, 0.16))
            disc.addColorStop(0.7, Qt.rgba(ground.r, ground.g, ground.b, 0.55))
            disc.addColorStop(1, Qt.rgba(ground.r, ground.g, ground.b, 0.85))
            ctx.fillStyle = disc
            ctx.beginPath(); ctx.arc(r, r, r - line / 2, 0, 2 * Math.PI); ctx.fill()
            // The rings, evenly spaced; the outer one brightest.
            const n = Math.max(1, ringCount)
            for (let i = 1; i <= n; ++i) {
                const rr = (r - line) * i / n
                ctx.strokeStyle = Qt.rgba(accent.r, accent.g, accent.b, i === n ? 0.9 : 0.35)
                ctx.lineWidth = i === n ? line * 1.3 : line
                ctx.beginPath(); ctx.arc(r, r, rr, 0, 2 * Math.PI); ctx.stroke()
            }
            // Cross hairs.
            ctx.strokeStyle = Qt.rgba(accent.r, accent.g, accent.b, 0.25)
            ctx.lineWidth = line * 0.8
            ctx.beginPath()
            ctx.moveTo(r, line * 2); ctx.lineTo(r, w - line * 2)
            ctx.moveTo(line * 2, r); ctx.lineTo(w - line * 2, r)
            ctx.stroke()
        }
    }

    // The sweep: a bright edge trailing a fading wedge, painted once and turned by `phase`.
    Canvas {
        id: sweep
        anchors.fill: parent
        antialiasing: true
        visible: radar.active
        rotation: radar.phase * 360
        property color accent: Theme.p.accent
        property color accent2: Theme.p.accent2
        onAccentChanged: requestPaint()
        onWidthChanged: requestPaint()
        onPaint: {
            const ctx = getContext("2d")
            const w = width, r = w / 2
            ctx.reset()
            if (w <= 0) return
            const line = Math.max(1, w / 60)
            const rr = r - line
            // The wedge trails 80 degrees behind the edge, which points up (the turn is clockwise).
            const trail = 80 * Math.PI / 180
            const up = -Math.PI / 2
            const cone = ctx.createConicalGradient(r, r, -up)
            cone.addColorStop(0, Qt.rgba(accent.r, accent.g, accent.b, 0.55))
            cone.addColorStop(trail / (2 * Math.PI), Qt.rgba(accent.r, accent.g, accent.b, 0))
            cone.addColorStop(1, Qt.rgba(accent.r, accent.g, accent.b, 0))
            ctx.fillStyle = cone
            ctx.beginPath(); ctx.moveTo(r, r); ctx.arc(r, r, rr, up - trail, up); ctx.closePath(); ctx.fill()
            ctx.strokeStyle = Qt.rgba(accent2.r, accent2.g, accent2.b, 0.95)
            ctx.lineWidth = line * 1.2
            ctx.beginPath(); ctx.moveTo(r, r); ctx.lineTo(r, r - rr); ctx.stroke()
        }
    }

    // The blips: fixed places on the scope that flare as the sweep passes and fade behind it.
    Repeater {
        model: Math.max(0, radar.blips)
        delegate: Item {
            required property int index
            // Spread round the dial by the golden angle, at distances between a third and nine tenths.
            readonly property real angle: (index * 137.5 + 40) % 360
            readonly property real distance: 0.35 + ((index * 0.37 + 0.21) % 0.55)
            readonly property real behind: ((radar.phase * 360 - angle) % 360 + 360) % 360
            readonly property real size: Math.max(2, radar.size * 0.085)
            x: radar.size / 2 + Math.sin(angle * Math.PI / 180) * distance * radar.size / 2 - width / 2
            y: radar.size / 2 - Math.cos(angle * Math.PI / 180) * distance * radar.size / 2 - height / 2
            width: size * 3
            height: size * 3
            opacity: radar.active ? Math.max(0.15, 1 - behind / 300) : 0.6

            Halo {
                anchors.fill: parent
                color: Theme.p.accent2
                strength: 0.7
            }
            Rectangle {
                anchors.centerIn: parent
                width: parent.size
                height: width
                radius: width / 2
                color: Qt.lighter(Theme.p.accent2, 1.3)
            }
        }
    }
}
