// A small heading in the look of the panels: spaced capitals in the muted text colour.
import QtQuick
import Orrelin

Text {
    readonly property font baseFont: Theme.f(10.5, Font.Bold)
    font.family: baseFont.family
    font.pixelSize: baseFont.pixelSize
    font.weight: baseFont.weight
    font.capitalization: Font.AllUppercase
    font.letterSpacing: Theme.s(1.1)
    color: Theme.p.subtext
    elide: Text.ElideRight
}
