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

    // The columns: the Step column is fixed, the others share what is left.
    readonly property real stepWidth: Theme.s(104)
    readonly property real restWidth: Math.max(Theme.s(240), width - stepWidth - Theme.s(16))
    readonly property var widths: [stepWidth, restWidth * 0.32, restWidth * 0.32, restWidth * 0.36]

    Rectangle {
        Layout.fillWidth: true
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
        implicitHeight: Math.min(count, table.visibleRows) * table.rowHeight
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
            height: table.rowHeight
            radius: Theme.s(4)
            color: ListView.isCurrentItem && rows.activeFocus ? Theme.alpha(Theme.p.accent, 0.16)
                 : index % 2 ? Theme.alpha(Theme.p.text, 0.025) : "transparent"
            Accessible.role: Accessible.Row
            Accessible.name: modelData.kind + ", " + (modelData.from.length > 0 ? modelData.from + " to " : "")
                             + modelData.to + ", " + modelData.status

            Row {
                x: Theme.s(8)
                height: parent.height

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
                    StepsTableCell {
                        anchors.left: verdict.right
                        anchors.right: parent.right
                        text: row.modelData.status
                        color: row.modelData.ok ? Theme.p.text : Theme.p.danger
                    }
                }
            }
        }
    }
}
