// A drop-down picker in the theme's look. Give it a `model` of texts, or of maps with `textRole`.
import QtQuick
import QtQuick.Controls
import Orrelin

ComboBox {
    id: picker

    font: Theme.f(13)
    leftPadding: Theme.s(10)
    rightPadding: Theme.s(30)
    topPadding: Theme.s(6)
    bottomPadding: Theme.s(6)
    hoverEnabled: true
    Accessible.name: displayText

    contentItem: Text {
        text: picker.displayText
        font: picker.font
        color: picker.enabled ? Theme.p.text : Theme.alpha(Theme.p.subtext, 0.6)
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    indicator: SvgIcon {
        x: picker.width - width - Theme.s(10)
        y: (picker.height - height) / 2
        symbol: "chevron.down"
        size: Theme.s(11)
        color: Theme.p.subtext
    }
    background: Rectangle {
        implicitWidth: Theme.s(160)
        radius: Theme.s(7)
        color: Theme.alpha(Theme.p.accent, picker.pressed ? 0.18 : picker.hovered ? 0.12 : 0.07)
        border.width: Math.max(1, Theme.s(1))
        border.color: picker.visualFocus ? Theme.p.accent : Theme.p.stroke
    }
    delegate: ItemDelegate {
        required property var modelData
        required property int index
        width: picker.width
        text: picker.textRole.length > 0 ? modelData[picker.textRole] : modelData
        font: picker.font
        highlighted: picker.highlightedIndex === index
        contentItem: Text {
            text: parent.text
            font: parent.font
            color: Theme.p.text
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            color: parent.highlighted ? Theme.alpha(Theme.p.accent, 0.25) : "transparent"
        }
    }
    popup.background: Rectangle {
        radius: Theme.s(7)
        color: Theme.p.bgBottom
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.p.stroke
    }
}
