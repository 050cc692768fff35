// The rows of a dry run: what each step does, from where, to where, and its verdict. Paths stand as the
// plan wrote them. Only the rows on screen are made, and beyond a dozen rows the table scrolls by itself,
// so a plan of thousands of steps stays quick.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: table
    // One map per step: id, kind (its label), from, to, ok, status.
    property var steps: []
    property int visibleRows: 12
    readonly property real rowHeight: Theme.s(28)
    readonly property alias list: rows

    spacing: 0

    // Where the columns would be too narrow to read (a small window, a high zoom), each step takes two
    // lines instead: what it does from where to where, then its verdict.
    readonly property bool compact: width < Theme.s(640)
    // The columns: the Step column is fixed, the others share what is left.
    readonly property real stepWidth: Theme.s(92)
    readonly property real restWidth: Math.max(Theme.s(240), width - stepWidth - Theme.s(16))
    readonly property var widths: [stepWidth, restWidth * 0.3, restWidth * 0.3, restWidth * 0.4]

    Rectangle {
        Layout.fillWidth: true
        visible: !table.compact
        implicitHeight: Theme.s(26)
        radius: Theme.s(6)
        color: Theme.alpha(Theme.p.text, 0.04)
        Row {
            x: Theme.s(8)
            height: parent.height
            Repeater {
                model: ["Step", "From", "To", "Status"]
                delegate: Text {
                    required property string modelData
                    required property int index
                    width: table.widths[index]
                    height: parent.height
                    leftPadding: Theme.s(4)
                    verticalAlignment: Text.AlignVCenter
                    text: modelData
                    font: Theme.f(11, Font.DemiBold)
                    color: Theme.p.subtext
                    Accessible.role: Accessible.ColumnHeader
                    Accessible.name: modelData
                }
            }
        }
    }

    ListView {
        id: rows
        objectName: table.objectName.length > 0 ? table.objectName + "List" : "stepsList"
        Layout.fillWidth: true
        // Rows whose verdict takes two lines are taller; the estimate is refined as rows are made.
        implicitHeight: Math.min(contentHeight, table.visibleRows * table.rowHeight * (table.compact ? 1.8 : 1))
        clip: true
        model: table.steps
        interactive: count > table.visibleRows
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: count > 0
        keyNavigationEnabled: true
        ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
        Accessible.role: Accessible.Table
        Accessible.name: "Dry run, " + count + (count === 1 ? " step" : " steps")

        delegate: Rectangle {
            id: row
            required property var modelData
            required property int index
            width: ListView.view.width
            height: table.compact ? stacked.implicitHeight + Theme.s(10)
                                  : Math.max(table.rowHeight, status.implicitHeight + Theme.s(8))
            radius: Theme.s(4)
            color: ListView.isCurrentItem && rows.activeFocus ? Theme.alpha(Theme.p.accent, 0.16)
                 : index % 2 ? Theme.alpha(Theme.p.text, 0.025) : "transparent"
            Accessible.role: Accessible.Row
            Accessible.name: modelData.kind + ", " + (modelData.from.length > 0 ? modelData.from + " to " : "")
                             + modelData.to + ", " + modelData.status

            Row {
                x: Theme.s(8)
                height: parent.height
                visible: !table.compact

                StepsTableCell {
                    width: table.widths[0]
                    text: row.modelData.kind
                    color: Theme.p.subtext
                }
                StepsTableCell {
                    width: table.widths[1]
                    text: row.modelData.from
                    mono: true
                }
                StepsTableCell {
                    width: table.widths[2]
                    text: row.modelData.to
                    mono: true
                }
                Item {
                    width: table.widths[3]
                    height: parent.height
                    SvgIcon {
                        id: verdict
                        objectName: "stepVerdict"
                        x: Theme.s(4)
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: row.modelData.ok ? "checkmark.circle.fill" : "xmark.octagon.fill"
                        size: Theme.s(14)
                        color: row.modelData.ok ? Theme.p.ok : Theme.p.danger
                    }
                    // The verdict wraps onto a second line rather than lose its point.
                    StepsTableCell {
                        id: status
                        anchors.left: verdict.right
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        height: implicitHeight
                        text: row.modelData.status
                        color: row.modelData.ok ? Theme.p.text : Theme.p.danger
                        wrapMode: Text.Wrap
                        maximumLineCount: 2
                        elide: Text.ElideRight
                    }
                }
            }

            Column {
                id: stacked
                visible: table.compact
                x: Theme.s(8)
                y: Theme.s(5)
                width: parent.width - Theme.s(16)
                spacing: Theme.s(3)

                Row {
                    width: parent.width
                    spacing: Theme.s(8)
                    Text {
                        id: kindLabel
                        anchors.verticalCenter: parent.verticalCenter
                        text: row.modelData.kind
                        font: Theme.f(11, Font.DemiBold)
                        color: Theme.p.subtext
                    }
                    StepsTableCell {
                        width: parent.width - kindLabel.width - parent.spacing
                        height: implicitHeight
                        leftPadding: 0
                        text: (row.modelData.from.length > 0 ? row.modelData.from + "  \u2192  " : "") + row.modelData.to
                        mono: true
                    }
                }
                Row {
                    width: parent.width
                    spacing: Theme.s(6)
                    SvgIcon {
                        symbol: row.modelData.ok ? "checkmark.circle.fill" : "xmark.octagon.fill"
                        size: Theme.s(13)
                        color: row.modelData.ok ? Theme.p.ok : Theme.p.danger
                    }
                    Text {
                        width: parent.width - Theme.s(19)
                        text: row.modelData.status
                        font: Theme.f(12)
                        color: row.modelData.ok ? Theme.p.text : Theme.p.danger
                        wrapMode: Text.Wrap
                    }
                }
            }
        }
    }
}
