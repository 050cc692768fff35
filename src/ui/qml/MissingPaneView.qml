// Tools › Missing Files: a connected drive, the check, and what was cataloged but is no longer there.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: view
    readonly property alias pane: pane
    // "Update Catalog" was pressed for this catalog: when its scan ends, the check runs again.
    property real updating: 0

    spacing: Theme.s(16)

    MissingPane {
        id: pane
        // The picker speaks in ids; no choice is 0.
        catalogID: drivePicker.selection
    }
    ReportWiring { pane: pane }

    // The answer to "Check Drive" is only as good as the online test, so it is made afresh.
    function check() {
        AppModel.refreshOnline()
        pane.checkDrive()
    }

    Connections {
        target: AppModel.scanner
        function onIsRunningChanged() {
            if (AppModel.scanner.isRunning || view.updating <= 0) return
            const id = view.updating
            view.updating = 0
            if (pane.catalogID === id) view.check()
        }
    }

    ToolCard {
        objectName: "missingCard"
        Layout.fillWidth: true
        title: "Missing-file check"
        text: "Compares a catalog with the connected drive and lists everything that was cataloged but is no longer there (moved, renamed or deleted since the last scan)."

        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(10)
            CatalogPicker {
                id: drivePicker
                objectName: "missingDrivePicker"
                label: "Drive"
                onlineOnly: true
                enabled: !pane.busy
            }
            LaserButton {
                objectName: "checkDriveButton"
                visible: !pane.busy
                prominent: true
                symbol: "exclamationmark.magnifyingglass"
                text: "Check Drive"
                enabled: pane.catalogID > 0
                onClicked: view.check()
            }
            // Stands in for the button while the drive is read.
            Row {
                objectName: "missingBusy"
                visible: pane.busy
                height: drivePicker.height
                spacing: Theme.s(8)
                Accessible.role: Accessible.Indicator
                Accessible.name: "Checking the drive"
                RadarView {
                    anchors.verticalCenter: parent.verticalCenter
                    size: Theme.s(24)
                    rings: 2
                    blips: 1
                    active: pane.busy
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Checking\u2026"
                    font: Theme.f(13)
                    color: Theme.p.subtext
                }
            }
        }

        Text {
            objectName: "missingNoDrive"
            Layout.fillWidth: true
            visible: drivePicker.choices.length === 0
            text: "No cataloged drive is connected. Connect one to compare it with its catalog."
            font: Theme.f(12)
            color: Theme.p.warn
            wrapMode: Text.Wrap
        }

        ReportResults {
            name: "missing"
            source: pane
            ran: pane.ran
            busy: pane.busy
            header: pane.header
            idleText: "Choose a connected drive, then press Check Drive."
            noRowsText: "Every cataloged item is still on the drive."
            LaserButton {
                objectName: "updateCatalogButton"
                compact: true
                symbol: "arrow.clockwise"
                text: "Update Catalog"
                // Reading the catalogs keeps this current when the catalog is deleted meanwhile.
                visible: pane.canUpdate && AppModel.catalogs.some(c => c.id === pane.checkedCatalogID)
                onClicked: {
                    view.updating = pane.checkedCatalogID
                    AppModel.rescan(pane.checkedCatalogID)
                    if (!AppModel.scanner.isRunning) view.updating = 0  // Refused: offline or busy.
                }
            }
            ReportExportButton {
                objectName: "missingExportButton"
                pane: pane
            }
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the card.
    Item { Layout.fillHeight: true }
}
