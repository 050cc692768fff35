// Tools › Large & Old Files: the minimum size, the age, the catalogs, and the files found, largest first.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: view
    readonly property alias pane: pane

    spacing: Theme.s(16)

    LargeOldPane { id: pane }
    ReportWiring { pane: pane }

    ToolCard {
        objectName: "largeOldCard"
        Layout.fillWidth: true
        title: "Large & old files"
        text: "Find space hogs that haven\u2019t been touched in a while \u2014 good candidates for archiving."

        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(10)

            // "At least [500] MB, not modified in [− 2 years +]"
            Row {
                spacing: Theme.s(8)
                height: sizeField.implicitHeight
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "At least"
                    font: Theme.f(13)
                    color: Theme.p.text
                }
                ThemedTextField {
                    id: sizeField
                    objectName: "largeOldMinField"
                    anchors.verticalCenter: parent.verticalCenter
                    width: Theme.s(84)
                    horizontalAlignment: TextInput.AlignRight
                    text: pane.minMB
                    inputMethodHints: Qt.ImhFormattedNumbersOnly
                    Accessible.name: "Minimum size in megabytes"
                    onTextEdited: pane.minMB = text
                    onAccepted: pane.buildReport()
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "MB, not modified in"
                    font: Theme.f(13)
                    color: Theme.p.text
                }
                ReportYearsStepper {
                    anchors.verticalCenter: parent.verticalCenter
                    pane: pane
                }
            }

            CatalogScopeMenu {
                objectName: "largeOldScope"
                ids: pane.ids
                onChosen: newIDs => pane.ids = newIDs
            }
            LaserButton {
                objectName: "buildReportButton"
                prominent: true
                symbol: "clock.badge.exclamationmark"
                text: "Build Report"
                onClicked: pane.buildReport()
            }
        }

        ReportResults {
            name: "largeOld"
            source: pane
            ran: pane.ran
            header: pane.header
            idleText: "Set a minimum size and an age, then press Build Report."
            noRowsText: "No file is that large and that old."
            ReportExportButton {
                objectName: "largeOldExportButton"
                pane: pane
            }
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the card.
    Item { Layout.fillHeight: true }
}
