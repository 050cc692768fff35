// One card of the statistics screen: an icon and a title, an optional control at the right of the
// title, then the card's content, aligned to the top when the card is stretched to its neighbour's height.
import QtQuick
import QtQuick.Layouts
import Orrelin

GlassPanel {
    id: card
    property string title
    property string symbol
    // Items placed at the right end of the title row.
    property alias accessory: accessoryRow.data
    default property alias content: body.data

    implicitHeight: column.implicitHeight + 2 * Theme.s(16)
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.s(16)
        spacing: Theme.s(12)

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s(8)
            SvgIcon {
                visible: card.symbol.length > 0
                symbol: card.symbol
                color: Theme.p.accent
                size: Theme.s(15)
            }
            Text {
                Layout.fillWidth: true
                text: card.title
                font: Theme.f(15, Font.DemiBold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            Row {
                id: accessoryRow
                spacing: Theme.s(6)
            }
        }
        ColumnLayout {
            id: body
            Layout.fillWidth: true
            spacing: Theme.s(6)
        }
    }
}
