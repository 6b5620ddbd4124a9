import QtQuick
import QtQuick.Controls.Basic

// One destination display beside "Move to"; the selected one is filled with
// the accent and keeps it under the pointer.
AbstractButton {
    id: pill
    property string symbolName: "display"
    property string label
    property bool selected: false
    property real maxName: 170
    readonly property color accent: Qt.rgba(0.3, 0.56, 1.0, 1)
    // Whether its changes play or land at once.
    required property bool animate
    readonly property color ink: selected ? "white" : Qt.rgba(1, 1, 1, 0.7)

    leftPadding: 11
    rightPadding: 11
    topPadding: 6
    bottomPadding: 6
    activeFocusOnTab: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.RadioButton
    Accessible.name: label
    Accessible.checked: selected
    Keys.onReturnPressed: clicked()

    contentItem: Row {
        spacing: 6
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: pill.symbolName
            size: 14
            color: pill.ink
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: pill.label
            width: Math.min(implicitWidth, pill.maxName)
            elide: Text.ElideMiddle
            font.pixelSize: 11
            font.weight: Font.DemiBold
            color: pill.ink
        }
    }
    background: Rectangle {
        radius: height / 2
        color: pill.selected ? pill.accent : Qt.rgba(1, 1, 1, pill.hovered ? 0.12 : 0.08)
        border.width: pill.visualFocus ? 2 : 0
        border.color: Qt.rgba(1, 1, 1, 0.55)
        Behavior on color {
            enabled: pill.animate
            ColorAnimation { duration: 150; easing.type: Easing.OutQuad }
        }
    }
}
