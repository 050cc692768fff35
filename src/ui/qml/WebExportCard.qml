// A card of the Web & Export screen: an icon and a title, a line of explanation, then its controls.
import QtQuick
import QtQuick.Layouts
import Orrelin

GlassPanel {
    id: card
    property string title
    property string text
    property string symbol
    default property alias content: body.data

    implicitHeight: column.implicitHeight + 2 * Theme.s(18)
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.s(18)
        spacing: Theme.s(10)

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s(10)
            Rectangle {
                Layout.alignment: Qt.AlignTop
                implicitWidth: Theme.s(30)
                implicitHeight: Theme.s(30)
                radius: Theme.s(8)
                color: Theme.alpha(Theme.p.accent, 0.12)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(Theme.p.accent, 0.35)
                SvgIcon {
                    anchors.centerIn: parent
                    symbol: card.symbol
                    color: Theme.p.accent
                    size: Theme.s(17)
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                Layout.alignment: card.text.length > 0 ? Qt.AlignTop : Qt.AlignVCenter
                spacing: Theme.s(4)
                Text {
                    Layout.fillWidth: true
                    text: card.title
                    font: Theme.f(15, Font.DemiBold)
                    color: Theme.p.text
                    wrapMode: Text.Wrap
                }
                Text {
                    Layout.fillWidth: true
                    visible: card.text.length > 0
                    text: card.text
                    font: Theme.f(12)
                    color: Theme.p.subtext
                    wrapMode: Text.Wrap
                    lineHeight: 1.15
                }
            }
        }
        ColumnLayout {
            id: body
            Layout.fillWidth: true
            Layout.topMargin: Theme.s(4)
            spacing: Theme.s(10)
        }
    }
}
