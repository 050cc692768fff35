// The Organization Plan tab: load a JSON plan, see its dry run against a connected drive, apply the ready
// steps, and undo earlier plans and batch renames from the list of recent ones.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: pane
    objectName: "planPane"
    spacing: Theme.s(16)

    readonly property alias paneState: planState
    readonly property int total: planState.steps.length

    PlanPaneState {
        id: planState
        objectName: "planPaneState"
    }

    // The recent list is read whenever the pane comes into view: a batch rename may have added to it.
    Component.onCompleted: planState.reloadLogs()
    onVisibleChanged: if (visible) planState.reloadLogs()

    ToolCard {
        Layout.fillWidth: true
        title: "Apply an organization plan"
        text: "Load a JSON plan (for example one Claude wrote after reading an Export for Claude bundle). You get a dry-run preview first; every path is checked to stay inside the chosen drive; nothing is ever deleted or overwritten; and each applied plan can be undone with one click."

        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(14)

            CatalogPicker {
                id: drivePicker
                objectName: "planDrivePicker"
                label: "Drive"
                onlineOnly: true
                onSelectionChanged: planState.catalogID = selection > 0 ? selection : -1
                Component.onCompleted: planState.catalogID = selection > 0 ? selection : -1
            }
            LaserButton {
                objectName: "planChooseButton"
                symbol: "doc.badge.gearshape"
                text: "Choose Plan File…"
                onClicked: planState.choosePlan()
            }
        }

        // The loaded plan: its file, with a button to check it again against the disk, and its description.
        ColumnLayout {
            Layout.fillWidth: true
            visible: planState.hasPlan
            spacing: Theme.s(2)

            RowLayout {
                Layout.fillWidth: true
                spacing: Theme.s(8)
                SvgIcon {
                    symbol: "doc.badge.gearshape"
                    size: Theme.s(16)
                    color: Theme.p.accent
                }
                Text {
                    objectName: "planFileLine"
                    Layout.minimumWidth: Theme.s(60)
                    text: "Plan: " + planState.planName
                    font: Theme.f(13, Font.DemiBold)
                    color: Theme.p.text
                    elide: Text.ElideMiddle
                }
                IconButton {
                    objectName: "planRevalidateButton"
                    symbol: "arrow.clockwise"
                    tip: "Validate Again"
                    onClicked: planState.revalidate()
                }
                Item { Layout.fillWidth: true }
            }
            Text {
                objectName: "planDescription"
                Layout.fillWidth: true
                Layout.leftMargin: Theme.s(24)
                visible: text.length > 0
                text: planState.planDescription
                font: Theme.f(12)
                color: Theme.p.subtext
                wrapMode: Text.Wrap
            }
        }

        // The dry run.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.s(4)
            visible: pane.total > 0
            spacing: Theme.s(10)

            Text {
                objectName: "planDryRunLine"
                Layout.fillWidth: true
                text: "Dry run: " + pane.total + " step" + (pane.total === 1 ? "" : "s") + " ready, "
                      + planState.blockedCount + " blocked"
                font: Theme.f(13, Font.DemiBold)
                color: planState.blockedCount > 0 ? Theme.p.warn : Theme.p.ok
                wrapMode: Text.Wrap
            }
            StepsTable {
                objectName: "planStepsTable"
                Layout.fillWidth: true
                steps: planState.steps
            }
            LaserButton {
                objectName: "planApplyButton"
                prominent: true
                symbol: "play.fill"
                text: "Apply " + planState.readyCount + " Step" + (planState.readyCount === 1 ? "" : "s")
                enabled: planState.readyCount > 0
                onClicked: planState.apply()
            }
        }
    }

    ToolCard {
        objectName: "recentPlansCard"
        Layout.fillWidth: true
        title: "Recent plans & renames"
        text: "Applied plans and batch renames appear here with a one-click Undo."

        Text {
            objectName: "recentPlansNone"
            visible: planState.logs.length === 0
            text: "Nothing applied yet."
            font: Theme.f(12)
            color: Theme.alpha(Theme.p.subtext, 0.8)
        }

        Repeater {
            model: planState.logs
            delegate: PlanLogRow {
                required property var modelData
                required property int index
                Layout.fillWidth: true
                objectName: "planLog_" + index
                log: modelData
                onUndoRequested: planState.undo(modelData.id)
            }
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the cards.
    Item { Layout.fillHeight: true }
}
