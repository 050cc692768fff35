// One row of the file inspector: a label at the left and its value, which wraps (anywhere, for paths and
// checksums that have no spaces) and can be selected and copied. In a narrow inspector (a large zoom) the
// value goes below its label and takes the whole width.
import QtQuick
import Orrelin

Item {
    id: row
    property string label
    property string value
    property bool mono: false
    // The width of the label column, shared by the rows of one inspector so their values line up.
    property real labelWidth: Theme.s(86)

    readonly property bool stacked: width < Theme.s(250)

    implicitHeight: stacked ? labelText.implicitHeight + Theme.s(2) + valueText.implicitHeight
                            : Math.max(labelText.implicitHeight, valueText.implicitHeight)

    Text {
        id: labelText
        width: row.stacked ? row.width : row.labelWidth
        text: row.label
        font: Theme.f(11.5)
        color: Theme.p.subtext
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
    }
    TextEdit {
        id: valueText
        objectName: "value"
        x: row.stacked ? 0 : row.labelWidth + Theme.s(10)
        y: row.stacked ? labelText.implicitHeight + Theme.s(2) : 0
        width: row.width - x
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
