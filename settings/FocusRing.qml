import QtQuick
import "Style.js" as Style

// The halo around the control that has the keyboard.
Rectangle {
    anchors.fill: parent
    anchors.margins: -3
    radius: 6
    color: "transparent"
    border.width: 3
    border.color: Qt.rgba(0.04, 0.42, 1, 0.45)
}
