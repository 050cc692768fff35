// One set of copies: a header that opens and closes it (the chevron turns), with the set's name, its
// number of copies, the size of one and the space the others waste; open, one row per copy with its
// drive's lamp, catalog, path and date, and buttons to reveal it on disk or show it in the browser.
import QtQuick
import QtQuick.Controls
import Orrelin

Rectangle {
    id: card
    required property int index
    required property string groupKey
    required property string name
    required property double size
    required property double wasted
    required property int copies
    required property bool expanded
    required property var members
    // The width of the catalog names in the rows of copies, the same in every card so that the paths line
    // up; where the card is too narrow for the path beside them, each copy takes two lines.
    property real catalogWidth: Theme.s(140)
    readonly property bool stacked: width < Theme.s(556) + catalogWidth

    height: column.height
    radius: Theme.s(10)
    color: Theme.p.panel
    border.width: Math.max(1, Theme.s(1))
    border.color: expanded ? Theme.alpha(Theme.p.accent, 0.4) : Theme.p.stroke

    Column {
        id: column
        width: parent.width

        AbstractButton {
            id: header
            objectName: "duplicateGroup_" + card.index
            width: parent.width
            height: Theme.s(card.stacked ? 62 : 40)
            hoverEnabled: true
            Accessible.role: Accessible.Button
            Accessible.name: card.name + ", " + card.copies + " copies, " + Fmt.size(card.size) + " each, "
                             + Fmt.size(card.wasted) + " wasted, " + (card.expanded ? "open" : "closed")
            Accessible.onPressAction: header.clicked()
            Keys.onReturnPressed: header.clicked()
            Keys.onEnterPressed: header.clicked()
            onClicked: DuplicateState.toggleExpanded(card.groupKey)

            background: Rectangle {
                radius: card.radius
                color: header.down ? Theme.alpha(Theme.p.accent, 0.14)
                     : header.hovered ? Theme.alpha(Theme.p.accent, 0.07) : "transparent"
                border.width: header.visualFocus ? Math.max(1, Theme.s(1.5)) : 0
                border.color: Theme.p.accent
            }
            contentItem: Item {
                // One line: the facts at the right of the name. Stacked: the facts below the name, so that
                // a long name is not cut down to a few letters.
                readonly property real firstMiddle: card.stacked ? Theme.s(20) : height / 2
                SvgIcon {
                    id: chevron
                    x: Theme.s(14)
                    y: parent.firstMiddle - height / 2
                    symbol: "chevron.right"
                    size: Theme.s(11)
                    color: Theme.p.accent
                    rotation: card.expanded ? 90 : 0
                    Behavior on rotation { NumberAnimation { duration: 140; easing.type: Easing.OutQuad } }
                }
                Text {
                    id: title
                    x: chevron.x + chevron.width + Theme.s(10)
                    y: parent.firstMiddle - height / 2
                    width: (card.stacked ? parent.width : facts.x) - Theme.s(14) - x
                    text: card.name
                    font: Theme.f(13, Font.DemiBold)
                    color: Theme.p.text
                    elide: Text.ElideMiddle
                }
                Row {
                    id: facts
                    x: card.stacked ? title.x : parent.width - width - Theme.s(14)
                    y: card.stacked ? Theme.s(43) - height / 2 : (parent.height - height) / 2
                    spacing: Theme.s(14)
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: card.copies + " copies"
                        font: Theme.f(12)
                        color: Theme.p.subtext
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: Fmt.size(card.size)
                        font: Theme.f(12, Font.Normal, true)
                        color: Theme.p.text
                    }
                    // The space the surplus copies take, in the warning colour.
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: wastedText.implicitWidth + Theme.s(14)
                        height: wastedText.implicitHeight + Theme.s(6)
                        radius: height / 2
                        color: Theme.alpha(Theme.p.warn, 0.14)
                        border.width: Math.max(1, Theme.s(1))
                        border.color: Theme.alpha(Theme.p.warn, 0.4)
                        Text {
                            id: wastedText
                            anchors.centerIn: parent
                            text: "+" + Fmt.size(card.wasted)
                            font: Theme.f(11.5, Font.DemiBold, true)
                            color: Theme.p.warn
                        }
                    }
                }
            }
        }

        Column {
            width: parent.width
            visible: card.expanded
            bottomPadding: Theme.s(6)
            Rectangle {
                x: Theme.s(12)
                width: parent.width - Theme.s(24)
                height: Math.max(1, Theme.s(1))
                color: Theme.p.stroke
            }
            Repeater {
                model: card.expanded ? card.members : []
                delegate: Item {
                    id: member
                    required property var modelData
                    required property int index
                    width: column.width
                    height: Theme.s(card.stacked ? 52 : 34)
                    // The line of the catalog, the date and the buttons.
                    readonly property real lineMiddle: Theme.s(17)

                    StatusLamp {
                        id: lamp
                        x: Theme.s(38)
                        y: member.lineMiddle - height / 2
                        online: member.modelData.online
                    }
                    Text {
                        id: catalogName
                        anchors.left: lamp.right
                        anchors.leftMargin: Theme.s(8)
                        y: member.lineMiddle - height / 2
                        width: card.stacked ? date.x - x - Theme.s(14) : card.catalogWidth
                        text: member.modelData.catalogName
                        font: Theme.f(12, Font.DemiBold)
                        color: Theme.p.text
                        elide: Text.ElideRight
                    }
                    // Beside the catalog, or below it from the lamp on.
                    Text {
                        x: card.stacked ? lamp.x : catalogName.x + catalogName.width + Theme.s(14)
                        y: card.stacked ? Theme.s(34) - height / 2 : member.lineMiddle - height / 2
                        width: (card.stacked ? buttons.x + buttons.width : date.x - Theme.s(14)) - x
                        text: member.modelData.path
                        font: Theme.f(12)
                        color: Theme.alpha(Theme.p.text, 0.72)
                        elide: Text.ElideMiddle
                    }
                    Text {
                        id: date
                        anchors.right: buttons.left
                        anchors.rightMargin: Theme.s(10)
                        y: member.lineMiddle - height / 2
                        text: Fmt.date(member.modelData.modified)
                        font: Theme.f(12)
                        color: Theme.p.subtext
                    }
                    Row {
                        id: buttons
                        anchors.right: parent.right
                        anchors.rightMargin: Theme.s(10)
                        y: member.lineMiddle - height / 2
                        spacing: Theme.s(2)
                        IconButton {
                            objectName: "duplicateReveal_" + card.index + "_" + member.index
                            symbol: "eye"
                            tip: "Reveal in Finder"
                            iconSize: Theme.s(14)
                            iconColor: Theme.p.subtext
                            onClicked: AppModel.revealFile(member.modelData.id)
                        }
                        IconButton {
                            objectName: "duplicateShow_" + card.index + "_" + member.index
                            symbol: "magnifyingglass"
                            tip: "Show in Browser"
                            iconSize: Theme.s(14)
                            iconColor: Theme.p.subtext
                            onClicked: AppModel.browseToFile(member.modelData.id)
                        }
                    }
                }
            }
        }
    }
}
