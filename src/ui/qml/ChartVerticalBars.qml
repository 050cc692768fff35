// A vertical bar chart: one column per entry with its label below, bars rising from the value axis's 0,
// horizontal grid lines at the axis's marks with their values on the left, and the two axis titles.
// Labels that would collide are thinned out to every second, third, … one. Rows are {label, fraction,
// text, detail}; hovering a bar tells its text and detail.
import QtQuick
import Orrelin

Column {
    id: chart
    property var rows: []
    property var axis: ({ title: "", ticks: [] })
    property string categoryTitle
    property real plotHeight: Theme.s(180)
    property color barColor: Theme.p.accent

    readonly property real axisRoom: tickMetrics.advanceWidth + Theme.s(8)
    readonly property real plotWidth: Math.max(Theme.s(20), width - axisRoom)
    readonly property real slot: rows.length > 0 ? plotWidth / rows.length : plotWidth
    readonly property int labelEvery: Math.max(1, Math.ceil((labelMetrics.advanceWidth + Theme.s(6)) / slot))

    spacing: Theme.s(4)

    TextMetrics {
        id: tickMetrics
        font: Theme.f(10, Font.Normal, true)
        // The longest mark's text.
        text: {
            let longest = "0"
            for (const t of chart.axis.ticks) if (t.text.length > longest.length) longest = t.text
            return longest
        }
    }
    TextMetrics {
        id: labelMetrics
        font: Theme.f(10.5)
        text: "0000"
    }

    Text {
        text: chart.axis.title
        font: Theme.f(10.5, Font.DemiBold)
        color: Theme.p.subtext
    }

    Item {
        id: plot
        width: chart.width
        height: chart.plotHeight

        Repeater {
            model: chart.axis.ticks
            delegate: Item {
                required property var modelData
                width: plot.width
                y: plot.height - modelData.fraction * plot.height
                Rectangle {
                    x: chart.axisRoom
                    width: chart.plotWidth
                    height: Math.max(1, Theme.s(1))
                    color: modelData.fraction === 0 ? Theme.alpha(Theme.p.subtext, 0.45)
                                                    : Theme.alpha(Theme.p.subtext, 0.14)
                }
                Text {
                    width: chart.axisRoom - Theme.s(8)
                    y: -height / 2
                    horizontalAlignment: Text.AlignRight
                    text: modelData.text
                    font: Theme.f(10, Font.Normal, true)
                    color: Theme.p.subtext
                }
            }
        }

        Repeater {
            model: chart.rows
            delegate: Item {
                id: column
                required property var modelData
                required property int index
                objectName: "chartColumn"
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.label + ": " + modelData.text
                x: chart.axisRoom + index * chart.slot
                width: chart.slot
                height: plot.height

                Rectangle {
                    objectName: "chartBar"
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    width: Math.max(Theme.s(3), Math.min(chart.slot * 0.64, Theme.s(40)))
                    height: Math.max(Theme.s(2), column.modelData.fraction * plot.height)
                    radius: Math.min(Theme.s(4), width / 3)
                    gradient: Gradient {
                        GradientStop { position: 0; color: hover.containsMouse ? Qt.lighter(chart.barColor, 1.2)
                                                                               : chart.barColor }
                        GradientStop { position: 1; color: Theme.alpha(chart.barColor, 0.45) }
                    }
                }
                MouseArea {
                    id: hover
                    anchors.fill: parent
                    hoverEnabled: true
                    acceptedButtons: Qt.NoButton
                }
                HelpTip {
                    text: column.modelData.label + ": " + column.modelData.text
                          + (column.modelData.detail ? " · " + column.modelData.detail : "")
                    shown: hover.containsMouse
                }
            }
        }
    }

    Item {
        width: chart.width
        height: labelMetrics.height
        Repeater {
            model: chart.rows
            delegate: Text {
                required property var modelData
                required property int index
                // The newest label always shows; the others keep the rhythm counted back from it.
                visible: (chart.rows.length - 1 - index) % chart.labelEvery === 0
                x: chart.axisRoom + (index + 0.5) * chart.slot - width / 2
                text: modelData.label
                font: Theme.f(10.5)
                color: Theme.p.subtext
            }
        }
    }
    Text {
        x: chart.axisRoom
        width: chart.plotWidth
        horizontalAlignment: Text.AlignHCenter
        text: chart.categoryTitle
        font: Theme.f(10.5, Font.DemiBold)
        color: Theme.p.subtext
    }
}
