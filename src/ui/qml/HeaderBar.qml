// The header: the screen's title and subtitle, the quick search, the zoom control and "Catalog a Drive".
import QtQuick
import Orrelin

Item {
    implicitHeight: Theme.s(72)
    height: implicitHeight
    Text {
        anchors.left: parent.left
        anchors.leftMargin: Theme.s(24)
        anchors.verticalCenter: parent.verticalCenter
        text: UIState.sections[AppModel.section].title
        font: Theme.f(22, Font.Bold)
        color: Theme.p.text
    }
}
