// One tab of the Tools screen: its symbol and label in a pill that glows in the accent while current.
import QtQuick
import QtQuick.Controls
import Orrelin

AbstractButton {
    id: tab
    property string symbol

    hoverEnabled: true
    activeFocusOnTab: true
    font: Theme.f(12.5, checked ? Font.DemiBold : Font.Medium)
    leftPadding: Theme.s(12)
    rightPadding: Theme.s(14)
    topPadding: Theme.s(7)
    bottomPadding: Theme.s(7)

    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selected: checked
    Accessible.onPressAction: tab.clicked()
    Keys.onReturnPressed: tab.clicked()
    Keys.onEnterPressed: tab.clicked()

    contentItem: Row {
        spacing: Theme.s(7)
        SvgIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: tab.symbol
            size: Theme.s(15)
            color: tab.checked ? Theme.p.accent : tab.hovered ? Theme.p.text : Theme.p.subtext
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: tab.text
            font: tab.font
            color: tab.checked || tab.hovered ? Theme.p.text : Theme.p.subtext
        }
    }

    background: Rectangle {
        radius: height / 2
        color: tab.checked ? Theme.alpha(Theme.p.accent, 0.16)
             : Theme.alpha(Theme.p.text, tab.down ? 0.08 : tab.hovered ? 0.05 : 0)
        border.width: tab.checked || tab.visualFocus ? Math.max(1, Theme.s(1)) : 0
        border.color: tab.visualFocus ? Theme.p.glow : Theme.alpha(Theme.p.accent, 0.55)
    }
}
