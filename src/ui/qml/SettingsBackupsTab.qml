// Settings › Backups: the daily backup, how many are kept, and the backups there are, each restorable.
import QtQuick
import Orrelin

Column {
    id: tab
    property SettingsState prefs
    spacing: Theme.s(12)

    SettingsHeading { text: "Automatic backups" }

    SettingsToggle {
        objectName: "autoBackupToggle"
        width: parent.width
        text: "Back up the catalog database once a day when the app opens"
        checked: tab.prefs.autoBackup
        onToggled: (on) => tab.prefs.autoBackup = on
    }

    // "Keep the newest <n> backups" with a stepper.
    Row {
        spacing: Theme.s(12)
        Text {
            objectName: "keepLabel"
            anchors.verticalCenter: parent.verticalCenter
            text: "Keep the newest " + tab.prefs.keepCount + " backups"
            font: Theme.f(13)
            color: Theme.p.text
        }
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: stepper.width
            height: stepper.height
            radius: Theme.s(7)
            color: Theme.alpha(Theme.p.accent, 0.06)
            border.width: Math.max(1, Theme.s(1))
            border.color: Theme.p.stroke
            Row {
                id: stepper
                SettingsStepButton {
                    objectName: "keepMinus"
                    text: "\u2212"
                    Accessible.name: "Keep fewer backups"
                    enabled: tab.prefs.keepCount > tab.prefs.minKeep
                    onClicked: tab.prefs.keepCount = tab.prefs.keepCount - 1
                }
                Rectangle { width: Math.max(1, Theme.s(1)); height: parent.height; color: Theme.p.stroke }
                SettingsStepButton {
                    objectName: "keepPlus"
                    text: "+"
                    Accessible.name: "Keep more backups"
                    enabled: tab.prefs.keepCount < tab.prefs.maxKeep
                    onClicked: tab.prefs.keepCount = tab.prefs.keepCount + 1
                }
            }
        }
    }

    Row {
        spacing: 0
        Text {
            text: "Last backup: "
            font: Theme.f(13)
            color: Theme.p.subtext
        }
        Text {
            objectName: "lastBackupLabel"
            text: tab.prefs.lastBackupText
            font: Theme.f(13)
            color: Theme.p.text
        }
    }

    Row {
        spacing: Theme.s(10)
        LaserButton {
            objectName: "backUpNowButton"
            text: "Back Up Now"
            symbol: "externaldrive.badge.timemachine"
            prominent: true
            enabled: AppModel.hasStore
            onClicked: tab.prefs.backUpNow()
        }
        LaserButton {
            objectName: "showBackupsButton"
            text: "Show Backups Folder"
            symbol: "folder.fill"
            onClicked: tab.prefs.showBackupsFolder()
        }
    }

    Item { width: 1; height: Theme.s(6) }

    SettingsHeading { text: "Available backups" }

    GlassPanel {
        width: parent.width
        height: rows.implicitHeight + Theme.s(8)
        radius: Theme.s(10)

        Column {
            id: rows
            objectName: "backupRows"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.topMargin: Theme.s(4)

            SettingsNote {
                visible: tab.prefs.backups.length === 0
                width: parent.width
                leftPadding: Theme.s(14)
                topPadding: Theme.s(10)
                bottomPadding: Theme.s(10)
                text: "No backups yet."
            }

            Repeater {
                model: tab.prefs.backups
                Item {
                    required property var modelData
                    required property int index
                    objectName: "backupRow" + index
                    width: rows.width
                    height: Theme.s(40)

                    Rectangle {
                        visible: index > 0
                        anchors.top: parent.top
                        anchors.left: parent.left
                        anchors.right: parent.right
                        anchors.leftMargin: Theme.s(14)
                        anchors.rightMargin: Theme.s(14)
                        height: Math.max(1, Theme.s(1))
                        color: Theme.p.stroke
                    }
                    SvgIcon {
                        id: rowIcon
                        anchors.left: parent.left
                        anchors.leftMargin: Theme.s(14)
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "cylinder.split.1x2"
                        size: Theme.s(15)
                        color: Theme.p.subtext
                    }
                    Text {
                        objectName: "backupName" + index
                        anchors.left: rowIcon.right
                        anchors.leftMargin: Theme.s(10)
                        anchors.right: restoreButton.left
                        anchors.rightMargin: Theme.s(10)
                        anchors.verticalCenter: parent.verticalCenter
                        text: modelData.name
                        font: Theme.f(12, Font.Normal, true)
                        color: Theme.p.text
                        elide: Text.ElideMiddle
                    }
                    LaserButton {
                        id: restoreButton
                        objectName: "restoreButton" + index
                        anchors.right: parent.right
                        anchors.rightMargin: Theme.s(10)
                        anchors.verticalCenter: parent.verticalCenter
                        text: "Restore\u2026"
                        symbol: "arrow.uturn.backward.circle"
                        compact: true
                        Accessible.description: "Restore the catalogs from " + modelData.name
                        onClicked: tab.prefs.restore(modelData.path)
                    }
                }
            }
        }
    }
}
