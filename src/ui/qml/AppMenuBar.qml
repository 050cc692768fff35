// The menu bar: application, File, Edit, Catalog, View and Help. Items about "the selected catalog" are
// off while none is selected; the scan items follow the running scan.
import QtQuick
import QtQuick.Controls
import Orrelin

MenuBar {
    id: bar
    signal aboutRequested()
    signal settingsRequested()

    // The screens and Tools panes by their place in UIState.sections and UIState.toolTabs.
    readonly property var section: ({ browse: 0, search: 1, duplicates: 2, stats: 3, web: 4, tools: 5 })
    readonly property var tool: ({ claude: 0, plan: 1, rename: 2, empty: 3, largeOld: 4, missing: 5,
                                   compare: 6 })

    // The selected catalog's map from AppModel.catalogs, or null.
    readonly property var selected: {
        const id = AppModel.selectedCatalogID
        const list = AppModel.catalogs
        for (let i = 0; i < list.length; ++i) {
            if (list[i].id === id) return list[i]
        }
        return null
    }
    readonly property bool hasSelection: selected !== null
    readonly property bool scanning: AppModel.scanner.isRunning
    // True while the keyboard is in an editable text field: there Ctrl+Backspace deletes a word, and the
    // menu's Delete Catalog must not take the key. Opening the menu moves the focus, so the item itself
    // stays usable.
    readonly property Item focusItem: bar.Window.window ? bar.Window.window.activeFocusItem : null
    readonly property bool typing: focusItem !== null && focusItem.cursorPosition !== undefined
                                   && focusItem.readOnly === false

    function showTool(tab) {
        AppModel.section = section.tools
        AppModel.toolTab = tab
    }

    // What the Edit menu's pasteboard items act on: the control that had the focus when the menu opened.
    property Item editTarget: null
    readonly property bool editable: editTarget !== null && typeof editTarget.paste === "function"
    readonly property bool editHasSelection: editable && editTarget.selectedText !== undefined
                                             && editTarget.selectedText.length > 0

    font: Theme.f(13)
    leftPadding: Theme.s(6)
    background: Rectangle {
        implicitHeight: Theme.s(28)
        color: Qt.darker(Theme.p.bgTop, 1.25)
        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            height: Math.max(1, Theme.s(1))
            color: Theme.p.stroke
        }
    }
    delegate: MenuBarItem {
        id: barItem
        // Named by its title whether or not a screen reader was there when the bar was made.
        Accessible.name: barItem.text
        font: Theme.f(13)
        leftPadding: Theme.s(10)
        rightPadding: Theme.s(10)
        topPadding: Theme.s(5)
        bottomPadding: Theme.s(5)
        contentItem: Text {
            text: barItem.text
            font: barItem.font
            color: barItem.highlighted ? Theme.p.text : Theme.alpha(Theme.p.text, 0.85)
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            radius: Theme.s(5)
            anchors.fill: parent
            anchors.topMargin: Theme.s(3)
            anchors.bottomMargin: Theme.s(3)
            color: barItem.highlighted ? Theme.alpha(Theme.p.accent, 0.24) : "transparent"
        }
    }

    ThemedMenu {
        objectName: "appMenu"
        title: "Orrelin"
        Action {
            objectName: "aboutAction"
            text: "About TVRL Orrelin"
            onTriggered: bar.aboutRequested()
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "settingsAction"
            text: "Settings…"
            shortcut: "Ctrl+,"
            onTriggered: bar.settingsRequested()
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "quitAction"
            text: "Quit TVRL Orrelin"
            shortcut: "Ctrl+Q"
            onTriggered: Qt.quit()
        }
    }

    ThemedMenu {
        objectName: "fileMenu"
        title: "File"
        Action {
            objectName: "newCatalogAction"
            text: "Catalog a Drive or Folder…"
            shortcut: "Ctrl+N"
            onTriggered: AppModel.startNewCatalog()
        }
        Action {
            objectName: "newGroupAction"
            text: "New Catalog Group…"
            shortcut: "Ctrl+Shift+N"
            onTriggered: AppModel.promptNewGroup()
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "importAction"
            text: "Import Catalog (JSON or CSV)…"
            shortcut: "Ctrl+Shift+I"
            onTriggered: AppModel.importCatalogs()
        }
        ThemedMenu {
            objectName: "exportMenu"
            title: "Export Selected Catalog"
            Action {
                objectName: "exportCSVAction"
                text: "As CSV…"
                enabled: bar.hasSelection
                onTriggered: AppModel.exportCSV([bar.selected.id])
            }
            Action {
                objectName: "exportJSONAction"
                text: "As JSON…"
                enabled: bar.hasSelection
                onTriggered: AppModel.exportJSON([bar.selected.id])
            }
            Action {
                objectName: "exportWebAction"
                text: "As Web Pages…"
                enabled: bar.hasSelection
                onTriggered: AppModel.exportWeb([bar.selected.id], bar.selected.name + " Inventory", true, false)
            }
        }
        Action {
            objectName: "webCenterAction"
            text: "Web Inventory & Export Center"
            shortcut: "Ctrl+Shift+E"
            onTriggered: AppModel.section = bar.section.web
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "backupAction"
            text: "Back Up Catalogs Now"
            shortcut: "Ctrl+Shift+B"
            onTriggered: AppModel.backupNow()
        }
        Action {
            objectName: "restoreAction"
            text: "Restore from Backup…"
            onTriggered: AppModel.chooseBackup()
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "sampleAction"
            text: "Load Sample Data"
            onTriggered: AppModel.loadSampleData()
        }
    }

    ThemedMenu {
        objectName: "editMenu"
        title: "Edit"
        onAboutToShow: {
            const focused = bar.Window.window ? bar.Window.window.activeFocusItem : null
            bar.editTarget = focused && typeof focused.paste === "function" ? focused : null
        }
        // The text fields handle these keys themselves; the menu only shows them.
        ThemedMenuItem {
            objectName: "cutItem"
            text: "Cut"
            hint: "Ctrl+X"
            enabled: bar.editHasSelection && !bar.editTarget.readOnly
            onTriggered: bar.editTarget.cut()
        }
        ThemedMenuItem {
            objectName: "copyItem"
            text: "Copy"
            hint: "Ctrl+C"
            enabled: bar.editHasSelection
            onTriggered: bar.editTarget.copy()
        }
        ThemedMenuItem {
            objectName: "pasteItem"
            text: "Paste"
            hint: "Ctrl+V"
            enabled: bar.editable && bar.editTarget.canPaste && !bar.editTarget.readOnly
            onTriggered: bar.editTarget.paste()
        }
        ThemedMenuItem {
            objectName: "selectAllItem"
            text: "Select All"
            hint: "Ctrl+A"
            enabled: bar.editable
            onTriggered: bar.editTarget.selectAll()
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "findAction"
            text: "Find Files…"
            shortcut: "Ctrl+F"
            onTriggered: {
                AppModel.section = bar.section.search
                AppModel.searchTrigger = AppModel.searchTrigger + 1
            }
        }
        Action {
            objectName: "findDuplicatesAction"
            text: "Find Duplicates"
            shortcut: "Ctrl+Shift+D"
            onTriggered: AppModel.section = bar.section.duplicates
        }
    }

    ThemedMenu {
        objectName: "catalogMenu"
        title: "Catalog"
        Action {
            objectName: "rescanAction"
            text: "Update Catalog (Rescan)"
            shortcut: "Ctrl+R"
            enabled: bar.hasSelection && !bar.scanning
            onTriggered: AppModel.rescan(bar.selected.id)
        }
        Action {
            objectName: "revealAction"
            text: "Reveal Drive in Finder"
            shortcut: "Ctrl+Alt+R"
            enabled: bar.hasSelection
            onTriggered: AppModel.revealRoot(bar.selected.id)
        }
        Action {
            objectName: "renameAction"
            text: "Rename Catalog…"
            enabled: bar.hasSelection
            onTriggered: AppModel.promptRename(bar.selected.id)
        }
        ThemedMenu {
            id: groupMenu
            objectName: "moveToGroupMenu"
            title: "Move to Group"
            enabled: bar.hasSelection
            Instantiator {
                model: [{ id: -1, name: "Ungrouped" }].concat(AppModel.groups)
                delegate: ThemedMenuItem {
                    required property var modelData
                    required property int index
                    objectName: "moveToGroup" + index
                    text: modelData.name
                    enabled: bar.hasSelection
                    marked: bar.hasSelection && bar.selected.groupID === modelData.id
                    onTriggered: AppModel.moveCatalog(bar.selected.id, modelData.id)
                }
                onObjectAdded: (index, object) => groupMenu.insertItem(index, object)
                onObjectRemoved: (index, object) => groupMenu.removeItem(object)
            }
        }
        Action {
            objectName: "watchAction"
            text: (bar.hasSelection && AppModel.watchedIDs.indexOf(bar.selected.id) >= 0 ? "✓ " : "")
                  + "Auto-Update When Files Change"
            enabled: bar.hasSelection
            onTriggered: AppModel.toggleWatch(bar.selected.id)
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "claudeAction"
            text: "Export for Claude…"
            shortcut: "Ctrl+Alt+E"
            enabled: bar.hasSelection
            onTriggered: AppModel.exportForClaude(bar.selected.id)
        }
        Action {
            objectName: "planAction"
            text: "Apply Organization Plan…"
            onTriggered: bar.showTool(bar.tool.plan)
        }
        Action {
            objectName: "renameAssistantAction"
            text: "Rename Assistant"
            onTriggered: bar.showTool(bar.tool.rename)
        }
        ThemedMenu {
            objectName: "reportsMenu"
            title: "Reports"
            Action {
                objectName: "emptyFoldersAction"
                text: "Empty Folders"
                onTriggered: bar.showTool(bar.tool.empty)
            }
            Action {
                objectName: "largeOldAction"
                text: "Large & Old Files"
                onTriggered: bar.showTool(bar.tool.largeOld)
            }
            Action {
                objectName: "missingAction"
                text: "Missing-File Check"
                onTriggered: bar.showTool(bar.tool.missing)
            }
            Action {
                objectName: "compareAction"
                text: "Compare Two Catalogs"
                onTriggered: bar.showTool(bar.tool.compare)
            }
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "pauseAction"
            text: AppModel.scanner.isPaused ? "Resume Scan" : "Pause Scan"
            shortcut: "Ctrl+Shift+P"
            enabled: bar.scanning
            onTriggered: AppModel.scanner.togglePause()
        }
        Action {
            objectName: "cancelScanAction"
            text: "Cancel Scan"
            shortcut: "Ctrl+."
            enabled: bar.scanning
            onTriggered: AppModel.scanner.cancel()
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "deleteAction"
            text: "Delete Catalog…"
            shortcut: "Ctrl+Backspace"
            enabled: bar.hasSelection && !bar.typing
            onTriggered: AppModel.confirmDelete(bar.selected.id)
        }
    }

    ThemedMenu {
        id: viewMenu
        objectName: "viewMenu"
        title: "View"
        Action {
            objectName: "sectionAction0"
            text: UIState.sections[0].title
            shortcut: "Ctrl+1"
            onTriggered: AppModel.section = 0
        }
        Action {
            objectName: "sectionAction1"
            text: UIState.sections[1].title
            shortcut: "Ctrl+2"
            onTriggered: AppModel.section = 1
        }
        Action {
            objectName: "sectionAction2"
            text: UIState.sections[2].title
            shortcut: "Ctrl+3"
            onTriggered: AppModel.section = 2
        }
        Action {
            objectName: "sectionAction3"
            text: UIState.sections[3].title
            shortcut: "Ctrl+4"
            onTriggered: AppModel.section = 3
        }
        Action {
            objectName: "sectionAction4"
            text: UIState.sections[4].title
            shortcut: "Ctrl+5"
            onTriggered: AppModel.section = 4
        }
        Action {
            objectName: "sectionAction5"
            text: UIState.sections[5].title
            shortcut: "Ctrl+6"
            onTriggered: AppModel.section = 5
        }
        ThemedMenuSeparator {}
        Action {
            objectName: "zoomInAction"
            text: "Zoom In"
            shortcut: "Ctrl++"
            enabled: UIState.zoom <= 2.499
            onTriggered: UIState.zoomIn()
        }
        Action {
            objectName: "zoomOutAction"
            text: "Zoom Out"
            shortcut: "Ctrl+-"
            enabled: UIState.zoom >= 0.501
            onTriggered: UIState.zoomOut()
        }
        Action {
            objectName: "actualSizeAction"
            text: "Actual Size"
            shortcut: "Ctrl+0"
            onTriggered: UIState.setZoom(1)
        }
        ThemedMenuSeparator {}
        ThemedMenu {
            id: themeMenu
            objectName: "themeMenu"
            title: "Theme"
            Instantiator {
                model: UIState.themes
                delegate: ThemedMenuItem {
                    required property var modelData
                    required property int index
                    objectName: "themeItem" + index
                    text: modelData.name
                    marked: UIState.theme === index
                    onTriggered: UIState.theme = index
                }
                onObjectAdded: (index, object) => themeMenu.insertItem(index, object)
                onObjectRemoved: (index, object) => themeMenu.removeItem(object)
            }
        }
    }

    ThemedMenu {
        objectName: "helpMenu"
        title: "Help"
        Action {
            objectName: "helpAction"
            text: "TVRL Orrelin Help"
            shortcut: "Ctrl+?"
            onTriggered: AppLinks.openHelp()
        }
        Action {
            objectName: "websiteAction"
            text: "Visit Tavrel Works"
            onTriggered: AppLinks.openWebsite()
        }
    }
}
