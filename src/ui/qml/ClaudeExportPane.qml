// The Export for Claude tab: which catalog, what the bundle holds, and the button that writes it. Offline
// catalogs are offered too: the export reads the catalog only, never the drive.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: pane
    objectName: "claudeExportPane"
    spacing: Theme.s(16)

    // The five files of the bundle: name, icon and what it is for.
    readonly property var files: [
        { name: "SUMMARY.md",
          text: "Drive stats, file-type breakdown, folder tree to depth 3, largest folders and files, duplicates and naming problems.",
          symbol: "doc.richtext.fill" },
        { name: "files.jsonl",
          text: "JSON Lines — one record per file: path, name, extension, kind and UTI, size, dates, tags, checksum (if computed) and media metadata.",
          symbol: "curlybraces" },
        { name: "catalog.xml",
          text: "The same records as XML.",
          symbol: "chevron.left.forwardslash.chevron.right" },
        { name: "README.md",
          text: "Explains every field and the organization-plan format Claude can write back.",
          symbol: "doc.text.fill" },
        { name: "organization-plan.template.json",
          text: "A starting point for a plan.",
          symbol: "doc.badge.gearshape" }
    ]

    ToolCard {
        Layout.fillWidth: true
        title: "Export a catalog for Claude"
        text: "Creates a folder an AI assistant can read and reason about — even while the drive is unplugged. Share it with Claude, ask questions about the drive, and ask for a reorganization plan you can apply with the Organization Plan tool."

        CatalogPicker {
            id: picker
            objectName: "claudeCatalogPicker"
        }

        // The five files of the bundle, each with what it is for.
        Rectangle {
            Layout.fillWidth: true
            Layout.topMargin: Theme.s(4)
            implicitHeight: fileList.implicitHeight + 2 * Theme.s(12)
            radius: Theme.s(10)
            color: Theme.alpha(Theme.p.bgBottom, 0.45)
            border.width: Math.max(1, Theme.s(1))
            border.color: Theme.alpha(Theme.p.stroke, 0.6)
            Accessible.role: Accessible.List
            Accessible.name: "Files in the export"

            ColumnLayout {
                id: fileList
                anchors.fill: parent
                anchors.margins: Theme.s(12)
                spacing: Theme.s(10)

                Repeater {
                    model: pane.files
                    delegate: RowLayout {
                        required property var modelData
                        Layout.fillWidth: true
                        spacing: Theme.s(10)
                        Accessible.role: Accessible.ListItem
                        Accessible.name: modelData.name + ": " + modelData.text

                        SvgIcon {
                            Layout.alignment: Qt.AlignTop
                            Layout.topMargin: Theme.s(1)
                            symbol: modelData.symbol
                            size: Theme.s(15)
                            color: Theme.p.accent
                        }
                        ColumnLayout {
                            Layout.fillWidth: true
                            spacing: Theme.s(2)
                            Text {
                                Layout.fillWidth: true
                                text: modelData.name
                                font: Theme.f(12.5, Font.DemiBold, true)
                                color: Theme.p.text
                                elide: Text.ElideRight
                            }
                            Text {
                                Layout.fillWidth: true
                                text: modelData.text
                                font: Theme.f(12)
                                color: Theme.p.subtext
                                wrapMode: Text.Wrap
                            }
                        }
                    }
                }
            }
        }

        LaserButton {
            objectName: "claudeExportButton"
            Layout.topMargin: Theme.s(4)
            prominent: true
            symbol: "brain.head.profile"
            text: "Export for Claude…"
            enabled: picker.selection > 0
            onClicked: AppModel.exportForClaude(picker.selection)
        }
    }

    // The pane is given at least the visible height; what it does not fill stays below the cards.
    Item { Layout.fillHeight: true }
}
