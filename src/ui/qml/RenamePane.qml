// The Rename Assistant tab: which items of a connected drive, the rule for their new names, the dry run of
// every change, and the batch rename itself, which the Organization Plan tab can undo.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: pane
    objectName: "renamePane"
    spacing: Theme.s(16)

    readonly property alias paneState: renameState
    // Two fields side by side where they fit, else one above the other.
    readonly property int pairColumns: width >= Theme.s(560) ? 2 : 1

    RenamePaneState {
        id: renameState
        objectName: "renamePaneState"
    }

    ToolCard {
        Layout.fillWidth: true
        title: "Batch rename by pattern"
        text: "Pick the files, describe the new names, preview every change, then apply. Nothing is overwritten and the whole batch can be undone from Organization Plan › Recent."

        // Which items.
        CatalogPicker {
            id: drivePicker
            objectName: "renameDrivePicker"
            label: "Drive"
            onlineOnly: true
            onSelectionChanged: renameState.catalogID = selection > 0 ? selection : -1
            Component.onCompleted: renameState.catalogID = selection > 0 ? selection : -1
        }
        GridLayout {
            Layout.fillWidth: true
            columns: pane.pairColumns
            columnSpacing: Theme.s(14)
            rowSpacing: Theme.s(10)
            RenameField {
                objectName: "renameFolder"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Folder inside the drive (blank = top level)"
                input.symbol: "folder"
                onTextChanged: renameState.folder = text
            }
            RenameField {
                objectName: "renameFilter"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Only names containing…"
                input.symbol: "line.3.horizontal.decrease"
                onTextChanged: renameState.filter = text
            }
        }
        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(6)
            OptionSwitch {
                objectName: "renameIncludeSub"
                text: "Include subfolders"
                checked: renameState.includeSub
                onToggled: renameState.includeSub = checked
            }
            OptionSwitch {
                objectName: "renameIncludeFolders"
                text: "Rename folders too"
                checked: renameState.includeFolders
                onToggled: renameState.includeFolders = checked
            }
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: Math.max(1, Theme.s(1))
            color: Theme.alpha(Theme.p.stroke, 0.6)
        }

        // The rule for the new names, in the order it is applied.
        OptionSwitch {
            objectName: "renameKeepExtension"
            text: "Keep extensions"
            checked: renameState.keepExtension
            onToggled: renameState.keepExtension = checked
        }
        GridLayout {
            Layout.fillWidth: true
            columns: pane.pairColumns === 2 ? 3 : 1
            columnSpacing: Theme.s(14)
            rowSpacing: Theme.s(10)
            RenameField {
                objectName: "renameFind"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Find"
                onTextChanged: renameState.find = text
            }
            RenameField {
                objectName: "renameReplace"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Replace with"
                onTextChanged: renameState.replace = text
            }
            OptionSwitch {
                objectName: "renameRegex"
                Layout.alignment: Qt.AlignBottom
                text: "Regex"
                checked: renameState.useRegex
                onToggled: renameState.useRegex = checked
            }
            RenameField {
                objectName: "renamePrefix"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Prefix"
                onTextChanged: renameState.prefix = text
            }
            RenameField {
                objectName: "renameSuffix"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Suffix"
                onTextChanged: renameState.suffix = text
            }
            Item { implicitWidth: 0; implicitHeight: 0 }
        }
        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(14)

            ThemedComboBox {
                objectName: "renameCaseMode"
                width: Theme.s(170)
                model: renameState.caseModeLabels
                currentIndex: renameState.caseMode
                Accessible.name: "Case: " + displayText
                onActivated: index => renameState.caseMode = index
            }
            OptionSwitch {
                objectName: "renameNumbering"
                text: "Add numbers"
                checked: renameState.numbering
                onToggled: renameState.numbering = checked
            }
            RenameStepper {
                objectName: "renameStart"
                height: Theme.s(34)
                enabled: renameState.numbering
                name: "first number"
                text: "from " + renameState.start
                value: renameState.start
                from: 0
                onMoved: value => renameState.start = value
            }
            RenameStepper {
                objectName: "renameDigits"
                height: Theme.s(34)
                enabled: renameState.numbering
                name: "digits"
                text: renameState.digits + " digits"
                value: renameState.digits
                from: 1
                to: 6
                onMoved: value => renameState.digits = value
            }
        }

        LaserButton {
            objectName: "renamePreviewButton"
            Layout.topMargin: Theme.s(4)
            symbol: "eye"
            text: "Preview Renames"
            onClicked: renameState.preview()
        }

        // The dry run.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.s(4)
            visible: renameState.steps.length > 0
            spacing: Theme.s(10)

            StepsTable {
                objectName: "renameStepsTable"
                Layout.fillWidth: true
                steps: renameState.steps
            }
            RowLayout {
                spacing: Theme.s(14)
                LaserButton {
                    objectName: "renameApplyButton"
                    prominent: true
                    symbol: "character.cursor.ibeam"
                    text: "Rename " + renameState.readyCount + " Item" + (renameState.readyCount === 1 ? "" : "s")
                    enabled: renameState.readyCount > 0
                    onClicked: renameState.apply()
                }
                Text {
                    objectName: "renameBlockedLine"
                    text: renameState.blockedCount + " blocked"
                    font: Theme.f(12.5, Font.DemiBold)
                    color: renameState.blockedCount > 0 ? Theme.p.warn : Theme.p.subtext
                }
            }
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the cards.
    Item { Layout.fillHeight: true }
}
