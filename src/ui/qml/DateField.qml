// A day typed as YYYY-MM-DD, or chosen from a month calendar behind the calendar button. Up and Down move
// it by a day. A text that names no day shows a red edge and goes back to the last day when the field is
// left; `picked` reports each new day (at noon, local time, clear of any daylight-saving gap).
import QtQuick
import QtQuick.Controls
import Orrelin

Row {
    id: field
    property date date: new Date()
    // What a screen reader calls the field ("From", "To").
    property string label
    signal picked(date value)

    spacing: Theme.s(2)

    readonly property string dayText: Qt.formatDate(field.date, "yyyy-MM-dd")

    // The day a text names, as a Date at noon, or null.
    function parse(text) {
        const m = /^\s*(\d{4})-(\d{1,2})-(\d{1,2})\s*$/.exec(text)
        if (!m) return null
        const y = Number(m[1]), mo = Number(m[2]) - 1, d = Number(m[3])
        const day = new Date(y, mo, d, 12, 0, 0)
        if (day.getFullYear() !== y || day.getMonth() !== mo || day.getDate() !== d) return null
        return day
    }
    function choose(day) {
        field.picked(new Date(day.getFullYear(), day.getMonth(), day.getDate(), 12, 0, 0))
    }
    function commit() {
        const day = parse(input.text)
        if (day) {
            if (Qt.formatDate(day, "yyyy-MM-dd") !== field.dayText) choose(day)
        }
        input.text = Qt.binding(() => field.dayText)
    }
    function shift(days) {
        const d = new Date(field.date)
        choose(new Date(d.getFullYear(), d.getMonth(), d.getDate() + days))
    }

    ThemedTextField {
        id: input
        objectName: field.objectName.length > 0 ? field.objectName + "Text" : ""
        width: Theme.s(112)
        anchors.verticalCenter: parent.verticalCenter
        text: field.dayText
        placeholderText: "YYYY-MM-DD"
        font: Theme.f(12.5, Font.Normal, true)
        leftPadding: Theme.s(8)
        rightPadding: Theme.s(6)
        readonly property bool valid: field.parse(text) !== null
        Accessible.name: field.label + ", year, month and day"
        onEditingFinished: field.commit()
        Keys.onUpPressed: field.shift(1)
        Keys.onDownPressed: field.shift(-1)
        // The red edge of a text that names no day.
        Rectangle {
            anchors.fill: parent
            visible: !input.valid && input.enabled
            radius: Theme.s(7)
            color: "transparent"
            border.width: Math.max(1, Theme.s(1.5))
            border.color: Theme.p.danger
        }
    }

    IconButton {
        id: opener
        objectName: field.objectName.length > 0 ? field.objectName + "Calendar" : ""
        anchors.verticalCenter: parent.verticalCenter
        symbol: "calendar"
        tip: "Choose " + field.label.toLowerCase() + " day"
        iconSize: Theme.s(14)
        iconColor: Theme.p.subtext
        onClicked: {
            calendar.year = field.date.getFullYear()
            calendar.month = field.date.getMonth()
            calendar.open()
        }
    }

    Popup {
        id: calendar
        objectName: field.objectName.length > 0 ? field.objectName + "Popup" : ""
        property int year: 2024
        property int month: 0
        y: opener.y + opener.height + Theme.s(4)
        x: Math.max(0, opener.x + opener.width - width)
        padding: Theme.s(10)
        focus: true
        background: Rectangle {
            radius: Theme.s(10)
            color: Qt.tint(Theme.p.bgTop, Theme.alpha(Theme.p.panel, 0.9))
            border.width: Math.max(1, Theme.s(1))
            border.color: Theme.p.stroke
        }
        function step(months) {
            const d = new Date(year, month + months, 1)
            year = d.getFullYear()
            month = d.getMonth()
        }

        contentItem: Column {
            spacing: Theme.s(6)
            Item {
                width: grid.width
                height: Theme.s(26)
                IconButton {
                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "chevron.left"
                    tip: "Previous month"
                    iconSize: Theme.s(11)
                    onClicked: calendar.step(-1)
                }
                Text {
                    anchors.centerIn: parent
                    text: Qt.locale().standaloneMonthName(calendar.month) + " " + calendar.year
                    font: Theme.f(13, Font.DemiBold)
                    color: Theme.p.text
                }
                IconButton {
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "chevron.right"
                    tip: "Next month"
                    iconSize: Theme.s(11)
                    onClicked: calendar.step(1)
                }
            }
            DayOfWeekRow {
                width: grid.width
                locale: grid.locale
                delegate: Text {
                    required property string shortName
                    text: shortName
                    font: Theme.f(10.5, Font.DemiBold)
                    color: Theme.p.subtext
                    horizontalAlignment: Text.AlignHCenter
                }
            }
            MonthGrid {
                id: grid
                objectName: field.objectName.length > 0 ? field.objectName + "Grid" : ""
                width: Theme.s(238)
                height: Theme.s(180)
                year: calendar.year
                month: calendar.month
                spacing: Theme.s(2)
                delegate: Rectangle {
                    required property var model
                    readonly property bool chosen: model.year === field.date.getFullYear()
                                                   && model.month === field.date.getMonth()
                                                   && model.day === field.date.getDate()
                    radius: Theme.s(5)
                    color: chosen ? Theme.p.accent : model.today ? Theme.alpha(Theme.p.accent, 0.16) : "transparent"
                    Text {
                        anchors.centerIn: parent
                        text: parent.model.day
                        font: Theme.f(12, parent.chosen ? Font.DemiBold : Font.Normal)
                        color: parent.chosen ? Theme.p.bgBottom
                             : parent.model.month === grid.month ? Theme.p.text : Theme.alpha(Theme.p.subtext, 0.5)
                    }
                }
                // The grid's days arrive as midnight, in UTC or in local time depending on the Qt version;
                // either way the midnight's own components name the day.
                onClicked: day => {
                    const utc = day.getUTCHours() === 0 && day.getUTCMinutes() === 0
                    field.choose(utc ? new Date(day.getUTCFullYear(), day.getUTCMonth(), day.getUTCDate())
                                     : day)
                    calendar.close()
                }
            }
        }
    }
}
