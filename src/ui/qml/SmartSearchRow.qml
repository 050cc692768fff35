// One smart search in the sidebar: the star and its name. Clicking runs it; the right button opens
// `menu` for it.
import QtQuick
import Orrelin

Item {
    id: row
    // One element of AppModel.savedSearches: id, name.
    required property var search
    property var menu: null

    objectName: "smartSearch:" + search.name
    implicitHeight: Theme.s(28)

    Accessible.role: Accessible.Button
    Accessible.name: search.name
    Accessible.description: "Smart search: shows the Search screen with this search"
    Accessible.onPressAction: SavedSearches.openSavedSearch(row.search.id)

    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton) {
                if (row.menu)
                    row.menu.openFor(row.search, row, mouse.x, mouse.y)
            } else {
                SavedSearches.openSavedSearch(row.search.id)
            }
        }
    }

    HelpTip {
        text: nameText.truncated ? row.search.name : ""
        shown: hover.hovered
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.s(7)
        color: hover.hovered ? Theme.alpha(Theme.p.accent, 0.08) : "transparent"
    }

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.s(6)
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.s(9)
        SvgIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "star.circle.fill"
            size: Theme.s(16)
            color: Theme.p.warn
        }
        Text {
            id: nameText
            objectName: "name"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x - Theme.s(6)
            horizontalAlignment: Text.AlignLeft
            text: row.search.name
            font: Theme.f(12.5)
            color: hover.hovered ? Theme.p.text : Qt.tint(Theme.p.text, Theme.alpha(Theme.p.subtext, 0.35))
            elide: Text.ElideRight
        }
    }
}
