// One drive of the "Drive capacity" card: its lamp, name and free space, and a bar filled to the share
// in use, turning to the warning and danger colours as the drive fills up.
import QtQuick
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: row
    property var drive: ({})
    readonly property real used: drive.fraction || 0

    spacing: Theme.s(5)
    Accessible.role: Accessible.StaticText
    Accessible.name: drive.name + ", " + drive.text

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.s(8)
        StatusLamp {
            online: row.drive.online === true
        }
        Text {
            Layout.fillWidth: true
            text: row.drive.name
            font: Theme.f(12.5, Font.DemiBold)
            color: Theme.p.text
            elide: Text.ElideRight
        }
        Text {
            objectName: "capacityText"
            text: row.drive.text
            font: Theme.f(11, Font.Normal, true)
            color: Theme.p.subtext
        }
    }
    Rectangle {
        id: track
        Layout.fillWidth: true
        implicitHeight: Theme.s(7)
        radius: height / 2
        color: Theme.alpha(Theme.p.text, 0.08)
        border.width: Math.max(1, Theme.s(0.75))
        border.color: Theme.alpha(Theme.p.text, 0.06)
        Rectangle {
            objectName: "capacityFill"
            width: Math.min(track.width, Math.max(Theme.s(4), track.width * row.used))
            height: parent.height
            radius: height / 2
            color: row.used > 0.9 ? Theme.p.danger : row.used > 0.75 ? Theme.p.warn : Theme.p.accent
        }
    }
}
