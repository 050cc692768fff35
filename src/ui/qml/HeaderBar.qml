// The header: the screen's title and subtitle, the quick search, the zoom control and "Catalog a Drive".
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

Item {
    id: header
    implicitHeight: Theme.s(76)
    height: implicitHeight

    readonly property var current: UIState.sections[AppModel.section]

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.s(26)
        anchors.rightMargin: Theme.s(22)
        spacing: Theme.s(14)

        Column {
            Layout.fillWidth: true
            Layout.minimumWidth: Theme.s(120)
            Layout.alignment: Qt.AlignVCenter
            spacing: Theme.s(3)

            Text {
                objectName: "headerTitle"
                width: parent.width
                text: header.current.title
                font: Theme.f(22, Font.Bold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            Text {
                objectName: "headerSubtitle"
                width: parent.width
                text: header.current.subtitle
                font: Theme.f(12)
                color: Theme.p.subtext
                elide: Text.ElideRight
            }
        }

        QuickSearchField {
            objectName: "quickSearch"
            Layout.preferredWidth: Theme.s(300)
            Layout.minimumWidth: Theme.s(160)
            Layout.fillWidth: false
            Layout.alignment: Qt.AlignVCenter
        }

        ZoomControl {
            objectName: "zoomControl"
            Layout.alignment: Qt.AlignVCenter
        }

        LaserButton {
            id: catalogButton
            objectName: "headerCatalogButton"
            Layout.alignment: Qt.AlignVCenter
            prominent: true
            symbol: "plus.viewfinder"
            text: "Catalog a Drive"
            enabled: !AppModel.scanner.isRunning
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: "Scan a drive, network share or folder into a new catalog (Ctrl+N)"
            onClicked: AppModel.startNewCatalog()
        }
    }

    // The hairline between the header and the screen.
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
        opacity: 0.7
    }
}
