// The sidebar: the brand, the screens, the cartridges by group and the smart searches.
import QtQuick
import Orrelin

Rectangle {
    color: Theme.alpha(Theme.p.panel, 0.5)
}
