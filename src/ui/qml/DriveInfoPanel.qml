// Facts about the drive of the catalog shown in the browser.
import QtQuick
import Orrelin

GlassPanel {
    id: panel
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})
    implicitHeight: Theme.s(60)
    Text {
        anchors.centerIn: parent
        text: panel.catalog && panel.catalog.name ? panel.catalog.name : ""
        font: Theme.f(15, Font.DemiBold)
        color: Theme.p.text
    }
}
