// One of the library's largest files: its rank, kind, name, catalog and size. Clicking it (or Return, or a
// screen reader's press) shows the file in the browser.
import QtQuick
import QtQuick.Controls
import Orrelin

AbstractButton {
    id: row
    property var file: ({})

    text: file.rank + ". " + file.name + ", " + file.catalogName + ", " + file.text
    hoverEnabled: true
    implicitWidth: Theme.s(240)
    implicitHeight: Theme.s(28)
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: AppModel.browseToFile(row.file.id)
    onClicked: AppModel.browseToFile(row.file.id)
    Keys.onReturnPressed: AppModel.browseToFile(row.file.id)

    HelpTip {
        text: "Show in the browser"
        shown: row.hovered
    }

    background: Rectangle {
        radius: Theme.s(6)
        color: row.down ? Theme.alpha(Theme.p.accent, 0.16) : row.hovered ? Theme.alpha(Theme.p.accent, 0.08)
                                                                        : "transparent"
        border.width: row.visualFocus ? Math.max(1, Theme.s(1)) : 0
        border.color: Theme.p.accent
    }

    // Placed by hand rather than by a layout: the catalog column's width depends on the row's, which a
    // layout would keep recomputing.
    contentItem: Item {
        id: line
        Text {
            id: rank
            width: Theme.s(22)
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignRight
            text: row.file.rank
            font: Theme.f(11, Font.Normal, true)
            color: Theme.p.subtext
        }
        KindIcon {
            id: kindIcon
            anchors.left: rank.right
            anchors.leftMargin: Theme.s(8)
            anchors.verticalCenter: parent.verticalCenter
            kind: row.file.kind || "Other"
            size: Theme.s(18)
        }
        Text {
            anchors.left: kindIcon.right
            anchors.leftMargin: Theme.s(8)
            anchors.right: catalog.left
            anchors.rightMargin: Theme.s(8)
            anchors.verticalCenter: parent.verticalCenter
            text: row.file.name
            font: Theme.f(12.5)
            color: Theme.p.text
            elide: Text.ElideMiddle
        }
        Text {
            id: catalog
            // The catalog keeps its whole name unless it would take more than a third of the row.
            width: Math.min(implicitWidth, line.width * 0.34)
            anchors.right: size.left
            anchors.rightMargin: Theme.s(8)
            anchors.verticalCenter: parent.verticalCenter
            text: row.file.catalogName
            font: Theme.f(11)
            color: Theme.p.subtext
            elide: Text.ElideRight
        }
        Text {
            id: size
            width: Math.max(implicitWidth, Theme.s(62))
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignRight
            text: row.file.text
            font: Theme.f(11.5, Font.DemiBold, true)
            color: Theme.p.text
        }
    }
}
