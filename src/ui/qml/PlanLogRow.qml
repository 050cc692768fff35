// One applied plan or batch rename in the recent list: its title, when it ran and what it did, and Undo
// while it has not been undone.
import QtQuick
import QtQuick.Layouts
import Orrelin

Rectangle {
    id: row
    // A map of the log: id, title, created, moved, foldersCreated, undone.
    property var log: ({})
    readonly property string detail: Fmt.date(log.created) + " · " + log.moved + " moved · "
                                     + log.foldersCreated + " folders created" + (log.undone ? " · undone" : "")
    signal undoRequested()

    implicitHeight: content.implicitHeight + 2 * Theme.s(9)
    radius: Theme.s(8)
    color: hover.hovered ? Theme.alpha(Theme.p.text, 0.05) : Theme.alpha(Theme.p.text, 0.025)
    border.width: Math.max(1, Theme.s(1))
    border.color: Theme.alpha(Theme.p.stroke, 0.5)
    Accessible.role: Accessible.ListItem
    Accessible.name: log.title + ", " + detail

    HoverHandler { id: hover }

    RowLayout {
        id: content
        anchors.fill: parent
        anchors.leftMargin: Theme.s(12)
        anchors.rightMargin: Theme.s(10)
        anchors.topMargin: Theme.s(9)
        anchors.bottomMargin: Theme.s(9)
        spacing: Theme.s(10)

        SvgIcon {
            objectName: "logSymbol"
            Layout.alignment: Qt.AlignVCenter
            symbol: row.log.undone ? "arrow.uturn.backward.circle" : "checkmark.circle"
            size: Theme.s(18)
            color: row.log.undone ? Theme.p.subtext : Theme.p.ok
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: Theme.s(2)
            Text {
                Layout.fillWidth: true
                text: row.log.title
                font: Theme.f(13, Font.DemiBold)
                color: row.log.undone ? Theme.p.subtext : Theme.p.text
                elide: Text.ElideRight
            }
            Text {
                objectName: row.objectName + "_detail"
                Layout.fillWidth: true
                text: row.detail
                font: Theme.f(11.5)
                color: Theme.p.subtext
                wrapMode: Text.Wrap
            }
        }
        LaserButton {
            objectName: row.objectName + "_undo"
            Layout.alignment: Qt.AlignVCenter
            compact: true
            text: "Undo"
            enabled: !row.log.undone
            Accessible.name: "Undo " + row.log.title
            onClicked: row.undoRequested()
        }
    }
}
