// A menu in the look of the current theme: a dark rounded panel, as wide as its widest item. Used by the
// menu bar and the popup menus of the window.
import QtQuick
import QtQuick.Controls
import Orrelin

Menu {
    id: menu
    topPadding: Theme.s(5)
    bottomPadding: Theme.s(5)
    leftPadding: Theme.s(5)
    rightPadding: Theme.s(5)
    overlap: Theme.s(4)
    font: Theme.f(13)
    delegate: ThemedMenuItem {}
    // The narrowest the menu gets, however short its items.
    property real minimumWidth: Theme.s(180)

    // The widest item decides the width, so long texts and their shortcuts never clip.
    contentWidth: {
        let widest = menu.minimumWidth
        for (let i = 0; i < menu.count; ++i) {
            const entry = menu.itemAt(i)
            if (entry) widest = Math.max(widest, entry.implicitWidth)
        }
        return widest
    }

    background: Rectangle {
        radius: Theme.s(9)
        // Opaque, mixed from the backdrop and the panel colour, so what lies behind never shows through.
        color: Qt.tint(Theme.p.bgTop, Theme.alpha(Theme.p.panel, 0.9))
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.p.stroke
    }
}
