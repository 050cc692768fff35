// The search's kind filter: "Any Kind" clears it, every other entry toggles its kind. The label names the
// chosen kinds, or reads "Any Kind".
import QtQuick
import QtQuick.Controls
import Orrelin

SearchMenuButton {
    id: kinds
    symbol: "square.grid.2x2"
    text: SearchState.kinds.length === 0 ? "Any Kind" : SearchState.kinds.join(", ")
    Accessible.name: "Kinds: " + text

    function toggle(kind) {
        const list = SearchState.kinds.slice()
        const at = list.indexOf(kind)
        if (at >= 0) list.splice(at, 1)
        else list.push(kind)
        SearchState.kinds = list
    }

    ThemedMenuItem {
        objectName: "searchKindAny"
        text: "Any Kind"
        marked: SearchState.kinds.length === 0
        onTriggered: SearchState.kinds = []
    }
    ThemedMenuSeparator {}
    Instantiator {
        model: FileKinds.names
        delegate: ThemedMenuItem {
            required property string modelData
            objectName: "searchKind_" + modelData
            text: modelData
            marked: SearchState.kinds.indexOf(modelData) >= 0
            onTriggered: kinds.toggle(modelData)
        }
        onObjectAdded: (index, object) => kinds.menu.insertItem(index + 2, object)
        onObjectRemoved: (index, object) => kinds.menu.removeItem(object)
    }
}
