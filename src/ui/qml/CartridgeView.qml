// One catalog as a cartridge in the sidebar: its light (online or not), its drive's icon, its name, file
// count and size, how full the drive is, and its status. Clicking selects it and shows the browser; the
// right button opens `menu` (a CartridgeMenu) for it.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

Item {
    id: cartridge
    // One element of AppModel.catalogs.
    required property var catalog
    property var menu: null

    readonly property real catalogID: catalog.id
    readonly property bool selected: AppModel.selectedCatalogID === catalogID
    readonly property bool online: AppModel.onlineIDs.indexOf(catalogID) >= 0
    readonly property bool watched: AppModel.watchedIDs.indexOf(catalogID) >= 0
    readonly property bool sample: catalog.isSample === true
    readonly property bool scanning: AppModel.scanner.isRunning && AppModel.scanner.catalogName === catalog.name
    readonly property string status: online ? "ONLINE" : sample ? "SAMPLE · OFFLINE" : "OFFLINE"
    readonly property real pad: Theme.s(10)

    objectName: "cartridge:" + catalog.name
    implicitHeight: body.implicitHeight + 2 * pad

    // What a screen reader says of it: the lines of the card in one sentence ("DJ Crates SSD, 130 files,
    // 2.68 GB, sample, offline"), then how full the drive is and the help texts.
    readonly property string spokenName: catalog.name + ", " + Fmt.count(catalog.fileCount)
                                         + (catalog.fileCount === 1 ? " file, " : " files, ")
                                         + Fmt.size(catalog.totalSize) + ", "
                                         + (scanning ? "scanning, " : "")
                                         + (online ? "online" : sample ? "sample, offline" : "offline")
    readonly property string spokenDetail: [
        catalog.capacity >= 1 ? Math.round(Math.max(0, Math.min(1, catalog.usedFraction)) * 100) + "% of "
                                + Fmt.size(catalog.capacity) + " used" : "",
        sample ? "Sample cartridge" : "",
        watched ? "Auto-update is on: changes on the drive update this catalog automatically" : ""
    ].filter(line => line.length > 0).join(". ")

    Accessible.role: Accessible.Button
    Accessible.name: spokenName
    Accessible.description: spokenDetail
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: cartridge.open()

    // Selects the catalog and shows it in the browser, as a click does.
    function open() {
        AppModel.selectedCatalogID = cartridge.catalogID
        AppModel.section = Nav.AppSection.browse
    }

    CartridgeShape {
        anchors.fill: parent
        selected: cartridge.selected
        hovered: hover.hovered
    }

    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton) {
                if (cartridge.menu)
                    cartridge.menu.openFor(cartridge.catalog, cartridge, mouse.x, mouse.y)
                return
            }
            cartridge.open()
        }
    }

    // A sample says so; any other cartridge whose name is cut short shows it whole.
    HelpTip {
        objectName: "cartridgeHelp"
        text: cartridge.sample ? "Sample cartridge" : nameText.truncated ? cartridge.catalog.name : ""
        shown: hover.hovered && !eyeHover.hovered
    }

    ColumnLayout {
        id: body
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: cartridge.pad
        anchors.rightMargin: cartridge.pad + Theme.s(6)
        spacing: Theme.s(6)

        RowLayout {
            spacing: Theme.s(9)
            Layout.fillWidth: true

            // The drive's icon on a small bay, with the light at its corner.
            Rectangle {
                Layout.preferredWidth: Theme.s(32)
                Layout.preferredHeight: Theme.s(32)
                Layout.alignment: Qt.AlignTop
                radius: Theme.s(8)
                color: Theme.alpha(cartridge.online ? Theme.p.accent : Theme.p.subtext, 0.1)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.alpha(cartridge.online || cartridge.selected ? Theme.p.accent : Theme.p.subtext, 0.3)

                SvgIcon {
                    anchors.centerIn: parent
                    symbol: cartridge.catalog.symbol
                    size: Theme.s(18)
                    color: cartridge.online || cartridge.selected ? Theme.p.accent : Theme.p.subtext
                }
                LED {
                    objectName: "led"
                    x: parent.width - width * 0.7
                    y: -height * 0.3
                    size: Theme.s(7)
                    color: cartridge.scanning ? Theme.p.accent
                         : cartridge.online ? Theme.p.ok
                         : Theme.alpha(Theme.p.subtext, 0.55)
                    pulsing: cartridge.scanning
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: Theme.s(2)
                Text {
                    id: nameText
                    objectName: "name"
                    Layout.fillWidth: true
                    // Names in a right-to-left script stay at the left edge like every other line.
                    horizontalAlignment: Text.AlignLeft
                    text: cartridge.catalog.name
                    font: Theme.f(13, Font.DemiBold)
                    color: Theme.p.text
                    elide: Text.ElideRight
                }
                Text {
                    objectName: "totals"
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignLeft
                    text: Fmt.count(cartridge.catalog.fileCount)
                          + (cartridge.catalog.fileCount === 1 ? " file · " : " files · ")
                          + Fmt.size(cartridge.catalog.totalSize)
                    font: Theme.f(11)
                    color: Theme.p.subtext
                    elide: Text.ElideRight
                }
            }

            SvgIcon {
                id: eye
                objectName: "watchedEye"
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: Theme.s(2)
                visible: cartridge.watched
                symbol: "eye.fill"
                size: Theme.s(13)
                color: Theme.p.accent2

                HoverHandler { id: eyeHover }
                HelpTip {
                    objectName: "watchedHelp"
                    text: "Auto-update is on: changes on the drive update this catalog automatically"
                    shown: eyeHover.hovered
                    delay: 300
                }
            }
        }

        // How full the drive is, when its capacity is known.
        Rectangle {
            objectName: "capacityBar"
            visible: cartridge.catalog.capacity >= 1
            Layout.fillWidth: true
            Layout.preferredHeight: Math.max(2, Theme.s(3))
            radius: height / 2
            color: Theme.alpha(Theme.p.subtext, 0.18)

            Rectangle {
                id: fill
                readonly property real used: Math.max(0, Math.min(1, cartridge.catalog.usedFraction))
                width: Math.max(height, parent.width * used)
                height: parent.height
                radius: height / 2
                visible: used > 0
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    GradientStop { position: 0; color: Theme.p.accent }
                    GradientStop {
                        position: 1
                        color: fill.used > 0.9 ? Theme.p.danger : fill.used > 0.75 ? Theme.p.warn : Theme.p.accent2
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s(6)
            Text {
                objectName: "status"
                text: cartridge.status
                readonly property font base: Theme.f(9.5, Font.Bold, true)
                font.family: base.family
                font.pixelSize: base.pixelSize
                font.weight: base.weight
                font.letterSpacing: Theme.s(0.8)
                color: cartridge.online ? Theme.p.ok : cartridge.sample ? Theme.alpha(Theme.p.warn, 0.85)
                                                                         : Theme.p.subtext
            }
            Item { Layout.fillWidth: true }
            Text {
                visible: cartridge.catalog.capacity >= 1
                text: Math.round(Math.max(0, Math.min(1, cartridge.catalog.usedFraction)) * 100) + "% of "
                      + Fmt.size(cartridge.catalog.capacity)
                font: Theme.f(9.5, Font.Normal, true)
                color: Theme.alpha(Theme.p.subtext, 0.85)
            }
        }
    }
}
