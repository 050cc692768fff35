// Stands in for a screen with nothing to show: an icon, a title, a message, and the ways to get started.
import QtQuick
import QtQuick.Controls
import Orrelin

Item {
    id: empty
    property string title
    property string message
    // The screens that have their own way forward may hide the two buttons.
    property bool showActions: true

    Column {
        id: body
        anchors.centerIn: parent
        width: Math.min(parent.width - Theme.s(48), Theme.s(520))
        spacing: Theme.s(14)

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Theme.s(96)
            height: Theme.s(96)
            Rectangle {
                anchors.fill: parent
                radius: width / 2
                color: Theme.alpha(Theme.p.accent, 0.07)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(Theme.p.accent, 0.28)
            }
            Rectangle {
                anchors.centerIn: parent
                width: parent.width * 0.7
                height: width
                radius: width / 2
                color: "transparent"
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(Theme.p.accent, 0.16)
            }
            SvgIcon {
                anchors.centerIn: parent
                symbol: "externaldrive.badge.plus"
                size: Theme.s(42)
                color: Theme.p.accent
            }
        }

        Text {
            objectName: "emptyStateTitle"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: empty.title
            font: Theme.f(20, Font.Bold)
            color: Theme.p.text
            wrapMode: Text.WordWrap
        }

        Text {
            objectName: "emptyStateMessage"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: empty.message
            font: Theme.f(13)
            lineHeight: 1.15
            color: Theme.p.subtext
            wrapMode: Text.WordWrap
            visible: text.length > 0
        }

        // Side by side, or one above the other where the two do not fit.
        Grid {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: Theme.s(6)
            spacing: Theme.s(10)
            columns: catalogButton.implicitWidth + sampleButton.implicitWidth + spacing <= body.width ? 2 : 1
            horizontalItemAlignment: Grid.AlignHCenter
            visible: empty.showActions

            LaserButton {
                id: catalogButton
                objectName: "emptyStateCatalogButton"
                prominent: true
                symbol: "plus.viewfinder"
                text: "Catalog a Drive"
                enabled: !AppModel.scanner.isRunning
                onClicked: AppModel.startNewCatalog()
            }
            LaserButton {
                id: sampleButton
                objectName: "emptyStateSampleButton"
                symbol: "sparkles"
                text: "Load Sample Data"
                onClicked: AppModel.loadSampleData()
            }
        }
    }
}
