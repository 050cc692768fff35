// The shared look: the current palette, and the zoom every length and font passes through.
pragma Singleton
import QtQuick
import Orrelin

QtObject {
    // The current theme's colours (bgTop, bgBottom, panel, stroke, text, subtext, accent, accent2, glow,
    // ok, warn, danger).
    readonly property var p: UIState.p
    readonly property real zoom: UIState.zoom

    readonly property string sansFamily: "DejaVu Sans"
    readonly property string monoFamily: "DejaVu Sans Mono"

    // A design length at the current zoom. Reading UIState.zoom here makes every binding that calls this
    // follow the zoom.
    function s(value) { return value * UIState.zoom }

    // A font of `size` design points at the current zoom. `weight` is a Font weight (Font.Normal when
    // omitted); `mono` picks the monospaced family.
    function f(size, weight, mono) {
        return Qt.font({ family: mono ? monoFamily : sansFamily,
                         pixelSize: Math.max(1, Math.round(size * UIState.zoom)),
                         weight: weight === undefined ? Font.Normal : weight })
    }

    // `c` at opacity `a`.
    function alpha(c, a) { return Qt.rgba(c.r, c.g, c.b, a) }
}
