// How a finished scan went: what it added, changed and removed.
import QtQuick
import Orrelin

GlassPanel {
    width: Theme.s(600)
    height: Theme.s(480)
}
