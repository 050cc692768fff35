// One of the commonest extensions: its name, a bar as long as its share of the commonest, its count.
import QtQuick
import QtQuick.Layouts
import Orrelin

RowLayout {
    id: row
    property var ext: ({})

    spacing: Theme.s(10)
    implicitHeight: Theme.s(24)
    Accessible.role: Accessible.StaticText
    Accessible.name: ext.ext + ", " + ext.text

    Text {
        Layout.preferredWidth: Theme.s(64)
        text: row.ext.ext
        font: Theme.f(11.5, Font.DemiBold, true)
        color: Theme.p.text
        elide: Text.ElideRight
    }
    Item {
        Layout.fillWidth: true
        implicitHeight: Theme.s(10)
        Rectangle {
            objectName: "extensionBar"
            width: Math.max(Theme.s(3), parent.width * (row.ext.fraction || 0))
            height: parent.height
            radius: height / 2
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: Theme.alpha(Theme.p.accent2, 0.5) }
                GradientStop { position: 1; color: Theme.p.accent2 }
            }
        }
    }
    Text {
        Layout.minimumWidth: Theme.s(56)
        horizontalAlignment: Text.AlignRight
        text: row.ext.text
        font: Theme.f(11.5, Font.Normal, true)
        color: Theme.p.subtext
    }
}
