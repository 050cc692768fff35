// A report pane of the Tools screen.
import QtQuick
import Orrelin

Item {
    implicitHeight: Theme.s(120)
}
