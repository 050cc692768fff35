// A one-line text field in the theme's look, with an optional leading symbol. Its placeholder is also
// what a screen reader calls it unless Accessible.name says otherwise.
import QtQuick
import QtQuick.Controls
import Orrelin

TextField {
    id: field
    property string symbol

    font: Theme.f(13)
    color: Theme.p.text
    placeholderTextColor: Theme.alpha(Theme.p.subtext, 0.7)
    selectionColor: Theme.alpha(Theme.p.accent, 0.45)
    selectedTextColor: Theme.p.text
    selectByMouse: true
    leftPadding: Theme.s(symbol.length > 0 ? 30 : 10)
    rightPadding: Theme.s(10)
    topPadding: Theme.s(6)
    bottomPadding: Theme.s(6)
    Accessible.name: placeholderText
    background: Rectangle {
        implicitWidth: Theme.s(160)
        radius: Theme.s(7)
        color: Theme.alpha(Theme.p.bgBottom, 0.6)
        border.width: Math.max(1, Theme.s(1))
        border.color: field.activeFocus ? Theme.p.accent : Theme.p.stroke
        SvgIcon {
            visible: field.symbol.length > 0
            x: Theme.s(9)
            anchors.verticalCenter: parent.verticalCenter
            symbol: field.symbol
            size: Theme.s(13)
            color: Theme.p.subtext
        }
    }
}
