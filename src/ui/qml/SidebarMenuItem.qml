// One entry of a SidebarMenu. `destructive` draws it in the danger colour; `current` marks the choice
// that is in force now (the group a cartridge is in) with a dot.
import QtQuick
import QtQuick.Controls
import Orrelin

MenuItem {
    id: item
    property bool destructive: false
    property bool current: false

    // A tick written into the text ("✓ Auto-Update …") is read out as the item's state, not as a word;
    // the dot of the current choice is a checked state too.
    readonly property bool ticked: text.startsWith("\u2713 ")
    Accessible.name: ticked ? text.slice(2) : text
    Accessible.checkable: current || ticked
    Accessible.checked: current || ticked

    font: Theme.f(12.5)
    implicitHeight: Theme.s(28)
    leftPadding: Theme.s(10)
    rightPadding: Theme.s(10)
    hoverEnabled: true

    readonly property color ink: !enabled ? Theme.alpha(Theme.p.subtext, 0.55)
                               : destructive ? Theme.p.danger
                               : highlighted ? Theme.p.text : Qt.tint(Theme.p.text, Theme.alpha(Theme.p.subtext, 0.25))

    contentItem: Text {
        text: item.text
        font: item.font
        color: item.ink
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        rightPadding: item.subMenu || item.current ? Theme.s(16) : 0
    }

    indicator: Item {}

    arrow: SvgIcon {
        x: item.width - width - item.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: item.subMenu !== null
        symbol: "chevron.right"
        size: Theme.s(10)
        color: item.ink
    }

    Rectangle {
        visible: item.current
        x: item.width - width - item.rightPadding - Theme.s(2)
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.s(6)
        height: width
        radius: width / 2
        color: Theme.p.accent
    }

    background: Rectangle {
        implicitWidth: Theme.s(200)
        radius: Theme.s(6)
        color: !item.highlighted || !item.enabled ? "transparent"
             : Theme.alpha(item.destructive ? Theme.p.danger : Theme.p.accent, 0.18)
        border.width: item.highlighted && item.enabled ? Math.max(1, Theme.s(1)) : 0
        border.color: Theme.alpha(item.destructive ? Theme.p.danger : Theme.p.accent, 0.35)
    }
}
