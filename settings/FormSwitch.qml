import QtQuick
import QtQuick.Controls.Basic
import "Style.js" as Style

// An on/off switch; its label is drawn by the row, its text only names it.
Switch {
    id: control
    // Whether it slides or flips at once.
    required property bool animate

    padding: 0
    spacing: 0
    implicitWidth: indicator.implicitWidth
    implicitHeight: indicator.implicitHeight
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    contentItem: Item {}

    indicator: Rectangle {
        implicitWidth: 36
        implicitHeight: 20
        x: control.leftPadding
        y: (control.height - height) / 2
        radius: height / 2
        color: control.checked ? Style.accent : Style.track
        opacity: control.enabled ? 1 : 0.5
        Behavior on color {
            enabled: control.animate
            ColorAnimation { duration: 140 }
        }

        Rectangle {
            width: 18
            height: 18
            y: 1
            x: control.checked ? parent.width - width - 1 : 1
            radius: 9
            color: control.down ? "#f2f2f2" : "#ffffff"
            border.width: 1
            border.color: Qt.rgba(0, 0, 0, 0.12)
            Behavior on x {
                enabled: control.animate
                NumberAnimation { duration: 140; easing.type: Easing.OutCubic }
            }
        }

        FocusRing {
            visible: control.visualFocus
            radius: parent.radius + 3
        }
    }
}
