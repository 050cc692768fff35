// The trail of the open path: the cartridge first, then each open folder, with a chevron between them.
// A click on a crumb goes back up to it. A trail too long for its room shows its end, and an ellipsis at
// the left stands for the crumbs cut off, which it offers in a menu.
import QtQuick
import QtQuick.Controls
import Orrelin

Item {
    id: crumbs
    property var browser
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})

    implicitHeight: Theme.s(28)
    Accessible.role: Accessible.List
    Accessible.name: "Path"

    // Whether the trail is wider than its room; its start then gives way to the ellipsis.
    readonly property bool cut: trail.width > width

    function crumbName(depth) {
        return depth === 0 ? (catalog.name || "") : (browser.path[depth - 1] ? browser.path[depth - 1].name : "")
    }
    // The depths of the crumbs that lie, even partly, left of the room.
    function hiddenDepths() {
        const list = []
        for (let d = 0; d < trailRepeater.count; ++d) {
            const crumb = trailRepeater.itemAt(d)
            if (!crumb || crumb.x + trail.x >= -0.5) break
            list.push(d)
        }
        return list
    }

    AbstractButton {
        id: more
        objectName: "crumbsMore"
        visible: crumbs.cut
        height: crumbs.height
        width: Theme.s(28)
        hoverEnabled: true
        text: "Earlier folders"
        Accessible.role: Accessible.ButtonMenu
        Accessible.name: text
        Accessible.onPressAction: more.clicked()
        onClicked: {
            hiddenModel.clear()
            for (const d of crumbs.hiddenDepths()) hiddenModel.append({ depth: d, name: crumbs.crumbName(d) })
            hiddenMenu.popup(more, 0, more.height)
        }
        HelpTip { text: more.text; shown: more.hovered }
        contentItem: Text {
            text: "…"
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            font: Theme.f(13, Font.DemiBold)
            color: more.hovered ? Theme.p.text : Theme.p.subtext
        }
        background: Rectangle {
            radius: Theme.s(6)
            color: Theme.alpha(Theme.p.accent, more.down ? 0.2 : more.hovered ? 0.1 : 0)
            border.width: more.visualFocus ? Math.max(1, Theme.s(1)) : 0
            border.color: Theme.alpha(Theme.p.accent, 0.6)
        }
    }

    ListModel { id: hiddenModel }
    ThemedMenu {
        id: hiddenMenu
        objectName: "crumbsMoreMenu"
        Instantiator {
            model: hiddenModel
            delegate: ThemedMenuItem {
                required property int depth
                required property string name
                objectName: "crumbsMore" + depth
                text: name
                onTriggered: crumbs.browser.goTo(depth)
            }
            onObjectAdded: (index, object) => hiddenMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => hiddenMenu.removeItem(object)
        }
    }

    // The room of the trail, right of the ellipsis when there is one; the trail keeps its end in sight.
    Item {
        id: room
        x: crumbs.cut ? more.width : 0
        width: crumbs.width - x
        height: crumbs.height
        clip: true

        Row {
            id: trail
            x: Math.min(0, room.width - width)
            height: room.height

            Repeater {
                id: trailRepeater
                model: crumbs.browser.pathLength + 1
                delegate: Row {
                    id: crumb
                    required property int index
                    readonly property bool last: index === trailRepeater.count - 1
                    height: trail.height

                    SvgIcon {
                        visible: crumb.index > 0
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "chevron.right"
                        size: Theme.s(9)
                        color: Theme.alpha(Theme.p.subtext, 0.8)
                    }

                    AbstractButton {
                        id: button
                        objectName: "crumb" + crumb.index
                        anchors.verticalCenter: parent.verticalCenter
                        hoverEnabled: true
                        leftPadding: Theme.s(6)
                        rightPadding: Theme.s(6)
                        topPadding: Theme.s(4)
                        bottomPadding: Theme.s(4)
                        text: crumbs.crumbName(crumb.index)
                        Accessible.role: Accessible.Button
                        Accessible.name: text
                        Accessible.onPressAction: crumbs.browser.goTo(crumb.index)
                        onClicked: crumbs.browser.goTo(crumb.index)

                        contentItem: Row {
                            spacing: Theme.s(5)
                            SvgIcon {
                                anchors.verticalCenter: parent.verticalCenter
                                visible: crumb.index === 0
                                symbol: crumbs.catalog.symbol || "internaldrive.fill"
                                size: Theme.s(14)
                                color: Theme.p.accent
                            }
                            Text {
                                anchors.verticalCenter: parent.verticalCenter
                                width: Math.min(implicitWidth, Theme.s(200))
                                text: button.text
                                elide: Text.ElideMiddle
                                font: Theme.f(12.5, crumb.last ? Font.DemiBold : Font.Normal)
                                color: crumb.last || button.hovered ? Theme.p.text : Theme.p.subtext
                            }
                        }
                        background: Rectangle {
                            radius: Theme.s(6)
                            color: Theme.alpha(Theme.p.accent, button.down ? 0.2 : button.hovered ? 0.1 : 0)
                            border.width: button.visualFocus ? Math.max(1, Theme.s(1)) : 0
                            border.color: Theme.alpha(Theme.p.accent, 0.6)
                        }
                    }
                }
            }
        }
    }
}
