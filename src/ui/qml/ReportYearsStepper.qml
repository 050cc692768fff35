// The age of the large-file report: "−", the years ("any time" at 0), "+", from 0 to 30 years. The arrow
// keys step it too.
import QtQuick
import QtQuick.Controls
import Orrelin

Rectangle {
    id: stepper
    property QtObject pane
    readonly property int maxYears: 30

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    radius: Theme.s(7)
    color: Theme.alpha(Theme.p.accent, 0.06)
    border.width: Math.max(1, Theme.s(1))
    border.color: activeFocus ? Theme.p.accent : Theme.p.stroke
    activeFocusOnTab: true
    Accessible.role: Accessible.SpinBox
    Accessible.name: "Not modified in " + label.text
    Keys.onUpPressed: pane.years = Math.min(maxYears, pane.years + 1)
    Keys.onDownPressed: pane.years = Math.max(0, pane.years - 1)

    Row {
        id: row
        SettingsStepButton {
            objectName: "largeOldYearsMinus"
            text: "\u2212"
            Accessible.name: "Fewer years"
            enabled: stepper.pane.years > 0
            onClicked: stepper.pane.years = stepper.pane.years - 1
        }
        Text {
            id: label
            objectName: "largeOldYearsLabel"
            anchors.verticalCenter: parent.verticalCenter
            // Wide enough for "30 years", so the buttons stay put while it steps.
            width: Math.max(implicitWidth, yardstick.implicitWidth) + Theme.s(12)
            horizontalAlignment: Text.AlignHCenter
            text: stepper.pane.yearsLabel
            font: Theme.f(13, Font.DemiBold)
            color: Theme.p.text
        }
        SettingsStepButton {
            objectName: "largeOldYearsPlus"
            text: "+"
            Accessible.name: "More years"
            enabled: stepper.pane.years < stepper.maxYears
            onClicked: stepper.pane.years = stepper.pane.years + 1
        }
    }
    Text {
        id: yardstick
        visible: false
        text: "30 years"
        font: Theme.f(13, Font.DemiBold)
    }
}
