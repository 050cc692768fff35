// The Search screen: the search field and its filters over every cartridge, the status line, and the
// results table. What the user enters and the last result live in SearchState, so they are still here
// when the user comes back.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

FocusScope {
    id: view
    objectName: "searchView"

    readonly property int hitCount: SearchState.hitCount
    readonly property bool hasHits: hitCount > 0

    // Runs the search with the current fields, when a database is open.
    function run() {
        if (AppModel.hasStore) SearchState.run()
    }

    // Puts the keyboard in the search field and takes over a quick search from the header, running it.
    // The keyboard is only taken while the screen is up: a late call must not pull it out of another one.
    function consumeQuickSearch() {
        if (view.visible) field.forceActiveFocus()
        const quick = AppModel.quickSearchText
        if (quick.length > 0) {
            SearchState.text = quick
            AppModel.quickSearchText = ""
            run()
        }
    }
    Component.onCompleted: Qt.callLater(consumeQuickSearch)
    Connections {
        target: AppModel
        function onSearchTriggerChanged() { view.consumeQuickSearch() }
    }

    // "1 result in 3 ms", "5,000+ results in 41 ms — showing the first 5,000; …".
    readonly property string resultLine: {
        const n = hitCount
        let line = Fmt.count(n) + (n >= 5000 ? "+" : "") + " result" + (n === 1 ? "" : "s") + " in "
                   + (SearchState.elapsed * 1000).toFixed(0) + " ms"
        if (n >= 5000) line += " — showing the first 5,000; narrow the search to see the rest"
        return line
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.s(20)
        anchors.rightMargin: Theme.s(20)
        anchors.topMargin: Theme.s(14)
        anchors.bottomMargin: Theme.s(14)
        spacing: Theme.s(10)

        GlassPanel {
            Layout.fillWidth: true
            implicitHeight: controls.implicitHeight + 2 * Theme.s(14)
            radius: Theme.s(12)

            ColumnLayout {
                id: controls
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: Theme.s(14)
                spacing: Theme.s(10)

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Theme.s(10)
                    ThemedTextField {
                        id: field
                        objectName: "searchField"
                        Layout.fillWidth: true
                        symbol: "scope"
                        font: Theme.f(14)
                        topPadding: Theme.s(8)
                        bottomPadding: Theme.s(8)
                        leftPadding: Theme.s(32)
                        placeholderText: SearchState.mode === "Regex"
                                         ? "Regular expression, e.g. ^IMG_\\d{4}\\.(jpg|cr3)$"
                                         : "Search file names across every catalog"
                        text: SearchState.text
                        Accessible.name: "Search"
                        Accessible.description: placeholderText
                        Accessible.searchEdit: true
                        onTextEdited: SearchState.text = text
                        onAccepted: view.run()
                    }
                    LaserButton {
                        objectName: "searchButton"
                        prominent: true
                        symbol: "dot.radiowaves.right"
                        text: "Search"
                        onClicked: view.run()
                    }
                }

                SegmentedPicker {
                    objectName: "searchMode"
                    label: "Match"
                    options: ["Contains", "Starts With", "Exact Name", "Regex"]
                    current: SearchState.mode
                    onPicked: option => SearchState.mode = option
                }

                // The filters, wrapping onto more lines when the window is narrow or the zoom large.
                Flow {
                    Layout.fillWidth: true
                    spacing: Theme.s(10)

                    SearchKindsMenu { objectName: "searchKinds" }
                    SearchCatalogMenu { objectName: "searchCatalogs" }

                    Row {
                        spacing: Theme.s(6)
                        height: Theme.s(30)
                        Text {
                            anchors.verticalCenter: parent.verticalCenter
                            rightPadding: Theme.s(2)
                            text: "Size"
                            font: Theme.f(12.5)
                            color: Theme.p.subtext
                        }
                        ThemedTextField {
                            objectName: "searchMinSize"
                            anchors.verticalCenter: parent.verticalCenter
                            width: Theme.s(68)
                            font: Theme.f(12.5)
                            placeholderText: "min"
                            Accessible.name: "Minimum size"
                            text: SearchState.minSizeText
                            onTextEdited: SearchState.minSizeText = text
                            onAccepted: view.run()
                        }
                        ThemedTextField {
                            objectName: "searchMaxSize"
                            anchors.verticalCenter: parent.verticalCenter
                            width: Theme.s(68)
                            font: Theme.f(12.5)
                            placeholderText: "max"
                            Accessible.name: "Maximum size"
                            text: SearchState.maxSizeText
                            onTextEdited: SearchState.maxSizeText = text
                            onAccepted: view.run()
                        }
                        ThemedComboBox {
                            objectName: "searchSizeUnit"
                            anchors.verticalCenter: parent.verticalCenter
                            width: Theme.s(76)
                            font: Theme.f(12.5)
                            readonly property var units: [1000, 1000000, 1000000000]
                            model: ["KB", "MB", "GB"]
                            currentIndex: Math.max(0, units.indexOf(SearchState.sizeUnit))
                            Accessible.name: "Size unit, " + displayText
                            onActivated: index => SearchState.sizeUnit = units[index]
                        }
                    }

                    Row {
                        spacing: Theme.s(6)
                        height: Theme.s(30)
                        OptionSwitch {
                            objectName: "searchUseDates"
                            anchors.verticalCenter: parent.verticalCenter
                            text: "Modified"
                            font: Theme.f(12.5)
                            checked: SearchState.useDates
                            onToggled: SearchState.useDates = checked
                        }
                        DateField {
                            objectName: "searchFrom"
                            anchors.verticalCenter: parent.verticalCenter
                            label: "From"
                            enabled: SearchState.useDates
                            opacity: enabled ? 1 : 0.45
                            date: SearchState.from
                            onPicked: value => SearchState.from = value
                        }
                        Text {
                            anchors.verticalCenter: parent.verticalCenter
                            text: "to"
                            font: Theme.f(12.5)
                            color: SearchState.useDates ? Theme.p.subtext : Theme.alpha(Theme.p.subtext, 0.45)
                        }
                        DateField {
                            objectName: "searchTo"
                            anchors.verticalCenter: parent.verticalCenter
                            label: "To"
                            enabled: SearchState.useDates
                            opacity: enabled ? 1 : 0.45
                            date: SearchState.to
                            onPicked: value => SearchState.to = value
                        }
                    }

                    ThemedTextField {
                        objectName: "searchTag"
                        width: Theme.s(150)
                        font: Theme.f(12.5)
                        symbol: "tag"
                        placeholderText: "Finder tag"
                        text: SearchState.tag
                        onTextEdited: SearchState.tag = text
                        onAccepted: view.run()
                    }
                }

                // The two switches at the left, the search's own buttons at the right.
                Flow {
                    Layout.fillWidth: true
                    spacing: Theme.s(10)
                    OptionSwitch {
                        objectName: "searchMetadata"
                        text: "Also search metadata (artist, album, camera…)"
                        font: Theme.f(12.5)
                        checked: SearchState.searchMetadata
                        onToggled: SearchState.searchMetadata = checked
                    }
                    OptionSwitch {
                        objectName: "searchIncludeFolders"
                        text: "Include folders"
                        font: Theme.f(12.5)
                        checked: SearchState.includeFolders
                        onToggled: SearchState.includeFolders = checked
                    }
                    LaserButton {
                        id: saveButton
                        objectName: "searchSave"
                        compact: true
                        symbol: "star"
                        text: "Save Search"
                        onClicked: SavedSearches.saveCurrentSearch()
                        HelpTip {
                            text: "Keep this search in the sidebar so you can rerun it any time"
                            shown: saveButton.hovered
                        }
                    }
                    LaserButton {
                        objectName: "searchReset"
                        compact: true
                        symbol: "arrow.uturn.backward.circle"
                        text: "Reset Filters"
                        onClicked: SearchState.resetFilters()
                    }
                }
            }
        }

        // The status line: running, failed, the result, or how to begin; the export at its right.
        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.s(4)
            Layout.minimumHeight: Theme.s(28)
            spacing: Theme.s(8)

            SearchSpinner {
                objectName: "searchSpinner"
                visible: SearchState.busy
                size: Theme.s(14)
            }
            SvgIcon {
                visible: !SearchState.busy && SearchState.error.length > 0
                symbol: "exclamationmark.triangle.fill"
                size: Theme.s(14)
                color: Theme.p.warn
            }
            Text {
                id: status
                objectName: "searchStatus"
                Layout.fillWidth: true
                text: SearchState.busy ? "Searching…"
                    : SearchState.error.length > 0 ? SearchState.error
                    : SearchState.searched ? view.resultLine
                    : "Type a name and press Return. Filters can be combined freely."
                font: Theme.f(12.5, SearchState.searched && !SearchState.busy && SearchState.error.length === 0
                                    ? Font.DemiBold : Font.Normal)
                color: !SearchState.busy && SearchState.error.length > 0 ? Theme.p.warn
                     : SearchState.searched && !SearchState.busy ? Theme.p.text : Theme.p.subtext
                elide: Text.ElideRight
                Accessible.role: Accessible.StatusBar
                Accessible.name: text
            }
            SearchMenuButton {
                objectName: "searchExport"
                visible: view.hasHits
                symbol: "square.and.arrow.up"
                text: "Export"
                ThemedMenuItem {
                    objectName: "searchExportCSV"
                    text: "Export Results as CSV…"
                    onTriggered: AppModel.exportSearchResults(true)
                }
                ThemedMenuItem {
                    objectName: "searchExportJSON"
                    text: "Export Results as JSON…"
                    onTriggered: AppModel.exportSearchResults(false)
                }
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            HitsTable {
                objectName: "searchResults"
                anchors.fill: parent
                visible: SearchState.searched && view.hasHits
                showKind: true
                source: SearchState
            }

            // A finished search that found nothing.
            Column {
                objectName: "searchNoMatches"
                anchors.centerIn: parent
                width: Math.min(parent.width - Theme.s(40), Theme.s(460))
                spacing: Theme.s(10)
                visible: SearchState.searched && !view.hasHits && !SearchState.busy
                         && SearchState.error.length === 0
                SvgIcon {
                    anchors.horizontalCenter: parent.horizontalCenter
                    symbol: "dot.radiowaves.left.and.right"
                    size: Theme.s(44)
                    color: Theme.alpha(Theme.p.accent, 0.75)
                }
                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: "No matches on any cartridge"
                    font: Theme.f(17, Font.Bold)
                    color: Theme.p.text
                    wrapMode: Text.WordWrap
                }
                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: "Try fewer letters, a different kind, or switch to Regex for pattern searches."
                    font: Theme.f(13)
                    color: Theme.p.subtext
                    wrapMode: Text.WordWrap
                }
            }

            EmptyStateView {
                objectName: "searchNothingYet"
                anchors.fill: parent
                visible: !SearchState.searched && !SearchState.busy && AppModel.catalogs.length === 0
                title: "Nothing to search yet"
                message: "Catalog a drive or load the sample data, then search every file on every drive in milliseconds."
            }

            // Before the first search: the radar, waiting.
            RadarView {
                anchors.centerIn: parent
                visible: !SearchState.searched && !SearchState.busy && AppModel.catalogs.length > 0
                size: Math.min(Theme.s(180), parent.height * 0.6)
                active: false
                opacity: 0.35
                blips: 0
            }
        }
    }
}
