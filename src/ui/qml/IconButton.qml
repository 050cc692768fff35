// A small button that is only an icon, with an optional tooltip.
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
    ToolTip.visible: tip.length > 0 && hovered
    ToolTip.text: tip
    ToolTip.delay: 600

    contentItem: SvgIcon {
        symbol: button.symbol
        size: button.iconSize
        color: button.enabled ? button.iconColor : Theme.alpha(Theme.p.subtext, 0.5)
    }
    background: Rectangle {
        radius: Theme.s(7)
        color: Theme.alpha(Theme.p.accent, button.down ? 0.22 : button.hovered ? 0.12 : 0)
    }
}
