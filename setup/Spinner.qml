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
            id: spoke
            required property int index
            // A delegate reads the spinner as Qt 6.4's qmllint cannot check.
            readonly property real around: spinner.width // qmllint disable unqualified
            readonly property real tall: spinner.height // qmllint disable unqualified
            x: spoke.around / 2 - width / 2
            y: 0
            width: 2
            height: spoke.tall * 0.3
            radius: 1
            color: Style.secondary
            opacity: 0.2 + 0.8 * (spoke.index / 7)
            transform: Rotation {
                origin.x: 1
                origin.y: spoke.tall / 2
                angle: spoke.index * 45
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
