// The header's quick search: Return shows the Search screen and runs the text over every cartridge.
import QtQuick
import QtQuick.Controls
import Orrelin

Rectangle {
    id: box
    implicitHeight: Theme.s(34)
    implicitWidth: Theme.s(300)
    radius: height / 2
    color: Theme.alpha(Theme.p.bgBottom, 0.55)
    border.width: Math.max(1, Theme.s(1))
    border.color: field.activeFocus ? Theme.alpha(Theme.p.accent, 0.75) : Theme.p.stroke

    // The index of the Search screen among the sections.
    readonly property int searchSection: 1

    function run() {
        AppModel.quickSearchText = field.text
        AppModel.section = searchSection
        AppModel.searchTrigger = AppModel.searchTrigger + 1
    }

    SvgIcon {
        id: glass
        anchors.left: parent.left
        anchors.leftMargin: Theme.s(12)
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        size: Theme.s(14)
        color: field.activeFocus ? Theme.p.accent : Theme.p.subtext
    }

    TextField {
        id: field
        objectName: "quickSearchField"
        anchors.left: glass.right
        anchors.right: clear.visible ? clear.left : parent.right
        anchors.rightMargin: clear.visible ? 0 : Theme.s(12)
        anchors.verticalCenter: parent.verticalCenter
        leftPadding: Theme.s(8)
        rightPadding: Theme.s(4)
        topPadding: Theme.s(4)
        bottomPadding: Theme.s(4)
        font: Theme.f(13)
        color: Theme.p.text
        placeholderText: "Quick search all drives"
        placeholderTextColor: Theme.alpha(Theme.p.subtext, 0.8)
        selectionColor: Theme.alpha(Theme.p.accent, 0.45)
        selectedTextColor: Theme.p.text
        selectByMouse: true
        background: null
        Accessible.name: placeholderText
        Accessible.description: "Press Return to search every cartridge"
        Accessible.searchEdit: true
        onAccepted: box.run()
        Keys.onEscapePressed: (event) => {
            if (text.length > 0) { clear(); event.accepted = true }
            else { focus = false; event.accepted = true }
        }
    }

    IconButton {
        id: clear
        objectName: "quickSearchClear"
        anchors.right: parent.right
        anchors.rightMargin: Theme.s(5)
        anchors.verticalCenter: parent.verticalCenter
        visible: field.text.length > 0
        symbol: "xmark.circle.fill"
        iconSize: Theme.s(14)
        iconColor: Theme.p.subtext
        padding: Theme.s(4)
        focusPolicy: Qt.NoFocus
        Accessible.name: "Clear search"
        onClicked: {
            field.clear()
            field.forceActiveFocus()
        }
    }

    MouseArea {
        // A click on the padding around the text still puts the caret in the field.
        anchors.fill: parent
        z: -1
        // Only a wider target for the field, which is what a screen reader sees.
        Accessible.ignored: true
        onClicked: field.forceActiveFocus()
    }
}
