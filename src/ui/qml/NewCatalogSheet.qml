// What to scan and how: mounted volumes or a folder, a name, a group and the options.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window
import Orrelin

GlassPanel {
    id: sheet
    objectName: "newCatalogSheet"

    NewCatalogState { id: sheetState }

    Accessible.role: Accessible.Dialog
    Accessible.name: "Catalog a Drive or Folder"
    Accessible.description: "Pick a mounted drive, network share or any folder to catalog."

    readonly property real pad: Theme.s(24)
    readonly property real gap: Theme.s(10)
    // The window's room, less a margin; the design size while the sheet is not yet in a window.
    readonly property real roomWidth: Window.width > 0 ? Window.width - Theme.s(32) : Theme.s(760)
    readonly property real roomHeight: Window.height > 0 ? Window.height - Theme.s(32) : 1e6
    readonly property real naturalHeight: header.implicitHeight + body.implicitHeight
                                          + footer.implicitHeight + 2 * pad + 2 * column.spacing

    // The design size when the window has room for it; else the middle scrolls (a short window, a high
    // zoom, many volumes) while the header and the buttons stay in view.
    width: Math.min(Theme.s(760), roomWidth)
    height: Math.min(naturalHeight, roomHeight)
    highlight: true
    // Opaque, so the screen below does not show through the sheet.
    color: Qt.tint(Theme.p.bgBottom, Theme.p.panel)

    // Brings a control that takes the keyboard focus into view in the scrolling middle.
    function reveal(item) {
        if (!item || !scrollArea.contentItem) return
        for (let it = item; it && it !== scrollArea.contentItem; it = it.parent) {
            if (it.parent === scrollArea.contentItem || it === body) {
                const top = item.mapToItem(scrollArea.contentItem, 0, 0).y
                const bottom = top + item.height
                if (top < scrollArea.contentY) scrollArea.contentY = Math.max(0, top - sheet.gap)
                else if (bottom > scrollArea.contentY + scrollArea.height)
                    scrollArea.contentY = Math.min(scrollArea.contentHeight - scrollArea.height,
                                                   bottom - scrollArea.height + sheet.gap)
                return
            }
        }
    }
    Connections {
        target: sheet.Window.window
        function onActiveFocusItemChanged() { sheet.reveal(sheet.Window.activeFocusItem) }
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: sheet.pad
        spacing: Theme.s(14)

        // 1. Header
        RowLayout {
            id: header
            Layout.fillWidth: true
            spacing: Theme.s(16)
            RadarView {
                size: Theme.s(56)
                Layout.preferredWidth: size
                Layout.preferredHeight: size
                active: true
                rings: 2
                blips: 3
                Layout.alignment: Qt.AlignTop
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: Theme.s(4)
                Text {
                    Layout.fillWidth: true
                    text: "Catalog a Drive or Folder"
                    font: Theme.f(20, Font.Bold)
                    color: Theme.p.text
                    elide: Text.ElideRight
                }
                Text {
                    Layout.fillWidth: true
                    text: "Pick a mounted drive, network share or any folder. Its full contents are recorded "
                          + "so you can search and browse it after it is disconnected."
                    wrapMode: Text.WordWrap
                    font: Theme.f(12)
                    color: Theme.p.subtext
                    lineHeight: 1.15
                }
            }
        }

        Flickable {
            id: scrollArea
            objectName: "newCatalogBody"
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentHeight: body.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {
                id: scrollBar
                policy: scrollArea.contentHeight > scrollArea.height + 1 ? ScrollBar.AlwaysOn
                                                                         : ScrollBar.AlwaysOff
            }

            ColumnLayout {
                id: body
                width: scrollArea.width
                       - (scrollBar.policy === ScrollBar.AlwaysOn ? scrollBar.width + Theme.s(6) : 0)
                spacing: Theme.s(14)

                // 2. What to scan
                SectionTitle {
                    id: volumesCaption
                    text: "Mounted volumes"
                }
                Grid {
                    id: volumeGrid
                    Layout.fillWidth: true
                    // As many columns of at least 200 as fit, sharing the width evenly.
                    readonly property real cellWidth: (width - (columns - 1) * columnSpacing) / columns
                    columns: Math.max(1, Math.floor((width + sheet.gap) / (Theme.s(200) + sheet.gap)))
                    columnSpacing: sheet.gap
                    rowSpacing: sheet.gap
                    Repeater {
                        model: sheetState.volumes
                        VolumeCard {
                            objectName: "volumeCard" + index
                            width: volumeGrid.cellWidth
                            volume: modelData
                            selected: sheetState.chosen.length > 0 && sheetState.chosen === modelData.url
                            onClicked: sheetState.chooseVolume(index)
                        }
                    }
                }
                RowLayout {
                    id: chooseFolder
                    Layout.fillWidth: true
                    spacing: Theme.s(12)
                    LaserButton {
                        objectName: "chooseFolderButton"
                        text: "Choose a Folder…"
                        symbol: "folder.badge.plus"
                        onClicked: sheetState.chooseFolder()
                    }
                    // What will be scanned, when it is not one of the volumes above.
                    Text {
                        objectName: "chosenPath"
                        Layout.fillWidth: true
                        text: sheetState.chosen
                        elide: Text.ElideMiddle
                        font: Theme.f(11, Font.Normal, true)
                        color: Theme.p.subtext
                    }
                }

                // 3 and 4. The catalog and the options
                GridLayout {
                    id: form
                    Layout.fillWidth: true
                    columns: 2
                    columnSpacing: Theme.s(12)
                    rowSpacing: Theme.s(8)

                    SectionTitle {
                        Layout.columnSpan: 2
                        Layout.topMargin: Theme.s(4)
                        text: "Catalog"
                    }
                    Text {
                        text: "Name"
                        font: Theme.f(13)
                        color: Theme.p.subtext
                    }
                    TextField {
                        id: nameField
                        objectName: "catalogNameField"
                        Layout.fillWidth: true
                        placeholderText: "Catalog name"
                        Accessible.name: "Name"
                        Accessible.description: placeholderText
                        text: sheetState.name
                        onTextEdited: sheetState.name = text
                        onAccepted: sheetState.start()
                        font: Theme.f(13)
                        color: Theme.p.text
                        placeholderTextColor: Theme.alpha(Theme.p.subtext, 0.7)
                        selectionColor: Theme.alpha(Theme.p.accent, 0.45)
                        selectedTextColor: Theme.p.text
                        leftPadding: Theme.s(10)
                        rightPadding: Theme.s(10)
                        topPadding: Theme.s(6)
                        bottomPadding: Theme.s(6)
                        background: Rectangle {
                            radius: Theme.s(7)
                            color: Theme.alpha(Theme.p.bgBottom, 0.6)
                            border.width: Math.max(1, Theme.s(1))
                            border.color: nameField.activeFocus ? Theme.p.accent : Theme.p.stroke
                        }
                    }
                    Text {
                        text: "Group"
                        font: Theme.f(13)
                        color: Theme.p.subtext
                    }
                    ComboBox {
                        id: groupPicker
                        objectName: "groupPicker"
                        Layout.preferredWidth: Theme.s(280)
                        model: sheetState.groupChoices
                        textRole: "name"
                        Accessible.name: "Group"
                        currentIndex: sheetState.groupIndex
                        onActivated: (index) => sheetState.groupIndex = index
                        font: Theme.f(13)
                        leftPadding: Theme.s(10)
                        rightPadding: Theme.s(30)
                        topPadding: Theme.s(6)
                        bottomPadding: Theme.s(6)
                        contentItem: Text {
                            text: groupPicker.displayText
                            font: groupPicker.font
                            color: Theme.p.text
                            verticalAlignment: Text.AlignVCenter
                            elide: Text.ElideRight
                        }
                        indicator: SvgIcon {
                            x: groupPicker.width - width - Theme.s(10)
                            y: (groupPicker.height - height) / 2
                            symbol: "chevron.down"
                            size: Theme.s(11)
                            color: Theme.p.subtext
                        }
                        background: Rectangle {
                            radius: Theme.s(7)
                            color: Theme.alpha(Theme.p.accent, groupPicker.pressed ? 0.18 : groupPicker.hovered ? 0.12 : 0.07)
                            border.width: Math.max(1, Theme.s(1))
                            border.color: groupPicker.visualFocus ? Theme.p.accent : Theme.p.stroke
                        }
                        delegate: ItemDelegate {
                            required property var modelData
                            required property int index
                            width: groupPicker.width
                            text: modelData.name
                            font: groupPicker.font
                            highlighted: groupPicker.highlightedIndex === index
                            contentItem: Text {
                                text: parent.text
                                font: parent.font
                                color: Theme.p.text
                                elide: Text.ElideRight
                                verticalAlignment: Text.AlignVCenter
                            }
                            background: Rectangle {
                                color: parent.highlighted ? Theme.alpha(Theme.p.accent, 0.25) : "transparent"
                            }
                        }
                        popup.background: Rectangle {
                            radius: Theme.s(7)
                            color: Theme.p.bgBottom
                            border.width: Math.max(1, Theme.s(1))
                            border.color: Theme.p.stroke
                        }
                    }

                    SectionTitle {
                        Layout.columnSpan: 2
                        Layout.topMargin: Theme.s(10)
                        text: "Options"
                    }
                    ColumnLayout {
                        Layout.columnSpan: 2
                        Layout.fillWidth: true
                        spacing: Theme.s(2)
                        OptionSwitch {
                            objectName: "optionMetadata"
                            Layout.fillWidth: true
                            text: "Extract media metadata (audio, video, photos, PDFs)"
                            checked: sheetState.metadata
                            onToggled: sheetState.metadata = checked
                        }
                        OptionSwitch {
                            objectName: "optionThumbnails"
                            Layout.fillWidth: true
                            text: "Generate thumbnails for images, video and PDFs"
                            checked: sheetState.thumbnails
                            onToggled: sheetState.thumbnails = checked
                        }
                        OptionSwitch {
                            objectName: "optionHashes"
                            Layout.fillWidth: true
                            text: "Compute SHA-256 checksums (slower, exact duplicates)"
                            checked: sheetState.hashes
                            onToggled: sheetState.hashes = checked
                        }
                        OptionSwitch {
                            objectName: "optionHidden"
                            Layout.fillWidth: true
                            text: "Include hidden files"
                            checked: sheetState.includeHidden
                            onToggled: sheetState.includeHidden = checked
                        }
                        OptionSwitch {
                            objectName: "optionPackages"
                            Layout.fillWidth: true
                            text: "Treat apps and packages as single files"
                            checked: sheetState.treatPackagesAsFiles
                            onToggled: sheetState.treatPackagesAsFiles = checked
                        }
                    }
                }
            }
        }

        // 5. Footer
        ColumnLayout {
            id: footer
            Layout.fillWidth: true
            spacing: Theme.s(14)
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: Math.max(1, Theme.s(1))
                color: Theme.p.stroke
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: Theme.s(10)
                Text {
                    Layout.fillWidth: true
                    text: "Large drives can take a while — you can keep working, pause or cancel at any time."
                    wrapMode: Text.WordWrap
                    font: Theme.f(11)
                    color: Theme.p.subtext
                }
                LaserButton {
                    objectName: "newCatalogCancel"
                    text: "Cancel"
                    onClicked: sheetState.cancel()
                }
                LaserButton {
                    objectName: "startScanButton"
                    text: "Start Scan"
                    symbol: "dot.radiowaves.left.and.right"
                    prominent: true
                    enabled: sheetState.canStart
                    onClicked: sheetState.start()
                }
            }
        }
    }

    // Escape cancels, Return starts; neither while an alert or the group list is up above the sheet.
    Shortcut {
        sequence: "Escape"
        enabled: !AppModel.hasAlert && !groupPicker.popup.visible
        onActivated: sheetState.cancel()
    }
    Shortcut {
        sequences: ["Return", "Enter"]
        enabled: sheetState.canStart && !AppModel.hasAlert && !groupPicker.popup.visible
        onActivated: sheetState.start()
    }
}
