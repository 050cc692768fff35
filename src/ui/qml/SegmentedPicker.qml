// A row of joined buttons of which one is chosen: the texts of `options`, the chosen one lit. Arrow keys
// move the choice while the picker has the keyboard focus.
import QtQuick
import QtQuick.Controls
import Orrelin

FocusScope {
    id: picker
    property var options: []
    property string current
    // What a screen reader calls the whole picker.
    property string label
    signal picked(string option)

    implicitWidth: frame.implicitWidth
    implicitHeight: frame.implicitHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function step(by) {
        const at = options.indexOf(current)
        const next = Math.max(0, Math.min(options.length - 1, at + by))
        if (next !== at) picked(options[next])
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Rectangle {
        id: frame
        implicitWidth: segments.implicitWidth + 2 * Theme.s(3)
        implicitHeight: segments.implicitHeight + 2 * Theme.s(3)
        radius: Theme.s(8)
        color: Theme.alpha(Theme.p.bgBottom, 0.55)
        border.width: Math.max(1, Theme.s(1))
        border.color: picker.activeFocus ? Theme.p.accent : Theme.p.stroke

        Row {
            id: segments
            x: Theme.s(3)
            y: Theme.s(3)
            spacing: Theme.s(2)
            Repeater {
                model: picker.options
                delegate: AbstractButton {
                    id: segment
                    required property string modelData
                    required property int index
                    readonly property bool chosen: picker.current === modelData
                    objectName: picker.objectName.length > 0 ? picker.objectName + "_" + index : ""
                    text: modelData
                    hoverEnabled: true
                    focusPolicy: Qt.NoFocus
                    checkable: false
                    leftPadding: Theme.s(12)
                    rightPadding: Theme.s(12)
                    topPadding: Theme.s(4)
                    bottomPadding: Theme.s(4)
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: text
                    Accessible.checkable: true
                    Accessible.checked: chosen
                    Accessible.onPressAction: picker.picked(modelData)
                    onClicked: picker.picked(modelData)
                    contentItem: Text {
                        text: segment.text
                        font: Theme.f(12, segment.chosen ? Font.DemiBold : Font.Normal)
                        color: segment.chosen ? Theme.p.bgBottom : segment.hovered ? Theme.p.text : Theme.p.subtext
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                    }
                    background: Rectangle {
                        radius: Theme.s(6)
                        color: segment.chosen ? Theme.p.accent
                             : segment.hovered ? Theme.alpha(Theme.p.accent, 0.12) : "transparent"
                        Behavior on color { ColorAnimation { duration: 120 } }
                    }
                }
            }
        }
    }
}
