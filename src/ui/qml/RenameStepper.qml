// A number of the Rename Assistant's form with a − and + to change it (hold to repeat); `text` says
// what the number is, e.g. "from 5" or "3 digits".
import QtQuick
import QtQuick.Layouts
import Orrelin

RowLayout {
    id: stepper
    property string text
    property real value: 0
    property real from: 0
    property real to: 999999
    // What a screen reader calls the number, e.g. "First number".
    property string name
    signal moved(real value)

    spacing: Theme.s(8)
    opacity: enabled ? 1 : 0.5

    Text {
        objectName: stepper.objectName.length > 0 ? stepper.objectName + "Label" : ""
        text: stepper.text
        font: Theme.f(13)
        color: Theme.p.text
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Rectangle {
        implicitWidth: buttons.implicitWidth
        implicitHeight: buttons.implicitHeight
        radius: Theme.s(7)
        color: Theme.alpha(Theme.p.accent, 0.06)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.p.stroke
        Row {
            id: buttons
            SettingsStepButton {
                objectName: stepper.objectName.length > 0 ? stepper.objectName + "Minus" : ""
                text: "\u2212"
                Accessible.name: "Decrease " + stepper.name
                enabled: stepper.enabled && stepper.value > stepper.from
                onClicked: stepper.moved(stepper.value - 1)
            }
            Rectangle { width: Math.max(1, Theme.s(1)); height: parent.height; color: Theme.p.stroke }
            SettingsStepButton {
                objectName: stepper.objectName.length > 0 ? stepper.objectName + "Plus" : ""
                text: "+"
                Accessible.name: "Increase " + stepper.name
                enabled: stepper.enabled && stepper.value < stepper.to
                onClicked: stepper.moved(stepper.value + 1)
            }
        }
    }
}
