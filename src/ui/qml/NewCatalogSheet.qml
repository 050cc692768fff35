// What to scan and how: mounted volumes or a folder, a name, a group and the options.
import QtQuick
import Orrelin

GlassPanel {
    width: Theme.s(760)
    height: Theme.s(600)
}
