// The comparison's result: four chips with their counts ("Identical" is only a figure), then the list of
// the chosen chip in the shared results table. Before a comparison, a note.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: result
    property QtObject pane

    Layout.fillWidth: true
    spacing: Theme.s(12)

    Rectangle {
        Layout.fillWidth: true
        Layout.topMargin: Theme.s(4)
        implicitHeight: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
    }

    Flow {
        Layout.fillWidth: true
        visible: result.pane.hasResult
        spacing: Theme.s(8)
        Repeater {
            model: result.pane.chips
            delegate: CompareChip {
                required property var modelData
                objectName: "compareChip" + (modelData.tab >= 0 ? modelData.tab : "Same")
                text: modelData.label
                count: modelData.count
                tab: modelData.tab
                current: tab >= 0 && tab === result.pane.tab
                onPicked: result.pane.setTab(tab)
            }
        }
    }

    ReportResults {
        name: "compare"
        separated: false
        source: result.pane
        ran: result.pane.hasResult
        header: ""
        idleText: "Choose catalogs A and B, then press Compare. Neither drive needs to be connected."
        noRowsText: result.pane.tab === 0 ? "Nothing is only in A."
                  : result.pane.tab === 1 ? "Nothing is only in B."
                  : "No file differs between A and B."
    }
}
