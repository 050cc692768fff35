// A small segmented control: one button per label, the current one lit; choosing one emits picked().
// Each button is named "<objectName>_<label>" for tests.
import QtQuick
import QtQuick.Controls
import Orrelin

Row {
    id: segment
    property var labels: []
    property int current: 0
    signal picked(int index)

    Repeater {
        model: segment.labels
        delegate: AbstractButton {
            id: button
            required property string modelData
            required property int index
            readonly property bool lit: segment.current === index
            objectName: segment.objectName + "_" + modelData
            text: modelData
            checkable: true
            checked: lit
            hoverEnabled: true
            padding: Theme.s(4)
            leftPadding: Theme.s(10)
            rightPadding: Theme.s(10)
            Accessible.role: Accessible.RadioButton
            Accessible.name: text
            Accessible.onPressAction: segment.picked(index)
            onClicked: segment.picked(index)
            Keys.onReturnPressed: segment.picked(index)

            contentItem: Text {
                text: button.text
                font: Theme.f(11, Font.DemiBold)
                color: button.lit ? Theme.p.bgBottom : button.hovered ? Theme.p.text : Theme.p.subtext
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
            background: Rectangle {
                readonly property bool first: button.index === 0
                readonly property bool last: button.index === segment.labels.length - 1
                radius: Theme.s(6)
                color: button.lit ? Theme.p.accent : Theme.alpha(Theme.p.accent, button.hovered ? 0.14 : 0.06)
                border.width: Math.max(1, Theme.s(1))
                border.color: button.visualFocus ? Theme.p.glow : button.lit ? Theme.p.accent : Theme.p.stroke
            }
        }
    }
}
