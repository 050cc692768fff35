// The bar over the file view: the path's breadcrumbs, the choice between columns and list, the filter of
// the current folder and the switch for hidden files. Where one row is too narrow for all of it, the
// breadcrumbs take a row of their own above the controls.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

GridLayout {
    id: bar
    property var browser
    property var catalog: ({})

    readonly property bool oneRow: width >= controls.implicitWidth + Theme.s(320)
    columns: oneRow ? 2 : 1
    rowSpacing: Theme.s(6)
    columnSpacing: Theme.s(12)

    Breadcrumbs {
        objectName: "breadcrumbs"
        Layout.fillWidth: true
        Layout.preferredHeight: Theme.s(30)
        browser: bar.browser
        catalog: bar.catalog
    }

    RowLayout {
        id: controls
        Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
        Layout.fillWidth: !bar.oneRow
        spacing: Theme.s(10)

        // The segmented choice of the mode.
        Rectangle {
            implicitWidth: modeRow.implicitWidth + Theme.s(4)
            implicitHeight: modeRow.implicitHeight + Theme.s(4)
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
            Layout.preferredWidth: Theme.s(190)
            Layout.fillWidth: !bar.oneRow
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
            objectName: "hiddenFilesSwitch"
            text: "Hidden files"
            checked: bar.browser.showHidden
            onToggled: bar.browser.showHidden = checked
        }
    }
}
