// One on/off setting: a switch and its label, the whole row clickable.
import QtQuick
import Orrelin

Item {
    id: toggle
    property alias text: label.text
    property bool checked: false
    // The user flipped the switch; `on` is the new state. The owner stores it and binds `checked` back.
    signal toggled(bool on)

    implicitWidth: track.width + Theme.s(10) + label.implicitWidth
    implicitHeight: Math.max(track.height, label.implicitHeight) + Theme.s(6)
    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: label.text
    Accessible.focusable: true
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: toggle.toggled(!toggle.checked)
    Accessible.onToggleAction: toggle.toggled(!toggle.checked)

    Rectangle {
        id: track
        width: Theme.s(34)
        height: Theme.s(20)
        radius: height / 2
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        color: toggle.checked ? Theme.p.accent : Theme.alpha(Theme.p.subtext, 0.28)
        border.width: Math.max(1, Theme.s(1))
        border.color: toggle.activeFocus ? Theme.p.glow
                    : toggle.checked ? Theme.alpha(Theme.p.glow, 0.8) : Theme.p.stroke
        Behavior on color { ColorAnimation { duration: 120 } }

        Rectangle {
            width: parent.height - Theme.s(4)
            height: width
            radius: width / 2
            y: Theme.s(2)
            x: toggle.checked ? parent.width - width - Theme.s(2) : Theme.s(2)
            color: toggle.checked ? Theme.p.bgBottom : Theme.p.text
            Behavior on x { NumberAnimation { duration: 120; easing.type: Easing.OutCubic } }
        }
    }

    Text {
        id: label
        anchors.left: track.right
        anchors.leftMargin: Theme.s(10)
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        font: Theme.f(13)
        color: Theme.p.text
        wrapMode: Text.Wrap
    }

    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.PointingHandCursor
        onClicked: { toggle.forceActiveFocus(); toggle.toggled(!toggle.checked) }
    }
    Keys.onSpacePressed: toggle.toggled(!toggle.checked)
    Keys.onReturnPressed: toggle.toggled(!toggle.checked)
    Keys.onEnterPressed: toggle.toggled(!toggle.checked)
}
