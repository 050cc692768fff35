// The program's button: `prominent` fills it with the accent, `compact` makes it smaller; `symbol` puts
// an icon before the text.
import QtQuick
import QtQuick.Controls
import Orrelin

Button {
    id: button
    property bool prominent: false
    property bool compact: false
    property string symbol

    font: Theme.f(compact ? 11 : 13, Font.DemiBold)
    leftPadding: Theme.s(compact ? 10 : 14)
    rightPadding: Theme.s(compact ? 10 : 14)
    topPadding: Theme.s(compact ? 4 : 7)
    bottomPadding: Theme.s(compact ? 4 : 7)
    hoverEnabled: true

    contentItem: Row {
        spacing: Theme.s(6)
        SvgIcon {
            visible: button.symbol.length > 0
            symbol: button.symbol
            size: Theme.s(button.compact ? 12 : 14)
            color: label.color
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            id: label
            text: button.text
            font: button.font
            color: !button.enabled ? Theme.alpha(Theme.p.subtext, 0.6)
                 : button.prominent ? Theme.p.bgBottom : Theme.p.text
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    background: Rectangle {
        radius: Theme.s(button.compact ? 7 : 9)
        color: button.prominent ? (button.enabled ? Theme.p.accent : Theme.alpha(Theme.p.accent, 0.3))
                                : Theme.alpha(Theme.p.accent, button.down ? 0.22 : button.hovered ? 0.14 : 0.08)
        border.width: Math.max(1, Theme.s(1))
        border.color: button.prominent ? Theme.alpha(Theme.p.glow, 0.9) : Theme.p.stroke
    }
}
