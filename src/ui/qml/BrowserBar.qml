// The bar over the file view: the path's breadcrumbs, the choice between columns and list, the filter of
// the current folder and the switch for hidden files. Where one row is too narrow for all of it, the
// breadcrumbs take a row of their own above the controls, and in a narrower view still the filter takes
// the full width of a third row. (Placed by hand: Qt 6.4's layouts crash when a layout changes its
// columns while it is being arranged.)
import QtQuick
import QtQuick.Controls
import Orrelin

Item {
    id: bar
    property var browser
    property var catalog: ({})

    readonly property real gap: Theme.s(10)
    readonly property real rowHeight: Theme.s(32)
    readonly property real filterWidth: Theme.s(190)
    readonly property real controlsWidth: modePicker.width + filterWidth + hiddenSwitch.width + 2 * gap
    readonly property bool oneRow: width >= controlsWidth + Theme.s(320)
    readonly property bool filterBelow: !oneRow && width < modePicker.width + hiddenSwitch.width + Theme.s(220)

    implicitHeight: oneRow ? rowHeight : (filterBelow ? 3 : 2) * rowHeight + (filterBelow ? 2 : 1) * gap

    Breadcrumbs {
        objectName: "breadcrumbs"
        width: bar.oneRow ? bar.width - bar.controlsWidth - bar.gap : bar.width
        height: bar.rowHeight
        browser: bar.browser
        catalog: bar.catalog
    }

    // The segmented choice of the mode.
    Rectangle {
        id: modePicker
        x: bar.oneRow ? bar.width - bar.controlsWidth : 0
        y: bar.oneRow ? (bar.rowHeight - height) / 2 : bar.rowHeight + bar.gap + (bar.rowHeight - height) / 2
        width: modeRow.implicitWidth + Theme.s(4)
        height: modeRow.implicitHeight + Theme.s(4)
        radius: Theme.s(8)
        color: Theme.alpha(Theme.p.bgBottom, 0.6)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.p.stroke
        Row {
            id: modeRow
            anchors.centerIn: parent
            spacing: Theme.s(2)
            Repeater {
                model: bar.browser.modes
                delegate: AbstractButton {
                    id: segment
                    required property var modelData
                    readonly property bool current: bar.browser.mode === modelData.mode
                    objectName: "browseMode_" + modelData.label
                    checkable: true
                    checked: current
                    hoverEnabled: true
                    padding: Theme.s(5)
                    leftPadding: Theme.s(10)
                    rightPadding: Theme.s(10)
                    text: modelData.label
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: text
                    Accessible.checked: current
                    Accessible.onPressAction: bar.browser.mode = modelData.mode
                    onClicked: bar.browser.mode = modelData.mode
                    Keys.onReturnPressed: bar.browser.mode = modelData.mode
                    HelpTip {
                        text: segment.text
                        shown: segment.hovered
                    }
                    contentItem: SvgIcon {
                        symbol: segment.modelData.symbol
                        size: Theme.s(14)
                        color: segment.current ? Theme.p.bgBottom : segment.hovered ? Theme.p.accent : Theme.p.text
                    }
                    background: Rectangle {
                        radius: Theme.s(6)
                        color: segment.current ? Theme.p.accent
                             : Theme.alpha(Theme.p.accent, segment.hovered ? 0.12 : 0)
                        border.width: segment.visualFocus ? Math.max(1, Theme.s(1)) : 0
                        border.color: Theme.p.glow
                    }
                }
            }
        }
    }

    ThemedTextField {
        id: filterField
        objectName: "browseFilter"
        x: bar.filterBelow ? 0 : modePicker.x + modePicker.width + bar.gap
        y: bar.oneRow ? (bar.rowHeight - height) / 2
           : (bar.filterBelow ? 2 : 1) * (bar.rowHeight + bar.gap) + (bar.rowHeight - height) / 2
        width: bar.oneRow ? bar.filterWidth
               : bar.filterBelow ? bar.width
               : bar.width - modePicker.width - hiddenSwitch.width - 2 * bar.gap
        symbol: "line.3.horizontal.decrease"
        placeholderText: "Filter this folder"
        rightPadding: Theme.s(clearButton.visible ? 28 : 10)
        text: bar.browser.filter
        onTextEdited: bar.browser.filter = text
        Keys.onEscapePressed: event => {
            if (text.length === 0) { event.accepted = false; return }
            bar.browser.filter = ""
        }

        IconButton {
            id: clearButton
            objectName: "browseFilterClear"
            anchors.right: parent.right
            anchors.rightMargin: Theme.s(3)
            anchors.verticalCenter: parent.verticalCenter
            visible: filterField.text.length > 0
            symbol: "xmark.circle.fill"
            tip: "Clear the filter"
            iconSize: Theme.s(12)
            iconColor: Theme.p.subtext
            padding: Theme.s(4)
            focusPolicy: Qt.NoFocus
            onClicked: bar.browser.filter = ""
        }
    }

    OptionSwitch {
        id: hiddenSwitch
        objectName: "hiddenFilesSwitch"
        x: bar.width - width
        y: modePicker.y + (modePicker.height - height) / 2
        text: "Hidden files"
        checked: bar.browser.showHidden
        onToggled: bar.browser.showHidden = checked
    }
}
