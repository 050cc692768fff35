// One fact of the drive panel: a small capitalised label over its value, or beside it (`inline`) where
// the panel packs its facts into lines. A value cut short shows whole in a help text.
import QtQuick
import Orrelin

Item {
    id: fact
    property string label
    property string value
    property bool inline: false
    // The widest an inline value may grow before it is cut short.
    property real maxValueWidth: Theme.s(260)

    readonly property real gap: Theme.s(6)

    implicitHeight: inline ? Math.max(labelText.implicitHeight, valueText.implicitHeight)
                           : labelText.implicitHeight + Theme.s(1) + valueText.implicitHeight
    implicitWidth: inline ? labelText.implicitWidth + gap + Math.min(valueText.implicitWidth, maxValueWidth)
                          : Math.max(labelText.implicitWidth, valueText.implicitWidth)

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    SectionTitle {
        id: labelText
        width: fact.inline ? implicitWidth : fact.width
        y: fact.inline ? valueText.y + valueText.baselineOffset - baselineOffset : 0
        text: fact.label
        font.pixelSize: Theme.f(9.5).pixelSize
    }
    Text {
        id: valueText
        objectName: "value"
        x: fact.inline ? labelText.implicitWidth + fact.gap : 0
        y: fact.inline ? 0 : labelText.implicitHeight + Theme.s(1)
        width: fact.width - x
        text: fact.value
        font: Theme.f(12, Font.Medium)
        color: Theme.p.text
        elide: Text.ElideMiddle
        maximumLineCount: 1

        HoverHandler { id: hover }
        HelpTip {
            text: fact.value
            shown: hover.hovered && valueText.truncated
        }
    }
}
