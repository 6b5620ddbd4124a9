import QtQuick

// A small indeterminate spinner: twelve spokes fading round.
Item {
    id: spinner
    property real size: 16
    // Turns only where the view animates.
    required property bool animate
    width: size
    height: size

    Repeater {
        model: 8
        Rectangle {
            id: spoke
            required property int index
            // A delegate reads the spinner as Qt 6.4's qmllint cannot check.
            readonly property real around: spinner.width // qmllint disable unqualified
            readonly property real length: spinner.size // qmllint disable unqualified
            readonly property real centre: spinner.height / 2 // qmllint disable unqualified
            x: spoke.around / 2 - width / 2
            y: 0
            width: spoke.length * 0.13
            height: spoke.length * 0.3
            radius: width / 2
            color: "white"
            opacity: 0.2 + 0.8 * (spoke.index / 7)
            transform: Rotation {
                origin.x: spoke.width / 2
                origin.y: spoke.centre
                angle: spoke.index * 45
            }
        }
    }
    RotationAnimator on rotation {
        running: spinner.animate
        from: 0
        to: 360
        duration: 1000
        loops: Animation.Infinite
    }
}
