// The menu of a file row: open, reveal, copy the path, and show it in the browser. The drive being
// offline is handled by the actions themselves.
import QtQuick
import QtQuick.Controls
import Orrelin

ThemedMenu {
    id: menu
    property real fileID: 0

    // Opens the menu for `id` at the pointer.
    function openFor(id) {
        menu.fileID = id
        menu.popup()
    }

    ThemedMenuItem {
        objectName: "fileMenuOpen"
        text: "Open"
        onTriggered: AppModel.openFile(menu.fileID)
    }
    ThemedMenuItem {
        objectName: "fileMenuReveal"
        text: "Reveal in Finder"
        onTriggered: AppModel.revealFile(menu.fileID)
    }
    ThemedMenuItem {
        objectName: "fileMenuCopyPath"
        text: "Copy Path"
        onTriggered: AppModel.copyFilePath(menu.fileID)
    }
    ThemedMenuSeparator {}
    ThemedMenuItem {
        objectName: "fileMenuShowInBrowser"
        text: "Show in Browser"
        onTriggered: AppModel.browseToFile(menu.fileID)
    }
}
