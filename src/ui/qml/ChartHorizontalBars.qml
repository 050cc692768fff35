// A horizontal bar chart: one row per entry with its label on the left, a bar from the value axis's 0,
// and the value's text at the bar's end; light grid lines at the axis's marks, their values below, and
// the axis titles. Rows are {label, fraction (0 to 1 of the axis), text, color, kind (optional icon)}.
import QtQuick
import Orrelin

Column {
    id: chart
    property var rows: []
    // {title, ticks: [{fraction, text}]}
    property var axis: ({ title: "", ticks: [] })
    // The title of the label column ("Catalog"), shown above it; none when empty.
    property string categoryTitle
    property real rowHeight: Theme.s(26)
    property real plotHeight: rows.length * rowHeight
    property real labelWidth: Math.min(Theme.s(150), width * 0.32)
    property bool showKindIcons: false
    // Room kept right of the axis for the longest value text.
    property real valueRoom: Theme.s(72)

    readonly property real barsX: labelWidth + Theme.s(10)
    readonly property real barsWidth: Math.max(Theme.s(20), width - barsX - valueRoom)
    readonly property real slot: rows.length > 0 ? plotHeight / rows.length : rowHeight
    readonly property real thickness: Math.min(slot * 0.62, Theme.s(18))

    spacing: Theme.s(4)

    Text {
        visible: chart.categoryTitle.length > 0
        width: chart.labelWidth
        horizontalAlignment: Text.AlignRight
        text: chart.categoryTitle
        font: Theme.f(10.5, Font.DemiBold)
        color: Theme.p.subtext
    }

    Item {
        id: plot
        width: chart.width
        height: chart.plotHeight

        Repeater {
            model: chart.axis.ticks
            delegate: Rectangle {
                required property var modelData
                x: chart.barsX + modelData.fraction * chart.barsWidth
                width: Math.max(1, Theme.s(1))
                height: plot.height
                color: modelData.fraction === 0 ? Theme.alpha(Theme.p.subtext, 0.45)
                                                : Theme.alpha(Theme.p.subtext, 0.14)
            }
        }

        Repeater {
            model: chart.rows
            delegate: Item {
                id: row
                required property var modelData
                required property int index
                objectName: "chartRow"
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.label + ": " + modelData.text
                y: index * chart.slot
                width: chart.width
                height: chart.slot

                Row {
                    x: 0
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: Theme.s(6)
                    layoutDirection: Qt.RightToLeft
                    width: chart.labelWidth

                    Text {
                        id: label
                        width: Math.min(implicitWidth, chart.labelWidth - (icon.visible ? icon.width + parent.spacing : 0))
                        anchors.verticalCenter: parent.verticalCenter
                        text: row.modelData.label
                        font: Theme.f(12)
                        color: Theme.p.text
                        elide: Text.ElideRight
                    }
                    SvgIcon {
                        id: icon
                        visible: chart.showKindIcons
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: chart.showKindIcons ? FileKinds.symbol(row.modelData.kind) : ""
                        color: row.modelData.color
                        size: Theme.s(13)
                    }
                }

                Rectangle {
                    objectName: "chartBar"
                    x: chart.barsX
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.max(Theme.s(2), row.modelData.fraction * chart.barsWidth)
                    height: chart.thickness
                    radius: Math.min(Theme.s(4), height / 3)
                    gradient: Gradient {
                        orientation: Gradient.Horizontal
                        GradientStop { position: 0; color: Theme.alpha(row.modelData.color, 0.55) }
                        GradientStop { position: 1; color: row.modelData.color }
                    }
                }

                Text {
                    objectName: "chartValue"
                    x: chart.barsX + Math.max(Theme.s(2), row.modelData.fraction * chart.barsWidth) + Theme.s(6)
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.text
                    font: Theme.f(11, Font.DemiBold, true)
                    color: Theme.p.subtext
                }
            }
        }
    }

    // The axis's marks and title.
    Item {
        width: chart.width
        height: tickMetrics.height
        Repeater {
            model: chart.axis.ticks
            delegate: Text {
                required property var modelData
                readonly property real centre: chart.barsX + modelData.fraction * chart.barsWidth
                x: Math.max(chart.barsX - width / 2, Math.min(chart.width - width, centre - width / 2))
                text: modelData.text
                font: Theme.f(10, Font.Normal, true)
                color: Theme.p.subtext
            }
        }
        TextMetrics {
            id: tickMetrics
            font: Theme.f(10, Font.Normal, true)
            text: "0"
        }
    }
    Text {
        x: chart.barsX
        width: chart.barsWidth
        horizontalAlignment: Text.AlignHCenter
        text: chart.axis.title
        font: Theme.f(10.5, Font.DemiBold)
        color: Theme.p.subtext
    }
}
