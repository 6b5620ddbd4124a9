import QtQuick
import tarnwick.settings

// A small spinner of fading spokes, turning while `running`.
Item {
    id: spinner

    property bool running: true

    implicitWidth: 16
    implicitHeight: 16

    Repeater {
        model: 8
        Rectangle {
            x: spinner.width / 2 - width / 2
            y: 0
            width: 2
            height: spinner.height * 0.3
            radius: 1
            color: Style.secondary
            opacity: 0.2 + 0.8 * (index / 7)
            transform: Rotation {
                origin.x: 1
                origin.y: spinner.height / 2
                angle: index * 45
            }
        }
    }
    RotationAnimator on rotation {
        running: spinner.running
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
}
