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

    // The catalogs' names as the list shows them ("A" or "B" for one that is gone).
    function nameOf(id, letter) {
        const found = AppModel.catalogs.find(c => c.id === id)
        return found ? found.name : letter
    }

    ReportResults {
        id: results
        name: "compare"
        separated: false
        source: result.pane
        ran: result.pane.hasResult
        header: ""
        idleText: "Choose catalogs A and B, then press Compare. Neither drive needs to be connected."
        // "Different" shows both sides' sizes where the catalog stands: the column takes what they need,
        // up to half the table, and a text too long for that loses the middle of the names
        // rather than a size.
        readonly property bool sizesShown: result.pane.tab === 2
        catalogTitle: sizesShown ? "Sizes" : "Catalog"
        catalogTexts: sizesShown ? [Fmt.size(999), Fmt.size(999.9e3), Fmt.size(999.9e6), Fmt.size(999.9e9)]
                                   .map(size => result.nameOf(result.pane.a, "A") + ": " + size + " \u00b7 "
                                               + result.nameOf(result.pane.b, "B") + ": " + size)
                                 : AppModel.catalogs.map(c => c.name)
        catalogMaxWidth: sizesShown ? Math.max(Theme.s(210), results.width * 0.5) : Theme.s(210)
        catalogElide: sizesShown ? Text.ElideMiddle : Text.ElideRight
        noRowsText: result.pane.tab === 0 ? "Nothing is only in A."
                  : result.pane.tab === 1 ? "Nothing is only in B."
                  : "No file differs between A and B."
    }
}
