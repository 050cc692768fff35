// One fact of the drive panel: a small capitalised label over its value. A value cut short shows whole
// in a help text.
import QtQuick
import Orrelin

Item {
    id: fact
    property string label
    property string value

    implicitHeight: column.implicitHeight
    implicitWidth: Math.max(labelText.implicitWidth, valueText.implicitWidth)

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    Column {
        id: column
        width: parent.width
        spacing: Theme.s(1)

        SectionTitle {
            id: labelText
            width: parent.width
            text: fact.label
            font.pixelSize: Theme.f(9.5).pixelSize
        }
        Text {
            id: valueText
            objectName: "value"
            width: parent.width
            text: fact.value
            font: Theme.f(12, Font.Medium)
            color: Theme.p.text
            elide: Text.ElideMiddle
            maximumLineCount: 1

            HoverHandler { id: hover }
            HelpTip {
                text: fact.value
                shown: hover.hovered && valueText.truncated
            }
        }
    }
}
