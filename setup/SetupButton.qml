import QtQuick
import QtQuick.Controls.Basic
import tarnwick.settings

// A card's button; the default one is filled with the accent colour.
Button {
    id: button

    property bool isDefault: false
    readonly property color foreground: !enabled ? Style.tertiary : isDefault ? "#ffffff" : Style.primary

    font.pixelSize: Style.body
    font.weight: isDefault ? Font.Medium : Font.Normal
    leftPadding: 14
    rightPadding: 14
    topPadding: 5
    bottomPadding: 5
    focusPolicy: Qt.StrongFocus
    Accessible.name: text

    contentItem: Text {
        text: button.text
        font: button.font
        color: button.foreground
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        implicitHeight: 26
        implicitWidth: 72
        radius: 6
        color: button.isDefault ? (button.down ? Style.accentPressed : Style.accent)
                                : (button.down ? Style.controlPressed : Style.control)
        border.width: button.isDefault ? 0 : 1
        border.color: Style.controlBorder
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: 9
            color: "transparent"
            border.width: 3
            border.color: Qt.rgba(0.04, 0.42, 1, 0.45)
            visible: button.visualFocus
        }
    }
}
