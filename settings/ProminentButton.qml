import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import "Style.js" as Style

// A large, full-width button: filled with its tint (a display's move
// button), or bordered when it has none.
Button {
    id: button

    property var item: ({})
    readonly property bool tinted: item.tint === "gray" || item.tint === "accent"
    readonly property color foreground: tinted ? "#ffffff" : Style.primary
    readonly property color fill: item.tint === "gray" ? (down ? Style.grayPressed : Style.gray)
                                : item.tint === "accent" ? (down ? Style.accentPressed : Style.accent)
                                : (down ? Style.borderedPressed : Style.bordered)

    text: item.text
    enabled: item.enabled
    padding: 6
    leftPadding: 12
    rightPadding: 10
    focusPolicy: Qt.StrongFocus
    Accessible.name: item.detail ? item.text + ", " + item.detail : item.text

    contentItem: RowLayout {
        spacing: 10
        Image {
            visible: button.item.symbol !== ""
            Layout.preferredWidth: 22
            Layout.preferredHeight: 22
            sourceSize.width: 22
            sourceSize.height: 22
            source: visible ? Style.symbol(button.item.symbol, button.foreground) : ""
        }
        Column {
            Layout.fillWidth: true
            spacing: 1
            Text {
                width: parent.width
                text: button.item.text
                font.pixelSize: Style.body
                font.weight: button.tinted ? Font.DemiBold : Font.Medium
                color: button.foreground
                elide: Text.ElideRight
            }
            Text {
                visible: text !== ""
                text: button.item.detail
                font.pixelSize: Style.caption
                color: button.foreground
                opacity: 0.8
            }
        }
        Image {
            visible: button.item.trailingSymbol !== ""
            Layout.preferredWidth: 22
            Layout.preferredHeight: 22
            sourceSize.width: 22
            sourceSize.height: 22
            source: visible ? Style.symbol(button.item.trailingSymbol, button.foreground) : ""
        }
    }

    background: Rectangle {
        implicitHeight: 40
        radius: 8
        color: button.fill
        opacity: button.enabled ? 1 : 0.5
        FocusRing {
            visible: button.visualFocus
            radius: 10
        }
    }
}
