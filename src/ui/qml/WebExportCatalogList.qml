// "Choose catalogs": every catalog with a check box, how many are chosen, and Select All / Select None.
// The choice itself belongs to the screen; this list shows it and asks for changes.
import QtQuick
import QtQuick.Layouts
import Orrelin

GlassPanel {
    id: list
    property var chosen: []
    property int chosenCount: 0
    signal toggled(var id)
    signal allChosen()
    signal noneChosen()

    implicitHeight: column.implicitHeight + 2 * Theme.s(18)
    Accessible.role: Accessible.Grouping
    Accessible.name: "Choose catalogs"

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.s(18)
        spacing: Theme.s(10)

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s(8)
            SvgIcon {
                symbol: "checkmark.square.fill"
                color: Theme.p.accent
                size: Theme.s(15)
            }
            Text {
                Layout.fillWidth: true
                text: "Choose catalogs"
                font: Theme.f(15, Font.DemiBold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
        }
        Text {
            objectName: "webSelectionCount"
            Layout.fillWidth: true
            text: list.chosenCount + " of " + AppModel.catalogs.length + " selected"
            font: Theme.f(12)
            color: list.chosenCount > 0 ? Theme.p.subtext : Theme.p.warn
        }
        Flow {
            Layout.fillWidth: true
            spacing: Theme.s(8)
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
