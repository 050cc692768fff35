// The trail of the open path: the cartridge first, then each open folder, with a chevron between them.
// A click on a crumb goes back up to it. A trail too long for its room scrolls to show its end.
import QtQuick
import QtQuick.Controls
import Orrelin

ListView {
    id: crumbs
    property var browser
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})

    orientation: ListView.Horizontal
    implicitHeight: Theme.s(28)
    clip: true
    spacing: 0
    boundsBehavior: Flickable.StopAtBounds
    model: browser.pathLength + 1
    Accessible.role: Accessible.List
    Accessible.name: "Path"
    onCountChanged: Qt.callLater(crumbs.positionViewAtEnd)
    onWidthChanged: Qt.callLater(crumbs.positionViewAtEnd)

    delegate: Row {
        id: crumb
        required property int index
        readonly property bool last: index === crumbs.count - 1
        height: crumbs.height
        spacing: 0

        SvgIcon {
            visible: crumb.index > 0
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.right"
            size: Theme.s(9)
            color: Theme.alpha(Theme.p.subtext, 0.8)
        }

        AbstractButton {
            id: button
            objectName: "crumb" + crumb.index
            anchors.verticalCenter: parent.verticalCenter
            hoverEnabled: true
            leftPadding: Theme.s(6)
            rightPadding: Theme.s(6)
            topPadding: Theme.s(4)
            bottomPadding: Theme.s(4)
            text: crumb.index === 0 ? (crumbs.catalog.name || "")
                                    : (crumbs.browser.path[crumb.index - 1] ? crumbs.browser.path[crumb.index - 1].name : "")
            Accessible.role: Accessible.Button
            Accessible.name: text
            Accessible.onPressAction: crumbs.browser.goTo(crumb.index)
            onClicked: crumbs.browser.goTo(crumb.index)

            contentItem: Row {
                spacing: Theme.s(5)
                SvgIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: crumb.index === 0
                    symbol: crumbs.catalog.symbol || "internaldrive.fill"
                    size: Theme.s(14)
                    color: Theme.p.accent
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, Theme.s(200))
                    text: button.text
                    elide: Text.ElideMiddle
                    font: Theme.f(12.5, crumb.last ? Font.DemiBold : Font.Normal)
                    color: crumb.last || button.hovered ? Theme.p.text : Theme.p.subtext
                }
            }
            background: Rectangle {
                radius: Theme.s(6)
                color: Theme.alpha(Theme.p.accent, button.down ? 0.2 : button.hovered ? 0.1 : 0)
                border.width: button.visualFocus ? Math.max(1, Theme.s(1)) : 0
                border.color: Theme.alpha(Theme.p.accent, 0.6)
            }
        }
    }
}
