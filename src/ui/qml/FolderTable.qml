// The list view of the browser: the current folder as a table that sorts by any column but the tags.
// A click selects a row; a double click or Return opens it (a folder in the browser, a file in its
// application); Up and Down move the selection. Only the rows on screen are made.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

FocusScope {
    id: table
    property var browser
    property var menu

    readonly property var folder: browser.list
    readonly property int selectedRow: {
        folder.count            // Re-read when the rows change.
        return browser.tableSelection !== 0 ? folder.rowOf(browser.tableSelection) : -1
    }
    property real iconSize: Theme.s(18)

    // title, sort key ("" for none), and a fixed width or a share of what the fixed ones leave.
    readonly property var columns: [{ title: "Name", key: "name", share: 1 },
                                    { title: "Kind", key: "kindName", fixed: Theme.s(96) },
                                    { title: "Size", key: "size", fixed: Theme.s(150) },
                                    { title: "Modified", key: "sortModified", fixed: Theme.s(150) },
                                    { title: "Tags", key: "", fixed: Theme.s(130) }]
    // The narrowest the name may be before columns give way: in a narrow view (a large zoom) the tags go
    // first, then the kind, then the date, rather than the list scrolling sideways.
    readonly property real nameMinimum: Theme.s(140)
    readonly property var shown: {
        const keep = [true, true, true, true, true]
        let total = nameMinimum + Theme.s(12)
        for (const c of columns) total += c.fixed || 0
        for (const i of [4, 1, 3]) {
            if (total <= list.width) break
            keep[i] = false
            total -= columns[i].fixed
        }
        return keep
    }
    readonly property real fixedWidth: {
        let fixed = 0
        for (let i = 0; i < columns.length; ++i) if (shown[i]) fixed += columns[i].fixed || 0
        return fixed
    }
    // The name takes what the others leave; only a view too narrow for the name and size scrolls sideways.
    readonly property real rowWidth: Math.max(list.width, fixedWidth + nameMinimum + Theme.s(12))
    function columnWidth(column) {
        return column.fixed ? column.fixed : rowWidth - fixedWidth - Theme.s(12)
    }
    // Where column `index` starts within a row (the header's cells start at 6).
    function columnX(index) {
        let x = 0
        for (let i = 0; i < index; ++i) if (shown[i]) x += columnWidth(columns[i])
        return x
    }
    // What every row shares, worked out once here rather than in each row: a scroll makes a page of rows
    // at a time.
    readonly property var cellX: [columnX(0) + Theme.s(12), columnX(1) + Theme.s(12), columnX(2) + Theme.s(12),
                                  columnX(3) + Theme.s(12), columnX(4) + Theme.s(12)]
    readonly property var cellWidth: [columnWidth(columns[0]) - Theme.s(10), columnWidth(columns[1]) - Theme.s(10),
                                      columnWidth(columns[2]) - Theme.s(10), columnWidth(columns[3]) - Theme.s(10),
                                      columnWidth(columns[4]) - Theme.s(10)]
    readonly property real rowHeight: Math.max(iconSize, Theme.s(16)) + Theme.s(10)
    readonly property font cellFont: Theme.f(12)
    readonly property font sizeFont: Theme.f(12, Font.Normal, true)
    readonly property color nameColor: Theme.p.text
    readonly property color hiddenColor: Theme.alpha(Theme.p.text, 0.6)
    readonly property color cellColor: Theme.alpha(Theme.p.text, 0.72)
    readonly property color selectedColor: Theme.alpha(Theme.p.accent, list.activeFocus ? 0.28 : 0.2)
    readonly property color hoverColor: Theme.alpha(Theme.p.text, 0.05)
    readonly property color stripeColor: Theme.alpha(Theme.p.text, 0.02)
    // The row under the pointer, or -1.
    property int hoveredRow: -1

    function selectRow(row) {
        if (row < 0 || row >= folder.count) return
        browser.tableSelection = folder.fileID(row)
        list.positionViewAtIndex(row, ListView.Contain)
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // The header: each title but "Tags" sorts by its column; the sorted one shows its direction.
        Flickable {
            Layout.fillWidth: true
            implicitHeight: Theme.s(26)
            contentWidth: headerRow.width
            contentX: list.contentX
            interactive: false
            clip: true
            Rectangle {
                width: table.rowWidth
                height: parent.height
                color: Theme.alpha(Theme.p.text, 0.04)
                radius: Theme.s(6)
            }
            Row {
                id: headerRow
                x: Theme.s(6)
                height: parent.height
                Repeater {
                    model: table.columns
                    delegate: AbstractButton {
                        id: headerCell
                        required property var modelData
                        required property int index
                        visible: table.shown[index]
                        readonly property bool sortable: modelData.key.length > 0
                        readonly property bool sorted: sortable && table.browser.sortKey === modelData.key
                        objectName: "folderHeader_" + modelData.title
                        width: visible ? table.columnWidth(modelData) : 0
                        height: parent.height
                        hoverEnabled: sortable
                        enabled: sortable
                        text: modelData.title
                        Accessible.role: Accessible.ColumnHeader
                        Accessible.name: text + (sorted ? (table.browser.ascending ? ", sorted ascending"
                                                                                   : ", sorted descending") : "")
                        Accessible.onPressAction: if (sortable) table.browser.sortBy(modelData.key)
                        onClicked: table.browser.sortBy(modelData.key)
                        contentItem: Row {
                            spacing: Theme.s(4)
                            leftPadding: Theme.s(6)
                            Text {
                                anchors.verticalCenter: parent.verticalCenter
                                text: headerCell.text
                                font: Theme.f(11, Font.DemiBold)
                                color: headerCell.sorted || headerCell.hovered ? Theme.p.text : Theme.p.subtext
                            }
                            SvgIcon {
                                anchors.verticalCenter: parent.verticalCenter
                                visible: headerCell.sorted
                                symbol: table.browser.ascending ? "chevron.up" : "chevron.down"
                                size: Theme.s(9)
                                color: Theme.p.accent
                            }
                        }
                        background: Item {}
                    }
                }
            }
        }

        ListView {
            id: list
            objectName: "folderList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: table.folder
            focus: true
            activeFocusOnTab: true
            currentIndex: table.selectedRow
            highlightFollowsCurrentItem: false
            boundsBehavior: Flickable.StopAtBounds
            // Rows leaving the view are kept and given to the rows coming in.
            reuseItems: true
            contentWidth: table.rowWidth
            flickableDirection: Flickable.AutoFlickIfNeeded
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
            ScrollBar.horizontal: ScrollBar { policy: ScrollBar.AsNeeded }
            Accessible.role: Accessible.Table
            Accessible.name: "Folder contents, " + table.folder.count + " items"
            Keys.onUpPressed: table.selectRow(table.selectedRow < 0 ? 0 : Math.max(0, table.selectedRow - 1))
            Keys.onDownPressed: table.selectRow(table.selectedRow < 0 ? 0
                                                : Math.min(table.folder.count - 1, table.selectedRow + 1))
            Keys.onReturnPressed: table.browser.primaryAction()
            Keys.onEnterPressed: table.browser.primaryAction()

            // One pointer area for all rows, rather than one per row.
            MouseArea {
                id: rowsArea
                parent: list.contentItem
                width: Math.max(list.contentItem.width, table.rowWidth)
                height: Math.max(list.contentHeight, list.height)
                z: 1
                hoverEnabled: true
                acceptedButtons: Qt.LeftButton | Qt.RightButton
                // The rows stand for it before a screen reader.
                Accessible.ignored: true
                function rowAt(mouse) { return list.indexAt(mouse.x, mouse.y) }
                onPositionChanged: mouse => table.hoveredRow = rowAt(mouse)
                onExited: table.hoveredRow = -1
                onPressed: mouse => {
                    const row = rowAt(mouse)
                    if (row >= 0) table.browser.tableSelection = table.folder.fileID(row)
                    list.forceActiveFocus()
                }
                onClicked: mouse => {
                    const row = rowAt(mouse)
                    if (mouse.button === Qt.RightButton && row >= 0) table.menu.openFor(table.folder.fileID(row))
                }
                onDoubleClicked: mouse => {
                    if (mouse.button === Qt.LeftButton && rowAt(mouse) >= 0) table.browser.primaryAction()
                }
            }

            // Plain rows: text cells placed by hand, the picture's and the tags' parts only where there
            // is something to show.
            delegate: Rectangle {
                id: row
                required property int index
                required property real fileID
                required property string name
                required property bool isDir
                required property string kind
                required property bool hidden
                required property int label
                required property var tags
                required property string thumb
                required property string sizeText
                required property string modifiedText
                readonly property bool selected: table.browser.tableSelection === fileID
                objectName: "tableRow:" + name
                width: table.rowWidth
                height: table.rowHeight
                color: selected ? table.selectedColor
                     : table.hoveredRow === index ? table.hoverColor
                     : index % 2 ? table.stripeColor : "transparent"
                radius: Theme.s(4)
                Accessible.role: Accessible.ListItem
                Accessible.name: name + ", " + kind + ", " + sizeText
                Accessible.selected: selected
                Accessible.onPressAction: table.browser.tableSelection = fileID

                ThumbIcon {
                    id: rowIcon
                    x: table.cellX[0]
                    y: (row.height - height) / 2
                    kind: row.kind
                    thumb: row.thumb
                    size: table.iconSize
                }
                Text {
                    objectName: "cell_name"
                    x: rowIcon.x + rowIcon.width + Theme.s(7)
                    width: table.cellWidth[0] - rowIcon.width - Theme.s(7)
                    height: row.height
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideMiddle
                    font: table.cellFont
                    color: row.hidden ? table.hiddenColor : table.nameColor
                    text: row.name
                }
                Text {
                    objectName: "cell_kindName"
                    visible: table.shown[1]
                    x: table.cellX[1]
                    width: table.cellWidth[1]
                    height: row.height
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font: table.cellFont
                    color: table.cellColor
                    text: row.kind
                }
                Text {
                    objectName: "cell_size"
                    x: table.cellX[2]
                    width: table.cellWidth[2]
                    height: row.height
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font: table.sizeFont
                    color: table.cellColor
                    text: row.sizeText
                }
                Text {
                    objectName: "cell_sortModified"
                    visible: table.shown[3]
                    x: table.cellX[3]
                    width: table.cellWidth[3]
                    height: row.height
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font: table.cellFont
                    color: table.cellColor
                    text: row.modifiedText
                }
                Loader {
                    x: table.cellX[4]
                    width: table.cellWidth[4]
                    height: row.height
                    clip: true
                    active: table.shown[4] && (row.tags.length > 0 || row.label >= 1)
                    sourceComponent: Item {
                        TagChips {
                            anchors.verticalCenter: parent.verticalCenter
                            tags: row.tags
                            label: row.label
                        }
                    }
                }
            }
        }
    }

    Text {
        objectName: "emptyFolderTable"
        anchors.centerIn: parent
        visible: table.folder.count === 0
        text: table.folder.total > 0 ? "No items match “" + table.browser.filter.trim() + "”" : "Empty folder"
        font: Theme.f(12)
        color: Theme.p.subtext
    }
}
