// A record's picture: its thumbnail when it has one, else a rounded tile with its kind's symbol in the
// kind's colours. Rows of long lists give `kind` and `thumb` directly instead of a whole record map; the
// picture's parts are made only for a record that has a thumbnail.
import QtQuick
import Orrelin

Rectangle {
    id: icon
    // A file map (see Files / fileMap): kind and thumb are read.
    property var file: ({})
    property string kind: file && file.kind ? file.kind : "Other"
    // The thumbnail's address, empty for none.
    property string thumb: file && file.thumb ? file.thumb : ""
    property real size: Theme.s(18)

    implicitWidth: size
    implicitHeight: size
    width: size
    height: size
    radius: Math.max(2, size * 0.22)
    gradient: Gradient {
        GradientStop { position: 0; color: FileKinds.color(icon.kind, 0.55) }
        GradientStop { position: 1; color: FileKinds.color(icon.kind, 0.8) }
    }

    SvgIcon {
        anchors.centerIn: parent
        symbol: FileKinds.symbol(icon.kind)
        size: icon.size * 0.62
        color: "#ffffff"
    }

    Loader {
        anchors.fill: parent
        active: icon.thumb.length > 0
        sourceComponent: Item {
            Image {
                id: picture
                anchors.fill: parent
                visible: status === Image.Ready
                source: icon.thumb
                cache: false
                asynchronous: true
                fillMode: Image.PreserveAspectCrop
                sourceSize.width: Math.ceil(icon.size * 2)
                sourceSize.height: Math.ceil(icon.size * 2)
            }
            // Rounds the picture's corners by drawing the surround over them.
            Rectangle {
                anchors.fill: parent
                anchors.margins: -border.width + Math.max(1, icon.size * 0.02)
                visible: picture.visible
                radius: icon.radius + border.width
                color: "transparent"
                border.width: Math.max(1, icon.size * 0.12)
                border.color: Qt.tint(Theme.p.bgTop, Theme.alpha(Theme.p.panel, 0.9))
                antialiasing: true
            }
        }
    }
}
