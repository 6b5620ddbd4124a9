import QtQuick
import QtQuick.Controls.Basic
import "Style.js" as Style

// A pop-up picker showing only the chosen entry.
ComboBox {
    id: combo

    property string label: ""

    implicitWidth: Math.max(200, contentWidthHint + 44)
    implicitHeight: 24
    font.pixelSize: Style.body
    focusPolicy: Qt.StrongFocus
    Accessible.name: label
    leftPadding: 10
    rightPadding: 28

    readonly property real contentWidthHint: {
        let widest = 0
        for (let i = 0; i < measures.count; ++i)
            widest = Math.max(widest, measures.itemAt(i).implicitWidth)
        return widest
    }
    Repeater {
        id: measures
        model: combo.model
        Text {
            required property var modelData
            // Delegates read the combo as Qt 6.4's qmllint cannot check.
            readonly property font comboFont: combo.font // qmllint disable unqualified
            visible: false
            text: modelData
            font: comboFont
        }
    }

    background: Rectangle {
        radius: 6
        color: combo.down ? Style.controlPressed : Style.control
        border.width: 1
        border.color: Style.controlBorder
        FocusRing {
            visible: combo.visualFocus
            radius: parent.radius + 3
        }
    }
    contentItem: Text {
        text: combo.displayText
        font: combo.font
        color: Style.primary
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    indicator: Rectangle {
        x: combo.width - width - 3
        y: 3
        width: 18
        height: combo.height - 6
        radius: 4
        color: Style.accent
        Image {
            anchors.centerIn: parent
            width: 10
            height: 10
            sourceSize.width: 10
            sourceSize.height: 10
            source: Style.symbol("chevron.down", "#ffffff")
        }
    }
    delegate: ItemDelegate {
        id: choice
        required property int index
        required property var modelData
        // Delegates read the combo as Qt 6.4's qmllint cannot check.
        readonly property ComboBox owner: combo // qmllint disable unqualified
        width: owner.width
        height: 26
        highlighted: owner.highlightedIndex === index
        contentItem: Text {
            text: choice.modelData
            font: choice.owner.font
            color: choice.highlighted ? "#ffffff" : Style.primary
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            radius: 4
            color: choice.highlighted ? Style.accent : "transparent"
        }
    }
    popup: Popup {
        y: combo.height + 2
        width: combo.width
        padding: 4
        implicitHeight: contentItem.implicitHeight + 8
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: combo.popup.visible ? combo.delegateModel : null
            currentIndex: combo.highlightedIndex
        }
        background: Rectangle {
            radius: 7
            color: "#fbfbfc"
            border.width: 1
            border.color: Style.boxBorder
        }
    }
}
