// One screen in the sidebar: its icon and name. The current screen is lit in the accent, with a laser
// line at its left edge.
import QtQuick
import Orrelin

Item {
    id: nav
    property string symbol
    property string title
    property bool current: false
    signal clicked()

    implicitHeight: Theme.s(34)

    // To a screen reader the screens are the tabs of the window, the current one selected.
    Accessible.role: Accessible.PageTab
    Accessible.name: nav.title
    Accessible.selectable: true
    Accessible.selected: nav.current
    Accessible.onPressAction: nav.clicked()

    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }
    MouseArea {
        anchors.fill: parent
        onClicked: nav.clicked()
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.s(9)
        color: nav.current ? Theme.alpha(Theme.p.accent, 0.14)
             : hover.hovered ? Theme.alpha(Theme.p.accent, 0.07) : "transparent"
        border.width: nav.current ? Math.max(1, Theme.s(1)) : 0
        border.color: Theme.alpha(Theme.p.accent, 0.3)
    }

    // The laser line of the current screen, with its glow.
    Rectangle {
        visible: nav.current
        x: Theme.s(3)
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.s(3)
        height: parent.height * 0.55
        radius: width / 2
        color: Theme.p.accent
        Halo {
            anchors.centerIn: parent
            width: Theme.s(14)
            height: parent.height + Theme.s(12)
            color: Theme.p.glow
            strength: 0.5
        }
    }

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.s(14)
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.s(11)
        SvgIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: nav.symbol
            size: Theme.s(16)
            color: nav.current ? Theme.p.accent : hover.hovered ? Theme.p.text : Theme.p.subtext
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: nav.title
            font: Theme.f(13, nav.current ? Font.DemiBold : Font.Medium)
            color: nav.current || hover.hovered ? Theme.p.text : Qt.tint(Theme.p.text, Theme.alpha(Theme.p.subtext, 0.45))
        }
    }
}
