// The search's catalog filter: "All Catalogs" clears it, every catalog toggles. The label reads "All
// catalogs", or how many are chosen.
import QtQuick
import QtQuick.Controls
import Orrelin

SearchMenuButton {
    id: scope
    readonly property int chosen: SearchState.catalogIDs.length
    symbol: "internaldrive.fill"
    text: chosen === 0 ? "All catalogs" : chosen + (chosen === 1 ? " catalog" : " catalogs")
    Accessible.name: "Catalogs: " + text

    function toggle(id) {
        const list = SearchState.catalogIDs.slice()
        const at = list.indexOf(id)
        if (at >= 0) list.splice(at, 1)
        else list.push(id)
        SearchState.catalogIDs = list
    }

    ThemedMenuItem {
        objectName: "searchCatalogAll"
        text: "All Catalogs"
        marked: scope.chosen === 0
        onTriggered: SearchState.catalogIDs = []
    }
    ThemedMenuSeparator {}
    Instantiator {
        model: AppModel.catalogs
        delegate: ThemedMenuItem {
            required property var modelData
            text: modelData.name
            marked: SearchState.catalogIDs.indexOf(modelData.id) >= 0
            onTriggered: scope.toggle(modelData.id)
        }
        onObjectAdded: (index, object) => scope.menu.insertItem(index + 2, object)
        onObjectRemoved: (index, object) => scope.menu.removeItem(object)
    }
}
