// Minus, the zoom as a percentage (a menu of fixed levels), plus.
import QtQuick
import QtQuick.Controls
import Orrelin

Rectangle {
    id: control
    implicitWidth: row.implicitWidth + Theme.s(6)
    implicitHeight: Theme.s(34)
    radius: height / 2
    color: Theme.alpha(Theme.p.bgBottom, 0.55)
    border.width: Math.max(1, Theme.s(1))
    border.color: Theme.p.stroke

    Accessible.role: Accessible.Grouping
    Accessible.name: "Zoom"

    HoverHandler { id: hover }
    ToolTip.visible: hover.hovered && !levels.visible
    ToolTip.delay: 600
    ToolTip.text: "Choose a zoom level (Ctrl+0 for Actual Size)"

    Row {
        id: row
        anchors.centerIn: parent
        spacing: Theme.s(1)

        IconButton {
            objectName: "zoomOutButton"
            anchors.verticalCenter: parent.verticalCenter
            symbol: "minus"
            iconSize: Theme.s(12)
            padding: Theme.s(6)
            focusPolicy: Qt.NoFocus
            Accessible.name: "Zoom out"
            enabled: UIState.zoom >= 0.501
            onClicked: UIState.zoomOut()
        }

        Button {
            id: percent
            objectName: "zoomPercentButton"
            anchors.verticalCenter: parent.verticalCenter
            hoverEnabled: true
            focusPolicy: Qt.NoFocus
            leftPadding: Theme.s(6)
            rightPadding: Theme.s(6)
            topPadding: Theme.s(4)
            bottomPadding: Theme.s(4)
            text: UIState.zoomPercent
            font: Theme.f(12, Font.DemiBold, true)
            Accessible.name: "Zoom " + text
            Accessible.description: control.ToolTip.text
            contentItem: Text {
                objectName: "zoomPercentText"
                text: percent.text
                font: percent.font
                color: Theme.p.text
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                // Wide enough for "250%", so the buttons beside it stay put.
                width: Math.max(implicitWidth, widest.advanceWidth)
                TextMetrics { id: widest; font: percent.font; text: "250%" }
            }
            background: Rectangle {
                radius: Theme.s(7)
                color: Theme.alpha(Theme.p.accent, percent.down || levels.visible ? 0.22
                                                  : percent.hovered ? 0.12 : 0)
            }
            onClicked: levels.visible ? levels.close() : levels.open()

            ThemedMenu {
                id: levels
                objectName: "zoomMenu"
                minimumWidth: Theme.s(96)
                y: percent.height + Theme.s(6)
                x: (percent.width - width) / 2

                Instantiator {
                    model: UIState.zoomLevels
                    delegate: ThemedMenuItem {
                        required property var modelData
                        objectName: "zoomLevel" + modelData
                        text: modelData + "%"
                        marked: Math.round(UIState.zoom * 100) === modelData
                        onTriggered: UIState.setZoom(modelData / 100)
                    }
                    onObjectAdded: (index, object) => levels.insertItem(index, object)
                    onObjectRemoved: (index, object) => levels.removeItem(object)
                }
            }
        }

        IconButton {
            objectName: "zoomInButton"
            anchors.verticalCenter: parent.verticalCenter
            symbol: "plus"
            iconSize: Theme.s(12)
            padding: Theme.s(6)
            focusPolicy: Qt.NoFocus
            Accessible.name: "Zoom in"
            enabled: UIState.zoom <= 2.499
            onClicked: UIState.zoomIn()
        }
    }
}
