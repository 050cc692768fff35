// The top of the sidebar: the radar emblem beside the program's name and maker.
import QtQuick
import Orrelin

Item {
    id: brand
    implicitHeight: row.implicitHeight

    Row {
        id: row
        spacing: Theme.s(12)

        RadarView {
            objectName: "brandRadar"
            size: Theme.s(46)
            rings: 3
            blips: 3
            active: true
            anchors.verticalCenter: parent.verticalCenter
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.s(1)
            Item {
                width: title.implicitWidth
                height: title.implicitHeight
                // A faint copy in the glow colour behind the name, a hair offset, reads as a neon haze.
                Text {
                    x: 0
                    y: Theme.s(0.5)
                    text: title.text
                    font: title.font
                    color: Theme.alpha(Theme.p.glow, 0.45)
                    scale: 1.02
                    // Only a glow: the name is read once, from the text above it.
                    Accessible.ignored: true
                }
                Text {
                    id: title
                    text: "Orrelin"
                    font: Theme.f(20, Font.Bold)
                    color: Theme.p.text
                }
            }
            Text {
                text: "by Tavrel Works · TVRL"
                font: Theme.f(10.5, Font.Medium)
                color: Theme.p.subtext
            }
        }
    }
}
