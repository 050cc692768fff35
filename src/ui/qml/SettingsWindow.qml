// The Settings window: Appearance, Scanning, Backups and Data.
import QtQuick
import QtQuick.Window
import Orrelin

Window {
    id: settings
    title: "Settings"
    width: 720
    height: 560
    color: Theme.p.bgBottom
    function open() { show(); raise(); requestActivate() }
}
