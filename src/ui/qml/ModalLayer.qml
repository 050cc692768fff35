// Dims the window and shows one sheet or alert in its middle while `active`.
import QtQuick
import Orrelin

Item {
    id: layer
    property bool active: false
    property Component sheet

    visible: active
    z: 10

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.55)
        MouseArea { anchors.fill: parent; hoverEnabled: true; acceptedButtons: Qt.AllButtons }
    }
    Loader {
        anchors.centerIn: parent
        active: layer.active
        sourceComponent: layer.sheet
    }
}
