import QtQuick

// A small indeterminate spinner: twelve spokes fading round.
Item {
    id: spinner
    property real size: 16
    width: size
    height: size

    Repeater {
        model: 8
        Rectangle {
            required property int index
            x: spinner.width / 2 - width / 2
            y: 0
            width: spinner.size * 0.13
            height: spinner.size * 0.3
            radius: width / 2
            color: "white"
            opacity: 0.2 + 0.8 * (index / 7)
            transform: Rotation {
                origin.x: width / 2
                origin.y: spinner.height / 2
                angle: index * 45
            }
        }
    }
    RotationAnimator on rotation {
        running: view.animate
        from: 0
        to: 360
        duration: 1000
        loops: Animation.Infinite
    }
}
