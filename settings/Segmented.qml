import QtQuick
import QtQuick.Controls.Basic
import "Style.js" as Style

// A segmented picker: every choice visible, the chosen one raised.
Rectangle {
    id: picker

    property string label: ""
    property var choices: []
    property int chosen: 0
    signal picked(int choice)

    readonly property real segmentWidth: {
        let widest = 0
        for (let i = 0; i < measures.count; ++i)
            widest = Math.max(widest, measures.itemAt(i).implicitWidth)
        return widest + 24
    }

    implicitWidth: segmentWidth * choices.length + 4
    implicitHeight: 24
    radius: 7
    color: Style.bordered
    opacity: enabled ? 1 : 0.5

    Repeater {
        id: measures
        model: picker.choices
        Text {
            required property var modelData
            visible: false
            text: modelData
            font.pixelSize: Style.callout
            font.weight: Font.Medium
        }
    }

    Row {
        x: 2
        y: 2
        Repeater {
            model: picker.choices
            delegate: AbstractButton {
                id: segment
                required property int index
                required property var modelData
                // Delegates read the picker as Qt 6.4's qmllint cannot check.
                readonly property Segmented owner: picker // qmllint disable unqualified
                width: owner.segmentWidth
                height: 20
                text: modelData
                checked: index === owner.chosen
                focusPolicy: Qt.StrongFocus
                Accessible.role: Accessible.RadioButton
                Accessible.name: owner.label + ": " + modelData
                Accessible.checked: checked
                onClicked: owner.picked(index)

                background: Rectangle {
                    radius: 5
                    color: segment.checked ? "#ffffff" : segment.down ? Style.borderedPressed
                                                                      : "transparent"
                    border.width: segment.checked ? 1 : 0
                    border.color: Qt.rgba(0, 0, 0, 0.1)
                    FocusRing {
                        visible: segment.visualFocus
                        radius: parent.radius + 3
                    }
                }
                contentItem: Text {
                    text: segment.text
                    font.pixelSize: Style.callout
                    font.weight: Font.Medium
                    color: Style.primary
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
            }
        }
    }
}
