// The menu bar: application, File, Edit, Catalog, View and Help.
import QtQuick
import QtQuick.Controls
import Orrelin

MenuBar {
    signal aboutRequested()
    signal settingsRequested()

    Menu {
        title: "Orrelin"
        Action { text: "About TVRL Orrelin"; onTriggered: aboutRequested() }
        Action { text: "Settings…"; shortcut: "Ctrl+,"; onTriggered: settingsRequested() }
        MenuSeparator {}
        Action { text: "Quit TVRL Orrelin"; shortcut: StandardKey.Quit; onTriggered: Qt.quit() }
    }
}
