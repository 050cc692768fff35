// One option of a form: its label on the left, a switch on the right; the whole row toggles it.
import QtQuick
import QtQuick.Controls
import Orrelin

Switch {
    id: control

    hoverEnabled: true
    Accessible.name: text
    padding: Theme.s(4)
    leftPadding: Theme.s(8)
    rightPadding: Theme.s(8)
    spacing: Theme.s(12)
    font: Theme.f(13)

    // The row lights up under the pointer, and is outlined while it has the keyboard focus.
    background: Rectangle {
        radius: Theme.s(7)
        color: control.hovered ? Theme.alpha(Theme.p.text, 0.04) : "transparent"
        border.width: control.visualFocus ? Math.max(1, Theme.s(1)) : 0
        border.color: Theme.alpha(Theme.p.accent, 0.7)
    }

    indicator: Rectangle {
        x: control.width - width - control.rightPadding
        y: control.topPadding + (control.availableHeight - height) / 2
        implicitWidth: Theme.s(36)
        implicitHeight: Theme.s(20)
        radius: height / 2
        color: control.checked ? Theme.p.accent : Theme.alpha(Theme.p.text, 0.14)
        border.width: Math.max(1, Theme.s(1))
        border.color: control.checked ? Theme.alpha(Theme.p.glow, 0.8) : Theme.p.stroke
        Behavior on color { ColorAnimation { duration: 120 } }

        Rectangle {
            width: parent.height - Theme.s(4)
            height: width
            radius: width / 2
            y: Theme.s(2)
            x: control.checked ? parent.width - width - Theme.s(2) : Theme.s(2)
            color: control.checked ? Theme.p.bgBottom : Theme.p.text
            Behavior on x { NumberAnimation { duration: 120; easing.type: Easing.OutQuad } }
        }
    }

    contentItem: Text {
        rightPadding: control.indicator.width + control.spacing
        text: control.text
        font: control.font
        color: Theme.p.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
}
