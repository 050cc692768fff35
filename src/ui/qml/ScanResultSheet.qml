// How a finished scan went: what it added, changed and removed.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window
import Orrelin

GlassPanel {
    id: sheet
    objectName: "scanResultSheet"

    // The result shown; an empty map for the moment the sheet is on its way out.
    readonly property var result: AppModel.scanResult

    Accessible.role: Accessible.Dialog
    Accessible.name: resultTitle.text
    Accessible.description: resultLine.text
    // 0 added, 1 changed, 2 removed.
    property int tab: 0

    readonly property bool cancelled: result.cancelled === true
    readonly property var paths: [result.added || [], result.changed || [], result.removed || []][tab]
    readonly property real trueCount: [result.addedCount || 0, result.changedCount || 0,
                                       result.removedCount || 0][tab]
    readonly property real pad: Theme.s(24)

    // The design width, or the window's less a margin when it is narrower (a high zoom).
    width: Math.min(Theme.s(600), Window.width > 0 ? Window.width - Theme.s(32) : Theme.s(600))
    height: column.implicitHeight + 2 * pad
    highlight: true
    // Opaque, so the screen below does not show through the sheet.
    color: Qt.tint(Theme.p.bgBottom, Theme.p.panel)

    function done() { AppModel.dismissScanResult() }
    function browse() {
        AppModel.selectedCatalogID = result.catalogID
        AppModel.section = Nav.AppSection.browse
        AppModel.dismissScanResult()
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: sheet.pad
        spacing: Theme.s(12)

        SvgIcon {
            objectName: "resultIcon"
            Layout.alignment: Qt.AlignHCenter
            symbol: sheet.cancelled ? "exclamationmark.triangle.fill" : "checkmark.seal.fill"
            color: sheet.cancelled ? Theme.p.warn : Theme.p.ok
            size: Theme.s(44)
        }
        Text {
            id: resultTitle
            objectName: "resultTitle"
            Layout.alignment: Qt.AlignHCenter
            text: sheet.cancelled ? "Scan Cancelled"
                                  : sheet.result.isRescan ? "Catalog Updated" : "Catalog Created"
            font: Theme.f(20, Font.Bold)
            color: Theme.p.text
        }
        Text {
            id: resultLine
            objectName: "resultLine"
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            // A long name without spaces breaks anywhere rather than running out of the sheet.
            wrapMode: Text.Wrap
            text: "“" + (sheet.result.catalogName || "") + "” · finished in "
                  + Number(sheet.result.seconds || 0).toFixed(1) + " seconds"
                  + (sheet.cancelled ? " · the catalog holds what was scanned so far" : "")
            font: Theme.f(12)
            color: Theme.p.subtext
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.s(4)
            spacing: Theme.s(10)
            ResultTile {
                objectName: "resultTileAdded"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                count: sheet.result.addedCount || 0
                label: "Added"
                tint: Theme.p.ok
                selected: sheet.tab === 0
                onClicked: sheet.tab = 0
            }
            ResultTile {
                objectName: "resultTileChanged"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                count: sheet.result.changedCount || 0
                label: "Changed"
                tint: Theme.p.accent
                selected: sheet.tab === 1
                onClicked: sheet.tab = 1
            }
            ResultTile {
                objectName: "resultTileRemoved"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                count: sheet.result.removedCount || 0
                label: "Removed"
                tint: Theme.p.danger
                selected: sheet.tab === 2
                onClicked: sheet.tab = 2
            }
        }

        Rectangle {
            Layout.fillWidth: true
            // The list takes up to 260, less in a short window, so the sheet always fits.
            Layout.preferredHeight: Math.max(Theme.s(90), Math.min(Theme.s(260), Window.height - Theme.s(420)))
            radius: Theme.s(10)
            color: Theme.alpha(Theme.p.bgBottom, 0.55)
            border.width: Math.max(1, Theme.s(1))
            border.color: Theme.p.stroke

            ListView {
                id: list
                objectName: "resultList"
                anchors.fill: parent
                anchors.margins: Theme.s(8)
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                model: sheet.paths
                reuseItems: true
                ScrollBar.vertical: ScrollBar {}
                delegate: Text {
                    required property var modelData
                    width: ListView.view.width - Theme.s(12)
                    leftPadding: Theme.s(4)
                    topPadding: Theme.s(1)
                    bottomPadding: Theme.s(1)
                    // One line even for a name with a line break in it.
                    text: String(modelData).replace(/[\r\n]+/g, " ")
                    elide: Text.ElideMiddle
                    font: Theme.f(11, Font.Normal, true)
                    color: Theme.p.text
                    opacity: 0.85
                }
                // The paths the scan kept are all shown; a last row counts the ones it did not keep.
                footer: sheet.trueCount > sheet.paths.length ? moreRow : null
                Component {
                    id: moreRow
                    Text {
                        objectName: "resultMore"
                        width: list.width - Theme.s(12)
                        leftPadding: Theme.s(4)
                        topPadding: Theme.s(4)
                        text: "…and " + Fmt.count(sheet.trueCount - sheet.paths.length) + " more"
                        font: Theme.f(11, Font.DemiBold)
                        color: Theme.p.subtext
                    }
                }
            }
            Text {
                objectName: "resultEmpty"
                anchors.centerIn: parent
                visible: sheet.paths.length === 0
                text: "No items in this list."
                font: Theme.f(12)
                color: Theme.p.subtext
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.s(4)
            spacing: Theme.s(10)
            Item { Layout.fillWidth: true }
            LaserButton {
                objectName: "browseCatalogButton"
                text: "Browse Catalog"
                onClicked: sheet.browse()
            }
            LaserButton {
                objectName: "resultDoneButton"
                text: "Done"
                prominent: true
                onClicked: sheet.done()
            }
        }
    }

    // Only while there is a result to show: a sheet being put away must not keep taking Return from the
    // fields of the window until it is finally deleted.
    Shortcut {
        sequences: ["Return", "Enter", "Escape"]
        enabled: AppModel.scanResult.id !== undefined && !AppModel.hasAlert
        onActivated: sheet.done()
    }
}
