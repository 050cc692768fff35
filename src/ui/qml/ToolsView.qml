// The Tools screen: a row of the seven tool tabs over the current tab's pane, which scrolls. A pane is
// made the first time its tab is shown and then kept for the session, so a loaded plan, a rename form or
// a report's results are still there after a look at another tab; each pane keeps its own scroll place.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

Item {
    id: tools

    // The panes' files, in tab order.
    readonly property var paneFiles: ["ClaudeExportPane", "PlanPane", "RenamePane", "EmptyFoldersPaneView",
                                      "LargeOldPaneView", "MissingPaneView", "ComparePaneView"]
    readonly property bool noCatalogs: AppModel.catalogs.length === 0

    EmptyStateView {
        objectName: "toolsEmptyState"
        anchors.fill: parent
        visible: tools.noCatalogs
        title: "Tools work on your catalogs"
        message: "Catalog a drive (or load the sample data) to export it for Claude, apply organization plans, batch rename, and run drive reports."
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: Theme.s(14)
        spacing: Theme.s(12)
        visible: !tools.noCatalogs

        // The tabs: one row, wrapping onto a second where the zoom makes them too wide for one.
        Flow {
            id: tabRow
            objectName: "toolTabRow"
            Layout.fillWidth: true
            Layout.leftMargin: Theme.s(20)
            Layout.rightMargin: Theme.s(20)
            spacing: Theme.s(6)
            Accessible.role: Accessible.PageTabList
            Accessible.name: "Tools"

            Repeater {
                id: tabs
                model: UIState.toolTabs
                delegate: ToolTabButton {
                    required property var modelData
                    required property int index
                    objectName: "toolTab_" + index
                    text: modelData.title
                    symbol: modelData.symbol
                    checked: AppModel.toolTab === modelData.tab
                    onClicked: AppModel.toolTab = modelData.tab
                    // Left and right walk along the row, as in any tab bar.
                    Keys.onLeftPressed: tools.stepTab(index, -1)
                    Keys.onRightPressed: tools.stepTab(index, 1)
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.s(20)
            Layout.rightMargin: Theme.s(20)
            implicitHeight: Math.max(1, Theme.s(1))
            color: Theme.p.stroke
        }

        Item {
            id: paneArea
            Layout.fillWidth: true
            Layout.fillHeight: true

            Repeater {
                model: UIState.toolTabs
                delegate: Flickable {
                    id: scroller
                    required property var modelData
                    required property int index
                    readonly property bool current: AppModel.toolTab === modelData.tab
                    readonly property real margin: Theme.s(20)

                    objectName: "toolScroller_" + index
                    anchors.fill: parent
                    visible: current
                    clip: true
                    contentWidth: width
                    contentHeight: loader.height + 2 * margin
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }

                    Loader {
                        id: loader
                        objectName: "toolPaneLoader_" + scroller.index
                        x: scroller.margin
                        y: scroller.margin
                        width: scroller.width - 2 * scroller.margin
                        // At least the visible height, for the panes whose tables take what is left.
                        height: Math.max(implicitHeight, scroller.height - 2 * scroller.margin)
                        active: scroller.current || item !== null
                        source: tools.paneFiles[scroller.index] + ".qml"
                    }

                    // Keeps the control that takes the keyboard's focus in view.
                    function reveal(target) {
                        const box = target.mapToItem(scroller.contentItem, 0, 0, target.width, target.height)
                        if (box.y < contentY) contentY = Math.max(0, box.y - margin)
                        else if (box.y + box.height > contentY + height)
                            contentY = Math.min(contentHeight - height, box.y + box.height + margin - height)
                    }
                }
            }
        }
    }

    // Moves the current tab `step` places along the row and gives the new tab the focus.
    function stepTab(index, step) {
        const next = (index + step + tabs.count) % tabs.count
        AppModel.toolTab = UIState.toolTabs[next].tab
        tabs.itemAt(next).forceActiveFocus()
    }

    Connections {
        target: tools.Window.window
        function onActiveFocusItemChanged() {
            const focused = tools.Window.window ? tools.Window.window.activeFocusItem : null
            if (!focused) return
            for (let i = 0; i < paneArea.children.length; ++i) {
                const pane = paneArea.children[i]
                if (!pane.visible || !pane.reveal) continue
                for (let up = focused; up; up = up.parent) {
                    if (up === pane.contentItem) {
                        pane.reveal(focused)
                        return
                    }
                }
            }
        }
    }
}
