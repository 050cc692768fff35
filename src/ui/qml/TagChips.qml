// A record's Finder tags as small coloured chips, in their order; with no tags but a colour label, a
// single dot of that colour.
import QtQuick
import Orrelin

Row {
    id: chips
    property var tags: []
    property int label: 0

    spacing: Theme.s(4)

    Repeater {
        model: chips.tags
        delegate: Rectangle {
            required property string modelData
            readonly property color tone: Files.tagColor(modelData)
            height: Theme.s(16)
            width: chipText.implicitWidth + Theme.s(12)
            radius: height / 2
            color: Theme.alpha(tone, 0.22)
            border.width: Math.max(1, Theme.s(1))
            border.color: Theme.alpha(tone, 0.65)
            Accessible.role: Accessible.StaticText
            Accessible.name: "Tag " + modelData
            Text {
                id: chipText
                anchors.centerIn: parent
                text: parent.modelData
                font: Theme.f(10, Font.Medium)
                color: Theme.p.text
            }
        }
    }

    Rectangle {
        visible: chips.tags.length === 0 && chips.label >= 1
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.s(9)
        height: width
        radius: width / 2
        color: Files.labelColor(chips.label)
        Accessible.role: Accessible.StaticText
        Accessible.name: "Label " + Files.labelName(chips.label)
    }
}
