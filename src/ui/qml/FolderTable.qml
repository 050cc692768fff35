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
    readonly property real fixedWidth: {
        let fixed = 0
        for (const c of columns) fixed += c.fixed || 0
        return fixed
    }
    // The name takes what the others leave; a view too narrow for all of them scrolls sideways.
    readonly property real rowWidth: Math.max(list.width, fixedWidth + Theme.s(200) + Theme.s(12))
    function columnWidth(column) {
        return column.fixed ? column.fixed : rowWidth - fixedWidth - Theme.s(12)
    }
    // Where column `index` starts within a row (the header's cells start at 6).
    function columnX(index) {
        let x = 0
        for (let i = 0; i < index; ++i) x += columnWidth(columns[i])
        return x
    }
    function selectRow(row) {
        if (row < 0 || row >= folder.count) return
        browser.tableSelection = folder.fileID(row)
        list.positionViewAtIndex(row, ListView.Contain)
    }
    // "1.2 GB · 14 items" for a folder, the size alone for a file.
    function sizeText(f) {
        return f.isDir ? Fmt.size(f.size) + " · " + Math.round(f.itemCount) + " items" : Fmt.size(f.size)
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
                        readonly property bool sortable: modelData.key.length > 0
                        readonly property bool sorted: sortable && table.browser.sortKey === modelData.key
                        objectName: "folderHeader_" + modelData.title
                        width: table.columnWidth(modelData)
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

            delegate: Rectangle {
                id: row
                required property var model
                required property int index
                readonly property var f: model.file
                readonly property real fileID: model.fileID
                readonly property bool selected: table.browser.tableSelection === fileID
                objectName: "tableRow:" + (model.name || "")
                width: table.rowWidth
                height: Math.max(table.iconSize, Theme.s(16)) + Theme.s(10)
                color: selected ? Theme.alpha(Theme.p.accent, list.activeFocus ? 0.28 : 0.2)
                     : rowArea.containsMouse ? Theme.alpha(Theme.p.text, 0.05)
                     : index % 2 ? Theme.alpha(Theme.p.text, 0.02) : "transparent"
                radius: Theme.s(4)
                Accessible.role: Accessible.ListItem
                Accessible.name: f.name + ", " + f.kind + ", " + table.sizeText(f)
                Accessible.selected: selected
                Accessible.onPressAction: table.browser.tableSelection = fileID

                MouseArea {
                    id: rowArea
                    anchors.fill: parent
                    hoverEnabled: true
                    acceptedButtons: Qt.LeftButton | Qt.RightButton
                    onPressed: mouse => {
                        table.browser.tableSelection = row.fileID
                        list.forceActiveFocus()
                    }
                    onClicked: mouse => {
                        if (mouse.button === Qt.RightButton) table.menu.openFor(row.fileID)
                    }
                    onDoubleClicked: mouse => {
                        if (mouse.button === Qt.LeftButton) table.browser.primaryAction()
                    }
                }

                // One cell per column, made directly rather than by a repeater: a page of rows is made
                // at every scroll step, and each cell made for nothing costs frames.
                Item {
                    id: nameCell
                    x: Theme.s(12)
                    width: table.columnWidth(table.columns[0]) - Theme.s(10)
                    height: row.height
                    ThumbIcon {
                        id: rowIcon
                        anchors.verticalCenter: parent.verticalCenter
                        file: row.f
                        size: table.iconSize
                    }
                    Text {
                        objectName: "cell_name"
                        anchors.left: rowIcon.right
                        anchors.leftMargin: Theme.s(7)
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        elide: Text.ElideMiddle
                        font: Theme.f(12)
                        color: row.f.hidden ? Theme.alpha(Theme.p.text, 0.6) : Theme.p.text
                        text: row.f.name
                    }
                }
                Text {
                    objectName: "cell_kindName"
                    x: table.columnX(1) + Theme.s(12)
                    width: table.columnWidth(table.columns[1]) - Theme.s(10)
                    anchors.verticalCenter: parent.verticalCenter
                    elide: Text.ElideRight
                    font: Theme.f(12)
                    color: Theme.alpha(Theme.p.text, 0.72)
                    text: row.f.kind
                }
                Text {
                    objectName: "cell_size"
                    x: table.columnX(2) + Theme.s(12)
                    width: table.columnWidth(table.columns[2]) - Theme.s(10)
                    anchors.verticalCenter: parent.verticalCenter
                    elide: Text.ElideRight
                    font: Theme.f(12, Font.Normal, true)
                    color: Theme.alpha(Theme.p.text, 0.72)
                    text: table.sizeText(row.f)
                }
                Text {
                    objectName: "cell_sortModified"
                    x: table.columnX(3) + Theme.s(12)
                    width: table.columnWidth(table.columns[3]) - Theme.s(10)
                    anchors.verticalCenter: parent.verticalCenter
                    elide: Text.ElideRight
                    font: Theme.f(12)
                    color: Theme.alpha(Theme.p.text, 0.72)
                    text: Fmt.date(row.f.modified)
                }
                Item {
                    x: table.columnX(4) + Theme.s(12)
                    width: table.columnWidth(table.columns[4]) - Theme.s(10)
                    height: row.height
                    clip: true
                    TagChips {
                        anchors.verticalCenter: parent.verticalCenter
                        tags: row.f.tags
                        label: row.f.label
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
