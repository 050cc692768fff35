// A sortable table of hits (a search's or a report's) with one selected row, which stays on its file
// through a re-sort. Right-click (or the menu key) gives the file menu; a double click or Return shows
// the selected file in the browser. Only the rows on screen are made, so thousands of hits scroll freely.
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
    // The Catalog column: its title, the texts it is made wide enough for (up to its widest) and how a
    // longer one is cut. A comparison puts both sides' sizes there.
    property string catalogTitle: "Catalog"
    property var catalogTexts: AppModel.catalogs.map(c => c.name)
    property real catalogMaxWidth: Theme.s(210)
    property int catalogElide: Text.ElideRight
    // The selected row, -1 for none; it follows its file when the rows are sorted again.
    property alias currentRow: hits.selectedRow
    readonly property real currentFileID: hits.selectedID

    // The primary action: the selected hit's file in the browser.
    function openCurrent() {
        if (hits.selectedID > 0) AppModel.browseToFile(hits.selectedID)
    }
    // The file menu of the selected row, below that row (for the keyboard).
    function menuForCurrent() {
        if (hits.selectedRow < 0) return
        list.positionViewAtIndex(hits.selectedRow, ListView.Contain)
        const row = list.itemAtIndex(hits.selectedRow)
        fileMenu.fileID = hits.selectedID
        if (row) fileMenu.popup(row, Theme.s(40), row.height)
        else fileMenu.popup()
    }
    function select(row) {
        if (hits.count === 0) return
        hits.selectedRow = Math.max(0, Math.min(hits.count - 1, row))
    }

    // Column widths. The fixed columns fit their widest content at the current zoom; Name and Path share
    // what is left.
    FontMetrics { id: cellMetrics; font: Theme.f(12) }
    FontMetrics { id: monoMetrics; font: Theme.f(12, Font.Normal, true) }
    FontMetrics { id: headMetrics; font: Theme.f(11, Font.DemiBold) }
    readonly property real cellPadding: Theme.s(14)
    // Measuring is a call, which a binding does not follow; reading the metrics' height makes the widths
    // follow a change of font (the zoom), else they keep the last zoom's measures.
    function fit(contentWidth, title) {
        return Math.ceil(Math.max(contentWidth, headMetrics.advanceWidth(title) + 0 * headMetrics.height
                                                + Theme.s(14))) + cellPadding
    }
    function widest(metrics, texts) {
        let w = 0 * metrics.height
        for (const t of texts) w = Math.max(w, metrics.advanceWidth(t))
        return w
    }
    readonly property real lampSpace: Theme.s(13)
    readonly property real catalogWidth: Math.min(
        fit(widest(cellMetrics, catalogTexts) + lampSpace, catalogTitle), catalogMaxWidth)
    readonly property real sizeWidth: fit(widest(monoMetrics, [Fmt.size(999), Fmt.size(999.9e3), Fmt.size(999.9e6),
                                                               Fmt.size(999.9e9), Fmt.size(999.9e12)]), "Size")
    readonly property real kindWidth: showKind ? fit(widest(cellMetrics, FileKinds.names), "Kind") : 0
    readonly property real dateWidth: fit(widest(cellMetrics, [Fmt.date(new Date(2024, 8, 28, 22, 48).getTime() / 1000),
                                                               Fmt.date(new Date(2024, 11, 30, 23, 58).getTime() / 1000)]),
                                          "Modified")
    readonly property real fixedWidth: catalogWidth + sizeWidth + kindWidth + dateWidth
    // Name and Path never get less than this together: a view too narrow for them scrolls sideways, the
    // header with the rows.
    readonly property real minimumRestWidth: Theme.s(380)
    readonly property real rowWidth: Math.max(list.width, Theme.s(12) + fixedWidth + minimumRestWidth)
    readonly property real restWidth: rowWidth - Theme.s(12) - fixedWidth
    readonly property real nameWidth: Math.round(restWidth * 0.42)
    readonly property real pathWidth: restWidth - nameWidth

    readonly property var columns: {
        const list = [{ title: "Name", key: "name", width: nameWidth },
                      { title: catalogTitle, key: "catalogName", width: catalogWidth },
                      { title: "Size", key: "size", width: sizeWidth, right: true }]
        if (showKind) list.push({ title: "Kind", key: "kindName", width: kindWidth })
        list.push({ title: "Modified", key: "sortModified", width: dateWidth })
        list.push({ title: "Path", key: "path", width: pathWidth })
        return list
    }

    HitsModel { id: hits }
    FileContextMenu { id: fileMenu }

    // A new or re-sorted list keeps the selected row in sight, or starts at the top.
    Connections {
        target: hits
        function onModelReset() {
            Qt.callLater(() => {
                if (hits.selectedRow >= 0) list.positionViewAtIndex(hits.selectedRow, ListView.Contain)
                else list.positionViewAtBeginning()
            })
        }
        function onSelectionChanged() {
            if (hits.selectedRow >= 0) list.positionViewAtIndex(hits.selectedRow, ListView.Contain)
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.s(2)

        // The header: each title sorts by its column; the sorted one shows its direction. It moves sideways
        // with the rows.
        Flickable {
            objectName: table.objectName.length > 0 ? table.objectName + "Header" : "hitsHeader"
            Layout.fillWidth: true
            implicitHeight: Theme.s(26)
            contentWidth: table.rowWidth
            contentHeight: height
            contentX: list.contentX
            interactive: false
            clip: true
            Rectangle {
                width: table.rowWidth
                height: parent.height
                color: Theme.alpha(Theme.p.text, 0.045)
                radius: Theme.s(6)
            }
            Row {
                x: Theme.s(6)
                height: parent.height
                Repeater {
                    model: table.columns
                    delegate: AbstractButton {
                        id: headerCell
                        required property var modelData
                        objectName: "hitsHeader_" + modelData.key
                        width: modelData.width
                        height: parent.height
                        hoverEnabled: true
                        focusPolicy: Qt.NoFocus
                        text: modelData.title
                        readonly property bool sorted: hits.sortKey === modelData.key
                        Accessible.role: Accessible.ColumnHeader
                        Accessible.name: text + (sorted ? (hits.ascending ? ", sorted ascending"
                                                                          : ", sorted descending") : "")
                        Accessible.onPressAction: hits.sortBy(modelData.key)
                        onClicked: hits.sortBy(modelData.key)
                        contentItem: Item {
                            Row {
                                spacing: Theme.s(4)
                                anchors.verticalCenter: parent.verticalCenter
                                layoutDirection: headerCell.modelData.right ? Qt.RightToLeft : Qt.LeftToRight
                                x: headerCell.modelData.right ? parent.width - width - Theme.s(8) : Theme.s(7)
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
                        }
                        background: Rectangle {
                            color: headerCell.pressed ? Theme.alpha(Theme.p.accent, 0.12) : "transparent"
                            // A thin divider at the right of every title but the last.
                            Rectangle {
                                visible: headerCell.modelData.key !== "path"
                                anchors.right: parent.right
                                anchors.verticalCenter: parent.verticalCenter
                                width: Math.max(1, Theme.s(1))
                                height: parent.height * 0.5
                                color: Theme.alpha(Theme.p.text, 0.1)
                            }
                        }
                    }
                }
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            ListView {
                id: list
                objectName: table.objectName.length > 0 ? table.objectName + "List" : "hitsList"
                anchors.fill: parent
                clip: true
                contentWidth: table.rowWidth
                flickableDirection: Flickable.AutoFlickIfNeeded
                model: hits
                focus: true
                activeFocusOnTab: true
                currentIndex: hits.selectedRow
                highlightFollowsCurrentItem: false
                keyNavigationEnabled: false
                boundsBehavior: Flickable.StopAtBounds
                reuseItems: true
                ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
                ScrollBar.horizontal: ScrollBar { policy: ScrollBar.AsNeeded }
                Accessible.role: Accessible.Table
                Accessible.name: "Results, " + hits.count + (hits.count === 1 ? " row" : " rows")

                // Left and Right move a wide table by a fifth of the view.
                function scrollSideways(direction) {
                    const most = Math.max(0, contentWidth - width)
                    contentX = Math.max(0, Math.min(most, contentX + direction * Math.max(Theme.s(40), width / 5)))
                }

                readonly property int pageRows: Math.max(1, Math.floor(height / rowHeight) - 1)
                readonly property real rowHeight: Math.max(table.iconSize, Theme.s(16)) + Theme.s(8)

                Keys.onUpPressed: table.select(hits.selectedRow < 0 ? 0 : hits.selectedRow - 1)
                Keys.onDownPressed: table.select(hits.selectedRow + 1)
                Keys.onPressed: event => {
                    switch (event.key) {
                    case Qt.Key_PageUp: table.select(hits.selectedRow - pageRows); break
                    case Qt.Key_PageDown: table.select(Math.max(0, hits.selectedRow) + pageRows); break
                    case Qt.Key_Home: table.select(0); break
                    case Qt.Key_End: table.select(hits.count - 1); break
                    case Qt.Key_Left: list.scrollSideways(-1); break
                    case Qt.Key_Right: list.scrollSideways(1); break
                    case Qt.Key_Return:
                    case Qt.Key_Enter: table.openCurrent(); break
                    case Qt.Key_Menu: table.menuForCurrent(); break
                    case Qt.Key_F10:
                        if (!(event.modifiers & Qt.ShiftModifier)) return
                        table.menuForCurrent()
                        break
                    default: return
                    }
                    event.accepted = true
                }

                delegate: Rectangle {
                    id: row
                    required property int index
                    required property var hit
                    width: table.rowWidth
                    height: list.rowHeight
                    readonly property bool selected: hits.selectedRow === index
                    readonly property color ink: selected ? Theme.p.text : Theme.alpha(Theme.p.text, 0.82)
                    color: selected ? Theme.alpha(Theme.p.accent, list.activeFocus ? 0.26 : 0.16)
                         : rowArea.containsMouse ? Theme.alpha(Theme.p.text, 0.05)
                         : index % 2 ? Theme.alpha(Theme.p.text, 0.022) : "transparent"
                    radius: Theme.s(4)
                    Accessible.role: Accessible.ListItem
                    Accessible.name: hit.name + ", " + hit.catalogName + ", " + Fmt.size(hit.size) + ", " + hit.path
                    Accessible.selectable: true
                    Accessible.selected: selected
                    Accessible.onPressAction: hits.selectedRow = index

                    MouseArea {
                        id: rowArea
                        anchors.fill: parent
                        hoverEnabled: true
                        acceptedButtons: Qt.LeftButton | Qt.RightButton
                        onPressed: mouse => {
                            hits.selectedRow = row.index
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

                        // Name: the thumbnail or kind tile, then the name.
                        Item {
                            width: table.nameWidth
                            height: row.height
                            ThumbIcon {
                                x: Theme.s(7)
                                anchors.verticalCenter: parent.verticalCenter
                                file: row.hit
                                size: table.iconSize
                            }
                            Text {
                                x: Theme.s(13) + table.iconSize
                                width: parent.width - x - Theme.s(6)
                                anchors.verticalCenter: parent.verticalCenter
                                text: row.hit.name
                                font: Theme.f(12, row.selected ? Font.DemiBold : Font.Normal)
                                color: Theme.p.text
                                elide: Text.ElideRight
                            }
                        }
                        // Catalog: whether its drive is connected, then its name.
                        Item {
                            width: table.catalogWidth
                            height: row.height
                            StatusLamp {
                                x: Theme.s(7)
                                anchors.verticalCenter: parent.verticalCenter
                                online: AppModel.onlineIDs.indexOf(row.hit.catalogID) >= 0
                            }
                            Text {
                                x: Theme.s(7) + table.lampSpace
                                width: parent.width - x - Theme.s(6)
                                anchors.verticalCenter: parent.verticalCenter
                                text: row.hit.catalogName
                                font: Theme.f(12)
                                color: row.ink
                                elide: table.catalogElide
                            }
                        }
                        Text {
                            width: table.sizeWidth
                            anchors.verticalCenter: parent.verticalCenter
                            rightPadding: Theme.s(8)
                            horizontalAlignment: Text.AlignRight
                            text: Fmt.size(row.hit.size)
                            font: Theme.f(12, Font.Normal, true)
                            color: row.ink
                            elide: Text.ElideLeft
                        }
                        Text {
                            visible: table.showKind
                            width: table.kindWidth
                            anchors.verticalCenter: parent.verticalCenter
                            leftPadding: Theme.s(7)
                            text: row.hit.kind
                            font: Theme.f(12)
                            color: row.ink
                            elide: Text.ElideRight
                        }
                        Text {
                            width: table.dateWidth
                            anchors.verticalCenter: parent.verticalCenter
                            leftPadding: Theme.s(7)
                            text: Fmt.date(row.hit.modified)
                            font: Theme.f(12)
                            color: row.ink
                            elide: Text.ElideRight
                        }
                        // The path loses its middle, so the drive's folder and the file's own folder both show.
                        Text {
                            width: table.pathWidth
                            anchors.verticalCenter: parent.verticalCenter
                            leftPadding: Theme.s(7)
                            rightPadding: Theme.s(6)
                            text: row.hit.path
                            font: Theme.f(12)
                            color: Theme.alpha(Theme.p.text, row.selected ? 0.9 : 0.62)
                            elide: Text.ElideMiddle
                        }
                    }
                }
            }

            // The keyboard's focus: a thin ring around the list, still while it scrolls.
            Rectangle {
                anchors.fill: list
                z: 2
                visible: list.activeFocus
                color: "transparent"
                radius: Theme.s(4)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(Theme.p.accent, 0.45)
            }
        }
    }
}
