// Dims the window and shows one sheet or alert in its middle, on a glass panel, while `active`. Clicks,
// wheel turns and keys do not reach what lies behind. The sheet gets the keyboard focus; Return and
// Escape that it leaves unhandled call its accept() and cancel() when it has them, and otherwise Escape
// asks the window to put the sheet away (dismissRequested).
import QtQuick
import QtQuick.Window
import Orrelin

FocusScope {
    id: layer
    property bool active: false
    property Component sheet
    readonly property Item content: loader.item

    signal dismissRequested()

    visible: active
    z: 10

    onActiveChanged: {
        if (active) {
            appear.restart()
            forceActiveFocus()
        }
    }

    Keys.onEscapePressed: (event) => {
        event.accepted = true
        if (content && typeof content.cancel === "function") content.cancel()
        else dismissRequested()
    }
    Keys.onReturnPressed: (event) => accept(event)
    Keys.onEnterPressed: (event) => accept(event)

    function accept(event) {
        event.accepted = true
        if (content && typeof content.accept === "function") content.accept()
    }

    // Tab and Shift+Tab go round the sheet's controls only: the window behind is out of reach while the
    // sheet is up. Off while the focus is elsewhere (a list popped up from the sheet, a layer above).
    Shortcut {
        sequence: "Tab"
        enabled: layer.active && layer.activeFocus
        onActivated: layer.moveFocus(true)
    }
    Shortcut {
        sequence: "Shift+Tab"
        enabled: layer.active && layer.activeFocus
        onActivated: layer.moveFocus(false)
    }

    function holds(item) {
        for (let it = item; it; it = it.parent) {
            if (it === layer) return true
        }
        return false
    }
    function moveFocus(forward) {
        const reason = forward ? Qt.TabFocusReason : Qt.BacktabFocusReason
        let next = Window.activeFocusItem
        // The chain is the whole window's; skip what lies outside this layer.
        for (let step = 0; next && step < 2000; ++step) {
            next = next.nextItemInFocusChain(forward)
            if (next && next.visible && next.enabled && holds(next) && next !== layer) {
                next.forceActiveFocus(reason)
                return
            }
        }
    }

    Rectangle {
        id: dim
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.55)
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.AllButtons
            onWheel: (wheel) => wheel.accepted = true
        }
    }

    // A sheet larger than the window (a high zoom in a small window) is shown smaller, whole, rather
    // than cut off at the window's edges.
    readonly property real margin: Math.min(Theme.s(24), 24)
    readonly property real fit: loader.width > 0 && loader.height > 0
                                ? Math.min(1, (width - 2 * margin) / loader.width,
                                           (height - 2 * margin) / loader.height)
                                : 1

    Item {
        id: fitter
        objectName: "modalFit"
        anchors.centerIn: parent
        width: loader.width
        height: loader.height
        scale: Math.max(0.1, layer.fit)

        Item {
            id: frame
            anchors.fill: parent

            // A soft shadow: rings of falling opacity beyond the panel's edge.
            Repeater {
                model: 4
                Rectangle {
                    required property int index
                    anchors.fill: parent
                    anchors.margins: -Theme.s(2 + index * 4)
                    anchors.topMargin: -Theme.s(index * 4)
                    radius: Theme.s(14 + 2 + index * 4)
                    color: Qt.rgba(0, 0, 0, 0.12 - index * 0.025)
                }
            }
            // The panel is translucent: an opaque backing keeps the dimmed window from showing through.
            Rectangle {
                anchors.fill: parent
                radius: Theme.s(14)
                color: Theme.p.bgTop
            }
            GlassPanel {
                anchors.fill: parent
                highlight: true
            }
            Loader {
                id: loader
                focus: true
                active: layer.active
                sourceComponent: layer.sheet
                onLoaded: item.forceActiveFocus()
            }
        }
    }

    ParallelAnimation {
        id: appear
        NumberAnimation { target: frame; property: "opacity"; from: 0; to: 1; duration: 160 }
        NumberAnimation { target: frame; property: "scale"; from: 0.96; to: 1; duration: 200
                          easing.type: Easing.OutCubic }
        NumberAnimation { target: dim; property: "opacity"; from: 0; to: 1; duration: 140 }
    }
}
