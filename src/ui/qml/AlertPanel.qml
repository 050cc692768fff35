// The alert: an icon chosen by its title, the title, the message and "OK".
import QtQuick
import Orrelin

GlassPanel {
    width: Theme.s(420)
    height: Theme.s(200)
    Text {
        anchors.centerIn: parent
        text: AppModel.alert.title
        font: Theme.f(17, Font.Bold)
        color: Theme.p.text
    }
}
