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
        anchors.leftMargin: Theme.s(header.roomy ? 26 : 14)
        anchors.rightMargin: Theme.s(header.roomy ? 22 : 12)
        spacing: Theme.s(header.roomy ? 14 : 8)

        ColumnLayout {
            Layout.fillWidth: true
            // The title is short and stays whole unless space is very tight; the subtitle elides first.
            Layout.minimumWidth: Math.min(title.implicitWidth, Theme.s(header.roomy ? 180 : 80))
            Layout.alignment: Qt.AlignVCenter
            spacing: Theme.s(3)

            Text {
                id: title
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

        // The search fills up to its own width and gives way first; squeezed below a usable width it
        // leaves its place empty (Ctrl+F still reaches the Search screen).
        Item {
            id: searchSlot
            Layout.fillWidth: true
            Layout.preferredWidth: Theme.s(300)
            Layout.maximumWidth: Theme.s(300)
            Layout.minimumWidth: header.roomy ? Theme.s(160) : 0
            Layout.fillHeight: true

            QuickSearchField {
                objectName: "quickSearch"
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: searchSlot.width >= Theme.s(90)
            }
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
            // Named also when it shows only its icon.
            Accessible.name: "Catalog a Drive"
            Accessible.description: ToolTip.text
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
