// The screen of the current section. Each screen is made the first time it is shown and then kept, so it
// keeps its place and its inputs while the user looks at another. A screen the program does not have yet
// shows a placeholder that still offers the ways to get started.
import QtQuick
import Orrelin

Item {
    id: screens

    // The screens' files, in the order of the sections.
    readonly property var files: ["BrowseView", "SearchView", "DuplicatesView", "StatsView", "WebExportView",
                                  "ToolsView"]

    Repeater {
        model: UIState.sections
        delegate: Item {
            id: page
            required property var modelData
            required property int index
            readonly property bool current: AppModel.section === index
            readonly property url file: ScreenFiles.url(screens.files[index])
            readonly property bool built: file.toString().length > 0

            objectName: "screen_" + screens.files[index]
            anchors.fill: parent
            visible: current

            Loader {
                anchors.fill: parent
                active: page.built && (page.current || item !== null)
                source: page.file
            }

            EmptyStateView {
                readonly property bool noCatalogs: AppModel.catalogs.length === 0
                objectName: "placeholder_" + screens.files[page.index]
                anchors.fill: parent
                visible: !page.built
                title: noCatalogs ? "No cartridges yet" : page.modelData.title
                message: noCatalogs
                         ? "Catalog a drive and it will appear here as a cartridge you can browse even after you unplug it."
                         : page.modelData.subtitle + ". This screen comes with the next update."
            }
        }
    }
}
