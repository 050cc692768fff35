// One cell of the dry-run table: a single line cut short in the middle (paths keep both ends), shown
// whole under the pointer when it does not fit.
import QtQuick
import Orrelin

Text {
    id: cell
    property bool mono: false

    height: parent ? parent.height : implicitHeight
    leftPadding: Theme.s(4)
    rightPadding: Theme.s(8)
    verticalAlignment: Text.AlignVCenter
    elide: Text.ElideMiddle
    font: Theme.f(12, Font.Normal, mono)
    color: Theme.p.text

    HoverHandler { id: hover }
    // Made only while needed: a table shows hundreds of cells.
    Loader {
        active: hover.hovered && cell.truncated
        sourceComponent: HelpTip {
            parent: cell
            text: cell.text
            shown: true
        }
    }
}
