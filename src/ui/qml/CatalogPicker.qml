// Picks one catalog; `selection` is its id, 0 for none. With `onlineOnly` only catalogs whose drive is
// connected are offered. Shown with nothing chosen, it takes the catalog selected in the sidebar (or,
// online only, the first online catalog); so does a choice whose catalog is gone.
import QtQuick
import QtQuick.Layouts
import Orrelin

RowLayout {
    id: picker
    property string label: "Catalog"
    property real selection: 0
    property bool onlineOnly: false
    // Its list, for tests and for panes that need to know whether anything can be chosen.
    readonly property var choices: AppModel.catalogs.filter(c => !picker.onlineOnly
                                                                 || AppModel.onlineIDs.indexOf(c.id) >= 0)
    readonly property alias box: combo

    spacing: Theme.s(10)

    // Keeps a choice that is still on offer; otherwise takes the default again.
    function adoptDefault() {
        if (picker.selection > 0 && picker.choices.some(c => c.id === picker.selection)) return
        picker.selection = 0
        const sidebar = AppModel.selectedCatalogID
        if (sidebar > 0 && picker.choices.some(c => c.id === sidebar)) picker.selection = sidebar
        else if (picker.onlineOnly && picker.choices.length > 0) picker.selection = picker.choices[0].id
    }
    Component.onCompleted: adoptDefault()
    // A deleted catalog (or one gone with a restore) is let go; a drive that merely went offline stays
    // chosen, so the pane can say "Drive Offline" instead of silently switching drives.
    onChoicesChanged: if (picker.selection > 0 && !AppModel.catalogs.some(c => c.id === picker.selection)) adoptDefault()

    Text {
        text: picker.label
        font: Theme.f(13)
        color: Theme.p.subtext
    }
    ThemedComboBox {
        id: combo
        objectName: picker.objectName.length > 0 ? picker.objectName + "Box" : ""
        Layout.preferredWidth: Theme.s(260)
        model: picker.choices
        textRole: "name"
        Accessible.name: picker.label
        currentIndex: picker.choices.findIndex(c => c.id === picker.selection)
        displayText: currentIndex >= 0 ? picker.choices[currentIndex].name : "—"
        onActivated: index => picker.selection = picker.choices[index].id
    }
}
