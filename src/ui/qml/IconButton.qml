// A small button that is only an icon, with an optional tooltip; it lights up in the accent when the
// pointer is over it.
import QtQuick
import QtQuick.Controls
import Orrelin

Button {
    id: button
    property string symbol
    property string tip
    property real iconSize: Theme.s(14)
    property color iconColor: Theme.p.text

    hoverEnabled: true
    padding: Theme.s(5)
    // Only an icon: a screen reader says its help text instead.
    Accessible.name: button.tip.length > 0 ? button.tip : button.text
    Accessible.onPressAction: if (button.enabled) button.clicked()
    Keys.onReturnPressed: event => { if (button.enabled) button.clicked() }
    Keys.onEnterPressed: event => { if (button.enabled) button.clicked() }
    HelpTip {
        text: button.tip
        shown: button.hovered
    }

    contentItem: SvgIcon {
        symbol: button.symbol
        size: button.iconSize
        color: !button.enabled ? Theme.alpha(Theme.p.subtext, 0.5)
             : button.hovered ? Theme.p.accent : button.iconColor
    }
    background: Rectangle {
        implicitWidth: button.iconSize + 2 * button.padding
        implicitHeight: implicitWidth
        radius: Theme.s(7)
        color: Theme.alpha(Theme.p.accent, button.down ? 0.24 : button.hovered ? 0.13 : 0)
        border.width: button.hovered || button.visualFocus ? Math.max(1, Theme.s(1)) : 0
        border.color: Theme.alpha(Theme.p.accent, 0.35)
    }
}
