// One row of a browser column: the picture, the name, a dot for a colour label, and a chevron for a
// folder. The selected row is lit in the accent; the open folder of an earlier column more faintly.
import QtQuick
import QtQuick.Layouts
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

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.s(6)
        anchors.rightMargin: Theme.s(6)
        spacing: Theme.s(7)

        ThumbIcon {
            Layout.alignment: Qt.AlignVCenter
            file: row.file
            size: Theme.s(18)
        }
        Text {
            objectName: "rowName"
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter
            text: row.file.name || ""
            elide: Text.ElideMiddle
            font: Theme.f(12.5)
            color: row.file.hidden ? Theme.p.subtext : Theme.p.text
        }
        Rectangle {
            visible: (row.file.label || 0) >= 1
            Layout.alignment: Qt.AlignVCenter
            implicitWidth: Theme.s(8)
            implicitHeight: Theme.s(8)
            radius: width / 2
            color: Files.labelColor(row.file.label || 0)
        }
        SvgIcon {
            visible: row.file.isDir === true
            Layout.alignment: Qt.AlignVCenter
            symbol: "chevron.right"
            size: Theme.s(10)
            color: row.selected || row.onPath ? Theme.p.accent : Theme.p.subtext
        }
    }
}
