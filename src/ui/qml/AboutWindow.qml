// The About window.
import QtQuick
import QtQuick.Window
import Orrelin

Window {
    id: about
    title: "About TVRL Orrelin"
    width: 420
    height: 360
    color: Theme.p.bgBottom
    function open() { show(); raise(); requestActivate() }
}
