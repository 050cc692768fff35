// A record's Finder tags as small coloured chips, in their order; with no tags but a colour label, a
// single dot of that colour. Left without a width it keeps to one line; given one, the chips wrap.
import QtQuick
import Orrelin

Flow {
    id: chips
    property var tags: []
    property int label: 0

    readonly property real chipHeight: Theme.s(16)

    spacing: Theme.s(4)
    Accessible.role: Accessible.List
    Accessible.name: tags.length > 0 ? "Tags" : label >= 1 ? "Label" : ""

    Repeater {
        model: chips.tags
        delegate: Rectangle {
            required property string modelData
            readonly property color tone: Files.tagColor(modelData)
            height: chips.chipHeight
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

    // The label's dot, centred on the line a chip would take.
    Item {
        visible: chips.tags.length === 0 && chips.label >= 1
        width: Theme.s(9)
        height: chips.chipHeight
        Accessible.role: Accessible.StaticText
        Accessible.name: "Label " + Files.labelName(chips.label)
        Rectangle {
            objectName: "labelDot"
            anchors.centerIn: parent
            width: parent.width
            height: width
            radius: width / 2
            color: Files.labelColor(chips.label)
        }
    }
}
