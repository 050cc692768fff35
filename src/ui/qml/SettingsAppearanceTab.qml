// Settings › Appearance: the colour themes and the zoom.
import QtQuick
import QtQuick.Controls
import Orrelin

Column {
    id: tab
    spacing: Theme.s(14)

    SettingsHeading { text: "Color theme" }

    Grid {
        id: tiles
        width: parent.width
        columns: 3
        spacing: Theme.s(12)
        Repeater {
            model: UIState.themes
            SettingsThemeTile {
                required property var modelData
                required property int index
                objectName: "themeTile" + index
                width: (tiles.width - tiles.spacing * (tiles.columns - 1)) / tiles.columns
                theme: modelData
                current: UIState.theme === index
                onChosen: UIState.theme = index
            }
        }
    }

    Item { width: 1; height: Theme.s(4) }

    SettingsHeading { text: "Zoom" }

    Row {
        spacing: Theme.s(14)
        width: parent.width

        Slider {
            id: slider
            objectName: "zoomSlider"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(Theme.s(360), parent.width - percent.width - actual.width - 2 * parent.spacing)
            from: UIState.minZoom
            to: UIState.maxZoom
            stepSize: 0.1
            snapMode: Slider.SnapAlways
            // The whole window grows and shrinks with the zoom, this slider too; so the zoom is set when
            // the handle is let go, not while the ground moves under it.
            live: false
            Accessible.name: "Zoom"
            value: UIState.zoom
            onValueChanged: if (Math.abs(value - UIState.zoom) > 0.001) UIState.setZoom(value)

            background: Rectangle {
                x: slider.leftPadding
                y: slider.topPadding + slider.availableHeight / 2 - height / 2
                width: slider.availableWidth
                height: Theme.s(4)
                radius: height / 2
                color: Theme.alpha(Theme.p.subtext, 0.3)
                Rectangle {
                    width: slider.visualPosition * parent.width
                    height: parent.height
                    radius: height / 2
                    color: Theme.p.accent
                }
            }
            handle: Rectangle {
                x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
                y: slider.topPadding + slider.availableHeight / 2 - height / 2
                width: Theme.s(18)
                height: width
                radius: width / 2
                color: Theme.p.text
                border.width: Math.max(1, Theme.s(2))
                border.color: slider.pressed ? Theme.p.glow : Theme.p.accent
            }
            implicitHeight: Theme.s(26)
        }

        Text {
            id: percent
            objectName: "zoomPercentLabel"
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.s(52)
            horizontalAlignment: Text.AlignRight
            // While the handle is dragged, the level it would set.
            text: slider.pressed ? Math.round(slider.valueAt(slider.position) * 100) + "%" : UIState.zoomPercent
            font: Theme.f(14, Font.DemiBold, true)
            color: Theme.p.text
        }

        LaserButton {
            id: actual
            objectName: "actualSizeButton"
            anchors.verticalCenter: parent.verticalCenter
            text: "Actual Size"
            compact: true
            enabled: Math.abs(UIState.zoom - 1) > 0.001
            onClicked: UIState.resetZoom()
        }
    }

    SettingsNote {
        width: parent.width
        text: "Zoom scales the whole interface from 50% to 250%. Shortcuts: Ctrl++ zoom in, Ctrl+- zoom out, Ctrl+0 actual size."
    }
}
