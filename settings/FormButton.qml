import QtQuick
import QtQuick.Controls.Basic
import "Style.js" as Style

// A push button of the forms: bordered and white, or filled with the accent
// colour when it is the one Return answers.
Button {
    id: button

    property string symbol: ""
    property bool filled: false
    property bool large: false
    readonly property color foreground: !enabled ? Style.tertiary : filled ? "#ffffff" : Style.primary

    font.pixelSize: Style.body
    leftPadding: large ? 18 : 12
    rightPadding: leftPadding
    topPadding: large ? 7 : 4
    bottomPadding: topPadding
    focusPolicy: Qt.StrongFocus
    Accessible.name: text

    contentItem: Row {
        spacing: 5
        Image {
            visible: button.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            width: 15
            height: 15
            sourceSize.width: 15
            sourceSize.height: 15
            source: visible ? Style.symbol(button.symbol, button.foreground) : ""
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            font: button.font
            color: button.foreground
        }
    }

    background: Rectangle {
        implicitHeight: button.large ? 32 : 24
        radius: 6
        color: button.filled ? (button.down ? Style.accentPressed : Style.accent)
                             : (button.down ? Style.controlPressed : Style.control)
        border.width: button.filled ? 0 : 1
        border.color: Style.controlBorder
        opacity: button.enabled ? 1 : 0.6

        FocusRing {
            visible: button.visualFocus
            radius: parent.radius
        }
    }
}
