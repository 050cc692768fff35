// Details of the item selected in the browser.
import QtQuick
import Orrelin

GlassPanel {
    id: inspector
    // A file map (see Files.file), or an empty map with nothing selected.
    property var file: ({})
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})
    Text {
        anchors.centerIn: parent
        text: inspector.file && inspector.file.name ? inspector.file.name : ""
        font: Theme.f(13)
        color: Theme.p.text
    }
}
