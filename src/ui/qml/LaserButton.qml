// The program's button: `prominent` fills it with a laser gradient of the accents and gives it a glow,
// `compact` makes it smaller; `symbol` puts an icon before the text.
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

    // Named by its text (where a use shows only the icon, it names the button itself); a screen
    // reader's press clicks it.
    Accessible.name: button.text
    Accessible.onPressAction: if (button.enabled) button.clicked()

    // Return and Enter press the focused button, as Space does.
    Keys.onReturnPressed: event => { if (button.enabled) button.clicked() }
    Keys.onEnterPressed: event => { if (button.enabled) button.clicked() }

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

    background: Item {
        readonly property real corner: Theme.s(button.compact ? 7 : 9)
        readonly property bool lit: button.prominent && button.enabled

        // The keyboard's focus: a ring just outside the edge.
        Rectangle {
            visible: button.visualFocus
            anchors.fill: parent
            anchors.margins: -Theme.s(3)
            radius: parent.corner + Theme.s(3)
            color: "transparent"
            border.width: Math.max(1, Theme.s(1.5))
            border.color: Theme.p.glow
        }

        // The glow of a prominent button: translucent outlines widening outwards, stronger on hover.
        Repeater {
            model: parent.lit ? 3 : 0
            delegate: Rectangle {
                required property int index
                readonly property real spread: Theme.s(1.5 + index * 2.5)
                anchors.fill: parent
                anchors.margins: -spread
                radius: parent.corner + spread
                color: "transparent"
                border.width: Theme.s(2.5)
                border.color: Theme.alpha(Theme.p.glow, (button.hovered ? 0.34 : 0.22) / (index + 1.2))
            }
        }

        // The keyboard focus: a ring just outside the button.
        Rectangle {
            visible: button.visualFocus
            anchors.fill: parent
            anchors.margins: -Theme.s(3)
            radius: parent.corner + Theme.s(3)
            color: "transparent"
            border.width: Math.max(1, Theme.s(1.5))
            border.color: Theme.p.accent
        }

        Rectangle {
            anchors.fill: parent
            radius: parent.corner
            gradient: button.prominent ? laser : null
            color: button.prominent ? Theme.alpha(Theme.p.accent, 0.3)
                 : Theme.alpha(Theme.p.accent, button.down ? 0.22 : button.hovered ? 0.14 : 0.07)
            opacity: button.prominent && !button.enabled ? 0.35 : 1
            border.width: Math.max(1, Theme.s(1))
            border.color: button.prominent ? Theme.alpha(Qt.lighter(Theme.p.glow, 1.3), 0.9)
                        : button.hovered ? Theme.alpha(Theme.p.accent, 0.45) : Theme.p.stroke

            Gradient {
                id: laser
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: button.down ? Qt.darker(Theme.p.accent, 1.15) : Theme.p.accent }
                GradientStop { position: 1; color: button.down ? Qt.darker(Theme.p.accent2, 1.15) : Theme.p.accent2 }
            }

            // A sheen over the upper half.
            Rectangle {
                visible: button.prominent
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: parent.border.width
                height: parent.height / 2
                radius: Math.max(0, parent.radius - parent.border.width)
                color: Qt.rgba(1, 1, 1, button.hovered ? 0.22 : 0.14)
            }
        }
    }
}
