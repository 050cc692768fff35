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
    // At a large zoom or in a narrow window the header makes room: the title elides, the search narrows
    // and the button keeps only its icon, so the zoom control always stays in reach.
    readonly property bool roomy: width >= Theme.s(860)

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.s(26)
        anchors.rightMargin: Theme.s(22)
        spacing: Theme.s(14)

        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            Layout.alignment: Qt.AlignVCenter
            spacing: Theme.s(3)

            Text {
                objectName: "headerTitle"
                Layout.fillWidth: true
                text: header.current.title
                font: Theme.f(22, Font.Bold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            Text {
                objectName: "headerSubtitle"
                Layout.fillWidth: true
                text: header.current.subtitle
                font: Theme.f(12)
                color: Theme.p.subtext
                elide: Text.ElideRight
            }
        }

        QuickSearchField {
            objectName: "quickSearch"
            // Fills up to its own width, and gives way before the controls at the right do.
            Layout.fillWidth: true
            Layout.preferredWidth: Theme.s(300)
            Layout.maximumWidth: Theme.s(300)
            Layout.minimumWidth: Theme.s(header.roomy ? 160 : 36)
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
            // With the icon alone, the padding leaves out the gap the icon keeps before a text.
            leftPadding: Theme.s(header.roomy ? 14 : 11)
            rightPadding: Theme.s(header.roomy ? 14 : 5)
            symbol: "plus.viewfinder"
            text: header.roomy ? "Catalog a Drive" : ""
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
