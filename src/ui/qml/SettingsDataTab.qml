// Settings › Data: where the database is, the demonstration cartridges, and the thumbnail memory cache.
import QtQuick
import Orrelin

Column {
    id: tab
    property SettingsState prefs
    spacing: Theme.s(12)

    SettingsHeading { text: "Where your catalogs live" }
    SettingsNote {
        width: parent.width
        text: "Catalogs are stored in a single SQLite database with a full-text search index. Thumbnails are cached beside it."
    }
    Rectangle {
        width: parent.width
        height: path.implicitHeight + Theme.s(16)
        radius: Theme.s(8)
        color: Theme.alpha(Theme.p.bgBottom, 0.6)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.p.stroke
        // Selectable, so the path can be copied.
        TextEdit {
            id: path
            objectName: "databasePathText"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            anchors.leftMargin: Theme.s(10)
            anchors.rightMargin: Theme.s(10)
            text: tab.prefs.databasePath
            readOnly: true
            Accessible.role: Accessible.EditableText
            Accessible.name: "Database location"
            Accessible.readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.WrapAnywhere
            font: Theme.f(12, Font.Normal, true)
            color: Theme.p.text
            selectionColor: Theme.alpha(Theme.p.accent, 0.45)
            selectedTextColor: Theme.p.text
        }
    }
    LaserButton {
        objectName: "showDataFolderButton"
        text: "Show Data Folder in Finder"
        symbol: "folder.fill"
        onClicked: tab.prefs.showDataFolder()
    }

    Item { width: 1; height: Theme.s(6) }

    SettingsHeading { text: "Sample data" }
    SettingsNote {
        width: parent.width
        text: "Four demonstration cartridges (DJ crates, a studio archive, a photo vault and a NAS share) let you explore every feature without scanning a drive."
    }
    Row {
        spacing: Theme.s(10)
        LaserButton {
            objectName: "loadSampleButton"
            text: "Load Sample Data"
            symbol: "sparkles"
            enabled: AppModel.hasStore
            onClicked: tab.prefs.loadSample()
        }
        LaserButton {
            objectName: "removeSampleButton"
            text: "Remove Sample Data"
            enabled: AppModel.hasStore
            onClicked: tab.prefs.removeSample()
        }
    }

    Item { width: 1; height: Theme.s(6) }

    SettingsHeading { text: "Thumbnail cache" }
    LaserButton {
        objectName: "clearThumbCacheButton"
        text: "Clear Thumbnail Memory Cache"
        onClicked: tab.prefs.clearThumbnailCache()
    }
}
