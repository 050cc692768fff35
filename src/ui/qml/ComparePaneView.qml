// Tools › Compare Catalogs: catalogs A and B, the four counts as chips, and the list of the chosen chip.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: view
    readonly property alias pane: pane

    spacing: Theme.s(16)

    ComparePane {
        id: pane
        a: pickerA.selection
    }
    // Gives the pane its database and fills an empty B before the pickers adopt the sidebar's catalog.
    ReportWiring { pane: pane }

    // Each time the pane comes back on screen, an empty B is filled again.
    onVisibleChanged: if (visible) pane.shown()

    ToolCard {
        objectName: "compareCard"
        Layout.fillWidth: true
        title: "Compare two catalogs"
        text: "Matches files by their path inside each drive \u2014 ideal for checking a backup against its original."

        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(10)
            CatalogPicker {
                id: pickerA
                objectName: "comparePickerA"
                label: "A"
            }
            SvgIcon {
                height: pickerA.height
                symbol: "arrow.left.arrow.right.square"
                size: Theme.s(18)
                color: Theme.p.subtext
            }
            CatalogPicker {
                id: pickerB
                objectName: "comparePickerB"
                label: "B"
                selection: pane.b
                onSelectionChanged: pane.b = selection
            }
            LaserButton {
                objectName: "compareButton"
                prominent: true
                symbol: "arrow.left.arrow.right.square"
                text: "Compare"
                enabled: !pane.compareDisabled
                onClicked: pane.compare()
            }
        }

        CompareResultView {
            pane: pane
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the card.
    Item { Layout.fillHeight: true }
}
