import QtQuick
import QtQuick.Controls.Basic
import tarnwick.quick
import tarnwick.settings

// The first-run window: header, checklist and the card of the current step,
// as tall as its content.
Rectangle {
    id: root
    objectName: "setupRoot"

    required property SetupBridge view
    readonly property var layout: view.layout
    readonly property var card: view.card
    readonly property var header: view.header

    width: layout.width
    height: content.implicitHeight + 2 * layout.padding
    color: Style.window
    focus: true

    // Return answers the card's default button wherever the focus is; the
    // buttons themselves only take Space, so the key reaches here.
    function pressDefault() {
        const buttons = card.buttons || []
        for (let i = 0; i < buttons.length; ++i)
            if (buttons[i].isDefault)
                return root.view.press(buttons[i].action)
        return false
    }
    Keys.onReturnPressed: pressDefault()
    Keys.onEnterPressed: pressDefault()

    Column {
        id: content
        x: root.layout.padding
        y: root.layout.padding
        width: root.width - 2 * root.layout.padding
        spacing: root.layout.spacing

        Row {
            spacing: root.layout.iconGap
            Image {
                width: root.layout.iconSize
                height: root.layout.iconSize
                sourceSize.width: 2 * width
                sourceSize.height: 2 * height
                source: "qrc:/tarnwick/resources/desktop/org.tarnwick.Tarnwick.svg"
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter
                spacing: root.layout.titleGap
                Text {
                    objectName: "setupTitle"
                    text: root.header.title
                    font.pixelSize: Style.title2
                    font.weight: Font.Bold
                    color: Style.primary
                }
                Text {
                    objectName: "setupSubtitle"
                    text: root.header.subtitle
                    font.pixelSize: Style.body
                    color: Style.secondary
                }
            }
        }

        Column {
            objectName: "setupChecklist"
            spacing: root.layout.rowSpacing
            Repeater {
                model: root.view.checklist.length
                ChecklistRow {
                    required property int index
                    // Delegates read the window as Qt 6.4's qmllint cannot check.
                    readonly property SetupBridge bridge: root.view // qmllint disable unqualified
                    readonly property var layout: root.layout // qmllint disable unqualified
                    animate: bridge.animate
                    row: bridge.checklist[index]
                    symbolSize: layout.symbolSize
                    gap: layout.symbolGap
                }
            }
        }

        Item {
            id: cardArea
            width: content.width
            height: stepCard.height
            clip: transition.running

            SetupCard {
                id: stepCard
                objectName: "setupCard"
                width: parent.width
                bridge: root.view
                card: root.card
                layout: root.layout
            }

            // A new step brings a new card, which fades and slides in from
            // the trailing edge.
            property int step: root.card.step
            onStepChanged: if (root.view.animate) transition.restart()
            ParallelAnimation {
                id: transition
                NumberAnimation {
                    target: stepCard
                    property: "opacity"
                    from: 0
                    to: 1
                    duration: 260
                    easing.type: Easing.OutCubic
                }
                NumberAnimation {
                    target: stepCard
                    property: "x"
                    from: 48
                    to: 0
                    duration: 420
                    easing.type: Easing.OutBack
                    easing.overshoot: 0.8
                }
            }
        }
    }
}
