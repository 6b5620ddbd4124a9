import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import tarnwick.quick
import "Style.js" as Style

// One line of a group: an item of the form and the ones laid out beside it.
Item {
    id: row

    // Where the line's presses, switches and choices go, and its group.
    required property SettingsBridge bridge
    required property int sectionIndex
    // The line as the bridge's FormRows has it.
    required property var items
    required property bool separated
    readonly property var first: items.length > 0 ? items[0] : ({})
    readonly property var beside: items.slice(1)

    implicitHeight: content.height + 2 * (first.prominent ? 6 : 9)

    Rectangle {
        visible: row.separated
        x: 12
        width: parent.width - 12
        height: 1
        color: Style.separator
    }

    Loader {
        id: content
        x: 12
        y: row.first.prominent ? 6 : 9
        width: row.width - 24
        sourceComponent: {
            switch (row.first.kind) {
            case "permission": return permission
            case "button": return row.first.prominent ? prominent : buttons
            case "status": return status
            case "toggle": return toggle
            case "segmented": return segmented
            case "popup": return popup
            case "slider": return slider
            case "app": return app
            case "value": return value
            }
            return caption
        }
    }

    component Label: Text {
        Layout.fillWidth: true
        font.pixelSize: Style.body
        color: Style.primary
        wrapMode: Text.WordWrap
    }

    // The lines' drawings. A component's own bindings may not name this
    // file's ids as far as Qt 6.4's qmllint knows (it has no
    // ComponentBehavior: Bound): each takes the row once, at its top, marked so.
    Component {
        id: permission
        RowLayout {
            id: permissionLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 10
            Image {
                Layout.preferredWidth: 24
                Layout.preferredHeight: 24
                sourceSize.width: 24
                sourceSize.height: 24
                source: Style.symbol(permissionLine.line.first.symbol, Style.tint(permissionLine.line.first.tint))
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                Label {
                    text: permissionLine.line.first.text
                    font.weight: Font.Medium
                }
                Label {
                    text: permissionLine.line.first.detail
                    font.pixelSize: Style.caption
                    color: Style.secondary
                }
            }
            Repeater {
                model: permissionLine.line.beside.length
                FormButton {
                    id: besideButton
                    required property int index
                    readonly property FormRow line: permissionLine.line // qmllint disable unqualified
                    readonly property var entry: line.beside[index]
                    text: entry.text
                    enabled: entry.enabled
                    onClicked: besideButton.line.bridge.press(besideButton.line.sectionIndex,
                                                              besideButton.entry.index)
                }
            }
        }
    }

    Component {
        id: prominent
        ProminentButton {
            id: prominentLine
            readonly property FormRow line: row // qmllint disable unqualified
            item: prominentLine.line.first
            onClicked: prominentLine.line.bridge.press(prominentLine.line.sectionIndex, prominentLine.line.first.index)
        }
    }

    Component {
        id: buttons
        Row {
            id: buttonsLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 8
            Repeater {
                model: buttonsLine.line.items.length
                FormButton {
                    id: rowButton
                    required property int index
                    readonly property FormRow line: buttonsLine.line // qmllint disable unqualified
                    readonly property var entry: line.items[index]
                    text: entry.text
                    symbol: entry.symbol
                    enabled: entry.enabled
                    onClicked: rowButton.line.bridge.press(rowButton.line.sectionIndex,
                                                           rowButton.entry.index)
                }
            }
        }
    }

    Component {
        id: caption
        Text {
            id: captionLine
            readonly property FormRow line: row // qmllint disable unqualified
            text: captionLine.line.first.text
            font.pixelSize: Style.callout
            color: Style.secondary
            wrapMode: Text.WordWrap
            lineHeight: 1.1
        }
    }

    Component {
        id: status
        RowLayout {
            id: statusLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 6
            Image {
                Layout.preferredWidth: 14
                Layout.preferredHeight: 14
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 1
                sourceSize.width: 14
                sourceSize.height: 14
                source: Style.symbol(statusLine.line.first.symbol, Style.secondary)
            }
            Label {
                text: statusLine.line.first.text
                font.pixelSize: Style.callout
                color: Style.secondary
            }
        }
    }

    Component {
        id: toggle
        RowLayout {
            id: toggleLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 12
            Label {
                text: toggleLine.line.first.text
            }
            FormSwitch {
                animate: toggleLine.line.bridge.animate
                text: toggleLine.line.first.text
                checked: toggleLine.line.first.on
                enabled: toggleLine.line.first.enabled
                onToggled: toggleLine.line.bridge.toggle(toggleLine.line.sectionIndex, toggleLine.line.first.index, checked)
            }
        }
    }

    Component {
        id: segmented
        RowLayout {
            id: segmentedLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 12
            Label {
                text: segmentedLine.line.first.text
            }
            Segmented {
                label: segmentedLine.line.first.text
                choices: segmentedLine.line.first.choices
                chosen: segmentedLine.line.first.chosen
                enabled: segmentedLine.line.first.enabled
                onPicked: choice => segmentedLine.line.bridge.choose(segmentedLine.line.sectionIndex, segmentedLine.line.first.index, choice)
            }
        }
    }

    Component {
        id: popup
        RowLayout {
            id: popupLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 12
            Label {
                text: popupLine.line.first.text
            }
            FormCombo {
                label: popupLine.line.first.text
                model: popupLine.line.first.choices
                currentIndex: popupLine.line.first.chosen
                enabled: popupLine.line.first.enabled
                onActivated: choice => popupLine.line.bridge.choose(popupLine.line.sectionIndex, popupLine.line.first.index, choice)
            }
        }
    }

    Component {
        id: slider
        RowLayout {
            id: sliderLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 10
            Label {
                text: sliderLine.line.first.text
            }
            FormSlider {
                label: sliderLine.line.first.text
                from: sliderLine.line.first.minimum
                to: sliderLine.line.first.maximum
                stepSize: sliderLine.line.first.step
                value: sliderLine.line.first.value
                enabled: sliderLine.line.first.enabled
                onMoved: sliderLine.line.bridge.slide(value)
            }
            Text {
                objectName: "delayText"
                Layout.preferredWidth: 40
                horizontalAlignment: Text.AlignRight
                text: sliderLine.line.first.detail
                font.pixelSize: Style.body
                color: Style.primary
            }
        }
    }

    Component {
        id: app
        RowLayout {
            id: appLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 8
            Item {
                Layout.preferredWidth: 20
                Layout.preferredHeight: 20
                Image {
                    anchors.fill: parent
                    visible: appLine.line.first.icon !== ""
                    sourceSize.width: 20
                    sourceSize.height: 20
                    source: visible ? "image://appicon/" + encodeURIComponent(appLine.line.first.icon) : ""
                }
            }
            Label {
                text: appLine.line.first.text
                elide: Text.ElideRight
                wrapMode: Text.NoWrap
            }
            FormSwitch {
                animate: appLine.line.bridge.animate
                text: appLine.line.first.text
                checked: appLine.line.first.on
                enabled: appLine.line.first.enabled
                onToggled: appLine.line.bridge.setAppIncluded(appLine.line.first.bundle, checked)
            }
        }
    }

    Component {
        id: value
        RowLayout {
            id: valueLine
            readonly property FormRow line: row // qmllint disable unqualified
            spacing: 12
            Label {
                text: valueLine.line.first.text
            }
            Text {
                text: valueLine.line.first.detail
                font.pixelSize: Style.body
                color: Style.secondary
            }
        }
    }
}
