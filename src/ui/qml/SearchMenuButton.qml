// A button that opens a menu below itself: a symbol, a label cut short with "…" past `maximumTextWidth`,
// and a downward chevron. Put the menu's entries inside it.
import QtQuick
import QtQuick.Controls
import Orrelin

Button {
    id: button
    property string symbol
    property real maximumTextWidth: Theme.s(240)
    default property alias entries: dropMenu.contentData
    readonly property alias menu: dropMenu

    font: Theme.f(12, Font.DemiBold)
    leftPadding: Theme.s(10)
    rightPadding: Theme.s(9)
    topPadding: Theme.s(5)
    bottomPadding: Theme.s(5)
    hoverEnabled: true
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: button.text
    Accessible.onPressAction: button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Keys.onDownPressed: button.clicked()
    onClicked: dropMenu.popup(button, 0, button.height + Theme.s(3))

    contentItem: Row {
        spacing: Theme.s(6)
        SvgIcon {
            visible: button.symbol.length > 0
            anchors.verticalCenter: parent.verticalCenter
            symbol: button.symbol
            size: Theme.s(12)
            color: Theme.p.accent
        }
        Text {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, button.maximumTextWidth)
            text: button.text
            font: button.font
            color: button.enabled ? Theme.p.text : Theme.alpha(Theme.p.subtext, 0.6)
            elide: Text.ElideRight
        }
        SvgIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.down"
            size: Theme.s(9)
            color: Theme.p.subtext
        }
    }
    background: Rectangle {
        implicitHeight: Theme.s(28)
        radius: Theme.s(7)
        color: Theme.alpha(Theme.p.accent, button.down || dropMenu.visible ? 0.2 : button.hovered ? 0.13 : 0.07)
        border.width: Math.max(1, Theme.s(1))
        border.color: button.visualFocus ? Theme.p.accent
                    : button.hovered ? Theme.alpha(Theme.p.accent, 0.45) : Theme.p.stroke
    }

    ThemedMenu {
        id: dropMenu
        objectName: button.objectName.length > 0 ? button.objectName + "Menu" : ""
    }
}
