import QtQuick
import QtQuick.Controls.Basic
import "Style.js" as Style

Slider {
    id: slider

    property string label: ""

    implicitWidth: 180
    implicitHeight: 22
    padding: 0
    snapMode: Slider.SnapAlways
    focusPolicy: Qt.StrongFocus
    Accessible.name: label

    background: Item {
        x: slider.leftPadding
        width: slider.availableWidth
        height: slider.height
        Rectangle {
            y: (parent.height - height) / 2
            width: parent.width
            height: 4
            radius: 2
            color: Style.track
            Rectangle {
                width: slider.visualPosition * parent.width
                height: parent.height
                radius: 2
                color: Style.accent
            }
        }
    }
    handle: Rectangle {
        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        y: (slider.height - height) / 2
        width: 18
        height: 18
        radius: 9
        color: slider.pressed ? "#f2f2f2" : "#ffffff"
        border.width: 1
        border.color: Qt.rgba(0, 0, 0, 0.18)
        FocusRing {
            visible: slider.visualFocus
            radius: 12
        }
    }
}
