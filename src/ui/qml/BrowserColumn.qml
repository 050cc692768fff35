// One column of the column view: the children of one open folder. Up and Down move the selection within
// it, Left and Right move to the neighbouring columns, Return opens the selected item.
import QtQuick
import QtQuick.Controls
import Orrelin

FocusScope {
    id: column
    required property var folder   // FolderModel
    required property int depth
    property var browser
    property var menu

    // Asks the strip to give the keyboard to the column at `depth`.
    signal focusRequested(int depth)

    // The id this column shows lit: the open folder of the path, or in the last column the selected item.
    readonly property real litID: depth < browser.pathLength ? browser.pathIDs[depth]
                                : browser.selectedID
    readonly property int litRow: {
        folder.count            // Re-read when the rows change.
        return folder.rowOf(litID)
    }

    // The row under the pointer, or -1.
    property int hoveredRow: -1
    readonly property font rowFont: Theme.f(12.5)

    Accessible.role: Accessible.List
    Accessible.name: depth === 0 ? "Top level" : (browser.path[depth - 1] ? browser.path[depth - 1].name : "")

    function selectRow(row) {
        if (row >= 0 && row < folder.count) browser.select(folder.fileID(row), depth)
    }
    // Brings the lit row into sight (after a reveal, or a key press near the edge).
    function showLit() {
        if (litRow >= 0) list.positionViewAtIndex(litRow, ListView.Contain)
    }
    function openLit() {
        if (litRow < 0) return
        const f = folder.fileAt(litRow)
        if (f.isDir) focusRequested(depth + 1)
        else browser.open(f.id)
    }

    ListView {
        id: list
        objectName: "columnList" + column.depth
        anchors.fill: parent
        anchors.margins: Theme.s(4)
        anchors.rightMargin: Theme.s(5)
        clip: true
        focus: true
        activeFocusOnTab: true
        model: column.folder
        currentIndex: column.litRow
        highlightFollowsCurrentItem: false
        boundsBehavior: Flickable.StopAtBounds
        // Rows leaving the view are kept and given to the rows coming in.
        reuseItems: true
        ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }

        Keys.onUpPressed: {
            column.selectRow(column.litRow < 0 ? 0 : Math.max(0, column.litRow - 1))
            column.showLit()
        }
        Keys.onDownPressed: {
            column.selectRow(column.litRow < 0 ? 0 : Math.min(column.folder.count - 1, column.litRow + 1))
            column.showLit()
        }
        Keys.onLeftPressed: {
            if (column.depth > 0) {
                column.browser.select(column.browser.pathIDs[column.depth - 1], column.depth - 1)
                column.focusRequested(column.depth - 1)
            }
        }
        Keys.onRightPressed: {
            if (column.depth < column.browser.pathLength) column.focusRequested(column.depth + 1)
        }
        Keys.onReturnPressed: column.openLit()
        Keys.onEnterPressed: column.openLit()

        // One pointer area for all rows, rather than one per row.
        MouseArea {
            parent: list.contentItem
            width: list.width
            height: Math.max(list.contentHeight, list.height)
            z: 1
            hoverEnabled: true
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            // The rows stand for it before a screen reader.
            Accessible.ignored: true
            function rowAt(mouse) { return list.indexAt(mouse.x, mouse.y) }
            onPositionChanged: mouse => column.hoveredRow = rowAt(mouse)
            onExited: column.hoveredRow = -1
            onPressed: mouse => {
                const row = rowAt(mouse)
                if (row >= 0) column.browser.select(column.folder.fileID(row), column.depth)
                list.forceActiveFocus()
            }
            onClicked: mouse => {
                const row = rowAt(mouse)
                if (mouse.button === Qt.RightButton && row >= 0) column.menu.openFor(column.folder.fileID(row))
            }
            onDoubleClicked: mouse => {
                const row = rowAt(mouse)
                if (mouse.button === Qt.LeftButton && row >= 0) column.browser.open(column.folder.fileID(row))
            }
        }

        delegate: ColumnRow {
            id: rowItem
            required property int index
            required property real fileID
            required name
            required isDir
            required kind
            required thumb
            required hidden
            required label
            objectName: "row:" + column.depth + ":" + name
            width: ListView.view.width
            nameFont: column.rowFont
            selected: fileID === column.browser.selectedID && column.depth >= column.browser.pathLength - 1
            onPath: column.depth < column.browser.pathLength && fileID === column.litID
            hovered: column.hoveredRow === index
            active: list.activeFocus
            onPressed: column.browser.select(rowItem.fileID, column.depth)
        }
    }

    Text {
        objectName: "emptyColumn" + column.depth
        anchors.centerIn: parent
        width: parent.width - Theme.s(24)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: column.folder.count === 0
        text: "Empty folder"
        font: Theme.f(12)
        color: Theme.p.subtext
    }

    // The line between this column and the next.
    Rectangle {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
    }
}
