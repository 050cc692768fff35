// The heading of a group of cartridges: a chevron that turns when open, the stack icon, the name and the
// count of its catalogs. Clicking folds the group; the right button opens `menu` for it.
import QtQuick
import Orrelin

Item {
    id: header
    required property var group
    property int count: 0
    property bool collapsed: false
    property var menu: null

    objectName: "group:" + group.name
    implicitHeight: Theme.s(28)

    // Read as "Studio, 3 cartridges, expanded"; pressing it folds or unfolds the group.
    Accessible.role: Accessible.Button
    Accessible.name: group.name + ", " + count + (count === 1 ? " cartridge, " : " cartridges, ")
                     + (collapsed ? "collapsed" : "expanded")
    Accessible.description: collapsed ? "Show the cartridges of this group" : "Hide the cartridges of this group"
    Accessible.onPressAction: AppModel.toggleGroupCollapsed(header.group.id)

    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton) {
                if (header.menu)
                    header.menu.openFor(header.group, header, mouse.x, mouse.y)
            } else {
                AppModel.toggleGroupCollapsed(header.group.id)
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.s(7)
        color: hover.hovered ? Theme.alpha(Theme.p.accent, 0.07) : "transparent"
    }

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.s(4)
        anchors.right: badge.left
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.s(7)

        SvgIcon {
            objectName: "chevron"
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.right"
            size: Theme.s(10)
            color: Theme.p.subtext
            rotation: header.collapsed ? 0 : 90
            Behavior on rotation { NumberAnimation { duration: 160; easing.type: Easing.OutCubic } }
        }
        SvgIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "square.stack.3d.up.fill"
            size: Theme.s(14)
            color: Theme.p.accent2
        }
        Text {
            id: nameText
            objectName: "name"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            horizontalAlignment: Text.AlignLeft
            text: header.group.name
            font: Theme.f(12.5, Font.DemiBold)
            color: Theme.p.text
            elide: Text.ElideRight
        }
    }

    HelpTip {
        text: nameText.truncated ? header.group.name : ""
        shown: hover.hovered
    }

    Rectangle {
        id: badge
        objectName: "count"
        anchors.right: parent.right
        anchors.rightMargin: Theme.s(4)
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(height, countText.implicitWidth + Theme.s(12))
        height: Theme.s(17)
        radius: height / 2
        color: Theme.alpha(Theme.p.accent2, 0.14)
        border.width: Math.max(1, Theme.s(0.75))
        border.color: Theme.alpha(Theme.p.accent2, 0.35)
        Text {
            id: countText
            anchors.centerIn: parent
            text: header.count
            font: Theme.f(10, Font.Bold, true)
            color: Theme.p.accent2
        }
    }
}
