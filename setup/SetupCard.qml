import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import tarnwick.quick
import tarnwick.settings

// The card of one step: what it asks, why, and the buttons that answer.
Rectangle {
    id: cardBox

    // Where the buttons' presses go.
    required property SetupBridge bridge
    property var card: ({})
    property var layout: ({})
    readonly property var buttons: card.buttons || []

    height: column.implicitHeight + 2 * layout.cardPadding
    radius: layout.cardCornerRadius
    color: Qt.rgba(0, 0, 0, 0.1 * layout.cardFillOpacity + 0.02)
    border.width: 1
    border.color: Qt.rgba(0, 0, 0, 0.05)

    Column {
        id: column
        x: cardBox.layout.cardPadding
        y: cardBox.layout.cardPadding
        width: cardBox.width - 2 * cardBox.layout.cardPadding
        spacing: cardBox.layout.cardSpacing

        Text {
            objectName: "cardTitle"
            width: parent.width
            text: cardBox.card.title || ""
            font.pixelSize: 14
            font.weight: Font.DemiBold
            color: Style.primary
            wrapMode: Text.WordWrap
        }
        Text {
            objectName: "cardBody"
            width: parent.width
            text: cardBox.card.body || ""
            font.pixelSize: Style.body
            color: Style.secondary
            wrapMode: Text.WordWrap
            lineHeight: 1.12
        }
        Text {
            objectName: "cardError"
            visible: text !== ""
            width: parent.width
            text: cardBox.card.error || ""
            font.pixelSize: Style.callout
            color: Style.red
            wrapMode: Text.WordWrap
        }
        Item {
            width: parent.width
            height: buttonRow.implicitHeight + cardBox.layout.buttonsTopPadding
            RowLayout {
                id: buttonRow
                y: cardBox.layout.buttonsTopPadding
                width: parent.width
                spacing: cardBox.layout.buttonSpacing

                BusyIndicator {
                    id: cardSpinner
                    objectName: "cardSpinner"
                    visible: (cardBox.card.waiting || "") !== ""
                    running: visible
                    Layout.preferredWidth: 16
                    Layout.preferredHeight: 16
                    padding: 0
                    contentItem: Spinner {
                        running: cardSpinner.running && cardBox.bridge.animate
                    }
                }
                // The waiting text takes what the buttons leave and wraps
                // rather than pushing them out of the card.
                Text {
                    objectName: "cardWaiting"
                    visible: text !== ""
                    Layout.fillWidth: true
                    Layout.leftMargin: cardBox.layout.spinnerGap - cardBox.layout.buttonSpacing
                    text: cardBox.card.waiting || ""
                    font.pixelSize: Style.callout
                    color: Style.secondary
                    wrapMode: Text.WordWrap
                }
                Repeater {
                    model: cardBox.buttons.length
                    SetupButton {
                        id: cardButton
                        required property int index
                        // Delegates read the card as Qt 6.4's qmllint cannot check.
                        readonly property SetupBridge bridge: cardBox.bridge // qmllint disable unqualified
                        readonly property var entry: cardBox.buttons[index] // qmllint disable unqualified
                        objectName: "cardButton" + index
                        text: entry.label
                        isDefault: entry.isDefault
                        onClicked: cardButton.bridge.press(cardButton.entry.action)
                    }
                }
                Item {
                    visible: (cardBox.card.waiting || "") === ""
                    Layout.fillWidth: true
                }
            }
        }
        Text {
            objectName: "cardFooter"
            visible: text !== ""
            width: parent.width
            text: cardBox.card.footer || ""
            font.pixelSize: Style.caption
            color: Style.secondary
            wrapMode: Text.WordWrap
        }
    }
}
