// The window's background: the theme's vertical gradient, with two faint pools of laser light that keep
// large empty areas from looking flat.
import QtQuick
import Orrelin

Rectangle {
    id: backdrop
    gradient: Gradient {
        GradientStop { position: 0; color: Theme.p.bgTop }
        GradientStop { position: 1; color: Theme.p.bgBottom }
    }
    clip: true

    Halo {
        width: Math.max(backdrop.width, backdrop.height) * 0.9
        height: width
        x: backdrop.width * 0.55
        y: -height * 0.55
        color: Theme.p.glow
        strength: 0.07
    }
    Halo {
        width: Math.max(backdrop.width, backdrop.height) * 0.8
        height: width
        x: -width * 0.35
        y: backdrop.height - height * 0.4
        color: Theme.p.accent2
        strength: 0.05
    }
}
