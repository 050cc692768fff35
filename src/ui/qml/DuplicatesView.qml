// The Duplicates screen: how to match copies, the sweep, and the sets found, ranked by the space they
// waste, each a card that opens to its copies. Settings and results live in DuplicateState, so they are
// still here when the user comes back.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

Item {
    id: view
    objectName: "duplicatesView"

    readonly property bool noCatalogs: AppModel.catalogs.length === 0
    readonly property int groupCount: DuplicateState.groupCount

    // "3 duplicate sets · 1.2 GB could be reclaimed".
    readonly property string headerLine: Fmt.count(groupCount) + " duplicate set" + (groupCount === 1 ? "" : "s")
                                         + " · " + Fmt.size(DuplicateState.wastedBytes) + " could be reclaimed"

    // The catalog column of the copies: the longest catalog name, within bounds.
    FontMetrics { id: catalogMetrics; font: Theme.f(12, Font.DemiBold) }
    readonly property real catalogWidth: {
        let widest = 0 * catalogMetrics.height  // Follows the font (the zoom), not only the names.
        for (const c of AppModel.catalogs) widest = Math.max(widest, catalogMetrics.advanceWidth(c.name))
        return Math.min(Math.max(Math.ceil(widest) + Theme.s(2), Theme.s(60)), Theme.s(190))
    }

    EmptyStateView {
        objectName: "duplicatesNoCatalogs"
        anchors.fill: parent
        visible: view.noCatalogs
        title: "No catalogs to compare"
        message: "Duplicates are found across all of your cataloged drives. Add a drive or load the sample data to try it."
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.s(20)
        anchors.rightMargin: Theme.s(20)
        anchors.topMargin: Theme.s(14)
        anchors.bottomMargin: Theme.s(14)
        spacing: Theme.s(12)
        visible: !view.noCatalogs

        // The controls in reading order: how copies match and how small they may be on the first line,
        // which drives on the second, the sweep at its right. Each line breaks in two where it would not
        // fit (a narrow window, a large zoom).
        GlassPanel {
            Layout.fillWidth: true
            implicitHeight: controls.implicitHeight + 2 * Theme.s(12)
            radius: Theme.s(12)

            ColumnLayout {
                id: controls
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: Theme.s(12)
                anchors.leftMargin: Theme.s(14)
                spacing: Theme.s(8)

                readonly property real gap: Theme.s(24)
                readonly property real sliderMinimum: Theme.s(140)
                readonly property bool matchAndSizeFit: width >= matchGroup.implicitWidth + gap + sizeLabel.implicitWidth
                                                        + sliderMinimum + minSizeText.width + 2 * Theme.s(8)
                readonly property bool scopeFits: width >= crossOnly.implicitWidth + scope.implicitWidth + gap
                                                  + findBox.width + gap

                GridLayout {
                    Layout.fillWidth: true
                    columns: controls.matchAndSizeFit ? 2 : 1
                    columnSpacing: controls.gap
                    rowSpacing: Theme.s(8)

                    RowLayout {
                        id: matchGroup
                        Layout.preferredHeight: Theme.s(32)
                        spacing: Theme.s(8)
                        SvgIcon {
                            symbol: "square.on.square"
                            size: Theme.s(18)
                            color: Theme.p.accent
                        }
                        Text {
                            text: "Match by"
                            font: Theme.f(12.5)
                            color: Theme.p.subtext
                        }
                        ThemedComboBox {
                            objectName: "duplicatesMode"
                            Layout.preferredWidth: Theme.s(178)
                            font: Theme.f(12.5)
                            model: DuplicateState.modeNames
                            currentIndex: DuplicateState.mode
                            Accessible.name: "Match by, " + displayText
                            onActivated: index => DuplicateState.mode = index
                        }
                    }

                    RowLayout {
                        Layout.fillWidth: true
                        Layout.preferredHeight: Theme.s(32)
                        spacing: Theme.s(8)
                        Text {
                            id: sizeLabel
                            text: "Minimum size"
                            font: Theme.f(12.5)
                            color: Theme.p.subtext
                        }
                        Slider {
                            id: slider
                            objectName: "duplicatesMinSize"
                            Layout.fillWidth: true
                            Layout.minimumWidth: controls.sliderMinimum
                            Layout.maximumWidth: Theme.s(460)
                            from: 0
                            to: 1000
                            stepSize: 1
                            value: DuplicateState.minSizeMB
                            Accessible.name: "Minimum size, " + minSizeText.text
                            onMoved: DuplicateState.minSizeMB = value
                            background: Rectangle {
                                x: slider.leftPadding
                                y: slider.topPadding + slider.availableHeight / 2 - height / 2
                                width: slider.availableWidth
                                height: Theme.s(4)
                                radius: height / 2
                                color: Theme.alpha(Theme.p.text, 0.14)
                                Rectangle {
                                    width: slider.visualPosition * parent.width
                                    height: parent.height
                                    radius: parent.radius
                                    gradient: Gradient {
                                        orientation: Gradient.Horizontal
                                        GradientStop { position: 0; color: Theme.p.accent }
                                        GradientStop { position: 1; color: Theme.p.accent2 }
                                    }
                                }
                            }
                            handle: Rectangle {
                                x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
                                y: slider.topPadding + slider.availableHeight / 2 - height / 2
                                width: Theme.s(16)
                                height: width
                                radius: width / 2
                                color: slider.pressed ? Qt.lighter(Theme.p.text, 1.1) : Theme.p.text
                                border.width: Math.max(1, Theme.s(slider.visualFocus ? 2 : 1))
                                border.color: slider.visualFocus ? Theme.p.accent : Theme.alpha(Theme.p.glow, 0.6)
                            }
                        }
                        // Wide enough for "1,000 MB" and "999 MB", so the slider does not shift as it moves.
                        Text {
                            id: minSizeText
                            objectName: "duplicatesMinSizeText"
                            Layout.preferredWidth: Theme.s(72)
                            text: Fmt.size(DuplicateState.minSizeMB * 1e6)
                            font: Theme.f(12.5, Font.Normal, true)
                            color: Theme.p.text
                        }
                        Item { Layout.fillWidth: true }
                    }
                }

                GridLayout {
                    Layout.fillWidth: true
                    columns: controls.scopeFits ? 4 : 3
                    columnSpacing: controls.gap
                    rowSpacing: Theme.s(8)

                    OptionSwitch {
                        id: crossOnly
                        objectName: "duplicatesCrossOnly"
                        Layout.preferredHeight: Theme.s(32)
                        text: "Only across different drives"
                        font: Theme.f(12.5)
                        checked: DuplicateState.crossOnly
                        onToggled: DuplicateState.crossOnly = checked
                    }
                    CatalogScopeMenu {
                        id: scope
                        objectName: "duplicatesScope"
                        Layout.alignment: Qt.AlignVCenter
                        ids: Array.from(DuplicateState.catalogIDs)
                        onChosen: newIDs => DuplicateState.catalogIDs = newIDs
                    }
                    Item {
                        Layout.row: 0
                        Layout.column: 2
                        Layout.fillWidth: true
                    }
                    // The sweep, or its spinner in the same place while it runs; at the right of its line, or
                    // of a line of its own.
                    Item {
                        id: findBox
                        Layout.row: controls.scopeFits ? 0 : 1
                        Layout.column: controls.scopeFits ? 3 : 0
                        Layout.columnSpan: controls.scopeFits ? 1 : 3
                        Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
                        implicitWidth: findButton.implicitWidth
                        implicitHeight: Math.max(findButton.implicitHeight, Theme.s(32))
                        LaserButton {
                            id: findButton
                            objectName: "duplicatesFind"
                            anchors.right: parent.right
                            anchors.verticalCenter: parent.verticalCenter
                            visible: !DuplicateState.busy
                            prominent: true
                            symbol: "magnifyingglass"
                            text: "Find Duplicates"
                            onClicked: DuplicateState.run()
                        }
                        SearchSpinner {
                            objectName: "duplicatesSpinner"
                            anchors.verticalCenter: parent.verticalCenter
                            anchors.right: parent.right
                            anchors.rightMargin: (findButton.width - width) / 2
                            visible: DuplicateState.busy
                            size: Theme.s(20)
                        }
                    }
                }
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            // Before the first sweep.
            DuplicatesNote {
                objectName: "duplicatesReady"
                anchors.centerIn: parent
                visible: !DuplicateState.ran && !DuplicateState.busy
                symbol: "square.on.square"
                title: "Ready to sweep for duplicates"
                message: "Compare by name and size, by SHA-256 checksum (when checksums were recorded during scanning), or by size alone. Results are ranked by wasted space."
            }
            // The first sweep, under way.
            RadarView {
                anchors.centerIn: parent
                visible: !DuplicateState.ran && DuplicateState.busy
                size: Math.min(Theme.s(150), parent.height * 0.6)
                active: visible
            }
            // A sweep that found nothing.
            DuplicatesNote {
                objectName: "duplicatesNone"
                anchors.centerIn: parent
                visible: DuplicateState.ran && view.groupCount === 0
                symbol: "checkmark.seal.fill"
                title: "No duplicates found with these settings"
                message: DuplicateState.modeName === "SHA-256 Checksum"
                         ? "Tip: checksum matching needs SHA-256 checksums. Turn on “Compute SHA-256 checksums” when you catalog or update a drive."
                         : ""
            }

            ColumnLayout {
                anchors.fill: parent
                spacing: Theme.s(8)
                visible: view.groupCount > 0

                RowLayout {
                    Layout.fillWidth: true
                    Layout.leftMargin: Theme.s(4)
                    spacing: Theme.s(10)
                    Text {
                        objectName: "duplicatesHeader"
                        Layout.fillWidth: true
                        text: view.headerLine
                        font: Theme.f(14, Font.DemiBold)
                        color: Theme.p.text
                        elide: Text.ElideRight
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                    LaserButton {
                        objectName: "duplicatesExpandAll"
                        compact: true
                        symbol: DuplicateState.allExpanded ? "chevron.up" : "chevron.down"
                        text: DuplicateState.allExpanded ? "Collapse All" : "Expand All"
                        onClicked: DuplicateState.allExpanded ? DuplicateState.collapseAll()
                                                              : DuplicateState.expandAll()
                    }
                }

                ListView {
                    id: groups
                    objectName: "duplicatesList"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    clip: true
                    spacing: Theme.s(8)
                    boundsBehavior: Flickable.StopAtBounds
                    cacheBuffer: Theme.s(400)
                    ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
                    Accessible.role: Accessible.List
                    Accessible.name: "Duplicate sets, " + view.groupCount
                    model: DuplicateGroupsModel { id: groupsModel }
                    delegate: DuplicateGroupCard {
                        width: ListView.view.width - Theme.s(10)
                        catalogWidth: view.catalogWidth
                    }
                }
            }
        }
    }
}
