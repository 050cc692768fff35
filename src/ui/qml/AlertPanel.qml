// The alert: an icon chosen by its title, the title, the message and "OK". It shows AppModel's one
// pending alert, so a second alert simply replaces the first.
import QtQuick
import QtQuick.Controls
import Orrelin

Item {
    id: panel
    objectName: "alertPanel"
    width: Theme.s(460)
    height: body.implicitHeight + Theme.s(48)

    // Spoken as it appears: the title, then the message.
    Accessible.role: Accessible.AlertMessage
    Accessible.name: AppModel.alert.title
    Accessible.description: AppModel.alert.message

    readonly property bool offline: AppModel.alert.title.toLowerCase().indexOf("offline") >= 0

    // Return and Escape both acknowledge, as the one button does.
    function accept() { AppModel.dismissAlert() }
    function cancel() { AppModel.dismissAlert() }

    // A replaced alert nudges, so the change is seen.
    Connections {
        target: AppModel
        function onAlertChanged() { if (AppModel.hasAlert) nudge.restart() }
    }
    SequentialAnimation {
        id: nudge
        NumberAnimation { target: body; property: "scale"; to: 1.025; duration: 90 }
        NumberAnimation { target: body; property: "scale"; to: 1; duration: 140; easing.type: Easing.OutCubic }
    }

    Column {
        id: body
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.s(24)
        spacing: Theme.s(12)

        Row {
            width: parent.width
            spacing: Theme.s(16)

            Rectangle {
                width: Theme.s(52)
                height: width
                radius: width / 2
                color: Theme.alpha(Theme.p.warn, 0.12)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(Theme.p.warn, 0.45)
                SvgIcon {
                    objectName: "alertIcon"
                    anchors.centerIn: parent
                    symbol: panel.offline ? "externaldrive.badge.exclamationmark" : "exclamationmark.triangle.fill"
                    size: Theme.s(26)
                    color: Theme.p.warn
                }
            }

            Column {
                width: parent.width - Theme.s(52) - parent.spacing
                spacing: Theme.s(6)
                anchors.verticalCenter: parent.verticalCenter
                Text {
                    objectName: "alertTitle"
                    width: parent.width
                    text: AppModel.alert.title
                    font: Theme.f(17, Font.Bold)
                    color: Theme.p.text
                    // Words wrap; a name longer than the line breaks anywhere rather than spill out.
                    wrapMode: Text.Wrap
                }
                // A long message (a list of failures) scrolls within a few lines' height instead of
                // growing the panel past the window.
                Flickable {
                    id: scroller
                    objectName: "alertMessageScroll"
                    width: parent.width
                    height: Math.min(message.implicitHeight, Theme.s(300))
                    contentHeight: message.implicitHeight
                    clip: contentHeight > height
                    interactive: contentHeight > height
                    boundsBehavior: Flickable.StopAtBounds
                    visible: message.text.length > 0
                    ScrollBar.vertical: ScrollBar {
                        policy: scroller.interactive ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
                    }
                    Text {
                        id: message
                        objectName: "alertMessage"
                        // Room at the right for the scroll bar.
                        width: scroller.width - Theme.s(12)
                        text: AppModel.alert.message
                        font: Theme.f(13)
                        lineHeight: 1.12
                        color: Theme.p.subtext
                        wrapMode: Text.Wrap
                    }
                }
            }
        }

        Item {
            width: parent.width
            height: ok.implicitHeight + Theme.s(4)
            LaserButton {
                id: ok
                objectName: "alertOKButton"
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                prominent: true
                text: "OK"
                leftPadding: Theme.s(26)
                rightPadding: Theme.s(26)
                onClicked: AppModel.dismissAlert()
            }
        }
    }
}
