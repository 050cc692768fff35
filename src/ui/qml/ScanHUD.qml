// The floating panel of a running scan, folded or expanded, with pause and cancel. It covers only its own
// corner of the window: everything else stays usable while a scan runs.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window
import Orrelin

GlassPanel {
    id: hud

    readonly property var scanner: AppModel.scanner

    Accessible.role: Accessible.Grouping
    Accessible.name: (scanner.isPaused ? "Scan paused: " : "Scanning ") + scanner.catalogName
    Accessible.description: Fmt.count(scanner.items) + " items, " + Fmt.size(scanner.bytes)
    readonly property bool expanded: scanner.expanded
    readonly property real pad: Theme.s(16)
    // Raised once a second, so the elapsed time (which is computed, not published) is read again.
    property int tick: 0

    // The design width, wide enough for the buttons and their note in either form (fonts differ), and
    // never wider than the window.
    width: Math.min(Math.max(Theme.s(expanded ? 470 : 440), buttonRow.implicitWidth + 2 * pad),
                    Window.width > 0 ? Window.width - Theme.s(40) : Infinity)
    height: body.implicitHeight + 2 * pad
    clip: true
    highlight: true
    color: Qt.tint(Theme.p.bgBottom, Theme.p.panel)

    // The phase and the time since the start, never under one second. `tick` is passed only so the
    // binding that calls this is evaluated again each second.
    function phaseLine(tick, phase) {
        return phase + " · " + Fmt.duration(Math.max(scanner.elapsed(), 1)) + " elapsed"
    }

    // Folding and unfolding animate; appearing does not, as the panel is laid out only once it shows and
    // would otherwise grow from nothing, with its buttons out of reach while it does.
    property bool settled: false
    onVisibleChanged: if (!visible) settled = false
    Timer {
        interval: 300
        running: hud.visible && !hud.settled
        onTriggered: hud.settled = true
    }
    Behavior on width {
        enabled: hud.settled
        NumberAnimation { duration: 220; easing.type: Easing.InOutQuad }
    }
    Behavior on height {
        enabled: hud.settled
        NumberAnimation { duration: 220; easing.type: Easing.InOutQuad }
    }

    // Swallows clicks on the panel's empty parts, so they do not reach the screen below.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }

    Timer {
        interval: 1000
        repeat: true
        running: hud.visible && hud.scanner.isRunning
        triggeredOnStart: true
        onTriggered: hud.tick++
    }

    ColumnLayout {
        id: body
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: hud.pad
        spacing: Theme.s(12)

        RowLayout {
            Layout.fillWidth: true
            // Room for the corner button.
            Layout.rightMargin: Theme.s(22)
            spacing: Theme.s(14)

            RadarView {
                objectName: "hudRadar"
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: size
                Layout.preferredHeight: size
                size: Theme.s(hud.expanded ? 112 : 46)
                rings: 3
                blips: hud.expanded ? 9 : 4
                active: !hud.scanner.isPaused
                Behavior on size {
                    enabled: hud.settled
                    NumberAnimation { duration: 220; easing.type: Easing.InOutQuad }
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignVCenter
                spacing: Theme.s(3)

                Text {
                    objectName: "hudStatus"
                    text: hud.scanner.isPaused ? "SCAN PAUSED" : "SCANNING"
                    color: hud.scanner.isPaused ? Theme.p.warn : Theme.p.accent
                    font.family: Theme.sansFamily
                    font.pixelSize: Theme.f(10).pixelSize
                    font.weight: Font.Bold
                    font.letterSpacing: Theme.s(2.4)
                }
                Text {
                    objectName: "hudName"
                    Layout.fillWidth: true
                    text: hud.scanner.catalogName
                    font: Theme.f(16, Font.Bold)
                    color: Theme.p.text
                    elide: Text.ElideRight
                }
                Text {
                    objectName: "hudCount"
                    Layout.fillWidth: true
                    text: Fmt.count(hud.scanner.items) + " items · " + Fmt.size(hud.scanner.bytes)
                    font: Theme.f(12, Font.Medium, true)
                    color: Theme.p.text
                    elide: Text.ElideRight
                }
                Text {
                    objectName: "hudPhase"
                    Layout.fillWidth: true
                    visible: hud.expanded
                    text: hud.phaseLine(hud.tick, hud.scanner.phase)
                    font: Theme.f(11)
                    color: Theme.p.subtext
                    elide: Text.ElideRight
                }
                Text {
                    objectName: "hudPath"
                    Layout.fillWidth: true
                    visible: hud.expanded
                    // A blank rather than nothing, so the panel keeps its height; one line even for a
                    // name with a line break in it.
                    text: hud.scanner.currentPath.length > 0
                          ? hud.scanner.currentPath.replace(/[\r\n]+/g, " ") : " "
                    font: Theme.f(11, Font.Normal, true)
                    color: Theme.alpha(Theme.p.subtext, 0.9)
                    elide: Text.ElideMiddle
                    maximumLineCount: 1
                }
            }
        }

        RowLayout {
            objectName: "hudCounters"
            Layout.fillWidth: true
            visible: hud.expanded
            spacing: Theme.s(8)
            Repeater {
                model: [
                    { name: "hudAdded", label: "Added", value: hud.scanner.added, tint: Theme.p.ok },
                    { name: "hudChanged", label: "Changed", value: hud.scanner.changed, tint: Theme.p.accent },
                    { name: "hudRemoved", label: "Removed", value: hud.scanner.removed, tint: Theme.p.danger }
                ]
                Rectangle {
                    Layout.fillWidth: true
                    implicitHeight: counter.implicitHeight + Theme.s(14)
                    radius: Theme.s(8)
                    color: Theme.alpha(Theme.p.text, 0.04)
                    border.width: Math.max(1, Theme.s(1))
                    border.color: Theme.p.stroke
                    CounterTile {
                        id: counter
                        objectName: modelData.name
                        anchors.centerIn: parent
                        width: parent.width
                        value: modelData.value
                        label: modelData.label
                        tint: modelData.tint
                    }
                }
            }
        }

        RowLayout {
            id: buttonRow
            Layout.fillWidth: true
            spacing: Theme.s(8)
            LaserButton {
                objectName: "hudPauseButton"
                compact: true
                text: hud.scanner.isPaused ? "Resume" : "Pause"
                symbol: hud.scanner.isPaused ? "play.fill" : "pause.fill"
                onClicked: hud.scanner.togglePause()
            }
            LaserButton {
                objectName: "hudCancelButton"
                compact: true
                text: "Cancel"
                symbol: "stop.fill"
                onClicked: hud.scanner.cancel()
            }
            Text {
                objectName: "hudNote"
                Layout.fillWidth: true
                Layout.leftMargin: Theme.s(4)
                text: "Scanning runs in the background"
                font: Theme.f(11)
                color: Theme.p.subtext
                elide: Text.ElideRight
            }
        }
    }

    IconButton {
        objectName: "hudToggle"
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: Theme.s(8)
        symbol: hud.expanded ? "chevron.down" : "chevron.up"
        tip: hud.expanded ? "Minimize" : "Expand"
        onClicked: hud.scanner.expanded = !hud.scanner.expanded
    }
}
