// Details of the item selected in the browser: its preview, name, kind, tags and facts, its media
// details (with its place on a map when it has one), and the buttons to reveal, open or copy its path.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

GlassPanel {
    id: inspector
    // A file map (see Files.file), or an empty map with nothing selected.
    property var file: ({})
    // The catalog's map from AppModel.catalogs.
    property var catalog: ({})

    readonly property bool hasFile: file !== undefined && file !== null && file.id !== undefined
    readonly property bool hasCatalog: catalog !== undefined && catalog !== null && catalog.name !== undefined
    readonly property real fileID: hasFile ? file.id : -1
    readonly property string thumb: hasFile && file.thumb ? file.thumb : ""
    readonly property var tags: hasFile && file.tags ? file.tags : []
    readonly property int label: hasFile && file.label ? file.label : 0
    readonly property var meta: hasFile && file.meta ? file.meta : []
    readonly property string gps: hasFile && file.gps ? file.gps : ""
    readonly property real pad: Theme.s(14)

    // The fact rows, each only where it has something to say.
    readonly property var rows: {
        if (!hasFile)
            return []
        const f = file
        const list = [
            { label: "Size", value: f.isDir
                  ? Fmt.size(f.size) + " in " + Fmt.count(f.itemCount) + " items"
                  : Fmt.size(f.size) + " (" + Fmt.count(f.size) + " bytes)" },
            { label: "Modified", value: Fmt.date(f.modified) },
            { label: "Created", value: Fmt.date(f.created) }
        ]
        if (hasCatalog)
            list.push({ label: "Catalog", value: catalog.name })
        list.push({ label: "Path", value: f.path, mono: true })
        if (f.uti)
            list.push({ label: "Type (UTI)", value: f.uti })
        if (f.label >= 1)
            list.push({ label: "Label", value: Files.labelName(f.label) })
        if (f.sha256)
            list.push({ label: "SHA-256", value: f.sha256, mono: true })
        return list
    }

    objectName: "fileInspector"
    implicitWidth: Theme.s(300)
    Accessible.role: Accessible.Grouping
    Accessible.name: hasFile ? "Details of " + file.name : "Details"

    // Nothing selected.
    Column {
        objectName: "inspectorEmpty"
        visible: !inspector.hasFile
        anchors.centerIn: parent
        width: parent.width - 2 * inspector.pad
        spacing: Theme.s(12)

        SvgIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "cursorarrow.click.2"
            size: Theme.s(40)
            color: Theme.alpha(Theme.p.subtext, 0.8)
        }
        Text {
            objectName: "inspectorEmptyText"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Select a file or folder to see its details, tags, media information and thumbnail."
            font: Theme.f(12.5)
            lineHeight: 1.15
            color: Theme.p.subtext
            wrapMode: Text.WordWrap
        }
    }

    Flickable {
        id: scroller
        objectName: "inspectorScroller"
        visible: inspector.hasFile
        anchors.fill: parent
        anchors.margins: Math.max(1, Theme.s(1))
        clip: true
        contentWidth: width
        contentHeight: content.implicitHeight + 2 * inspector.pad
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            objectName: "inspectorScrollBar"
            policy: scroller.contentHeight > scroller.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
        }

        ColumnLayout {
            id: content
            x: inspector.pad
            y: inspector.pad
            width: scroller.width - 2 * inspector.pad
            spacing: Theme.s(12)

            // The picture: the thumbnail as large as the pane allows, else the kind's tile.
            Rectangle {
                objectName: "inspectorPreview"
                Layout.fillWidth: true
                Layout.preferredHeight: inspector.thumb.length > 0
                    ? Math.min(Theme.s(240), Math.max(Theme.s(120), width * 0.72)) : Theme.s(124)
                radius: Theme.s(10)
                color: Theme.alpha(Theme.p.bgBottom, 0.45)
                border.width: Math.max(1, Theme.s(1))
                border.color: Theme.p.stroke

                Image {
                    id: preview
                    objectName: "inspectorPicture"
                    anchors.fill: parent
                    anchors.margins: Theme.s(8)
                    source: inspector.thumb
                    visible: status === Image.Ready
                    asynchronous: true
                    cache: false
                    fillMode: Image.PreserveAspectFit
                    sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
                    sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
                    Accessible.role: Accessible.Graphic
                    Accessible.name: "Thumbnail"
                }
                ThumbIcon {
                    objectName: "inspectorTile"
                    anchors.centerIn: parent
                    visible: !preview.visible
                    // The tile alone: the picture, when there is one, is drawn above at full size.
                    file: inspector.hasFile ? { kind: inspector.file.kind, thumb: "" } : ({})
                    size: Theme.s(76)
                }
            }

            // The name, its kind and its marks.
            TextEdit {
                objectName: "inspectorName"
                Layout.fillWidth: true
                text: inspector.hasFile ? inspector.file.name : ""
                readOnly: true
                selectByMouse: true
                font: Theme.f(15, Font.Bold)
                color: Theme.p.text
                selectionColor: Theme.alpha(Theme.p.accent, 0.45)
                selectedTextColor: Theme.p.text
                wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
                horizontalAlignment: TextEdit.AlignLeft
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Flow {
                Layout.fillWidth: true
                spacing: Theme.s(6)

                KindBadge {
                    objectName: "inspectorKind"
                    kind: inspector.hasFile ? inspector.file.kind : "Other"
                    Accessible.role: Accessible.StaticText
                    Accessible.name: kind
                }
                Rectangle {
                    objectName: "hiddenChip"
                    visible: inspector.hasFile && inspector.file.hidden === true
                    implicitWidth: hiddenText.implicitWidth + Theme.s(14)
                    implicitHeight: Theme.s(20)
                    radius: height / 2
                    color: Theme.alpha(Theme.p.subtext, 0.14)
                    border.width: Math.max(1, Theme.s(0.75))
                    border.color: Theme.alpha(Theme.p.subtext, 0.45)
                    Accessible.role: Accessible.StaticText
                    Accessible.name: "Hidden"
                    Text {
                        id: hiddenText
                        anchors.centerIn: parent
                        text: "HIDDEN"
                        font.family: Theme.sansFamily
                        font.pixelSize: Theme.f(9.5).pixelSize
                        font.weight: Font.Bold
                        font.letterSpacing: Theme.s(0.6)
                        color: Theme.p.subtext
                    }
                }
                // Tags wrap onto as many lines as they need, below the badges.
                TagChips {
                    objectName: "inspectorTags"
                    visible: inspector.tags.length > 0 || inspector.label >= 1
                    width: content.width
                    tags: inspector.tags
                    label: inspector.label
                }
            }

            // The facts.
            Column {
                Layout.fillWidth: true
                Layout.topMargin: Theme.s(2)
                spacing: Theme.s(7)
                Repeater {
                    model: inspector.rows
                    delegate: InspectorRow {
                        required property var modelData
                        objectName: "inspectorRow:" + modelData.label
                        width: content.width
                        label: modelData.label
                        value: modelData.value
                        mono: modelData.mono === true
                    }
                }
            }

            // What the scan read inside the file, keys in order.
            ColumnLayout {
                objectName: "mediaDetails"
                visible: inspector.meta.length > 0
                Layout.fillWidth: true
                Layout.topMargin: Theme.s(4)
                spacing: Theme.s(7)

                Rectangle {
                    Layout.fillWidth: true
                    Layout.preferredHeight: Math.max(1, Theme.s(1))
                    color: Theme.p.stroke
                }
                SectionTitle {
                    Layout.fillWidth: true
                    text: "Media details"
                }
                Repeater {
                    model: inspector.meta
                    delegate: InspectorRow {
                        required property var modelData
                        objectName: "mediaRow:" + modelData.key
                        Layout.fillWidth: true
                        label: modelData.key
                        value: modelData.value
                    }
                }
                LaserButton {
                    objectName: "showMapButton"
                    visible: inspector.gps.length > 0
                    Layout.topMargin: Theme.s(2)
                    compact: true
                    symbol: "map"
                    text: "Show Location in Maps"
                    onClicked: MapLink.openMap(inspector.gps)
                }
            }

            // What can be done with the item itself.
            Flow {
                Layout.fillWidth: true
                Layout.topMargin: Theme.s(6)
                spacing: Theme.s(8)

                LaserButton {
                    objectName: "inspectorReveal"
                    compact: true
                    symbol: "magnifyingglass.circle"
                    text: "Reveal in Finder"
                    onClicked: AppModel.revealFile(inspector.fileID)
                }
                LaserButton {
                    objectName: "inspectorOpen"
                    compact: true
                    symbol: "arrow.up.forward.app"
                    text: "Open"
                    onClicked: AppModel.openFile(inspector.fileID)
                }
                LaserButton {
                    objectName: "inspectorCopyPath"
                    compact: true
                    symbol: "doc.on.doc"
                    text: "Copy Path"
                    onClicked: AppModel.copyFilePath(inspector.fileID)
                }
            }
        }
    }
}
