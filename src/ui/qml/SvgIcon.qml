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
    // color.toString(), not `"?" + color`: Qt 6.4's compiled bindings turn a colour into text through a
    // JavaScript wrapper they do not keep from the garbage collector, and a collection at that moment
    // crashes the load. The explicit call keeps this binding in the JavaScript engine, where it is safe.
    source: symbol.length > 0 ? "image://icon/" + symbol + "?" + color.toString() : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
    cache: true
}
