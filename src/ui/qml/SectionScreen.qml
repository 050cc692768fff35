// The screen of the current section.
import QtQuick
import Orrelin

Item {
    EmptyStateView {
        anchors.fill: parent
        title: UIState.sections[AppModel.section].title
        message: UIState.sections[AppModel.section].subtitle
    }
}
