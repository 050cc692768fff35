// An explanation below or beside a setting, in the quieter text colour.
import QtQuick
import Orrelin

Text {
    font: Theme.f(12)
    color: Theme.p.subtext
    wrapMode: Text.Wrap
    lineHeight: 1.15
}
