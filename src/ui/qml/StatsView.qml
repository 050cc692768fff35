// The statistics screen: five figures, then the cards in pairs (one per row when the window is narrow):
// files by kind and space by catalog, files by year and drive capacity, the largest files and the top
// extensions, and the recent scans. The snapshot is read each time the screen is shown, and again
// whenever the data changes while it is up.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

Item {
    id: view
    objectName: "statsView"

    readonly property bool noCatalogs: AppModel.catalogs.length === 0
    readonly property real margin: Theme.s(22)
    // Two cards side by side from this width of the screen on.
    readonly property bool wide: width >= Theme.s(900)

    function refresh() { if (visible) stats.reload() }
    onVisibleChanged: refresh()
    Component.onCompleted: refresh()

    StatsState {
        id: stats
        objectName: "statsState"
    }
    Connections {
        target: AppModel
        function onDataVersionChanged() { view.refresh() }
    }

    EmptyStateView {
        objectName: "statsEmpty"
        anchors.fill: parent
        visible: view.noCatalogs
        title: "Statistics appear after your first scan"
        message: "See files by kind, space used per drive, the largest files in your library and your scan history."
    }

    Flickable {
        id: scroller
        objectName: "statsScroller"
        anchors.fill: parent
        visible: !view.noCatalogs
        clip: true
        contentWidth: width
        contentHeight: page.implicitHeight + 2 * view.margin
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            id: bar
            policy: scroller.contentHeight > scroller.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
            width: Theme.s(10)
            contentItem: Rectangle {
                implicitWidth: Theme.s(5)
                radius: width / 2
                color: Theme.alpha(Theme.p.accent, bar.pressed ? 0.7 : bar.hovered ? 0.5 : 0.3)
            }
            background: Item {}
        }

        ColumnLayout {
            id: page
            x: view.margin
            y: view.margin
            width: scroller.width - 2 * view.margin
            spacing: Theme.s(16)

            // The five figures in as few rows as fit, each row sharing the full width among its figures,
            // so a second row of two is as wide as the first of three rather than leaving a hole.
            Item {
                id: figures
                objectName: "statsFigures"
                readonly property int count: stats.figures.length
                readonly property real gap: Theme.s(12)
                readonly property int fit: Math.max(1, Math.min(5, Math.floor((width + gap) / (Theme.s(170) + gap))))
                readonly property int lines: Math.max(1, Math.ceil(count / fit))
                readonly property int perLine: Math.max(1, Math.ceil(count / lines))
                property real figureHeight: 0
                Layout.fillWidth: true
                implicitHeight: lines * figureHeight + (lines - 1) * gap

                Repeater {
                    id: figureRepeater
                    model: stats.figures
                    delegate: StatsFigure {
                        required property var modelData
                        required property int index
                        objectName: "statsFigure"
                        readonly property int line: Math.floor(index / figures.perLine)
                        readonly property int inLine: Math.min(figures.perLine, figures.count - line * figures.perLine)
                        width: (figures.width - (inLine - 1) * figures.gap) / inLine
                        height: figures.figureHeight
                        x: (index % figures.perLine) * (width + figures.gap)
                        y: line * (figures.figureHeight + figures.gap)
                        label: modelData.label
                        value: modelData.value
                        symbol: modelData.symbol
                        onImplicitHeightChanged: figures.measure()
                        Component.onCompleted: figures.measure()
                    }
                }
                function measure() {
                    let tallest = 0
                    for (let i = 0; i < figureRepeater.count; ++i) {
                        const f = figureRepeater.itemAt(i)
                        if (f) tallest = Math.max(tallest, f.implicitHeight)
                    }
                    figureHeight = tallest
                }
            }

            GridLayout {
                id: cards
                objectName: "statsCards"
                Layout.fillWidth: true
                columns: view.wide ? 2 : 1
                columnSpacing: Theme.s(16)
                rowSpacing: Theme.s(16)

                StatsCard {
                    objectName: "kindCard"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    Layout.alignment: Qt.AlignTop
                    title: "Files by kind"
                    symbol: "square.grid.2x2"
                    accessory: SegmentedPicker {
                        objectName: "kindMeasure"
                        label: "Measure"
                        options: ["Size", "Count"]
                        current: stats.bySize ? "Size" : "Count"
                        onPicked: option => stats.bySize = option === "Size"
                    }
                    ChartHorizontalBars {
                        objectName: "kindChart"
                        Layout.fillWidth: true
                        showKindIcons: true
                        rows: stats.kinds.map(k => ({ label: k.kind, kind: k.kind, fraction: k.fraction,
                                                      text: k.text, color: FileKinds.color(k.kind) }))
                        axis: stats.kindAxis
                    }
                }

                StatsCard {
                    objectName: "spaceCard"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    title: "Space by catalog"
                    symbol: "externaldrive.fill"
                    ChartHorizontalBars {
                        objectName: "spaceChart"
                        Layout.fillWidth: true
                        categoryTitle: "Catalog"
                        rows: stats.space.map(c => ({ label: c.name, fraction: c.fraction, text: c.text,
                                                      color: Theme.p.accent }))
                        axis: stats.spaceAxis
                        plotHeight: Theme.s(Math.max(30 * rows.length, 160))
                    }
                }

                StatsCard {
                    objectName: "yearCard"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    title: "Files by year modified"
                    symbol: "chart.bar.xaxis"
                    ChartVerticalBars {
                        objectName: "yearChart"
                        Layout.fillWidth: true
                        visible: stats.years.length > 0
                        categoryTitle: "Year"
                        barColor: Theme.p.accent2
                        rows: stats.years.map(y => ({ label: y.year, fraction: y.fraction,
                                                      text: y.text + (y.count === 1 ? " file" : " files"),
                                                      detail: Fmt.size(y.bytes) }))
                        axis: stats.yearAxis
                    }
                    Text {
                        visible: stats.years.length === 0
                        text: "No modification dates recorded yet."
                        font: Theme.f(12)
                        color: Theme.p.subtext
                    }
                }

                StatsCard {
                    objectName: "capacityCard"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    title: "Drive capacity"
                    symbol: "internaldrive"
                    Repeater {
                        model: stats.capacity
                        delegate: StatsCapacityRow {
                            required property var modelData
                            objectName: "capacityRow"
                            Layout.fillWidth: true
                            drive: modelData
                        }
                    }
                    Text {
                        objectName: "noCapacity"
                        visible: stats.capacity.length === 0
                        text: "No drive capacity recorded yet."
                        font: Theme.f(12)
                        color: Theme.p.subtext
                    }
                }

                StatsCard {
                    objectName: "largestCard"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    title: "Largest files"
                    symbol: "doc.fill"
                    Repeater {
                        model: stats.largest
                        delegate: StatsFileRow {
                            required property var modelData
                            required property int index
                            objectName: "largestRow_" + index
                            Layout.fillWidth: true
                            file: modelData
                        }
                    }
                }

                StatsCard {
                    objectName: "extensionCard"
                    Layout.fillWidth: true
                    // Twelve rows beside the largest files' twenty-five: stretched to that height the
                    // card would be half empty, so it keeps its own height.
                    Layout.alignment: Qt.AlignTop
                    Layout.preferredWidth: 1
                    title: "Top extensions"
                    symbol: "textformat"
                    Repeater {
                        model: stats.extensions
                        delegate: StatsExtensionRow {
                            required property var modelData
                            objectName: "extensionRow"
                            Layout.fillWidth: true
                            ext: modelData
                        }
                    }
                }

                StatsCard {
                    objectName: "scanCard"
                    Layout.fillWidth: true
                    Layout.columnSpan: cards.columns
                    title: "Recent scans"
                    symbol: "arrow.triangle.2.circlepath"
                    Repeater {
                        model: stats.scans
                        delegate: StatsScanRow {
                            required property var modelData
                            objectName: "scanRow"
                            Layout.fillWidth: true
                            Layout.bottomMargin: Theme.s(4)
                            scan: modelData
                        }
                    }
                    Text {
                        objectName: "noScans"
                        visible: stats.scans.length === 0
                        text: "No scans recorded yet."
                        font: Theme.f(12)
                        color: Theme.p.subtext
                    }
                }
            }
        }
    }
}
