// One count of a comparison: its label (the button's text) and figure. The three lists are chips to click; "Identical"
// (tab -1) is a plain figure in the same shape.
import QtQuick
import QtQuick.Controls
import Orrelin

AbstractButton {
    id: chip
    property real count: 0
    property int tab: -1
    property bool current: false
    signal picked()

    readonly property bool clickable: tab >= 0
    enabled: true
    focusPolicy: clickable ? Qt.StrongFocus : Qt.NoFocus
    hoverEnabled: clickable
    checkable: false
    padding: Theme.s(10)
    topPadding: Theme.s(6)
    bottomPadding: Theme.s(6)
    Accessible.role: clickable ? Accessible.PageTab : Accessible.StaticText
    Accessible.name: text + ", " + Fmt.count(count)
    Accessible.selected: current
    Accessible.onPressAction: if (clickable) chip.picked()
    onClicked: if (clickable) chip.picked()
    Keys.onReturnPressed: if (clickable) chip.picked()
    Keys.onEnterPressed: if (clickable) chip.picked()

    contentItem: Row {
        spacing: Theme.s(8)
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: chip.text
            font: Theme.f(12, Font.DemiBold)
            color: chip.current ? Theme.p.text : Theme.p.subtext
        }
        Text {
            objectName: chip.objectName + "Count"
            anchors.verticalCenter: parent.verticalCenter
            text: Fmt.count(chip.count)
            font: Theme.f(13, Font.Bold, true)
            color: chip.current ? Theme.p.accent : !chip.clickable ? Theme.p.ok : Theme.p.text
        }
    }
    background: Rectangle {
        radius: height / 2
        color: chip.current ? Theme.alpha(Theme.p.accent, 0.18)
             : chip.clickable && chip.hovered ? Theme.alpha(Theme.p.accent, 0.09)
             : Theme.alpha(Theme.p.text, 0.04)
        border.width: chip.visualFocus ? Math.max(1, Theme.s(1.5)) : Math.max(1, Theme.s(1))
        border.color: chip.visualFocus ? Theme.p.glow
                    : chip.current ? Theme.alpha(Theme.p.accent, 0.6)
                    : chip.clickable ? Theme.p.stroke : Theme.alpha(Theme.p.stroke, 0.5)
    }
}
