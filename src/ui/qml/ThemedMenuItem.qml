// One entry of a ThemedMenu: a check mark when `marked` (or checked), the text, the shortcut at the right
// (the action's, or `hint` for keys another control handles), and an arrow for a submenu.
import QtQuick
import QtQuick.Controls
import Orrelin

MenuItem {
    id: entry
    property bool marked: false
    property string hint: action && typeof action.shortcut === "string" ? action.shortcut : ""

    readonly property bool showsMark: marked || (checkable && checked)
    readonly property color inkColor: enabled ? (highlighted ? Theme.p.text : Theme.alpha(Theme.p.text, 0.92))
                                              : Theme.alpha(Theme.p.subtext, 0.5)

    // A tick written into the text ("✓ Auto-Update …") is read out as the item's state, not as a word.
    readonly property bool ticked: text.startsWith("\u2713 ")
    Accessible.name: ticked ? text.slice(2) : text
    Accessible.checkable: checkable || marked || ticked
    Accessible.checked: showsMark || ticked

    hoverEnabled: true
    font: Theme.f(13)
    leftPadding: Theme.s(26)
    rightPadding: Theme.s(subMenu ? 26 : 12)
    topPadding: Theme.s(4)
    bottomPadding: Theme.s(4)
    implicitHeight: Theme.s(26)
    implicitWidth: leftPadding + label.implicitWidth
                   + (hint.length > 0 ? Theme.s(28) + shortcut.implicitWidth : 0) + rightPadding

    contentItem: Item {
        Text {
            id: label
            anchors.left: parent.left
            anchors.right: shortcut.visible ? shortcut.left : parent.right
            anchors.rightMargin: shortcut.visible ? Theme.s(20) : 0
            anchors.verticalCenter: parent.verticalCenter
            text: entry.text
            font: entry.font
            color: entry.inkColor
            elide: Text.ElideRight
        }
        Text {
            id: shortcut
            visible: entry.hint.length > 0
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: entry.hint
            font: Theme.f(12)
            color: entry.enabled ? Theme.p.subtext : Theme.alpha(Theme.p.subtext, 0.45)
        }
    }

    indicator: SvgIcon {
        x: Theme.s(8)
        y: (entry.height - height) / 2
        visible: entry.showsMark
        symbol: "checkmark"
        size: Theme.s(12)
        color: entry.enabled ? Theme.p.accent : Theme.alpha(Theme.p.subtext, 0.5)
    }

    arrow: SvgIcon {
        x: entry.width - width - Theme.s(9)
        y: (entry.height - height) / 2
        visible: entry.subMenu !== null
        symbol: "chevron.right"
        size: Theme.s(10)
        color: entry.inkColor
    }

    background: Rectangle {
        implicitHeight: Theme.s(26)
        radius: Theme.s(5)
        color: entry.highlighted && entry.enabled ? Theme.alpha(Theme.p.accent, 0.24) : "transparent"
    }
}
