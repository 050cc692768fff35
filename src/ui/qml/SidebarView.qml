// The sidebar: the brand, the six screens, the cartridges by group and the smart searches. All of it
// scrolls as one column when it is taller than the window (many cartridges, or a large zoom).
import QtQuick
import QtQuick.Controls
import Orrelin

Rectangle {
    id: sidebar
    color: Theme.alpha(Theme.p.panel, 0.45)

    readonly property var catalogs: AppModel.catalogs
    readonly property var groups: AppModel.groups
    readonly property var ungrouped: catalogs.filter(c => c.groupID === -1)
    readonly property real inset: Theme.s(12)

    function catalogsIn(groupID) { return catalogs.filter(c => c.groupID === groupID) }
    function isCollapsed(groupID) { return AppModel.collapsedGroups.indexOf(groupID) >= 0 }

    // The edge towards the screens.
    Rectangle {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
    }

    Flickable {
        id: scroller
        objectName: "sidebarScroller"
        anchors.fill: parent
        anchors.rightMargin: Math.max(1, Theme.s(1))
        contentWidth: width
        contentHeight: content.implicitHeight + 2 * sidebar.inset
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        ScrollBar.vertical: ScrollBar {
            id: bar
            policy: scroller.contentHeight > scroller.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
            width: Theme.s(8)
            contentItem: Rectangle {
                implicitWidth: Theme.s(4)
                radius: width / 2
                color: Theme.alpha(Theme.p.accent, bar.pressed ? 0.7 : bar.hovered ? 0.5 : 0.3)
                opacity: bar.active ? 1 : 0.6
            }
            background: Item {}
        }

        Column {
            id: content
            x: sidebar.inset
            y: sidebar.inset
            width: scroller.width - 2 * sidebar.inset
            spacing: Theme.s(6)

            BrandHeader {
                objectName: "brandHeader"
                width: parent.width
            }

            Item { width: 1; height: Theme.s(10) }

            Repeater {
                model: UIState.sections
                delegate: NavButton {
                    required property var modelData
                    objectName: "nav:" + modelData.title
                    width: content.width
                    symbol: modelData.symbol
                    title: modelData.title
                    current: AppModel.section === modelData.section
                    onClicked: AppModel.section = modelData.section
                }
            }

            Item { width: 1; height: Theme.s(10) }

            // "Cartridges" and the plus menu.
            Item {
                width: parent.width
                height: Math.max(addButton.height, cartridgesTitle.implicitHeight)
                SectionTitle {
                    id: cartridgesTitle
                    objectName: "cartridgesTitle"
                    anchors.left: parent.left
                    anchors.leftMargin: Theme.s(4)
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Cartridges"
                }
                IconButton {
                    id: addButton
                    objectName: "addCartridgeButton"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "plus"
                    tip: "Add a catalog or group"
                    iconColor: Theme.p.accent
                    onClicked: addMenu.popup(addButton, 0, addButton.height)
                }
            }

            // Nothing cataloged yet.
            GlassPanel {
                objectName: "noCartridgesPanel"
                visible: sidebar.catalogs.length === 0
                width: parent.width
                height: visible ? emptyColumn.implicitHeight + 2 * Theme.s(14) : 0
                radius: Theme.s(12)

                Column {
                    id: emptyColumn
                    x: Theme.s(14)
                    y: Theme.s(14)
                    width: parent.width - 2 * Theme.s(14)
                    spacing: Theme.s(8)
                    SvgIcon {
                        symbol: "externaldrive.badge.plus"
                        size: Theme.s(22)
                        color: Theme.p.accent
                    }
                    Text {
                        width: parent.width
                        text: "No cartridges yet"
                        font: Theme.f(13.5, Font.DemiBold)
                        color: Theme.p.text
                        wrapMode: Text.Wrap
                    }
                    Text {
                        width: parent.width
                        text: "Catalog a drive and it will appear here as a cartridge you can browse even after you unplug it."
                        font: Theme.f(11.5)
                        color: Theme.p.subtext
                        wrapMode: Text.Wrap
                        lineHeight: 1.15
                    }
                    Item { width: 1; height: Theme.s(2) }
                    LaserButton {
                        objectName: "sidebarCatalogDrive"
                        text: "Catalog a Drive"
                        symbol: "plus.viewfinder"
                        prominent: true
                        compact: true
                        enabled: !AppModel.scanner.isRunning
                        onClicked: AppModel.startNewCatalog()
                    }
                }
            }

            // The groups, each with its cartridges unless folded. With no catalog at all the empty panel
            // stands alone, even when groups exist.
            Repeater {
                model: sidebar.catalogs.length > 0 ? sidebar.groups : []
                delegate: Column {
                    id: groupBlock
                    required property var modelData
                    readonly property var members: sidebar.catalogsIn(modelData.id)
                    readonly property bool collapsed: sidebar.isCollapsed(modelData.id)
                    width: content.width
                    spacing: Theme.s(7)

                    GroupHeader {
                        width: parent.width
                        group: groupBlock.modelData
                        count: groupBlock.members.length
                        collapsed: groupBlock.collapsed
                        menu: groupMenu
                    }
                    Text {
                        objectName: "emptyGroup:" + groupBlock.modelData.name
                        visible: !groupBlock.collapsed && groupBlock.members.length === 0
                        width: parent.width
                        leftPadding: Theme.s(8)
                        text: "Empty — right-click a cartridge and choose Move to Group."
                        readonly property font base: Theme.f(11)
                        font.family: base.family
                        font.pixelSize: base.pixelSize
                        font.italic: true
                        color: Theme.alpha(Theme.p.subtext, 0.85)
                        wrapMode: Text.Wrap
                    }
                    Repeater {
                        model: groupBlock.collapsed ? [] : groupBlock.members
                        delegate: CartridgeView {
                            required property var modelData
                            catalog: modelData
                            width: groupBlock.width
                            menu: cartridgeMenu
                        }
                    }
                    Item { width: 1; height: Theme.s(2) }
                }
            }

            // The cartridges in no group; their heading only where there are groups to tell them from.
            Item {
                objectName: "ungroupedHeading"
                visible: sidebar.groups.length > 0 && sidebar.ungrouped.length > 0
                width: parent.width
                height: visible ? Theme.s(22) : 0
                SectionTitle {
                    id: ungroupedTitle
                    anchors.left: parent.left
                    anchors.leftMargin: Theme.s(4)
                    anchors.verticalCenter: parent.verticalCenter
                    text: "UNGROUPED"
                    font.pixelSize: Math.max(1, Math.round(9.5 * Theme.zoom))
                }
                Rectangle {
                    anchors.left: ungroupedTitle.right
                    anchors.leftMargin: Theme.s(8)
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.s(4)
                    anchors.verticalCenter: parent.verticalCenter
                    height: Math.max(1, Theme.s(1))
                    gradient: Gradient {
                        orientation: Gradient.Horizontal
                        GradientStop { position: 0; color: Theme.p.stroke }
                        GradientStop { position: 1; color: "transparent" }
                    }
                }
            }
            Repeater {
                model: sidebar.ungrouped
                delegate: CartridgeView {
                    required property var modelData
                    catalog: modelData
                    width: content.width
                    menu: cartridgeMenu
                }
            }

            Item { width: 1; height: Theme.s(12) }

            SectionTitle {
                objectName: "smartSearchesTitle"
                leftPadding: Theme.s(4)
                width: parent.width
                text: "Smart searches"
            }
            Text {
                objectName: "noSmartSearches"
                visible: AppModel.savedSearches.length === 0
                width: parent.width
                leftPadding: Theme.s(4)
                text: "Save any search from the Search screen to keep it here."
                font: Theme.f(11)
                color: Theme.alpha(Theme.p.subtext, 0.85)
                wrapMode: Text.Wrap
            }
            Repeater {
                model: AppModel.savedSearches
                delegate: SmartSearchRow {
                    required property var modelData
                    search: modelData
                    width: content.width
                    menu: smartSearchMenu
                }
            }
        }
    }

    SidebarMenu {
        id: addMenu
        objectName: "addMenu"
        SidebarMenuItem {
            objectName: "addMenu.catalog"
            text: "Catalog a Drive or Folder…"
            onTriggered: AppModel.startNewCatalog()
        }
        SidebarMenuItem {
            objectName: "addMenu.group"
            text: "New Catalog Group…"
            onTriggered: AppModel.promptNewGroup()
        }
        SidebarMenuSeparator {}
        SidebarMenuItem {
            objectName: "addMenu.import"
            text: "Import Catalog…"
            onTriggered: AppModel.importCatalogs()
        }
        SidebarMenuItem {
            objectName: "addMenu.sample"
            text: "Load Sample Data"
            onTriggered: AppModel.loadSampleData()
        }
    }

    CartridgeMenu {
        id: cartridgeMenu
    }

    SidebarMenu {
        id: groupMenu
        objectName: "groupMenu"
        property var group: ({})
        function openFor(target, item, x, y) {
            group = target
            const at = item.mapToItem(sidebar, x, y)
            popup(at.x, at.y)
        }
        SidebarMenuItem {
            objectName: "groupMenu.rename"
            text: "Rename Group…"
            onTriggered: AppModel.promptRenameGroup(groupMenu.group.id)
        }
        SidebarMenuItem {
            objectName: "groupMenu.remove"
            text: "Remove Group…"
            destructive: true
            onTriggered: AppModel.deleteGroup(groupMenu.group.id)
        }
    }

    SidebarMenu {
        id: smartSearchMenu
        objectName: "smartSearchMenu"
        property var search: ({})
        function openFor(target, item, x, y) {
            search = target
            const at = item.mapToItem(sidebar, x, y)
            popup(at.x, at.y)
        }
        SidebarMenuItem {
            objectName: "smartSearchMenu.run"
            text: "Run Search"
            onTriggered: SavedSearches.openSavedSearch(smartSearchMenu.search.id)
        }
        SidebarMenuItem {
            objectName: "smartSearchMenu.rename"
            text: "Rename…"
            onTriggered: SavedSearches.renameSavedSearch(smartSearchMenu.search.id)
        }
        SidebarMenuSeparator {}
        SidebarMenuItem {
            objectName: "smartSearchMenu.delete"
            text: "Delete Smart Search"
            destructive: true
            onTriggered: SavedSearches.deleteSavedSearch(smartSearchMenu.search.id)
        }
    }
}
