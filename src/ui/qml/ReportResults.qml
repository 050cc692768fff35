// The lower part of a report card: after a run, the header line with the pane's buttons at its right and
// the rows in the shared results table (a fixed height, so the Tools page scrolls as a whole); before a
// run, or with no rows, a quiet note in the table's place.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orrelin

ColumnLayout {
    id: results
    // The pane whose rows the table shows (see HitsModel.source).
    property QtObject source
    property bool ran: false
    property bool busy: false
    property string header
    // What the note says before the first run, and after a run that found nothing.
    property string idleText
    property string noRowsText
    property string noRowsSymbol: "checkmark.circle"
    // Prefix of the object names of the header, the table and the note.
    property string name: "report"
    // A rule above, between the inputs and the results.
    property bool separated: true
    // The buttons at the right of the header line.
    default property alias actions: actionRow.data
    readonly property alias table: hitsTable
    // The table's Catalog column (see HitsTable).
    property alias catalogTitle: hitsTable.catalogTitle
    property alias catalogTexts: hitsTable.catalogTexts
    property alias catalogMaxWidth: hitsTable.catalogMaxWidth
    property alias catalogElide: hitsTable.catalogElide
    readonly property int rows: hitsTable.model.count

    Layout.fillWidth: true
    spacing: Theme.s(10)

    Rectangle {
        visible: results.separated
        Layout.fillWidth: true
        Layout.topMargin: Theme.s(4)
        implicitHeight: Math.max(1, Theme.s(1))
        color: Theme.p.stroke
    }

    RowLayout {
        Layout.fillWidth: true
        visible: results.ran && (results.header.length > 0 || actionRow.visibleChildren.length > 0)
        spacing: Theme.s(10)
        Text {
            objectName: results.name + "Header"
            Layout.fillWidth: true
            text: results.header
            font: Theme.f(14, Font.DemiBold)
            color: Theme.p.text
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Row {
            id: actionRow
            spacing: Theme.s(8)
        }
    }

    HitsTable {
        id: hitsTable
        objectName: results.name + "Table"
        source: results.source
        Layout.fillWidth: true
        Layout.preferredHeight: Theme.s(420)
        visible: results.ran && results.rows > 0
    }

    // Before a run, or a run with nothing to list.
    Rectangle {
        objectName: results.name + "Note"
        Layout.fillWidth: true
        implicitHeight: Theme.s(96)
        visible: !hitsTable.visible
        radius: Theme.s(10)
        color: Theme.alpha(Theme.p.bgBottom, 0.35)
        border.width: Math.max(1, Theme.s(1))
        border.color: Theme.alpha(Theme.p.stroke, 0.6)
        Accessible.role: Accessible.StaticText
        Accessible.name: noteText.text

        Row {
            anchors.centerIn: parent
            spacing: Theme.s(12)
            SvgIcon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: results.ran ? results.noRowsSymbol : "list.bullet"
                size: Theme.s(22)
                color: results.ran ? Theme.p.ok : Theme.alpha(Theme.p.subtext, 0.8)
            }
            Text {
                id: noteText
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, results.width - Theme.s(80))
                text: results.busy ? "Checking\u2026" : results.ran ? results.noRowsText : results.idleText
                font: Theme.f(13)
                color: Theme.p.subtext
                wrapMode: Text.Wrap
            }
        }
    }
}
