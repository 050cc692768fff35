// A file kind's icon in its colour on a small tinted tile. `kind` is the kind's display name ("Image").
import QtQuick
import Orrelin

Rectangle {
    id: tile
    property string kind: "Other"
    property real size: Theme.s(22)
    readonly property color tint: FileKinds.color(kind, 0.55)

    width: size
    height: size
    radius: size * 0.26
    color: Theme.alpha(tint, 0.14)
    border.width: Math.max(1, Theme.s(0.75))
    border.color: Theme.alpha(tint, 0.35)

    SvgIcon {
        anchors.centerIn: parent
        symbol: FileKinds.symbol(tile.kind)
        color: tile.tint
        size: tile.size * 0.62
    }
}
