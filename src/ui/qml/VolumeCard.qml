// One mounted volume in the New Catalog sheet: its icon, name and space; a plain button that shows
// whether it is the chosen one.
import QtQuick
import QtQuick.Controls
import Orrelin

AbstractButton {
    id: card
    // The volume's map from NewCatalogState.volumes: url, name, symbol, capacity, free.
    property var volume: ({})
    property bool selected: false

    readonly property string title: volume.name && volume.name.length > 0 ? volume.name : "Volume"
    readonly property string detail: volume.capacity > 0
        ? Fmt.size(volume.free) + " free of " + Fmt.size(volume.capacity) : ""

    implicitHeight: Theme.s(60)

    // Its name and space; the chosen volume is the selected one. (A button's role and checked state are
    // the control's own, set again whenever a screen reader connects.)
    Accessible.name: detail.length > 0 ? title + ", " + detail : title
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: card.clicked()
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    background: Rectangle {
        radius: Theme.s(10)
        color: card.selected ? Theme.alpha(Theme.p.accent, 0.18)
             : Theme.alpha(Theme.p.text, card.down ? 0.10 : card.hovered ? 0.07 : 0.04)
        border.width: card.selected ? Math.max(1, Theme.s(1.5)) : Math.max(1, Theme.s(1))
        border.color: card.selected ? Theme.p.accent
                    : card.visualFocus ? Theme.alpha(Theme.p.accent, 0.6) : Theme.p.stroke
    }

    contentItem: Item {
        SvgIcon {
            id: icon
            anchors.left: parent.left
            anchors.leftMargin: Theme.s(12)
            anchors.verticalCenter: parent.verticalCenter
            symbol: card.volume.symbol || "internaldrive.fill"
            size: Theme.s(26)
            color: card.selected ? Theme.p.accent : Theme.p.subtext
        }
        Column {
            anchors.left: icon.right
            anchors.leftMargin: Theme.s(10)
            anchors.right: parent.right
            anchors.rightMargin: Theme.s(10)
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.s(2)
            Text {
                width: parent.width
                text: card.title
                font: Theme.f(13, Font.DemiBold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            Text {
                width: parent.width
                visible: card.detail.length > 0
                text: card.detail
                font: Theme.f(11)
                color: Theme.p.subtext
                elide: Text.ElideRight
            }
        }
    }
}
