// One counter of the scan panel: a number, bold and monospaced, above its label in capitals.
import QtQuick
import Orrelin

Column {
    id: counter
    property real value: 0
    property string label
    property color tint: Theme.p.text

    spacing: Theme.s(2)
    Text {
        objectName: counter.objectName + "Value"
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: Fmt.count(counter.value)
        font: Theme.f(17, Font.Bold, true)
        color: counter.tint
    }
    Text {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: counter.label.toUpperCase()
        font.family: Theme.sansFamily
        font.pixelSize: Theme.f(9).pixelSize
        font.weight: Font.DemiBold
        font.letterSpacing: Theme.s(1.2)
        color: Theme.p.subtext
    }
}
