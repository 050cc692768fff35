// Tools › Empty Folders: the catalogs to look in, the button, and the folders found.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: view
    // The pane's state, for the tests and the Tools screen.
    readonly property alias pane: pane

    spacing: Theme.s(16)

    EmptyFoldersPane { id: pane }
    ReportWiring { pane: pane }

    ToolCard {
        objectName: "emptyFoldersCard"
        Layout.fillWidth: true
        title: "Empty folders"
        text: "Folders that contained nothing when they were cataloged (hidden system files are ignored). Double-click to open one in the browser."

        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(10)
            CatalogScopeMenu {
                objectName: "emptyFoldersScope"
                ids: pane.ids
                onChosen: newIDs => pane.ids = newIDs
            }
            LaserButton {
                objectName: "findEmptyFoldersButton"
                prominent: true
                symbol: "folder.badge.questionmark"
                text: "Find Empty Folders"
                onClicked: pane.find()
            }
        }

        ReportResults {
            name: "emptyFolders"
            source: pane
            ran: pane.ran
            header: pane.header
            idleText: "Choose the catalogs to look in, then press Find Empty Folders."
            noRowsText: "No empty folders in these catalogs."
            ReportExportButton {
                objectName: "emptyFoldersExportButton"
                pane: pane
            }
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the card.
    Item { Layout.fillHeight: true }
}
