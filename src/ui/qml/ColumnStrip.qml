// The column view: one column per open folder from the root down, side by side in a strip that scrolls
// sideways and follows the path to its deepest column.
import QtQuick
import QtQuick.Controls
import Orrelin

ListView {
    id: strip
    property var browser
    property var menu

    orientation: ListView.Horizontal
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    model: browser.columns
    ScrollBar.horizontal: ScrollBar { policy: ScrollBar.AsNeeded }
    Accessible.role: Accessible.Pane
    Accessible.name: "Columns"

    // Gives the keyboard to the column at `depth`, selecting its first row when it has nothing lit.
    function focusColumn(depth) {
        forceLayout()
        const column = itemAtIndex(depth)
        if (!column) return
        if (column.litRow < 0 && column.folder.count > 0) column.selectRow(0)
        column.forceActiveFocus()
        positionViewAtIndex(depth, ListView.Contain)
    }

    // Columns keep to a reading width, but at least two share a narrow view.
    readonly property real columnWidth: Math.max(Theme.s(150), Math.min(Theme.s(250), width / 2))

    delegate: BrowserColumn {
        width: strip.columnWidth
        height: ListView.view.height
        browser: strip.browser
        menu: strip.menu
        onFocusRequested: depth => strip.focusColumn(depth)
    }

    // Each time the path gets longer or shorter, the deepest column comes into sight.
    property int shownLength: 0
    Connections {
        target: strip.browser
        function onPathChanged() {
            if (strip.browser.pathLength === strip.shownLength) return
            strip.shownLength = strip.browser.pathLength
            Qt.callLater(strip.positionViewAtEnd)
        }
        function onRevealed(id) {
            Qt.callLater(() => {
                strip.forceLayout()
                strip.positionViewAtEnd()
                for (let d = 0; d < strip.count; ++d) {
                    const column = strip.itemAtIndex(d)
                    if (column) column.showLit()
                }
            })
        }
    }
}
