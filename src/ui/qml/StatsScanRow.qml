// One finished scan: the catalog's name, when it ended with the scanner's note, and what it added,
// changed and removed as three badges.
import QtQuick
import QtQuick.Layouts
import Orrelin

RowLayout {
    id: row
    property var scan: ({})

    spacing: Theme.s(10)
    Accessible.role: Accessible.StaticText
    Accessible.name: scan.catalogName + ", " + scan.line + ", "
                     + (scan.badges || []).map(b => b.text).join(" ")

    SvgIcon {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: Theme.s(2)
        symbol: "externaldrive.fill"
        color: Theme.p.subtext
        size: Theme.s(15)
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: Theme.s(2)
        Text {
            Layout.fillWidth: true
            text: row.scan.catalogName
            font: Theme.f(12.5, Font.DemiBold)
            color: Theme.p.text
            elide: Text.ElideRight
        }
        Text {
            objectName: "scanLine"
            Layout.fillWidth: true
            text: row.scan.line
            font: Theme.f(11)
            color: Theme.p.subtext
            elide: Text.ElideRight
        }
    }
    Repeater {
        model: row.scan.badges || []
        delegate: Rectangle {
            id: badge
            required property var modelData
            readonly property color tint: modelData.tone === "added" ? Theme.p.ok
                                        : modelData.tone === "changed" ? Theme.p.warn : Theme.p.danger
            objectName: "scanBadge"
            property string text: modelData.text
            Layout.alignment: Qt.AlignVCenter
            implicitWidth: Math.max(Theme.s(38), label.implicitWidth + Theme.s(14))
            implicitHeight: Theme.s(20)
            radius: height / 2
            color: Theme.alpha(tint, 0.12)
            border.width: Math.max(1, Theme.s(0.75))
            border.color: Theme.alpha(tint, 0.4)
            Text {
                id: label
                anchors.centerIn: parent
                text: badge.modelData.text
                font: Theme.f(10.5, Font.DemiBold, true)
                color: badge.tint
            }
        }
    }
}
