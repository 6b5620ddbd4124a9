import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import "Style.js" as Style

// One line of a group: an item of the form and the ones laid out beside it.
Item {
    id: row

    property var items: []
    property int sectionIndex: 0
    property bool separated: false
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

    Component {
        id: permission
        RowLayout {
            spacing: 10
            Image {
                Layout.preferredWidth: 24
                Layout.preferredHeight: 24
                sourceSize.width: 24
                sourceSize.height: 24
                source: Style.symbol(row.first.symbol, Style.tint(row.first.tint))
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                Label {
                    text: row.first.text
                    font.weight: Font.Medium
                }
                Label {
                    text: row.first.detail
                    font.pixelSize: Style.caption
                    color: Style.secondary
                }
            }
            Repeater {
                model: row.beside.length
                FormButton {
                    text: row.beside[index].text
                    enabled: row.beside[index].enabled
                    onClicked: view.press(row.sectionIndex, row.beside[index].index)
                }
            }
        }
    }

    Component {
        id: prominent
        ProminentButton {
            item: row.first
            onClicked: view.press(row.sectionIndex, row.first.index)
        }
    }

    Component {
        id: buttons
        Row {
            spacing: 8
            Repeater {
                model: row.items.length
                FormButton {
                    text: row.items[index].text
                    symbol: row.items[index].symbol
                    enabled: row.items[index].enabled
                    onClicked: view.press(row.sectionIndex, row.items[index].index)
                }
            }
        }
    }

    Component {
        id: caption
        Text {
            text: row.first.text
            font.pixelSize: Style.callout
            color: Style.secondary
            wrapMode: Text.WordWrap
            lineHeight: 1.1
        }
    }

    Component {
        id: status
        RowLayout {
            spacing: 6
            Image {
                Layout.preferredWidth: 14
                Layout.preferredHeight: 14
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 1
                sourceSize.width: 14
                sourceSize.height: 14
                source: Style.symbol(row.first.symbol, Style.secondary)
            }
            Label {
                text: row.first.text
                font.pixelSize: Style.callout
                color: Style.secondary
            }
        }
    }

    Component {
        id: toggle
        RowLayout {
            spacing: 12
            Label {
                text: row.first.text
            }
            FormSwitch {
                text: row.first.text
                checked: row.first.on
                enabled: row.first.enabled
                onToggled: view.toggle(row.sectionIndex, row.first.index, checked)
            }
        }
    }

    Component {
        id: segmented
        RowLayout {
            spacing: 12
            Label {
                text: row.first.text
            }
            Segmented {
                label: row.first.text
                choices: row.first.choices
                chosen: row.first.chosen
                enabled: row.first.enabled
                onPicked: choice => view.choose(row.sectionIndex, row.first.index, choice)
            }
        }
    }

    Component {
        id: popup
        RowLayout {
            spacing: 12
            Label {
                text: row.first.text
            }
            FormCombo {
                label: row.first.text
                model: row.first.choices
                currentIndex: row.first.chosen
                enabled: row.first.enabled
                onActivated: choice => view.choose(row.sectionIndex, row.first.index, choice)
            }
        }
    }

    Component {
        id: slider
        RowLayout {
            spacing: 10
            Label {
                text: row.first.text
            }
            FormSlider {
                label: row.first.text
                from: row.first.minimum
                to: row.first.maximum
                stepSize: row.first.step
                value: row.first.value
                enabled: row.first.enabled
                onMoved: view.slide(value)
            }
            Text {
                objectName: "delayText"
                Layout.preferredWidth: 40
                horizontalAlignment: Text.AlignRight
                text: row.first.detail
                font.pixelSize: Style.body
                color: Style.primary
            }
        }
    }

    Component {
        id: app
        RowLayout {
            spacing: 8
            Item {
                Layout.preferredWidth: 20
                Layout.preferredHeight: 20
                Image {
                    anchors.fill: parent
                    visible: row.first.icon !== ""
                    sourceSize.width: 20
                    sourceSize.height: 20
                    source: visible ? "image://appicon/" + encodeURIComponent(row.first.icon) : ""
                }
            }
            Label {
                text: row.first.text
                elide: Text.ElideRight
                wrapMode: Text.NoWrap
            }
            FormSwitch {
                text: row.first.text
                checked: row.first.on
                enabled: row.first.enabled
                onToggled: view.setAppIncluded(row.first.bundle, checked)
            }
        }
    }

    Component {
        id: value
        RowLayout {
            spacing: 12
            Label {
                text: row.first.text
            }
            Text {
                text: row.first.detail
                font.pixelSize: Style.body
                color: Style.secondary
            }
        }
    }
}
