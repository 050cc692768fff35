// Settings › Scanning: the options every new scan and update starts with.
import QtQuick
import Orrelin

Column {
    id: tab
    property SettingsState prefs
    spacing: Theme.s(10)

    SettingsHeading { text: "Defaults for new scans and updates" }

    Item { width: 1; height: Theme.s(2) }

    SettingsToggle {
        objectName: "metadataToggle"
        width: parent.width
        text: "Extract media metadata (audio, video, photos, PDFs)"
        checked: tab.prefs.metadata
        onToggled: (on) => tab.prefs.metadata = on
    }
    SettingsToggle {
        objectName: "thumbnailsToggle"
        width: parent.width
        text: "Generate thumbnails for images, video and PDFs"
        checked: tab.prefs.thumbnails
        onToggled: (on) => tab.prefs.thumbnails = on
    }
    SettingsToggle {
        objectName: "hashesToggle"
        width: parent.width
        text: "Compute SHA-256 checksums for exact duplicate detection (slower)"
        checked: tab.prefs.hashes
        onToggled: (on) => tab.prefs.hashes = on
    }
    SettingsToggle {
        objectName: "hiddenToggle"
        width: parent.width
        text: "Include hidden files"
        checked: tab.prefs.includeHidden
        onToggled: (on) => tab.prefs.includeHidden = on
    }
    SettingsToggle {
        objectName: "packagesToggle"
        width: parent.width
        text: "Treat apps and packages as single files"
        checked: tab.prefs.treatPackagesAsFiles
        onToggled: (on) => tab.prefs.treatPackagesAsFiles = on
    }

    Item { width: 1; height: Theme.s(4) }

    SettingsNote {
        width: parent.width
        text: "System folders such as .Spotlight-V100, .fseventsd and .Trashes are always skipped."
    }
}
