// A heading of a group of settings.
import QtQuick
import Orrelin

Text {
    font: Theme.f(15, Font.Bold)
    color: Theme.p.text
    wrapMode: Text.Wrap
}
