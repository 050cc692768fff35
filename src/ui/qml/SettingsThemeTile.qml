// One colour theme in Settings: a swatch of its palette, its name and its description; the current theme
// is marked. Clicking makes it the current theme.
import QtQuick
import Orrelin

GlassPanel {
    id: tile
    // An entry of UIState.themes: name, blurb, palette.
    property var theme
    property bool current: false
    signal chosen()

    readonly property var tp: theme.palette

    implicitHeight: column.implicitHeight + Theme.s(20)
    radius: Theme.s(12)
    highlight: current || hover.containsMouse || activeFocus
    border.width: Math.max(1, Theme.s(current || activeFocus ? 2 : 1))
    border.color: current ? Theme.p.accent
                : activeFocus ? Theme.p.glow
                : hover.containsMouse ? Theme.alpha(Theme.p.accent, 0.55) : Theme.p.stroke

    activeFocusOnTab: true
    // One choice of several: a radio button named after its theme.
    Accessible.role: Accessible.RadioButton
    Accessible.name: theme.name
    Accessible.description: theme.blurb
    Accessible.focusable: true
    Accessible.checkable: true
    Accessible.checked: current
    Accessible.onPressAction: tile.chosen()
    Accessible.onToggleAction: tile.chosen()
    Keys.onSpacePressed: tile.chosen()
    Keys.onReturnPressed: tile.chosen()
    Keys.onEnterPressed: tile.chosen()

    Column {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.s(10)
        spacing: Theme.s(8)

        // The theme in small: its backdrop, a panel with its text colours and a row of its lights.
        Rectangle {
            width: parent.width
            height: Theme.s(64)
            radius: Theme.s(8)
            clip: true
            border.width: Math.max(1, Theme.s(1))
            border.color: tile.tp.stroke
            gradient: Gradient {
                GradientStop { position: 0; color: tile.tp.bgTop }
                GradientStop { position: 1; color: tile.tp.bgBottom }
            }
            Rectangle {
                x: Theme.s(8)
                y: Theme.s(8)
                width: parent.width * 0.5
                height: parent.height - Theme.s(16)
                radius: Theme.s(5)
                color: tile.tp.panel
                border.width: Math.max(1, Theme.s(1))
                border.color: tile.tp.stroke
                Column {
                    anchors.fill: parent
                    anchors.margins: Theme.s(7)
                    spacing: Theme.s(5)
                    Rectangle { width: parent.width * 0.8; height: Theme.s(5); radius: height / 2; color: tile.tp.text }
                    Rectangle { width: parent.width * 0.55; height: Theme.s(4); radius: height / 2; color: tile.tp.subtext }
                    Rectangle { width: parent.width * 0.65; height: Theme.s(4); radius: height / 2; color: tile.tp.accent }
                }
            }
            Grid {
                anchors.right: parent.right
                anchors.rightMargin: Theme.s(10)
                anchors.verticalCenter: parent.verticalCenter
                columns: 3
                spacing: Theme.s(5)
                Repeater {
                    model: [tile.tp.accent, tile.tp.accent2, tile.tp.glow, tile.tp.ok, tile.tp.warn, tile.tp.danger]
                    Rectangle {
                        required property var modelData
                        width: Theme.s(11)
                        height: width
                        radius: width / 2
                        color: modelData
                    }
                }
            }
        }

        Item {
            width: parent.width
            height: Math.max(name.implicitHeight, mark.height)
            Text {
                id: name
                anchors.left: parent.left
                anchors.right: mark.left
                anchors.rightMargin: Theme.s(4)
                anchors.verticalCenter: parent.verticalCenter
                text: tile.theme.name
                font: Theme.f(13, Font.DemiBold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            SvgIcon {
                id: mark
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: tile.current
                symbol: "checkmark.circle.fill"
                size: Theme.s(16)
                color: Theme.p.accent
            }
        }
        // Two lines whatever the blurb's length, so the tiles of a row line up.
        Item {
            width: parent.width
            height: Math.ceil(blurbMetrics.height * 2)
            Text {
                width: parent.width
                text: tile.theme.blurb
                font: Theme.f(11)
                color: Theme.p.subtext
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
        }
    }

    FontMetrics {
        id: blurbMetrics
        font: Theme.f(11)
    }

    MouseArea {
        id: hover
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: tile.chosen()
    }
}
