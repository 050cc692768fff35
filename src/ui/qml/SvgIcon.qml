// One of the program's icons, drawn in one colour at any size.
import QtQuick
import Orrelin

Image {
    id: icon
    // The symbol's name ("folder.fill", "externaldrive.fill", …); data/icons/<symbol>.svg is its drawing.
    property string symbol
    property color color: Theme.p.text
    property real size: Theme.s(16)

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: symbol.length > 0 ? "image://icon/" + symbol + "?" + color : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
    cache: true
}
