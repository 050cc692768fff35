// The main window: the backdrop, the sidebar, the header, the section's screen and the status bar, with
// the scan panel, the toast and the sheets and alerts above them.
import QtQuick
import QtQuick.Controls
import QtQuick.Window
import Orrelin

ApplicationWindow {
    id: window
    objectName: "mainWindow"
    width: 1500
    height: 1120
    minimumWidth: 900
    minimumHeight: 600
    visible: true
    title: "Orrelin · TVRL"
    color: Theme.p.bgBottom

    // The stock controls (text fields, tooltips, check boxes, …) take their font at the zoom, and their
    // colours from the theme, too.
    font: Theme.f(13)
    readonly property color opaquePanel: Qt.tint(Theme.p.bgTop, Theme.alpha(Theme.p.panel, 0.9))
    palette.window: Theme.p.bgTop
    palette.windowText: Theme.p.text
    palette.base: Qt.tint(Theme.p.bgBottom, Theme.alpha(Theme.p.panel, 0.5))
    palette.alternateBase: opaquePanel
    palette.text: Theme.p.text
    palette.button: opaquePanel
    palette.buttonText: Theme.p.text
    palette.brightText: Theme.p.text
    palette.highlight: Theme.p.accent
    palette.highlightedText: Theme.p.bgBottom
    palette.placeholderText: Theme.p.subtext
    palette.toolTipBase: opaquePanel
    palette.toolTipText: Theme.p.text
    palette.mid: Theme.p.stroke
    palette.dark: Theme.p.stroke

    menuBar: AppMenuBar {
        id: menus
        objectName: "menuBar"
        onAboutRequested: aboutWindow.open()
        onSettingsRequested: settingsWindow.open()
    }

    BackdropView {
        anchors.fill: parent
    }

    SidebarView {
        id: sidebar
        objectName: "sidebar"
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Theme.s(272)
    }

    Item {
        id: column
        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom

        HeaderBar {
            id: header
            objectName: "headerBar"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
        }

        SectionScreen {
            id: screen
            objectName: "sectionScreen"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: header.bottom
            anchors.bottom: statusBar.top
        }

        StatusBar {
            id: statusBar
            objectName: "statusBar"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
        }
    }

    ScanHUD {
        id: scanHUD
        objectName: "scanHUD"
        visible: AppModel.scanner.isRunning
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.rightMargin: Theme.s(20)
        anchors.bottomMargin: Theme.s(44)
    }

    // The toast comes in just below the header, over the middle of the screen, where it covers no control.
    Toast {
        id: toast
        objectName: "toast"
        anchors.horizontalCenter: column.horizontalCenter
        anchors.top: column.top
        anchors.topMargin: header.height + Theme.s(14)
        maximumWidth: column.width - Theme.s(40)
    }

    ModalLayer {
        objectName: "newCatalogLayer"
        anchors.fill: parent
        active: AppModel.newCatalogSheet
        sheet: Component { NewCatalogSheet {} }
        onDismissRequested: AppModel.newCatalogSheet = false
    }

    ModalLayer {
        objectName: "scanResultLayer"
        anchors.fill: parent
        active: AppModel.scanResult.id !== undefined
        sheet: Component { ScanResultSheet {} }
        onDismissRequested: AppModel.dismissScanResult()
    }

    ModalLayer {
        objectName: "alertLayer"
        anchors.fill: parent
        active: AppModel.hasAlert
        sheet: Component { AlertPanel {} }
        onDismissRequested: AppModel.dismissAlert()
    }

    // ⌘= as well as ⌘+ zooms in, as keyboards differ in where "+" lies.
    Shortcut {
        sequence: "Ctrl+="
        onActivated: UIState.zoomIn()
    }
    // F1 opens the user guide, as Ctrl+? in the Help menu does.
    Shortcut {
        sequence: "F1"
        onActivated: AppLinks.openHelp()
    }

    SettingsWindow {
        id: settingsWindow
        objectName: "settingsWindow"
    }

    AboutWindow {
        id: aboutWindow
        objectName: "aboutWindow"
    }

    Component.onCompleted: {
        if (UIState.applyLaunchArguments(Qt.application.arguments))
            aboutWindow.open()
    }
}
