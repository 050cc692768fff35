// The short message capsule at the top of the window. It slides in when AppModel shows a toast and
// slides out when the toast ends; a new toast while one shows just changes the text.
import QtQuick
import Orrelin

Item {
    id: toast
    readonly property bool up: AppModel.toast.length > 0
    // The text stays while the capsule leaves, so it does not go blank on its way out.
    property string shownText
    // The widest the capsule gets; the window sets it from the room it has.
    property real maximumWidth: Theme.s(600)

    width: capsule.width
    height: capsule.height
    visible: capsule.opacity > 0
    z: 5

    // Shown as an alert, so a screen reader speaks it as it comes in.
    Accessible.role: Accessible.AlertMessage
    Accessible.name: shownText

    onUpChanged: if (up) shownText = AppModel.toast
    Connections {
        target: AppModel
        function onToastChanged() { if (AppModel.toast.length > 0) toast.shownText = AppModel.toast }
    }

    Rectangle {
        id: capsule
        width: row.implicitWidth + Theme.s(36)
        height: row.implicitHeight + Theme.s(16)
        radius: height / 2
        color: Qt.tint(Theme.p.bgTop, Theme.alpha(Theme.p.panel, 0.9))
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.alpha(Theme.p.accent, 0.6)
        opacity: toast.up ? 1 : 0
        y: toast.up ? 0 : -height - Theme.s(14)

        Behavior on opacity { NumberAnimation { duration: 180; easing.type: Easing.OutCubic } }
        Behavior on y { NumberAnimation { duration: 220; easing.type: Easing.OutCubic } }

        // A faint glow around the capsule.
        Rectangle {
            anchors.fill: parent
            anchors.margins: -Theme.s(3)
            z: -1
            radius: height / 2
            color: "transparent"
            border.width: Theme.s(3)
            border.color: Theme.alpha(Theme.p.glow, 0.12)
        }

        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.s(8)
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.s(6)
                height: width
                radius: width / 2
                color: Theme.p.accent
            }
            Text {
                objectName: "toastText"
                anchors.verticalCenter: parent.verticalCenter
                // A long text (a long catalog name) ends in "…" rather than run past the window.
                width: Math.min(implicitWidth, toast.maximumWidth - Theme.s(50))
                elide: Text.ElideMiddle
                text: toast.shownText
                font: Theme.f(13, Font.DemiBold)
                color: Theme.p.text
            }
        }
    }
}
