// One row of a browser column: the picture, the name, a dot for a colour label, and a chevron for a
// folder. The selected row is lit in the accent; the open folder of an earlier column more faintly. The
// pointer is handled by the column, once for all its rows; the row only draws.
import QtQuick
import Orrelin

Rectangle {
    id: row
    property string name
    property bool isDir: false
    property string kind
    property string thumb
    property bool hidden: false
    property int label: 0
    property bool selected: false
    property bool onPath: false
    property bool hovered: false
    // Whether the column holding the row has the keyboard.
    property bool active: false
    // Shared by the rows of a column.
    property font nameFont: Theme.f(12.5)

    // A screen reader's press.
    signal pressed()

    implicitHeight: Theme.s(28)
    radius: Theme.s(6)
    color: selected ? Theme.alpha(Theme.p.accent, active ? 0.30 : 0.22)
         : onPath ? Theme.alpha(Theme.p.accent, 0.12)
         : hovered ? Theme.alpha(Theme.p.text, 0.06) : "transparent"
    border.width: selected && active ? Math.max(1, Theme.s(1)) : 0
    border.color: Theme.alpha(Theme.p.accent, 0.5)

    Accessible.role: Accessible.ListItem
    Accessible.name: name + (isDir ? ", folder" : "")
    Accessible.selected: selected
    Accessible.onPressAction: row.pressed()

    ThumbIcon {
        id: thumbIcon
        x: Theme.s(6)
        y: (row.height - height) / 2
        kind: row.kind
        thumb: row.thumb
        size: Theme.s(18)
    }
    Text {
        objectName: "rowName"
        x: thumbIcon.x + thumbIcon.width + Theme.s(7)
        width: row.width - x - Theme.s(6) - (row.isDir ? chevron.width + Theme.s(6) : 0)
               - (row.label >= 1 ? Theme.s(14) : 0)
        height: row.height
        verticalAlignment: Text.AlignVCenter
        text: row.name
        elide: Text.ElideMiddle
        font: row.nameFont
        color: row.hidden ? Theme.p.subtext : Theme.p.text
    }
    Loader {
        active: row.label >= 1
        x: row.width - Theme.s(6) - (row.isDir ? chevron.width + Theme.s(6) : 0) - width
        y: (row.height - height) / 2
        width: Theme.s(8)
        height: width
        sourceComponent: Rectangle {
            radius: width / 2
            color: Files.labelColor(row.label)
        }
    }
    SvgIcon {
        id: chevron
        visible: row.isDir
        x: row.width - Theme.s(6) - width
        y: (row.height - height) / 2
        symbol: row.isDir ? "chevron.right" : ""
        size: Theme.s(10)
        color: row.selected || row.onPath ? Theme.p.accent : Theme.p.subtext
    }
}
