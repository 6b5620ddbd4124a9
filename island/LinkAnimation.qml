import QtQuick

// The announcement's picture: the computer, the link and the display. On a
// connect the link draws itself towards the display, which lights up as it
// arrives; on a disconnect the link breaks in the middle with a spark and
// both halves draw back.
Row {
    id: link
    property bool connected: true
    property bool multiple: false
    property real track: 130
    property real t: 0
    property bool lit: false
    readonly property color accent: Qt.rgba(0.3, 0.56, 1.0, 1)
    // Whether it plays, or shows its end at once.
    required property bool animate

    spacing: 0

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: "laptopcomputer"
        size: 26
        color: Qt.rgba(1, 1, 1, 0.9)
    }

    Item {
        id: wire
        objectName: "link"
        width: link.track
        height: 30
        anchors.verticalCenter: parent.verticalCenter

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            x: 6
            width: parent.width - 12
            height: 3
            radius: 1.5
            color: Qt.rgba(1, 1, 1, 0.1)
        }

        // Connected: one line grown from the left.
        Item {
            visible: link.connected
            anchors.verticalCenter: parent.verticalCenter
            x: 6
            width: (parent.width - 12) * link.t
            height: 3
            clip: true
            Rectangle {
                width: wire.width - 12
                height: 3
                radius: 1.5
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    GradientStop { position: 0; color: Qt.rgba(0.3, 0.56, 1.0, 0.5) }
                    GradientStop { position: 1; color: link.accent }
                }
            }
        }
        Item {
            id: pulse
            objectName: "pulse"
            // From 0, driven by the animation below alone.
            property real s
            visible: link.connected && !link.lit
            anchors.verticalCenter: parent.verticalCenter
            x: wire.width / 2 + (s - 0.5) * wire.width - width / 2
            width: 6
            height: 6
            Rectangle {
                anchors.centerIn: parent
                width: 14; height: 14; radius: 7
                color: Qt.rgba(0.3, 0.56, 1.0, 0.25)
            }
            Rectangle {
                anchors.centerIn: parent
                width: 9; height: 9; radius: 4.5
                color: Qt.rgba(0.3, 0.56, 1.0, 0.45)
            }
            Rectangle {
                anchors.fill: parent
                radius: 3
                color: "white"
            }
            NumberAnimation on s {
                running: link.animate && pulse.visible
                from: 0
                to: 1
                duration: 900
                loops: Animation.Infinite
            }
        }

        // Disconnected: two halves drawing back to the icons, and the spark.
        Rectangle {
            visible: !link.connected
            anchors.verticalCenter: parent.verticalCenter
            x: 6
            width: (wire.width - 12) * (1 - link.t) * 0.5
            height: 3
            radius: 1.5
            color: link.accent
        }
        Rectangle {
            visible: !link.connected
            anchors.verticalCenter: parent.verticalCenter
            width: (wire.width - 12) * (1 - link.t) * 0.5
            x: wire.width - 6 - width
            height: 3
            radius: 1.5
            color: link.accent
        }
        Rectangle {
            visible: !link.connected
            anchors.centerIn: parent
            width: 10
            height: 10
            radius: 5
            color: "#ff9f0a"
            scale: 0.3 + 2.2 * link.t
            opacity: link.t > 0 ? 1 - link.t : 0
        }
    }

    Item {
        anchors.verticalCenter: parent.verticalCenter
        width: 32
        height: 32
        Item {
            // The glow the display gets when the link reaches it.
            anchors.centerIn: parent
            width: 48
            height: 48
            opacity: link.lit ? 1 : 0
            Repeater {
                model: 4
                Rectangle {
                    required property int index
                    anchors.centerIn: parent
                    width: 48 - index * 8
                    height: width
                    radius: width / 2
                    color: Qt.rgba(0.3, 0.56, 1.0, 0.045)
                }
            }
            Behavior on opacity {
                enabled: link.animate
                NumberAnimation { duration: 300 }
            }
        }
        Symbol {
            id: screen
            anchors.centerIn: parent
            name: link.multiple ? "display.2" : "display"
            size: 32
            color: link.lit ? "white" : Qt.rgba(1, 1, 1, 0.6)
        }
        SequentialAnimation {
            id: bounce
            NumberAnimation { target: screen; property: "scale"; to: 1.14; duration: 140; easing.type: Easing.OutQuad }
            NumberAnimation { target: screen; property: "scale"; to: 1; duration: 360; easing.type: Easing.OutBack; easing.overshoot: 2.2 }
        }
    }

    SequentialAnimation {
        id: draw
        PauseAnimation { duration: link.connected ? 250 : 350 }
        NumberAnimation {
            target: link
            property: "t"
            from: 0
            to: 1
            duration: link.connected ? 550 : 700
            easing.type: link.connected ? Easing.InOutQuad : Easing.OutCubic
        }
    }
    Timer {
        id: arrival
        interval: 800
        onTriggered: {
            link.lit = true
            bounce.start()
        }
    }

    Component.onCompleted: {
        if (!link.animate) {
            t = 1
            lit = connected
            return
        }
        draw.start()
        if (connected)
            arrival.start()
    }
}
