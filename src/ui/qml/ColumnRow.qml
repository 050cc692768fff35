// One row of a browser column: the picture, the name, a dot for a colour label, and a chevron for a
// folder. The selected row is lit in the accent; the open folder of an earlier column more faintly.
import QtQuick
import Orrelin

Rectangle {
    id: row
    // A file map (see Files / fileMap).
    property var file: ({})
    property bool selected: false
    property bool onPath: false
    // Whether the column holding the row has the keyboard.
    property bool active: false

    signal pressed()
    signal activated()
    signal menuRequested()

    implicitHeight: Theme.s(28)
    radius: Theme.s(6)
    color: selected ? Theme.alpha(Theme.p.accent, active ? 0.30 : 0.22)
         : onPath ? Theme.alpha(Theme.p.accent, 0.12)
         : area.containsMouse ? Theme.alpha(Theme.p.text, 0.06) : "transparent"
    border.width: selected && active ? Math.max(1, Theme.s(1)) : 0
    border.color: Theme.alpha(Theme.p.accent, 0.5)

    Accessible.role: Accessible.ListItem
    Accessible.name: (file.name || "") + (file.isDir ? ", folder" : "")
    Accessible.selected: selected
    Accessible.onPressAction: row.pressed()

    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: mouse => row.pressed()
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton) row.menuRequested()
        }
        onDoubleClicked: mouse => {
            if (mouse.button === Qt.LeftButton) row.activated()
        }
    }

    // Placed by anchors rather than a layout: a column makes a row per visible entry, and scrolls them.
    ThumbIcon {
        id: thumb
        x: Theme.s(6)
        anchors.verticalCenter: parent.verticalCenter
        file: row.file
        size: Theme.s(18)
    }
    Text {
        objectName: "rowName"
        anchors.left: thumb.right
        anchors.leftMargin: Theme.s(7)
        anchors.right: trailing.left
        anchors.rightMargin: Theme.s(6)
        anchors.verticalCenter: parent.verticalCenter
        text: row.file.name || ""
        elide: Text.ElideMiddle
        font: Theme.f(12.5)
        color: row.file.hidden ? Theme.p.subtext : Theme.p.text
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.rightMargin: Theme.s(6)
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.s(6)
        Rectangle {
            visible: (row.file.label || 0) >= 1
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.s(8)
            height: width
            radius: width / 2
            color: Files.labelColor(row.file.label || 0)
        }
        SvgIcon {
            visible: row.file.isDir === true
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.right"
            size: Theme.s(10)
            color: row.selected || row.onPath ? Theme.p.accent : Theme.p.subtext
        }
    }
}
