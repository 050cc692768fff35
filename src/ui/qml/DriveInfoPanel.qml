// Facts about the drive of the catalog shown in the browser: its name and state, a banner while it is
// offline, the volume's facts in a compact grid, how full it is, "Update" and the "More" menu. Where the
// panel is narrow (a narrow window, a large zoom) the facts fold into one line that says how much is
// cataloged and how full the drive is, and open on demand as lines of label and value, so the file view
// below keeps most of the window.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

GlassPanel {
    id: panel
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})

    readonly property bool known: catalog !== undefined && catalog !== null && catalog.id !== undefined
    readonly property real catalogID: known ? catalog.id : -1
    readonly property bool online: known && AppModel.onlineIDs.indexOf(catalogID) >= 0
    readonly property bool sample: known && catalog.isSample === true
    readonly property bool watched: known && AppModel.watchedIDs.indexOf(catalogID) >= 0
    readonly property string name: known ? catalog.name : ""
    readonly property string notes: known && catalog.notes ? catalog.notes : ""
    readonly property bool capacityKnown: known && catalog.capacity > 0
    readonly property real pad: Theme.s(12)
    // Whether the heading has room for the usage meter beside the name and buttons; else it goes below
    // the facts.
    readonly property bool roomyHeading: width >= Theme.s(760)
    // Narrow: the facts fold away behind a summary line.
    readonly property bool compact: !roomyHeading
    // Whether the folded facts are open.
    property bool factsOpen: false
    readonly property real used: known ? Math.max(0, Math.min(1, catalog.usedFraction)) : 0

    // How full the drive is: "62% used" over a bar that warms as the drive fills.
    component UsageMeter: ColumnLayout {
        spacing: Theme.s(4)
        Text {
            objectName: "usageText"
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignRight
            text: Math.round(panel.used * 100) + "% used"
            font: Theme.f(10.5, Font.Medium)
            color: Theme.p.subtext
            elide: Text.ElideRight
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.max(3, Theme.s(5))
            radius: height / 2
            color: Theme.alpha(Theme.p.subtext, 0.18)
            Accessible.role: Accessible.ProgressBar
            Accessible.name: Math.round(panel.used * 100) + "% used"

            Rectangle {
                width: Math.max(height, parent.width * panel.used)
                height: parent.height
                radius: height / 2
                visible: panel.used > 0
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    GradientStop { position: 0; color: Theme.p.accent }
                    GradientStop {
                        position: 1
                        color: panel.used > 0.9 ? Theme.p.danger : panel.used > 0.75 ? Theme.p.warn : Theme.p.accent2
                    }
                }
            }
        }
    }

    // The banner of an offline catalog: a sample or an imported one has no drive to insert.
    readonly property string offlineText: !known || online ? ""
        : sample || !catalog.volumeName ? "Offline catalog — browse and search freely."
        : "Drive offline — insert “" + catalog.volumeName + "” to open files. Browsing and searching still work."

    // The folded facts in one line: "130 files, 8 folders · 2.68 GB".
    readonly property string summary: !known ? ""
        : Fmt.count(catalog.fileCount) + " files, " + Fmt.count(catalog.folderCount) + " folders · "
          + Fmt.size(catalog.totalSize)

    readonly property string typeText: !known ? ""
        : catalog.isNetwork ? "Network share"
        : catalog.isFolder ? "Folder"
        : catalog.isRemovable ? "External drive" : "Internal drive"

    // The fact rows, in their order.
    readonly property var facts: !known ? [] : [
        { label: "Volume", value: catalog.displayVolume },
        { label: "Format", value: catalog.volumeFormat || "—" },
        { label: "Type", value: typeText },
        { label: "Capacity", value: catalog.capacity > 0 ? Fmt.size(catalog.capacity) : "—" },
        { label: "Free", value: catalog.freeSpace > 0 ? Fmt.size(catalog.freeSpace) : "—" },
        { label: "Cataloged", value: Fmt.count(catalog.fileCount) + " files, " + Fmt.count(catalog.folderCount) + " folders" },
        { label: "Size", value: Fmt.size(catalog.totalSize) },
        { label: "Last scan", value: Fmt.date(catalog.scannedAt) },
        { label: "UUID", value: catalog.volumeUUID || "—" }
    ]

    objectName: "driveInfoPanel"
    implicitHeight: body.implicitHeight + 2 * pad
    Accessible.role: Accessible.Grouping
    Accessible.name: "Drive of " + name

    ColumnLayout {
        id: body
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: panel.pad
        spacing: Theme.s(8)

        // The catalog's symbol, name and state, with the actions at the right.
        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s(10)

            Rectangle {
                Layout.preferredWidth: Theme.s(34)
                Layout.preferredHeight: Theme.s(34)
                Layout.alignment: Qt.AlignVCenter
                radius: Theme.s(9)
                color: Theme.alpha(panel.online ? Theme.p.accent : Theme.p.subtext, 0.1)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(panel.online ? Theme.p.accent : Theme.p.subtext, 0.32)
                SvgIcon {
                    objectName: "driveSymbol"
                    anchors.centerIn: parent
                    symbol: panel.known ? panel.catalog.symbol : ""
                    size: Theme.s(19)
                    color: panel.online ? Theme.p.accent : Theme.p.subtext
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: Theme.s(2)

                // The name, cut short only where the row is too narrow, with its marks right after it.
                // (Placed by hand: a layout here re-arranges itself while the zoom changes the name's
                // width, which Qt 6.4's layouts do not survive.)
                Item {
                    Layout.fillWidth: true
                    implicitHeight: Math.max(nameText.implicitHeight, marks.height)

                    Text {
                        id: nameText
                        objectName: "driveName"
                        width: Math.min(implicitWidth, parent.width - marks.width - Theme.s(8))
                        anchors.verticalCenter: parent.verticalCenter
                        horizontalAlignment: Text.AlignLeft
                        text: panel.name
                        font: Theme.f(16, Font.Bold)
                        color: Theme.p.text
                        elide: Text.ElideRight
                        HoverHandler { id: nameHover }
                        HelpTip { text: panel.name; shown: nameHover.hovered && nameText.truncated }
                    }
                    Row {
                        id: marks
                        x: nameText.width + Theme.s(8)
                        anchors.verticalCenter: parent.verticalCenter
                        spacing: Theme.s(8)
                        Rectangle {
                            objectName: "sampleBadge"
                            visible: panel.sample
                            anchors.verticalCenter: parent.verticalCenter
                            implicitWidth: sampleText.implicitWidth + Theme.s(12)
                            implicitHeight: sampleText.implicitHeight + Theme.s(4)
                            radius: Theme.s(5)
                            color: Theme.alpha(Theme.p.accent2, 0.14)
                            border.width: Math.max(1, Theme.s(1))
                            border.color: Theme.alpha(Theme.p.accent2, 0.5)
                            Accessible.role: Accessible.StaticText
                            Accessible.name: "Sample"
                            Text {
                                id: sampleText
                                anchors.centerIn: parent
                                text: "SAMPLE"
                                font: Theme.f(9.5, Font.Bold)
                                color: Theme.p.accent2
                            }
                        }
                        Row {
                            anchors.verticalCenter: parent.verticalCenter
                            spacing: Theme.s(5)
                            StatusLamp {
                                anchors.verticalCenter: parent.verticalCenter
                                online: panel.online
                            }
                            Text {
                                objectName: "driveStatus"
                                anchors.verticalCenter: parent.verticalCenter
                                text: panel.online ? "ONLINE" : "OFFLINE"
                                font.family: Theme.sansFamily
                                font.pixelSize: Theme.f(10).pixelSize
                                font.weight: Font.Bold
                                font.letterSpacing: Theme.s(0.8)
                                color: panel.online ? Theme.p.ok : Theme.p.subtext
                            }
                        }
                    }
                }

                // The notes the user keeps about this drive, on one line; whole on hover.
                Text {
                    id: notesText
                    objectName: "driveNotes"
                    visible: panel.notes.length > 0
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignLeft
                    text: panel.notes.replace(/\s*\n\s*/g, " · ")
                    font.family: Theme.sansFamily
                    font.pixelSize: Theme.f(11.5).pixelSize
                    font.italic: true
                    color: Theme.p.subtext
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    HoverHandler { id: notesHover }
                    HelpTip { text: panel.notes; shown: notesHover.hovered && notesText.truncated }
                }
            }

            // How full the drive is, beside the buttons where the heading has room.
            UsageMeter {
                objectName: "usageBar"
                visible: panel.capacityKnown && panel.roomyHeading
                Layout.alignment: Qt.AlignVCenter
                Layout.preferredWidth: Theme.s(170)
            }

            // A disabled button takes no hover, so the help text hangs on this holder instead.
            Item {
                Layout.alignment: Qt.AlignVCenter
                implicitWidth: updateButton.implicitWidth
                implicitHeight: updateButton.implicitHeight
                HoverHandler { id: updateHover }
                HelpTip {
                    id: updateTip
                    objectName: "updateTip"
                    text: panel.online ? "Rescan and record what was added, changed or removed (Ctrl+R)"
                                       : "Connect the drive to update this catalog"
                    shown: updateHover.hovered
                }
                LaserButton {
                    id: updateButton
                    objectName: "driveUpdateButton"
                    anchors.fill: parent
                    compact: true
                    symbol: "arrow.triangle.2.circlepath"
                    text: "Update"
                    enabled: panel.online && !AppModel.scanner.isRunning
                    Accessible.description: updateTip.text
                    onClicked: AppModel.rescan(panel.catalogID)
                }
            }

            LaserButton {
                id: moreButton
                objectName: "driveMoreButton"
                Layout.alignment: Qt.AlignVCenter
                compact: true
                symbol: "ellipsis.circle"
                text: "More"
                enabled: panel.known
                Accessible.role: Accessible.ButtonMenu
                onClicked: moreMenu.popup(moreButton, 0, moreButton.height + Theme.s(4))
            }
        }

        // Why files cannot be opened while the drive is away.
        Rectangle {
            objectName: "offlineBanner"
            visible: panel.offlineText.length > 0
            Layout.fillWidth: true
            implicitHeight: bannerText.implicitHeight + Theme.s(10)
            radius: Theme.s(7)
            color: Theme.alpha(Theme.p.warn, 0.09)
            border.width: Math.max(1, Theme.s(1))
            border.color: Theme.alpha(Theme.p.warn, 0.32)
            Accessible.role: Accessible.StaticText
            Accessible.name: panel.offlineText

            SvgIcon {
                id: bannerIcon
                x: Theme.s(9)
                anchors.verticalCenter: parent.verticalCenter
                symbol: "externaldrive.badge.exclamationmark"
                size: Theme.s(14)
                color: Theme.p.warn
            }
            Text {
                id: bannerText
                objectName: "offlineBannerText"
                anchors.left: bannerIcon.right
                anchors.leftMargin: Theme.s(7)
                anchors.right: parent.right
                anchors.rightMargin: Theme.s(9)
                anchors.verticalCenter: parent.verticalCenter
                text: panel.offlineText
                font: Theme.f(11.5)
                color: Theme.alpha(Theme.p.text, 0.9)
                wrapMode: Text.Wrap
            }
        }

        // The facts in as many columns as fit, so the panel stays a few lines tall.
        GridLayout {
            id: factGrid
            visible: !panel.compact
            Layout.fillWidth: true
            // Nine facts: five columns make two lines, three make three; two only where nothing else fits.
            readonly property int fit: Math.floor((panel.width - 2 * panel.pad) / Theme.s(150))
            columns: fit >= 5 ? 5 : fit >= 3 ? 3 : 2
            columnSpacing: Theme.s(16)
            rowSpacing: Theme.s(7)

            // Always made, only hidden: Qt 6.4's layouts crash when their items go while they are being
            // arranged, as on a change of zoom.
            Repeater {
                model: panel.facts
                delegate: DriveInfoFact {
                    required property var modelData
                    objectName: "driveFact:" + modelData.label
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.minimumWidth: 0
                    label: modelData.label
                    value: modelData.value
                }
            }
        }

        // Narrow: the summary line with the button that opens the facts, and how full the drive is.
        Item {
            visible: panel.compact
            Layout.fillWidth: true
            implicitHeight: factsToggle.implicitHeight

            AbstractButton {
                id: factsToggle
                objectName: "driveFactsToggle"
                hoverEnabled: true
                checkable: true
                checked: panel.factsOpen
                onToggled: panel.factsOpen = checked
                leftPadding: Theme.s(4)
                rightPadding: Theme.s(8)
                topPadding: Theme.s(3)
                bottomPadding: Theme.s(3)
                text: panel.factsOpen ? "Hide details" : "Details"
                Accessible.role: Accessible.CheckBox
                Accessible.name: "Drive details"
                Accessible.checkable: true
                Accessible.checked: checked
                Accessible.onToggleAction: toggle()
                Accessible.onPressAction: toggle()
                contentItem: Row {
                    spacing: Theme.s(5)
                    SvgIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "chevron.right"
                        size: Theme.s(10)
                        rotation: panel.factsOpen ? 90 : 0
                        color: factsToggle.hovered ? Theme.p.accent : Theme.p.subtext
                    }
                    SectionTitle {
                        anchors.verticalCenter: parent.verticalCenter
                        text: factsToggle.text
                        font.pixelSize: Theme.f(9.5).pixelSize
                        color: factsToggle.hovered ? Theme.p.text : Theme.p.subtext
                    }
                }
                background: Rectangle {
                    radius: Theme.s(5)
                    color: Theme.alpha(Theme.p.accent, factsToggle.down ? 0.2 : factsToggle.hovered ? 0.1 : 0)
                    border.width: factsToggle.visualFocus ? Math.max(1, Theme.s(1)) : 0
                    border.color: Theme.p.glow
                }
            }
            Text {
                objectName: "driveFactsSummary"
                anchors.left: factsToggle.right
                anchors.leftMargin: Theme.s(10)
                anchors.right: compactUsage.visible ? compactUsage.left : parent.right
                anchors.rightMargin: Theme.s(10)
                anchors.verticalCenter: factsToggle.verticalCenter
                text: panel.summary
                font: Theme.f(12, Font.Medium)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            Row {
                id: compactUsage
                objectName: "usageBarCompact"
                visible: panel.capacityKnown
                anchors.right: parent.right
                anchors.verticalCenter: factsToggle.verticalCenter
                spacing: Theme.s(8)
                Accessible.role: Accessible.ProgressBar
                Accessible.name: Math.round(panel.used * 100) + "% used"
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Math.round(panel.used * 100) + "% used"
                    font: Theme.f(10.5, Font.Medium)
                    color: Theme.p.subtext
                }
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: Theme.s(90)
                    height: Math.max(3, Theme.s(5))
                    radius: height / 2
                    color: Theme.alpha(Theme.p.subtext, 0.18)
                    Rectangle {
                        width: Math.max(height, parent.width * panel.used)
                        height: parent.height
                        radius: height / 2
                        visible: panel.used > 0
                        color: panel.used > 0.9 ? Theme.p.danger : panel.used > 0.75 ? Theme.p.warn : Theme.p.accent
                    }
                }
            }
        }

        // The opened facts, as many to a line as fit.
        Flow {
            objectName: "driveFactsFlow"
            visible: panel.compact && panel.factsOpen
            Layout.fillWidth: true
            spacing: Theme.s(6)

            Repeater {
                model: panel.facts
                delegate: DriveInfoFact {
                    required property var modelData
                    objectName: "driveFactInline:" + modelData.label
                    inline: true
                    // The label and value with room to breathe before the next fact.
                    width: Math.min(implicitWidth + Theme.s(18), parent.width)
                    height: implicitHeight
                    label: modelData.label
                    value: modelData.value
                }
            }
        }
    }

    ThemedMenu {
        id: moreMenu
        objectName: "driveMoreMenu"

        ThemedMenuItem {
            objectName: "driveMore.notes"
            text: "Edit Notes…"
            onTriggered: AppModel.promptNotes(panel.catalogID)
        }
        ThemedMenuSeparator {}
        ThemedMenuItem {
            objectName: "driveMore.csv"
            text: "Export CSV…"
            onTriggered: AppModel.exportCSV([panel.catalogID])
        }
        ThemedMenuItem {
            objectName: "driveMore.json"
            text: "Export JSON…"
            onTriggered: AppModel.exportJSON([panel.catalogID])
        }
        ThemedMenuItem {
            objectName: "driveMore.web"
            text: "Export Web Pages…"
            onTriggered: AppModel.exportWeb([panel.catalogID], panel.name + " Inventory", true, false)
        }
        ThemedMenuItem {
            objectName: "driveMore.claude"
            text: "Export for Claude…"
            onTriggered: AppModel.exportForClaude(panel.catalogID)
        }
        ThemedMenuSeparator {}
        ThemedMenuItem {
            objectName: "driveMore.watch"
            text: (panel.watched ? "✓ " : "") + "Auto-Update When Files Change"
            onTriggered: AppModel.toggleWatch(panel.catalogID)
        }
        ThemedMenuSeparator {}
        ThemedMenuItem {
            objectName: "driveMore.delete"
            text: "Delete Catalog…"
            onTriggered: AppModel.confirmDelete(panel.catalogID)
        }
    }
}
