// A button with a menu choosing a set of catalogs; the empty set means all of them. "All Catalogs"
// empties the set; each catalog is ticked while chosen and toggles when chosen again.
import QtQuick
import QtQuick.Controls
import Orrelin

LaserButton {
    id: scope
    // The chosen catalog ids, usually bound to the owner's set.
    property var ids: []
    // The set the user asks for; the owner stores it, and `ids` follows through its binding. (Storing it
    // here as well would break that binding, and the label would stop following the owner.)
    signal chosen(var newIDs)

    compact: true
    symbol: "internaldrive.fill"
    text: ids.length === 0 ? "All catalogs" : ids.length + " selected"
    Accessible.name: "Catalogs: " + text
    onClicked: scopeMenu.popup(scope, 0, scope.height)

    function toggle(id) {
        const list = scope.ids.slice()
        const at = list.indexOf(id)
        if (at >= 0) list.splice(at, 1)
        else list.push(id)
        scope.chosen(list)
    }

    ThemedMenu {
        id: scopeMenu
        objectName: scope.objectName.length > 0 ? scope.objectName + "Menu" : ""
        ThemedMenuItem {
            objectName: scope.objectName.length > 0 ? scope.objectName + "All" : ""
            text: "All Catalogs"
            marked: scope.ids.length === 0
            onTriggered: scope.chosen([])
        }
        ThemedMenuSeparator {}
        Instantiator {
            model: AppModel.catalogs
            delegate: ThemedMenuItem {
                required property var modelData
                objectName: scope.objectName.length > 0 ? scope.objectName + "_" + modelData.id : ""
                text: modelData.name
                marked: scope.ids.indexOf(modelData.id) >= 0
                onTriggered: scope.toggle(modelData.id)
            }
            onObjectAdded: (index, object) => scopeMenu.insertItem(index + 2, object)
            onObjectRemoved: (index, object) => scopeMenu.removeItem(object)
        }
    }
}
