// "Choose catalogs": every catalog with a check box, how many are chosen, and Select All / Select None.
// The choice itself belongs to the screen; this list shows it and asks for changes.
import QtQuick
import QtQuick.Layouts
import Orrelin

WebExportCard {
    id: list
    property var chosen: []
    property int chosenCount: 0
    signal toggled(var id)
    signal allChosen()
    signal noneChosen()

    title: "Choose catalogs"
    symbol: "checkmark.square.fill"

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.s(8)
        Text {
            objectName: "webSelectionCount"
            Layout.fillWidth: true
            text: list.chosenCount + " of " + AppModel.catalogs.length + " selected"
            font: Theme.f(12)
            color: list.chosenCount > 0 ? Theme.p.subtext : Theme.p.warn
            elide: Text.ElideRight
        }
        LaserButton {
            objectName: "webSelectAll"
            compact: true
            text: "Select All"
            onClicked: list.allChosen()
        }
        LaserButton {
            objectName: "webSelectNone"
            compact: true
            text: "Select None"
            onClicked: list.noneChosen()
        }
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: Theme.s(6)
        Repeater {
            model: AppModel.catalogs
            delegate: WebExportCatalogRow {
                required property var modelData
                required property int index
                objectName: "webCatalog_" + index
                Layout.fillWidth: true
                catalog: modelData
                chosen: list.chosen.indexOf(modelData.id) >= 0
                onToggled: list.toggled(modelData.id)
            }
        }
    }
}
