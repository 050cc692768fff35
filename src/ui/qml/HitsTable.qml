// A sortable table of hits (a search's or a report's) with one selected row. Right-click gives the file
// menu; a double click or Return shows the selected file in the browser. Only the rows on screen are
// made, so thousands of hits scroll freely.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

FocusScope {
    id: table
    // The object the hits come from (see HitsModel.source).
    property alias source: hits.source
    readonly property alias model: hits
    // The search screen adds a "Kind" column and bigger icons.
    property bool showKind: false
    property real iconSize: Theme.s(showKind ? 18 : 16)
    // The selected row, -1 for none.
    property int currentRow: -1
    readonly property real currentFileID: currentRow >= 0 ? hits.fileID(currentRow) : 0

    // The columns: title, sort key, share of the width left after the fixed ones (0: fixed width).
    readonly property var columns: {
        const list = [{ title: "Name", key: "name", share: 0.34 },
                      { title: "Catalog", key: "catalogName", fixed: Theme.s(150) },
                      { title: "Size", key: "size", fixed: Theme.s(88) }]
        if (showKind) list.push({ title: "Kind", key: "kindName", fixed: Theme.s(90) })
        list.push({ title: "Modified", key: "sortModified", fixed: Theme.s(150) })
        list.push({ title: "Path", key: "path", share: 0.66 })
        return list
    }
    function columnWidth(column) {
        let fixed = 0
        for (const c of columns) fixed += c.fixed || 0
        const rest = Math.max(Theme.s(160), list.width - fixed - Theme.s(12))
        return column.fixed ? column.fixed : rest * column.share
    }

    // The primary action: the selected hit's file in the browser.
    function openCurrent() {
        if (currentRow >= 0) AppModel.browseToFile(hits.fileID(currentRow))
    }

    HitsModel {
        id: hits
        onModelReset: table.currentRow = -1
    }
    FileContextMenu { id: fileMenu }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // The header: each title sorts by its column; the sorted one shows its direction.
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: Theme.s(26)
            color: Theme.alpha(Theme.p.text, 0.04)
            radius: Theme.s(6)
            Row {
                x: Theme.s(6)
                height: parent.height
                Repeater {
                    model: table.columns
                    delegate: AbstractButton {
                        id: headerCell
                        required property var modelData
                        objectName: "hitsHeader_" + modelData.key
                        width: table.columnWidth(modelData)
                        height: parent.height
                        hoverEnabled: true
                        text: modelData.title
                        readonly property bool sorted: hits.sortKey === modelData.key
                        Accessible.role: Accessible.ColumnHeader
                        Accessible.name: text + (sorted ? (hits.ascending ? ", sorted ascending"
                                                                          : ", sorted descending") : "")
                        Accessible.onPressAction: hits.sortBy(modelData.key)
                        onClicked: hits.sortBy(modelData.key)
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
                                symbol: hits.ascending ? "chevron.up" : "chevron.down"
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
            objectName: table.objectName.length > 0 ? table.objectName + "List" : "hitsList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: hits
            focus: true
            activeFocusOnTab: true
            currentIndex: table.currentRow
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
            Accessible.role: Accessible.Table
            Accessible.name: "Results, " + hits.count + " rows"
            Keys.onUpPressed: table.currentRow = Math.max(0, table.currentRow - 1)
            Keys.onDownPressed: table.currentRow = Math.min(hits.count - 1, table.currentRow + 1)
            Keys.onReturnPressed: table.openCurrent()
            Keys.onEnterPressed: table.openCurrent()

            delegate: Rectangle {
                id: row
                required property int index
                required property var hit
                width: ListView.view.width
                height: Math.max(table.iconSize, Theme.s(16)) + Theme.s(8)
                readonly property bool selected: table.currentRow === index
                color: selected ? Theme.alpha(Theme.p.accent, 0.22)
                     : rowArea.containsMouse ? Theme.alpha(Theme.p.text, 0.05)
                     : index % 2 ? Theme.alpha(Theme.p.text, 0.02) : "transparent"
                radius: Theme.s(4)
                Accessible.role: Accessible.Row
                Accessible.name: hit.name + ", " + hit.catalogName + ", " + Fmt.size(hit.size)
                Accessible.selected: selected
                Accessible.onPressAction: table.currentRow = index

                MouseArea {
                    id: rowArea
                    anchors.fill: parent
                    hoverEnabled: true
                    acceptedButtons: Qt.LeftButton | Qt.RightButton
                    onPressed: mouse => {
                        table.currentRow = row.index
                        list.forceActiveFocus()
                    }
                    onClicked: mouse => {
                        if (mouse.button === Qt.RightButton) fileMenu.openFor(row.hit.id)
                    }
                    onDoubleClicked: mouse => {
                        if (mouse.button === Qt.LeftButton) table.openCurrent()
                    }
                }

                Row {
                    x: Theme.s(6)
                    height: parent.height
                    Repeater {
                        model: table.columns
                        delegate: Item {
                            required property var modelData
                            width: table.columnWidth(modelData)
                            height: row.height
                            clip: true
                            Row {
                                anchors.verticalCenter: parent.verticalCenter
                                x: Theme.s(6)
                                width: parent.width - Theme.s(10)
                                spacing: Theme.s(6)
                                ThumbIcon {
                                    visible: modelData.key === "name"
                                    anchors.verticalCenter: parent.verticalCenter
                                    file: row.hit
                                    size: table.iconSize
                                }
                                StatusLamp {
                                    visible: modelData.key === "catalogName"
                                    anchors.verticalCenter: parent.verticalCenter
                                    online: AppModel.onlineIDs.indexOf(row.hit.catalogID) >= 0
                                }
                                Text {
                                    anchors.verticalCenter: parent.verticalCenter
                                    width: parent.width - (modelData.key === "name" ? table.iconSize + Theme.s(6)
                                                         : modelData.key === "catalogName" ? Theme.s(13) : 0)
                                    elide: modelData.key === "path" ? Text.ElideMiddle : Text.ElideRight
                                    font: Theme.f(12, Font.Normal, modelData.key === "size")
                                    color: modelData.key === "name" ? Theme.p.text : Theme.alpha(Theme.p.text, 0.8)
                                    text: {
                                        const h = row.hit
                                        switch (modelData.key) {
                                        case "name": return h.name
                                        case "catalogName": return h.catalogName
                                        case "size": return Fmt.size(h.size)
                                        case "kindName": return h.kind
                                        case "sortModified": return Fmt.date(h.modified)
                                        default: return h.path
                                        }
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
