// Stands in for a screen with nothing to show: an icon, a title, a message, and the ways to get started.
import QtQuick
import Orrelin

Item {
    property string title
    property string message
    Text {
        anchors.centerIn: parent
        text: parent.title
        font: Theme.f(20, Font.Bold)
        color: Theme.p.text
    }
}
