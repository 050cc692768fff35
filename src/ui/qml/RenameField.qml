// A labelled text field of the Rename Assistant's form: the label above, the field below.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: field
    property string label
    property alias text: input.text
    property alias placeholder: input.placeholderText
    readonly property alias input: input

    spacing: Theme.s(4)

    Text {
        Layout.fillWidth: true
        text: field.label
        font: Theme.f(11.5, Font.DemiBold)
        color: Theme.p.subtext
        elide: Text.ElideRight
    }
    ThemedTextField {
        id: input
        objectName: field.objectName.length > 0 ? field.objectName + "Input" : ""
        Layout.fillWidth: true
        Accessible.name: field.label
    }
}
