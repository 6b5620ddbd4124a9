import QtQuick
import QtQuick.Shapes

// The island's black surface and its shadow. Notched, the card flares into
// the screen's top edge with two concave ears so that it looks grown out of
// the camera housing; free-standing, it is a rounded card.
Item {
    id: shape
    property bool notched: false
    property real ear: 12
    property real cornerRadius: 17
    property real shadowOpacity: 0

    // The card's body, without the ears.
    readonly property real bodyX: notched ? ear : 0
    readonly property real bodyWidth: width - 2 * bodyX

    // No blur without graphical effects: stacked, widening, faint layers
    // make a soft shadow 18 deep, 8 below the card.
    Item {
        id: shadow
        objectName: "shadow"
        opacity: shape.shadowOpacity
        visible: opacity > 0
        x: shape.bodyX
        y: 8
        width: shape.bodyWidth
        height: shape.height
        Repeater {
            model: 9
            Rectangle {
                required property int index
                readonly property real grow: (index + 1) * 2
                x: -grow
                y: -grow * 0.6
                width: shadow.width + 2 * grow
                height: shadow.height + grow * 1.6
                radius: shape.cornerRadius + grow
                color: Qt.rgba(0, 0, 0, 0.085)
            }
        }
    }

    Shape {
        id: notchedBody
        visible: shape.notched
        anchors.fill: parent
        ShapePath {
            fillColor: "black"
            strokeWidth: -1
            PathSvg {
                path: view.notchPath(shape.width, shape.height, shape.ear, shape.cornerRadius)
            }
        }
    }

    Rectangle {
        visible: !shape.notched
        anchors.fill: parent
        radius: shape.cornerRadius
        color: "black"
        antialiasing: true
    }
}
