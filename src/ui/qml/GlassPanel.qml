// A rounded panel in the palette's panel and stroke colours; `highlight` brightens the edge.
import QtQuick
import Orrelin

Rectangle {
    property bool highlight: false

    radius: Theme.s(14)
    color: Theme.p.panel
    border.width: Math.max(1, Theme.s(1))
    border.color: highlight ? Theme.alpha(Theme.p.accent, 0.55) : Theme.p.stroke
}
