// The window's background: a vertical gradient of the theme.
import QtQuick
import Orrelin

Rectangle {
    gradient: Gradient {
        GradientStop { position: 0; color: Theme.p.bgTop }
        GradientStop { position: 1; color: Theme.p.bgBottom }
    }
}
