// "Export CSV…" of a report: the pane's rows in their own order, through the save panel. Shown only when
// there is something to export.
import QtQuick
import Orrelin

LaserButton {
    property QtObject pane

    compact: true
    symbol: "square.and.arrow.up"
    text: "Export CSV\u2026"
    visible: pane !== null && pane.count > 0
    onClicked: AppModel.exportReport(pane)
}
