// One tab of the Settings window: its icon above its name, lit while it is the current tab.
import QtQuick
import Orrelin

Rectangle {
    id: tab
    property string symbol
    property alias text: label.text
    property bool current: false
    signal activated()

    implicitWidth: Math.max(Theme.s(84), label.implicitWidth + Theme.s(20))
    implicitHeight: Theme.s(58)
    radius: Theme.s(10)
    color: current ? Theme.alpha(Theme.p.accent, 0.16)
                   : hover.containsMouse ? Theme.alpha(Theme.p.accent, 0.07) : "transparent"
    border.width: current || activeFocus ? Math.max(1, Theme.s(1)) : 0
    border.color: activeFocus ? Theme.p.glow : Theme.alpha(Theme.p.accent, 0.45)

    activeFocusOnTab: true
    Accessible.role: Accessible.PageTab
    Accessible.name: label.text
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: current
    Accessible.onPressAction: tab.activated()
    Keys.onSpacePressed: tab.activated()
    Keys.onReturnPressed: tab.activated()
    Keys.onEnterPressed: tab.activated()

    Column {
        anchors.centerIn: parent
        spacing: Theme.s(5)
        SvgIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: tab.symbol
            size: Theme.s(22)
            color: tab.current ? Theme.p.accent : Theme.p.subtext
        }
        Text {
            id: label
            anchors.horizontalCenter: parent.horizontalCenter
            font: Theme.f(12, tab.current ? Font.DemiBold : Font.Normal)
            color: tab.current ? Theme.p.text : Theme.p.subtext
        }
    }

    MouseArea {
        id: hover
        anchors.fill: parent
        hoverEnabled: true
        onClicked: tab.activated()
    }
}
