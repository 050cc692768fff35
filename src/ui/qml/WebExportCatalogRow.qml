// One catalog in the Web & Export screen's list: a check box, the cartridge's icon, name, size and
// whether its drive is connected. The whole row toggles the choice.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

AbstractButton {
    id: row
    property var catalog: ({})
    property bool chosen: false
    signal toggled()

    text: catalog.name || ""
    checkable: true
    checked: chosen
    hoverEnabled: true
    implicitHeight: content.implicitHeight + 2 * Theme.s(7)
    leftPadding: Theme.s(10)
    rightPadding: Theme.s(10)
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.onPressAction: row.toggled()
    Accessible.onToggleAction: row.toggled()
    // The button's own checked state follows `chosen`; a click only asks for the change.
    onClicked: row.toggled()
    Keys.onReturnPressed: row.toggled()

    background: Rectangle {
        radius: Theme.s(8)
        color: row.chosen ? Theme.alpha(Theme.p.accent, row.hovered ? 0.12 : 0.07)
                          : Theme.alpha(Theme.p.text, row.hovered ? 0.05 : 0)
        border.width: row.visualFocus ? Math.max(1, Theme.s(1.5)) : Math.max(1, Theme.s(1))
        border.color: row.visualFocus ? Theme.p.glow : row.chosen ? Theme.alpha(Theme.p.accent, 0.3)
                                                                   : "transparent"
    }

    contentItem: RowLayout {
        id: content
        spacing: Theme.s(10)
        SvgIcon {
            objectName: "checkIcon"
            symbol: row.chosen ? "checkmark.square.fill" : "square"
            color: row.chosen ? Theme.p.accent : Theme.p.subtext
            size: Theme.s(17)
        }
        SvgIcon {
            symbol: row.catalog.symbol || "externaldrive.fill"
            color: Theme.p.subtext
            size: Theme.s(16)
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: Theme.s(1)
            Text {
                Layout.fillWidth: true
                text: row.catalog.name || ""
                font: Theme.f(13, Font.DemiBold)
                color: Theme.p.text
                elide: Text.ElideRight
            }
            Text {
                Layout.fillWidth: true
                text: Fmt.count(row.catalog.fileCount || 0) + " files · " + Fmt.size(row.catalog.totalSize || 0)
                font: Theme.f(11)
                color: Theme.p.subtext
                elide: Text.ElideRight
            }
        }
        StatusLamp {
            online: AppModel.onlineIDs.indexOf(row.catalog.id) >= 0
        }
    }
}
