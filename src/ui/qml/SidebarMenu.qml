// A context or pop-up menu of the sidebar: a dark glass card with the palette's edge, whose entries
// (also those of its submenus) are SidebarMenuItems.
import QtQuick
import QtQuick.Controls
import Orrelin

Menu {
    id: menu
    padding: Theme.s(5)
    font: Theme.f(12.5)
    overlap: Theme.s(4)
    // As wide as the widest entry, so no entry is cut short.
    width: {
        let widest = Theme.s(200)
        for (let i = 0; i < count; ++i) {
            const entry = itemAt(i)
            if (entry)
                widest = Math.max(widest, entry.implicitWidth)
        }
        return widest + leftPadding + rightPadding
    }
    // The entries that open submenus; tests find them by the submenu's name.
    delegate: SidebarMenuItem {
        objectName: subMenu ? subMenu.objectName + ".item" : ""
    }

    background: Rectangle {
        implicitWidth: Theme.s(236)
        radius: Theme.s(10)
        // Opaque: the panel colour over the darkest background, so nothing behind shows through the text.
        color: Qt.tint(Theme.p.bgTop, Theme.p.panel)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.alpha(Theme.p.accent, 0.3)

        Rectangle {
            z: -1
            anchors.fill: parent
            anchors.margins: -Theme.s(3)
            radius: parent.radius + Theme.s(3)
            color: "transparent"
            border.width: Theme.s(3)
            border.color: Theme.alpha(Theme.p.glow, 0.1)
        }
    }
}
