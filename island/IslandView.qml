import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import tarnwick.quick

// The island inside its transparent panel: a black card hanging from the top
// centre, as wide as the camera housing while tucked in, growing into a card
// whose content follows the phase. `view` (IslandBridge) decides every text,
// size and state; this file only lays them out and plays the changes.
Item {
    id: root
    width: 640
    height: 640
    focus: true

    required property IslandBridge view
    readonly property var frame: root.view.frame
    readonly property color accent: Qt.rgba(0.3, 0.56, 1.0, 1)
    readonly property color green: "#32d74b"
    readonly property color orange: "#ff9f0a"

    // The presenter's springs are critically damped or nearly so; an
    // ease-out over the spring's settling time reads the same and keeps the
    // end state exact.
    readonly property var anim: root.view.animation
    readonly property bool animating: root.view.animate && anim.curve !== "none"
    readonly property int duration: {
        if (anim.curve === "spring") {
            const zeta = Math.max(0.1, anim.damping);
            return Math.round(1000 * 4.6 * anim.response / (2 * Math.PI * zeta));
        }
        return Math.round(1000 * anim.duration);
    }
    readonly property int easing: anim.curve === "spring" && anim.damping < 0.7 ? Easing.OutBack
                                                                              : Easing.OutCubic

    Keys.onEscapePressed: if (root.view.kind !== "moving") root.view.notNow()

    Item {
        id: island
        objectName: "island"
        anchors.horizontalCenter: parent.horizontalCenter
        y: 0
        width: root.frame.outerWidth
        height: Math.max(root.frame.minHeight,
                         root.frame.topSpace + (root.view.expanded ? content.height + 16 : 0))

        Behavior on width {
            enabled: root.animating
            NumberAnimation { duration: root.duration; easing.type: root.easing }
        }
        Behavior on height {
            enabled: root.animating
            NumberAnimation { duration: root.duration; easing.type: root.easing }
        }

        IslandShape {
            id: surface
            anchors.fill: parent
            notched: root.frame.notched
            ear: root.frame.notched ? root.frame.earRadius : 0
            cornerRadius: root.frame.cornerRadius
            shadowOpacity: root.frame.shadowOpacity
            Behavior on cornerRadius {
                enabled: root.animating
                NumberAnimation { duration: root.duration; easing.type: root.easing }
            }
            Behavior on shadowOpacity {
                enabled: root.animating
                NumberAnimation { duration: root.duration; easing.type: root.easing }
            }
        }

        // The card between the ears; the content is laid out for the final
        // width and clipped while the card grows, so text never reflows mid-way.
        Item {
            id: card
            x: root.frame.earPadding
            width: parent.width - 2 * root.frame.earPadding
            height: parent.height
            clip: true

            Item {
                id: content
                objectName: "content"
                x: 18 + (card.width - root.frame.width) / 2
                y: root.frame.topSpace
                width: root.frame.width - 36
                height: phase.item ? (phase.item as Item).implicitHeight : 0
                opacity: root.view.expanded ? 1 : 0
                scale: root.view.expanded ? 1 : 0.96
                transformOrigin: Item.Top
                visible: opacity > 0
                Behavior on opacity {
                    enabled: root.animating
                    NumberAnimation { duration: root.duration * 0.7; easing.type: Easing.OutQuad }
                }
                Behavior on scale {
                    enabled: root.animating
                    NumberAnimation { duration: root.duration; easing.type: root.easing }
                }

                Loader {
                    id: phase
                    width: parent.width
                    sourceComponent: {
                        switch (root.view.kind) {
                        case "announce": return announce;
                        case "loading": return loading;
                        case "chooser": return chooser;
                        case "moving": return moving;
                        case "done": return done;
                        }
                        return undefined;
                    }
                    onLoaded: if (root.view.animate) fadeIn.restart()
                    NumberAnimation {
                        id: fadeIn
                        target: phase.item
                        property: "opacity"
                        from: 0
                        to: 1
                        duration: 220
                        easing.type: Easing.OutQuad
                    }
                }
            }
        }

        // Drawn over the content: the free-standing card's faint rim.
        Rectangle {
            visible: !root.frame.notched
            anchors.fill: parent
            radius: surface.cornerRadius
            color: "transparent"
            border.width: 1
            border.color: Qt.rgba(1, 1, 1, root.frame.strokeOpacity)
            antialiasing: true
        }
    }

    // The phases. A component's own bindings may not name this file's ids
    // as far as Qt 6.4's qmllint knows (it has no ComponentBehavior: Bound):
    // each reads what it needs from outside once, at its top, marked so.
    Component {
        id: announce
        Item {
            id: announceItem
            readonly property var c: root.view.announce // qmllint disable unqualified
            readonly property bool animate: root.view.animate // qmllint disable unqualified
            implicitHeight: column.implicitHeight + 8
            ColumnLayout {
                id: column
                y: 8
                width: parent.width
                spacing: 12
                LinkAnimation {
                    Layout.alignment: Qt.AlignHCenter
                    animate: announceItem.animate
                    connected: announceItem.c.connected
                    multiple: announceItem.c.multiple
                    track: announceItem.c.track
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 3
                    Text {
                        objectName: "announceTitle"
                        Layout.fillWidth: true
                        horizontalAlignment: Text.AlignHCenter
                        text: announceItem.c.title
                        elide: Text.ElideRight
                        font.pixelSize: 15
                        font.weight: Font.DemiBold
                        color: "white"
                    }
                    Text {
                        objectName: "announceDetail"
                        Layout.fillWidth: true
                        visible: text.length > 0
                        horizontalAlignment: Text.AlignHCenter
                        text: announceItem.c.detail
                        elide: Text.ElideMiddle
                        maximumLineCount: 1
                        font.pixelSize: 11
                        color: Qt.rgba(1, 1, 1, 0.55)
                    }
                }
            }
        }
    }

    Component {
        id: loading
        Item {
            id: loadingItem
            readonly property var c: root.view.loading // qmllint disable unqualified
            readonly property bool animate: root.view.animate // qmllint disable unqualified
            implicitHeight: 14 + line.implicitHeight + 14
            Row {
                id: line
                y: 14
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 10
                Spinner {
                    anchors.verticalCenter: parent.verticalCenter
                    size: 16
                    animate: loadingItem.animate
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: loadingItem.c.text
                    font.pixelSize: 13
                    font.weight: Font.Medium
                    color: "white"
                }
            }
        }
    }

    Component {
        id: moving
        Item {
            id: movingItem
            readonly property var c: root.view.moving // qmllint disable unqualified
            readonly property bool animate: root.view.animate // qmllint disable unqualified
            readonly property color accent: root.accent // qmllint disable unqualified
            implicitHeight: 10 + column.implicitHeight + 10
            Column {
                id: column
                y: 10
                width: parent.width
                spacing: 10
                Text {
                    objectName: "movingText"
                    width: parent.width
                    text: movingItem.c.text
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    font.pixelSize: 13
                    font.weight: Font.Medium
                    color: "white"
                }
                Rectangle {
                    objectName: "progress"
                    width: parent.width
                    height: 6
                    radius: 3
                    color: Qt.rgba(1, 1, 1, 0.12)
                    Accessible.role: Accessible.ProgressBar
                    Accessible.name: movingItem.c.text
                    Rectangle {
                        objectName: "progressFill"
                        height: parent.height
                        radius: parent.radius
                        width: Math.max(height, parent.width * movingItem.c.fraction)
                        visible: movingItem.c.fraction > 0
                        color: movingItem.accent
                        Behavior on width {
                            enabled: movingItem.animate
                            NumberAnimation { duration: 250; easing.type: Easing.OutCubic }
                        }
                    }
                }
            }
        }
    }

    Component {
        id: done
        Item {
            id: doneItem
            readonly property var c: root.view.done // qmllint disable unqualified
            readonly property color green: root.green // qmllint disable unqualified
            readonly property color orange: root.orange // qmllint disable unqualified
            implicitHeight: 12 + line.implicitHeight + 12
            RowLayout {
                id: line
                y: 12
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(implicitWidth, parent.width)
                spacing: 10
                Symbol {
                    objectName: "doneSymbol"
                    name: doneItem.c.symbol
                    size: 20
                    color: doneItem.c.ok ? doneItem.green : doneItem.orange
                }
                Text {
                    objectName: "doneText"
                    Layout.fillWidth: true
                    Layout.maximumWidth: line.parent.width - 30
                    text: doneItem.c.text
                    wrapMode: Text.Wrap
                    horizontalAlignment: lineCount > 1 ? Text.AlignHCenter : Text.AlignLeft
                    font.pixelSize: 13
                    font.weight: Font.DemiBold
                    color: "white"
                }
            }
        }
    }

    Component {
        id: chooser
        Chooser {
            island: root.view // qmllint disable unqualified
        }
    }
}
