// One cartridge browsed: the drive's facts on top; below them the file view (its bar, then the folders as
// columns or as a list) beside the inspector of the selected item.
import QtQuick
import QtQuick.Layouts
import Orrelin

Item {
    id: view
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})
    readonly property alias browser: browser

    CatalogBrowser {
        id: browser
        objectName: "catalogBrowser"
        catalogID: view.catalog.id !== undefined ? view.catalog.id : -1
    }

    FileContextMenu {
        id: fileMenu
        objectName: "browserFileMenu"
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.s(16)
        spacing: Theme.s(12)

        DriveInfoPanel {
            objectName: "driveInfoPanel"
            Layout.fillWidth: true
            catalog: view.catalog
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Theme.s(12)

            GlassPanel {
                objectName: "fileView"
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumWidth: Theme.s(260)
                radius: Theme.s(12)

                ColumnLayout {
                    anchors.fill: parent
                    anchors.margins: Theme.s(10)
                    spacing: Theme.s(8)

                    BrowserBar {
                        Layout.fillWidth: true
                        browser: browser
                        catalog: view.catalog
                    }

                    Rectangle {
                        Layout.fillWidth: true
                        implicitHeight: Math.max(1, Theme.s(1))
                        color: Theme.p.stroke
                    }

                    ColumnStrip {
                        objectName: "columnStrip"
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        visible: browser.mode === Browse.BrowseMode.columns
                        browser: browser
                        menu: fileMenu
                    }

                    FolderTable {
                        objectName: "folderTable"
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        visible: browser.mode === Browse.BrowseMode.list
                        browser: browser
                        menu: fileMenu
                    }
                }
            }

            FileInspector {
                objectName: "fileInspector"
                Layout.fillHeight: true
                Layout.preferredWidth: Math.min(Theme.s(320), view.width * 0.3)
                file: browser.selected
                catalog: view.catalog
            }
        }
    }
}
