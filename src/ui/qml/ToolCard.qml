// The framed card the tool panes are built of: a title, a line of explanation, then any content.
import QtQuick
import QtQuick.Layouts
import Orrelin

GlassPanel {
    id: card
    property string title
    property string text
    default property alias content: body.data

    implicitHeight: column.implicitHeight + 2 * Theme.s(18)
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Theme.s(18)
        spacing: Theme.s(10)

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
        ColumnLayout {
            id: body
            Layout.fillWidth: true
            spacing: Theme.s(10)
        }
    }
}
