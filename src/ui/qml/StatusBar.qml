// The status line at the bottom of the window: the running scan, or the totals of all cartridges.
import QtQuick
import Orrelin

Item {
    id: bar
    implicitHeight: Theme.s(30)
    height: implicitHeight

    readonly property var scanner: AppModel.scanner
    readonly property int cartridges: AppModel.catalogs.length

    Accessible.role: Accessible.StatusBar
    Accessible.name: statusText.text

    Rectangle {
        anchors.fill: parent
        color: Theme.alpha(Theme.p.bgBottom, 0.55)
    }
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
        opacity: 0.7
    }

    LED {
        id: led
        objectName: "statusLED"
        anchors.left: parent.left
        anchors.leftMargin: Theme.s(18)
        anchors.verticalCenter: parent.verticalCenter
        size: Theme.s(8)
        pulsing: bar.scanner.isRunning
        color: bar.scanner.isRunning ? Theme.p.accent
             : AppModel.onlineIDs.length > 0 ? Theme.p.ok : Theme.alpha(Theme.p.subtext, 0.8)
    }

    Text {
        id: statusText
        objectName: "statusText"
        anchors.left: led.right
        anchors.leftMargin: Theme.s(10)
        anchors.right: parent.right
        anchors.rightMargin: Theme.s(18)
        anchors.verticalCenter: parent.verticalCenter
        font: Theme.f(11, Font.Medium, true)
        color: Theme.p.subtext
        elide: Text.ElideRight
        text: bar.scanner.isRunning
              ? bar.scanner.phase + " “" + bar.scanner.catalogName + "” — " + Fmt.count(bar.scanner.items)
                + " items"
              : bar.cartridges + " cartridge" + (bar.cartridges === 1 ? "" : "s") + " · "
                + AppModel.onlineIDs.length + " online · " + Fmt.count(AppModel.totalFiles) + " files · "
                + Fmt.size(AppModel.totalBytes) + " cataloged"
    }
}
