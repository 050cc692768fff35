// The Browse screen: the selected cartridge's files; with none selected, a word on how to choose one; and
// with no cartridge at all, the ways to make the first. The browser lives while its cartridge is selected
// and the screen is shown: coming back to it, or to another cartridge, starts at the top of the drive
// (only the choice between columns and list is kept).
import QtQuick
import Orrelin

Item {
    id: screen

    readonly property var catalog: {
        const id = AppModel.selectedCatalogID
        for (const c of AppModel.catalogs) {
            if (c.id === id) return c
        }
        return null
    }

    Loader {
        id: browserLoader
        objectName: "catalogBrowserLoader"
        anchors.fill: parent
        active: screen.catalog !== null && AppModel.section === Nav.AppSection.browse
        sourceComponent: CatalogBrowserView {
            catalog: screen.catalog !== null ? screen.catalog : ({})
        }
    }

    EmptyStateView {
        objectName: "browseChooseCartridge"
        anchors.fill: parent
        visible: screen.catalog === null && AppModel.catalogs.length > 0
        title: "Choose a cartridge"
        message: "Select a catalog in the sidebar to browse it."
        showActions: false
    }

    EmptyStateView {
        objectName: "browseEmptyLibrary"
        anchors.fill: parent
        visible: AppModel.catalogs.length === 0
        title: "Your drive library starts here"
        message: "Catalog an external drive, a network share or any folder. TVRL Orrelin remembers every file — names, sizes, dates, tags, media details and thumbnails — so you can find things even when the drive is sitting in a drawer."
    }
}
