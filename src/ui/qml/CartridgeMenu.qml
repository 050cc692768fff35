// The context menu of a cartridge. One menu serves every cartridge of the sidebar: openFor() points it
// at a catalog (one of AppModel.catalogs) and opens it where the cartridge was clicked.
import QtQuick
import QtQuick.Controls
import Orrelin

SidebarMenu {
    id: owner
    objectName: "cartridgeMenu"

    property var catalog: ({})
    readonly property real catalogID: catalog.id === undefined ? -1 : catalog.id
    readonly property bool watched: AppModel.watchedIDs.indexOf(catalogID) >= 0

    // Opens for `target` at (`x`, `y`) in `item`.
    function openFor(target, item, x, y) {
        catalog = target
        const at = item.mapToItem(parent, x, y)
        popup(at.x, at.y)
    }

    SidebarMenuItem {
        objectName: "cartridgeMenu.browse"
        text: "Browse"
        onTriggered: {
            AppModel.selectedCatalogID = owner.catalogID
            AppModel.section = Nav.AppSection.browse
        }
    }
    SidebarMenuItem {
        objectName: "cartridgeMenu.rescan"
        text: "Update Catalog (Rescan)"
        enabled: !AppModel.scanner.isRunning
        onTriggered: AppModel.rescan(owner.catalogID)
    }
    SidebarMenuItem {
        objectName: "cartridgeMenu.reveal"
        text: "Reveal Drive in Finder"
        onTriggered: AppModel.revealRoot(owner.catalogID)
    }
    SidebarMenuItem {
        objectName: "cartridgeMenu.watch"
        text: (owner.watched ? "✓ " : "") + "Auto-Update When Files Change"
        onTriggered: AppModel.toggleWatch(owner.catalogID)
    }
    SidebarMenuSeparator {}
    SidebarMenuItem {
        objectName: "cartridgeMenu.rename"
        text: "Rename Catalog…"
        onTriggered: AppModel.promptRename(owner.catalogID)
    }
    SidebarMenu {
        id: groupMenu
        objectName: "cartridgeMenu.moveTo"
        title: "Move to Group"

        SidebarMenuItem {
            objectName: "cartridgeMenu.ungrouped"
            text: "Ungrouped"
            current: owner.catalog.groupID === -1
            onTriggered: AppModel.moveCatalog(owner.catalogID, -1)
        }
        Instantiator {
            model: AppModel.groups
            delegate: SidebarMenuItem {
                required property var modelData
                objectName: "cartridgeMenu.group:" + modelData.name
                text: modelData.name
                current: owner.catalog.groupID === modelData.id
                onTriggered: AppModel.moveCatalog(owner.catalogID, modelData.id)
            }
            onObjectAdded: (index, object) => groupMenu.insertItem(index + 1, object)
            onObjectRemoved: (index, object) => groupMenu.removeItem(object)
        }
    }
    SidebarMenu {
        objectName: "cartridgeMenu.export"
        title: "Export"

        SidebarMenuItem {
            objectName: "cartridgeMenu.csv"
            text: "As CSV…"
            onTriggered: AppModel.exportCSV([owner.catalogID])
        }
        SidebarMenuItem {
            objectName: "cartridgeMenu.json"
            text: "As JSON…"
            onTriggered: AppModel.exportJSON([owner.catalogID])
        }
        SidebarMenuItem {
            objectName: "cartridgeMenu.web"
            text: "As Web Pages…"
            onTriggered: AppModel.exportWeb([owner.catalogID], owner.catalog.name + " Inventory", true, false)
        }
    }
    SidebarMenuSeparator {}
    SidebarMenuItem {
        objectName: "cartridgeMenu.delete"
        text: "Delete Catalog…"
        destructive: true
        onTriggered: AppModel.confirmDelete(owner.catalogID)
    }
}
