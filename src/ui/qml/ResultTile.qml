// A count above its label; as a button it picks what the list below it shows.
import QtQuick
import QtQuick.Controls
import Orrelin

AbstractButton {
    id: tile
    property real count: 0
    property string label
    property color tint: Theme.p.accent
    property bool selected: false

    implicitHeight: Theme.s(64)

    // Read as "Added, 12"; the tile whose list shows is the selected one.
    Accessible.name: label + ", " + Fmt.count(count)
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: tile.clicked()
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    background: Rectangle {
        radius: Theme.s(10)
        color: tile.selected ? Theme.alpha(tile.tint, 0.16)
             : Theme.alpha(Theme.p.text, tile.down ? 0.10 : tile.hovered ? 0.07 : 0.04)
        border.width: tile.selected ? Math.max(1, Theme.s(1.5)) : Math.max(1, Theme.s(1))
        border.color: tile.selected ? tile.tint
                    : tile.visualFocus ? Theme.alpha(Theme.p.accent, 0.6) : Theme.p.stroke
    }

    contentItem: Column {
        spacing: Theme.s(2)
        topPadding: (tile.availableHeight - implicitHeight) / 2
        Text {
            objectName: tile.objectName + "Count"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Fmt.count(tile.count)
            font: Theme.f(20, Font.Bold, true)
            color: tile.selected ? tile.tint : Theme.p.text
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.label
            font: Theme.f(11, Font.DemiBold)
            color: Theme.p.subtext
        }
    }
}
