// A small heading in the look of the panels.
import QtQuick
import Orrelin

Text {
    font: Theme.f(11, Font.Bold)
    color: Theme.p.subtext
}
