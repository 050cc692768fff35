// One row of the file inspector: a label at the left and its value, which wraps (anywhere, for paths and
// checksums that have no spaces) and can be selected and copied.
import QtQuick
import Orrelin

Item {
    id: row
    property string label
    property string value
    property bool mono: false
    // The width of the label column, shared by the rows of one inspector so their values line up.
    property real labelWidth: Theme.s(86)

    implicitHeight: Math.max(labelText.implicitHeight, valueText.implicitHeight)

    Text {
        id: labelText
        width: row.labelWidth
        text: row.label
        font: Theme.f(11.5)
        color: Theme.p.subtext
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
    }
    TextEdit {
        id: valueText
        objectName: "value"
        anchors.left: labelText.right
        anchors.leftMargin: Theme.s(10)
        anchors.right: parent.right
        text: row.value
        readOnly: true
        selectByMouse: true
        persistentSelection: false
        font: Theme.f(row.mono ? 11 : 12, Font.Normal, row.mono)
        color: Theme.p.text
        selectionColor: Theme.alpha(Theme.p.accent, 0.45)
        selectedTextColor: Theme.p.text
        wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
        horizontalAlignment: TextEdit.AlignLeft
        activeFocusOnPress: true
        Accessible.role: Accessible.StaticText
        Accessible.name: row.label + ": " + row.value
        Accessible.readOnly: true
    }
}
