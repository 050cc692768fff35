// "Inventory Web Pages": the site's title and options, the button that generates it, and, once one is
// made, where it went with the buttons to open it and to show it in the file manager.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

WebExportCard {
    id: card
    property string siteTitle
    property bool thumbs: true
    property bool hidden: false
    // The folder of the last generated site; empty before the first.
    property string lastFolder
    signal siteTitleEdited(string text)
    signal thumbsToggled(bool on)
    signal hiddenToggled(bool on)
    signal generate()
    signal openSite()
    signal revealSite()

    objectName: "siteCard"
    title: "Inventory Web Pages"
    symbol: "globe.americas.fill"
    text: "A self-contained static site: an index of drives, a browsable folder tree for each one, instant search, kinds, sizes and thumbnails. No server needed — open index.html anywhere."

    Text {
        text: "Site title"
        font: Theme.f(12, Font.DemiBold)
        color: Theme.p.subtext
    }
    ThemedTextField {
        objectName: "siteTitleField"
        Layout.fillWidth: true
        Layout.maximumWidth: Theme.s(420)
        text: card.siteTitle
        placeholderText: "Drive Inventory"
        Accessible.name: "Site title"
        onTextEdited: card.siteTitleEdited(text)
    }
    OptionSwitch {
        objectName: "thumbnailsSwitch"
        Layout.fillWidth: true
        // The switch row's own padding pushed out, so its label lines up with the field's and its
        // switch ends where the field does.
        Layout.leftMargin: -leftPadding
        Layout.maximumWidth: Theme.s(420) + leftPadding + rightPadding
        text: "Include thumbnails"
        checked: card.thumbs
        onToggled: card.thumbsToggled(checked)
    }
    OptionSwitch {
        objectName: "hiddenSwitch"
        Layout.fillWidth: true
        // The switch row's own padding pushed out, so its label lines up with the field's and its
        // switch ends where the field does.
        Layout.leftMargin: -leftPadding
        Layout.maximumWidth: Theme.s(420) + leftPadding + rightPadding
        text: "Include hidden files"
        checked: card.hidden
        onToggled: card.hiddenToggled(checked)
    }
    LaserButton {
        objectName: "generateSiteButton"
        Layout.topMargin: Theme.s(4)
        prominent: true
        text: "Generate Web Site…"
        symbol: "sparkles.rectangle.stack"
        onClicked: card.generate()
    }

    // Where the last site went.
    Rectangle {
        objectName: "generatedPanel"
        visible: card.lastFolder.length > 0
        Layout.fillWidth: true
        implicitHeight: generated.implicitHeight + 2 * Theme.s(12)
        radius: Theme.s(9)
        color: Theme.alpha(Theme.p.ok, 0.07)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.alpha(Theme.p.ok, 0.3)

        ColumnLayout {
            id: generated
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            anchors.margins: Theme.s(12)
            spacing: Theme.s(10)

            RowLayout {
                Layout.fillWidth: true
                spacing: Theme.s(8)
                SvgIcon {
                    symbol: "checkmark.circle.fill"
                    color: Theme.p.ok
                    size: Theme.s(15)
                }
                Text {
                    id: generatedLine
                    objectName: "generatedLine"
                    Layout.fillWidth: true
                    text: "Generated: " + card.lastFolder
                    font: Theme.f(12)
                    color: Theme.p.text
                    elide: Text.ElideMiddle
                    HoverHandler { id: lineHover }
                    HelpTip {
                        text: card.lastFolder
                        shown: lineHover.hovered && generatedLine.truncated
                    }
                }
            }
            Flow {
                Layout.fillWidth: true
                spacing: Theme.s(8)
                LaserButton {
                    objectName: "openInBrowserButton"
                    compact: true
                    text: "Open in Browser"
                    symbol: "globe"
                    onClicked: card.openSite()
                }
                LaserButton {
                    objectName: "showInFinderButton"
                    compact: true
                    text: "Show in Finder"
                    symbol: "folder"
                    onClicked: card.revealSite()
                }
            }
        }
    }
}
