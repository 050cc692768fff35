// The bar over the file view: the path's breadcrumbs, the choice between columns and list, the filter of
// the current folder and the switch for hidden files. Where one row is too narrow for all of it (a narrow
// window, a large zoom), the breadcrumbs share the first row with the choice of mode and the filter the
// second with the switch; only a very narrow view puts the switch on a third. (Placed by hand: Qt 6.4's
// layouts crash when a layout changes its columns while it is being arranged.)
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
    // Too narrow even for the filter and the switch side by side: the switch goes below.
    readonly property bool switchBelow: !oneRow && width < hiddenSwitch.width + Theme.s(150) + gap
    readonly property int rows: oneRow ? 1 : switchBelow ? 3 : 2

    implicitHeight: rows * rowHeight + (rows - 1) * gap

    Breadcrumbs {
        objectName: "breadcrumbs"
        width: bar.oneRow ? bar.width - bar.controlsWidth - bar.gap : bar.width - modePicker.width - bar.gap
        height: bar.rowHeight
        browser: bar.browser
        catalog: bar.catalog
    }

    // The segmented choice of the mode.
    Rectangle {
        id: modePicker
        x: bar.oneRow ? bar.width - bar.controlsWidth : bar.width - width
        y: (bar.rowHeight - height) / 2
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
        x: bar.oneRow ? modePicker.x + modePicker.width + bar.gap : 0
        y: (bar.oneRow ? 0 : bar.rowHeight + bar.gap) + (bar.rowHeight - height) / 2
        width: bar.oneRow ? bar.filterWidth
               : bar.switchBelow ? bar.width
               : bar.width - hiddenSwitch.width - bar.gap
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
        x: bar.switchBelow ? 0 : bar.width - width
        y: (bar.rows - 1) * (bar.rowHeight + bar.gap) + (bar.rowHeight - height) / 2
        text: "Hidden files"
        checked: bar.browser.showHidden
        onToggled: bar.browser.showHidden = checked
    }
}
