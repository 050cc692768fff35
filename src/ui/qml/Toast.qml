// The short message capsule at the top of the window.
import QtQuick
import Orrelin

Rectangle {
    visible: AppModel.toast.length > 0
    width: label.implicitWidth + Theme.s(32)
    height: label.implicitHeight + Theme.s(14)
    radius: height / 2
    color: Theme.p.panel
    Text {
        id: label
        anchors.centerIn: parent
        text: AppModel.toast
        font: Theme.f(13, Font.DemiBold)
        color: Theme.p.text
    }
}
