import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import tarnwick.quick

// One window offered for moving. A tap anywhere flips its tick; the model
// decides the tick, the row only keeps whether the pointer is over it.
Rectangle {
    id: row
    // The bridge the taps go to; the rest is the row's model (WindowRows).
    required property IslandBridge island
    required property string rowId
    required property string icon
    required property string app
    required property string title
    required property bool fullscreen
    required property bool selected
    required property string mark
    readonly property color accent: Qt.rgba(0.3, 0.56, 1.0, 1)
    readonly property bool hover: hoverHandler.hovered

    objectName: "row-" + rowId
    height: 48
    radius: 12
    color: selected ? Qt.rgba(1, 1, 1, 0.08) : hover ? Qt.rgba(1, 1, 1, 0.05) : "transparent"
    border.width: activeFocus ? 2 : 0
    border.color: Qt.rgba(1, 1, 1, 0.45)
    Behavior on color {
        enabled: row.island.animate
        ColorAnimation { duration: 150; easing.type: Easing.OutQuad }
    }

    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: app + ", " + title
    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.onToggleAction: row.island.tap(row.rowId)
    Accessible.onPressAction: row.island.tap(row.rowId)
    Keys.onSpacePressed: row.island.tap(row.rowId)
    Keys.onReturnPressed: row.island.tap(row.rowId)

    HoverHandler { id: hoverHandler }
    TapHandler { onTapped: row.island.tap(row.rowId) }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        spacing: 12

        AppIcon {
            Layout.preferredWidth: 30
            Layout.preferredHeight: 30
            icon: row.icon
            app: row.app
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            Text {
                Layout.fillWidth: true
                text: row.app
                elide: Text.ElideRight
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: "white"
            }
            Text {
                Layout.fillWidth: true
                text: row.title
                elide: Text.ElideMiddle
                maximumLineCount: 1
                font.pixelSize: 11
                color: Qt.rgba(1, 1, 1, 0.5)
            }
        }
        Rectangle {
            visible: row.fullscreen
            implicitWidth: badge.implicitWidth + 14
            implicitHeight: badge.implicitHeight + 6
            radius: height / 2
            color: Qt.rgba(1, 1, 1, 0.1)
            Text {
                id: badge
                anchors.centerIn: parent
                text: "Full screen"
                font.pixelSize: 10
                font.weight: Font.Medium
                color: Qt.rgba(1, 1, 1, 0.65)
            }
        }
        Symbol {
            objectName: "mark"
            name: row.mark
            size: 20
            color: row.selected ? row.accent : Qt.rgba(1, 1, 1, 0.3)
        }
    }
}
