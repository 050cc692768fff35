// The Settings window: Appearance, Scanning, Backups and Data. Every control writes through at once; there
// is no Apply button. The window fits the current tab's height, scrolling where the screen is too short.
import QtQuick
import QtQuick.Controls
import QtQuick.Window
import Orrelin

Window {
    id: settings
    title: "TVRL Orrelin Settings"
    color: Theme.p.bgBottom
    flags: Qt.Dialog

    // The tab shown: 0 Appearance, 1 Scanning, 2 Backups, 3 Data.
    property int currentTab: 0
    readonly property var tabs: [
        { title: "Appearance", symbol: "paintpalette" },
        { title: "Scanning", symbol: "dot.radiowaves.left.and.right" },
        { title: "Backups", symbol: "externaldrive.badge.timemachine" },
        { title: "Data", symbol: "cylinder.split.1x2" }
    ]
    readonly property real margin: Theme.s(28)
    readonly property Item page: [appearance, scanning, backups, data][currentTab]

    // Never wider or taller than the screen, at any zoom: what does not fit scrolls, and the tiles and
    // lines reflow to the width there is.
    readonly property real screenWidth: Screen.desktopAvailableWidth > 0 ? Screen.desktopAvailableWidth : 1e6
    readonly property real screenHeight: Screen.desktopAvailableHeight > 0 ? Screen.desktopAvailableHeight : 1e6
    width: Math.floor(Math.min(Theme.s(780), screenWidth * 0.94))
    height: Math.ceil(Math.max(Math.min(Theme.s(360), screenHeight * 0.88),
                               Math.min(header.height + page.implicitHeight + 2 * margin, screenHeight * 0.88)))
    minimumWidth: Math.min(Theme.s(560), screenWidth * 0.94)
    minimumHeight: Math.min(Theme.s(300), screenHeight * 0.88)

    // Reads the settings again, for they may have changed since the window was last open.
    property bool placed: false
    function open() {
        prefs.refresh()
        if (!placed) {
            // Centred on the screen the first time; where the user moves it afterwards, it stays.
            x = Screen.virtualX + Math.max(0, (Screen.width - width) / 2)
            y = Screen.virtualY + Math.max(0, (Screen.height - height) / 3)
            placed = true
        }
        show()
        Qt.callLater(function() { settings.raise(); settings.requestActivate() })
    }

    SettingsState {
        id: prefs
        objectName: "settingsState"
    }

    BackdropView {
        anchors.fill: parent
    }

    Item {
        id: header
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: tabRow.height + Theme.s(24)

        Row {
            id: tabRow
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.top
            anchors.topMargin: Theme.s(12)
            spacing: Theme.s(6)
            Accessible.role: Accessible.PageTabList
            Accessible.name: "Settings"
            Repeater {
                model: settings.tabs
                SettingsTabButton {
                    required property var modelData
                    required property int index
                    objectName: "settingsTab" + index
                    text: modelData.title
                    symbol: modelData.symbol
                    current: settings.currentTab === index
                    onActivated: settings.currentTab = index
                }
            }
        }
        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            height: Math.max(1, Theme.s(1))
            color: Theme.p.stroke
        }
    }

    Flickable {
        id: scroller
        objectName: "settingsScroller"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        clip: true
        contentWidth: width
        contentHeight: settings.page.implicitHeight + 2 * settings.margin
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            policy: scroller.contentHeight > scroller.height + 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
        }

        Item {
            x: settings.margin
            y: settings.margin
            width: scroller.width - 2 * settings.margin

            SettingsAppearanceTab {
                id: appearance
                objectName: "appearanceTab"
                width: parent.width
                visible: settings.currentTab === 0
            }
            SettingsScanningTab {
                id: scanning
                objectName: "scanningTab"
                width: parent.width
                visible: settings.currentTab === 1
                prefs: prefs
            }
            SettingsBackupsTab {
                id: backups
                objectName: "backupsTab"
                width: parent.width
                visible: settings.currentTab === 2
                prefs: prefs
            }
            SettingsDataTab {
                id: data
                objectName: "dataTab"
                width: parent.width
                visible: settings.currentTab === 3
                prefs: prefs
            }
        }
    }

    onCurrentTabChanged: scroller.contentY = 0

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: settings.close()
    }
    Shortcut {
        sequences: [StandardKey.NextChild, "Ctrl+PgDown"]
        onActivated: settings.currentTab = (settings.currentTab + 1) % settings.tabs.length
    }
    Shortcut {
        sequences: [StandardKey.PreviousChild, "Ctrl+PgUp"]
        onActivated: settings.currentTab = (settings.currentTab + settings.tabs.length - 1) % settings.tabs.length
    }
    // The zoom keys work here as in the main window, so their effect can be watched on the slider.
    Shortcut {
        sequences: [StandardKey.ZoomIn, "Ctrl+="]
        onActivated: UIState.zoomIn()
    }
    Shortcut {
        sequence: StandardKey.ZoomOut
        onActivated: UIState.zoomOut()
    }
    Shortcut {
        sequence: "Ctrl+0"
        onActivated: UIState.resetZoom()
    }
}
