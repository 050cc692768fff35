// The floating panel of a running scan, folded or expanded, with pause and cancel.
import QtQuick
import Orrelin

GlassPanel {
    width: Theme.s(360)
    height: Theme.s(120)
}
