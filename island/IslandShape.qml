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
                id: layer
                required property int index
                // A delegate reads the shape as Qt 6.4's qmllint cannot check.
                readonly property real corner: shape.cornerRadius // qmllint disable unqualified
                readonly property real grow: (index + 1) * 2
                x: -grow
                y: -grow * 0.6
                width: parent.width + 2 * grow
                height: parent.height + grow * 1.6
                radius: layer.corner + grow
                color: Qt.rgba(0, 0, 0, 0.07)
            }
        }
    }

    // Notched: the body, whose bottom corners leave room for the ears (the
    // rectangle's top reaches above the screen's edge, where nothing is
    // drawn), and the two ears. Rectangles are antialiased and Qt Quick's
    // shapes are not without multisampling, so only the small ears are shapes.
    readonly property real bottomRadius: Math.max(0, Math.min(cornerRadius, (height - ear) / 2,
                                                              (width - 2 * ear) / 2))
    Rectangle {
        visible: shape.notched
        x: shape.ear
        y: -shape.bottomRadius
        width: Math.max(0, shape.width - 2 * shape.ear)
        height: shape.height + shape.bottomRadius
        radius: shape.bottomRadius
        color: "black"
        antialiasing: true
    }
    Shape {
        visible: shape.notched && shape.ear > 0
        anchors.fill: parent
        ShapePath {
            fillColor: "black"
            strokeWidth: -1
            startX: 0
            startY: 0
            PathQuad { x: shape.ear; y: Math.min(shape.ear, shape.height); controlX: shape.ear; controlY: 0 }
            PathLine { x: shape.ear; y: 0 }
        }
        ShapePath {
            fillColor: "black"
            strokeWidth: -1
            startX: shape.width
            startY: 0
            PathQuad { x: shape.width - shape.ear; y: Math.min(shape.ear, shape.height); controlX: shape.width - shape.ear; controlY: 0 }
            PathLine { x: shape.width - shape.ear; y: 0 }
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
