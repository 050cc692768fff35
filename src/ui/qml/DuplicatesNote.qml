// A centred note of the Duplicates screen's results area: a symbol in a ring, a title and a message.
import QtQuick
import Orrelin

Column {
    id: note
    property string symbol
    property string title
    property string message

    width: Math.min(parent ? parent.width - Theme.s(40) : Theme.s(480), Theme.s(520))
    spacing: Theme.s(12)

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Theme.s(78)
        height: width
        radius: width / 2
        color: Theme.alpha(Theme.p.accent, 0.07)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.alpha(Theme.p.accent, 0.28)
        SvgIcon {
            anchors.centerIn: parent
            symbol: note.symbol
            size: Theme.s(34)
            color: Theme.p.accent
        }
    }
    Text {
        objectName: note.objectName.length > 0 ? note.objectName + "Title" : ""
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: note.title
        font: Theme.f(17, Font.Bold)
        color: Theme.p.text
        wrapMode: Text.WordWrap
    }
    Text {
        objectName: note.objectName.length > 0 ? note.objectName + "Message" : ""
        width: parent.width
        visible: text.length > 0
        horizontalAlignment: Text.AlignHCenter
        text: note.message
        font: Theme.f(13)
        lineHeight: 1.15
        color: Theme.p.subtext
        wrapMode: Text.WordWrap
    }
}
