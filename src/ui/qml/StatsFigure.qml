// One headline figure of the statistics screen: an icon, the value large, its label below in capitals.
import QtQuick
import Orrelin

GlassPanel {
    id: figure
    property string label
    property string value
    property string symbol

    implicitHeight: column.implicitHeight + 2 * Theme.s(14)
    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    Column {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.margins: Theme.s(16)
        spacing: Theme.s(4)

        SvgIcon {
            symbol: figure.symbol
            color: Theme.p.accent
            size: Theme.s(18)
        }
        Text {
            objectName: "figureValue_" + figure.label
            width: parent.width
            text: figure.value
            font: Theme.f(24, Font.Bold, true)
            color: Theme.p.text
            elide: Text.ElideRight
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.f(13).pixelSize
        }
        SectionTitle {
            width: parent.width
            text: figure.label
        }
    }
}
