import QtQuick
import QtQuick.Controls.Basic

// The island's capsule buttons: "Not now", "Move selected (…)", "Move all".
AbstractButton {
    id: button
    property bool prominent: false
    readonly property color accent: Qt.rgba(0.3, 0.56, 1.0, 1)
    // Whether its changes play or land at once.
    required property bool animate

    leftPadding: 16
    rightPadding: 16
    topPadding: 8
    bottomPadding: 8
    activeFocusOnTab: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: if (enabled) clicked()
    Keys.onEnterPressed: if (enabled) clicked()

    scale: pressed ? 0.95 : 1
    Behavior on scale {
        enabled: button.animate
        NumberAnimation { duration: 100; easing.type: Easing.OutQuad }
    }

    contentItem: Text {
        text: button.text
        font.pixelSize: 12
        font.weight: Font.DemiBold
        color: "white"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        implicitHeight: 30
        radius: height / 2
        color: button.prominent ? button.accent
                                : Qt.rgba(1, 1, 1, button.hovered && button.enabled ? 0.16 : 0.12)
        border.width: button.visualFocus ? 2 : 0
        border.color: Qt.rgba(1, 1, 1, 0.55)
    }
}
