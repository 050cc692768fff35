// The About window: the radar emblem, the program's name, maker and version, its line, and a link to the
// maker's web site. It is exactly as large as what it shows, at every zoom.
import QtQuick
import QtQuick.Window
import Orrelin

Window {
    id: about
    title: "About TVRL Orrelin"
    color: Theme.p.bgBottom
    flags: Qt.Dialog

    readonly property real margin: Theme.s(36)
    readonly property int fitWidth: Math.ceil(content.implicitWidth + 2 * margin)
    readonly property int fitHeight: Math.ceil(content.implicitHeight + 2 * margin)

    // Shown once the event loop runs again: asked for while the main window is still being set up, the
    // window would otherwise be hidden again as its own set-up completes, or end up beneath the main one.
    function open() { Qt.callLater(reveal) }
    property bool placed: false
    function reveal() {
        if (!placed) {
            // Centred on the screen the first time; where the user moves it afterwards, it stays.
            x = Screen.virtualX + (Screen.width - width) / 2
            y = Screen.virtualY + (Screen.height - height) / 3
            placed = true
        }
        show()
        raise()
        requestActivate()
    }

    // Exactly the content's size, which the user cannot change. The bounds are loosened before each new
    // size, as a window keeps its size within the bounds it has at that moment.
    function fit() {
        minimumWidth = 0
        minimumHeight = 0
        maximumWidth = 16777215
        maximumHeight = 16777215
        width = fitWidth
        height = fitHeight
        minimumWidth = fitWidth
        maximumWidth = fitWidth
        minimumHeight = fitHeight
        maximumHeight = fitHeight
    }
    onFitWidthChanged: fit()
    onFitHeightChanged: fit()
    Component.onCompleted: fit()

    SettingsState {
        id: info
    }

    BackdropView {
        anchors.fill: parent
    }

    Column {
        id: content
        objectName: "aboutContent"
        anchors.centerIn: parent
        spacing: Theme.s(6)

        RadarView {
            objectName: "aboutRadar"
            anchors.horizontalCenter: parent.horizontalCenter
            size: Theme.s(112)
            active: about.visible
        }
        Item { width: 1; height: Theme.s(10) }
        Text {
            objectName: "aboutName"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "TVRL Orrelin"
            font: Theme.f(24, Font.Bold)
            color: Theme.p.text
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "A Tavrel Works (TVRL) product"
            font: Theme.f(13)
            color: Theme.p.subtext
        }
        Text {
            objectName: "aboutVersion"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Version " + info.version + " (build " + info.build + ")"
            font: Theme.f(12, Font.Normal, true)
            color: Theme.p.subtext
        }
        Item { width: 1; height: Theme.s(10) }
        Text {
            objectName: "aboutTagline"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Catalog every drive. Find anything \u2014 even when it\u2019s unplugged."
            font: Theme.f(14, Font.DemiBold)
            color: Theme.p.accent
        }
        Item { width: 1; height: Theme.s(10) }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.s(5)
            Text {
                text: "Created by"
                font: Theme.f(12)
                color: Theme.p.subtext
            }
            Text {
                id: link
                objectName: "websiteLink"
                text: "Tavrel Works"
                font.family: Theme.f(12).family
                font.pixelSize: Theme.f(12).pixelSize
                font.weight: Font.DemiBold
                font.underline: linkArea.containsMouse
                color: linkArea.pressed ? Theme.p.accent2 : Theme.p.accent
                Accessible.role: Accessible.Link
                Accessible.name: text
                Accessible.description: "Open the Tavrel Works web site"
                Accessible.onPressAction: info.openWebsite()

                MouseArea {
                    id: linkArea
                    anchors.fill: parent
                    anchors.margins: -Theme.s(3)
                    hoverEnabled: true
                    cursorShape: Qt.PointingHandCursor
                    onClicked: info.openWebsite()
                }
            }
        }
    }

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: about.close()
    }
}
