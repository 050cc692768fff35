// The status line at the bottom of the window.
import QtQuick
import Orrelin

Item {
    implicitHeight: Theme.s(28)
    height: implicitHeight
}
