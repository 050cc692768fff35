// One half of a stepper: a "−" or "+" that can be held down to repeat.
import QtQuick
import QtQuick.Controls
import Orrelin

AbstractButton {
    id: button
    implicitWidth: Theme.s(30)
    implicitHeight: Theme.s(26)
    autoRepeat: true
    hoverEnabled: true
    font: Theme.f(15, Font.DemiBold)
    Accessible.onPressAction: if (button.enabled) button.clicked()

    contentItem: Text {
        text: button.text
        font: button.font
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        color: button.enabled ? Theme.p.text : Theme.alpha(Theme.p.subtext, 0.45)
    }
    background: Rectangle {
        radius: Theme.s(6)
        color: Theme.alpha(Theme.p.accent, button.down ? 0.22 : button.hovered && button.enabled ? 0.12 : 0)
        border.width: button.visualFocus ? Math.max(1, Theme.s(1.5)) : 0
        border.color: Theme.p.glow
    }
}
