// The Web & Export screen: the catalogs to hand on, the inventory web site made of them, their CSV and
// JSON exports, and the import of an export. The choice of catalogs and the site's settings live as long
// as the screen; the last generated site stays offered until the next one is made.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

Item {
    id: view
    objectName: "webExportView"

    // The ids the user chose; ids of catalogs deleted since are ignored.
    property var chosen: []
    property string title: "Drive Inventory"
    property bool thumbs: true
    property bool hidden: false
    // The index.html of the last site generated here; empty before the first.
    property string lastIndex

    readonly property bool noCatalogs: AppModel.catalogs.length === 0
    // The chosen catalogs that exist, in the sidebar's order.
    readonly property var chosenIDs: AppModel.catalogs.filter(c => chosen.indexOf(c.id) >= 0).map(c => c.id)
    readonly property string lastFolder: lastIndex.length > 0 ? lastIndex.substring(0, lastIndex.lastIndexOf("/"))
                                                              : ""
    readonly property real margin: Theme.s(22)
    readonly property bool wide: width >= Theme.s(960)

    function isChosen(id) { return chosen.indexOf(id) >= 0 }
    function toggle(id) {
        chosen = isChosen(id) ? chosen.filter(c => c !== id) : chosen.concat([id])
    }
    function selectAll() { chosen = AppModel.catalogs.map(c => c.id) }
    function selectNone() { chosen = [] }
    // Each time the screen comes up with nothing chosen, everything is.
    function arrive() { if (visible && !noCatalogs && chosenIDs.length === 0) selectAll() }
    function generate() {
        const index = AppModel.exportWeb(chosenIDs, title, thumbs, hidden)
        if (index.length > 0) lastIndex = index
    }

    onVisibleChanged: arrive()
    onNoCatalogsChanged: arrive()
    Component.onCompleted: arrive()

    EmptyStateView {
        objectName: "webExportEmpty"
        anchors.fill: parent
        visible: view.noCatalogs
        title: "Publish your drive inventory"
        message: "Generate a beautiful, searchable web site of every drive — perfect for a USB stick, a NAS or your own web server. Add a catalog first."
    }

    Flickable {
        id: scroller
        objectName: "webExportScroller"
        anchors.fill: parent
        visible: !view.noCatalogs
        clip: true
        contentWidth: width
        contentHeight: page.implicitHeight + 2 * view.margin
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            id: bar
            policy: scroller.contentHeight > scroller.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
            width: Theme.s(10)
            contentItem: Rectangle {
                implicitWidth: Theme.s(5)
                radius: width / 2
                color: Theme.alpha(Theme.p.accent, bar.pressed ? 0.7 : bar.hovered ? 0.5 : 0.3)
            }
            background: Item {}
        }

        GridLayout {
            id: page
            x: view.margin
            y: view.margin
            width: scroller.width - 2 * view.margin
            columns: view.wide ? 2 : 1
            columnSpacing: Theme.s(18)
            rowSpacing: Theme.s(18)

            WebExportCatalogList {
                id: catalogList
                objectName: "webCatalogList"
                Layout.fillWidth: true
                Layout.preferredWidth: 4
                Layout.alignment: Qt.AlignTop
                chosen: view.chosen
                chosenCount: view.chosenIDs.length
                onToggled: id => view.toggle(id)
                onAllChosen: view.selectAll()
                onNoneChosen: view.selectNone()
            }

            ColumnLayout {
                Layout.fillWidth: true
                Layout.preferredWidth: 6
                Layout.alignment: Qt.AlignTop
                spacing: Theme.s(18)

                WebExportSiteCard {
                    Layout.fillWidth: true
                    siteTitle: view.title
                    thumbs: view.thumbs
                    hidden: view.hidden
                    lastFolder: view.lastFolder
                    onSiteTitleEdited: text => view.title = text
                    onThumbsToggled: on => view.thumbs = on
                    onHiddenToggled: on => view.hidden = on
                    onGenerate: view.generate()
                    onOpenSite: AppModel.openExportedFile(view.lastIndex)
                    onRevealSite: AppModel.revealExportedFile(view.lastIndex)
                }

                WebExportCard {
                    objectName: "dataExportCard"
                    Layout.fillWidth: true
                    title: "Data export"
                    symbol: "square.and.arrow.up"
                    text: "Spreadsheet-ready CSV or a complete JSON archive of the selected catalogs (every file record, tags and media details). JSON exports can be imported back later."
                    // Like the site's button, these stay live with nothing chosen: the export then says why
                    // nothing was written.
                    Flow {
                        Layout.fillWidth: true
                        spacing: Theme.s(10)
                        LaserButton {
                            objectName: "exportCSVButton"
                            text: "Export CSV…"
                            symbol: "tablecells"
                            onClicked: AppModel.exportCSV(view.chosenIDs)
                        }
                        LaserButton {
                            objectName: "exportJSONButton"
                            text: "Export JSON…"
                            symbol: "curlybraces"
                            onClicked: AppModel.exportJSON(view.chosenIDs)
                        }
                    }
                }

                WebExportCard {
                    objectName: "importCard"
                    Layout.fillWidth: true
                    title: "Import"
                    symbol: "square.and.arrow.down"
                    text: "Bring in a catalog exported from TVRL Orrelin on this or another Mac."
                    LaserButton {
                        objectName: "importButton"
                        text: "Import Catalog…"
                        symbol: "square.and.arrow.down"
                        onClicked: AppModel.importCatalogs()
                    }
                }
            }
        }
    }
}
