import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import tarnwick.quick

// The window chooser: what arrived, where the windows go, which of them go,
// and the three buttons.
Item {
    id: chooser
    required property IslandBridge island
    readonly property var c: island.chooser
    readonly property color accent: Qt.rgba(0.3, 0.56, 1.0, 1)
    readonly property color green: "#32d74b"

    implicitHeight: 4 + column.implicitHeight

    // The window rows, kept by id and updated in place by the bridge, so a
    // tick animates and the hovered or focused row stays the same row.
    readonly property var rows: island.windows

    ColumnLayout {
        id: column
        y: 4
        width: parent.width
        spacing: 12

        // Header
        RowLayout {
            Layout.fillWidth: true
            spacing: 12
            Rectangle {
                implicitWidth: 38
                implicitHeight: 38
                radius: 10
                color: Qt.rgba(0.3, 0.56, 1.0, 0.25)
                Symbol {
                    anchors.centerIn: parent
                    name: chooser.c.header.symbol
                    size: 18
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                Text {
                    objectName: "chooserTitle"
                    Layout.fillWidth: true
                    text: chooser.c.header.title
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    font.pixelSize: 15
                    font.weight: Font.DemiBold
                    color: "white"
                }
                Text {
                    objectName: "chooserSubtitle"
                    Layout.fillWidth: true
                    text: chooser.c.header.subtitle
                    elide: Text.ElideRight
                    font.pixelSize: 11
                    color: Qt.rgba(1, 1, 1, 0.55)
                }
            }
            AbstractButton {
                id: selectAll
                objectName: "selectAll"
                Layout.alignment: Qt.AlignVCenter
                text: chooser.c.header.selectLabel
                opacity: chooser.c.header.selectOpacity
                enabled: chooser.c.header.selectOpacity > 0
                padding: 4
                activeFocusOnTab: true
                focusPolicy: Qt.StrongFocus
                Accessible.role: Accessible.Button
                Accessible.name: text
                Keys.onReturnPressed: clicked()
                onClicked: chooser.island.selectAll()
                contentItem: Text {
                    text: selectAll.text
                    font.pixelSize: 11
                    font.weight: Font.Medium
                    font.underline: selectAll.visualFocus
                    color: selectAll.pressed ? Qt.lighter(chooser.accent, 1.3) : chooser.accent
                }
                background: Item {}
            }
        }

        // Destination
        RowLayout {
            objectName: "destination"
            Layout.alignment: Qt.AlignHCenter
            spacing: 6
            Text {
                text: chooser.c.destination.caption
                font.pixelSize: 11
                font.weight: Font.Medium
                color: Qt.rgba(1, 1, 1, 0.5)
            }
            Row {
                objectName: "pills"
                visible: chooser.c.destination.control !== "menu"
                spacing: 6
                Repeater {
                    model: chooser.c.destination.pills
                    DestinationPill {
                        required property var modelData
                        // Delegates read the chooser as Qt 6.4's qmllint cannot check.
                        readonly property IslandBridge island: chooser.island // qmllint disable unqualified
                        readonly property bool compact: chooser.c.destination.control === "compact" // qmllint disable unqualified
                        objectName: "pill-" + modelData.display
                        animate: island.animate
                        symbolName: modelData.symbol
                        label: modelData.label
                        selected: modelData.selected
                        maxName: compact ? 130 : 170
                        onClicked: island.retarget(modelData.display)
                    }
                }
            }
            AbstractButton {
                id: menuButton
                objectName: "destinationMenu"
                visible: chooser.c.destination.control === "menu"
                leftPadding: 11
                rightPadding: 11
                topPadding: 6
                bottomPadding: 6
                activeFocusOnTab: true
                focusPolicy: Qt.StrongFocus
                text: chooser.c.destination.menuLabel
                Accessible.role: Accessible.ButtonMenu
                Accessible.name: "Move to " + text
                Keys.onReturnPressed: clicked()
                Keys.onSpacePressed: clicked()
                onClicked: menu.opened ? menu.close() : menu.popup(menuButton, 0, menuButton.height + 4)
                contentItem: Row {
                    spacing: 6
                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: chooser.c.destination.menuSymbol
                        size: 14
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: menuButton.text
                        maximumLineCount: 1
                        font.pixelSize: 11
                        font.weight: Font.DemiBold
                        color: "white"
                    }
                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "chevron.down"
                        size: 9
                    }
                }
                background: Rectangle {
                    radius: height / 2
                    color: chooser.accent
                    border.width: menuButton.visualFocus ? 2 : 0
                    border.color: Qt.rgba(1, 1, 1, 0.55)
                }

                Menu {
                    id: menu
                    objectName: "destinationEntries"
                    padding: 5
                    // As wide as the longest name, which the button itself may not show.
                    width: {
                        let widest = 160;
                        for (let i = 0; i < count; ++i)
                            widest = Math.max(widest, itemAt(i).implicitWidth);
                        return widest + leftPadding + rightPadding;
                    }
                    background: Rectangle {
                        color: "#262628"
                        radius: 10
                        border.width: 1
                        border.color: Qt.rgba(1, 1, 1, 0.12)
                    }
                    Instantiator {
                        model: chooser.c.destination.entries
                        delegate: MenuItem {
                            id: entry
                            required property var modelData
                            readonly property IslandBridge island: chooser.island // qmllint disable unqualified
                            readonly property color accent: chooser.accent // qmllint disable unqualified
                            text: modelData.label
                            implicitHeight: 28
                            leftPadding: 8
                            rightPadding: 14
                            Accessible.name: text
                            onTriggered: entry.island.retarget(entry.modelData.display)
                            contentItem: Row {
                                spacing: 8
                                Symbol {
                                    anchors.verticalCenter: parent.verticalCenter
                                    name: entry.modelData.symbol
                                    size: 14
                                }
                                Text {
                                    anchors.verticalCenter: parent.verticalCenter
                                    text: entry.text
                                    font.pixelSize: 12
                                    color: "white"
                                }
                            }
                            background: Rectangle {
                                radius: 6
                                color: entry.highlighted ? entry.accent : "transparent"
                            }
                        }
                        onObjectAdded: (index, object) => menu.insertItem(index, object)
                        onObjectRemoved: (index, object) => menu.removeItem(object)
                    }
                }
            }
        }

        // The window list, or the line saying there is nothing to move.
        RowLayout {
            objectName: "emptyLine"
            visible: chooser.rows.count === 0
            Layout.fillWidth: true
            Layout.preferredHeight: chooser.c.list.height
            spacing: 8
            Item { Layout.fillWidth: true }
            Symbol {
                name: "checkmark.circle"
                size: 16
                color: chooser.green
            }
            Text {
                text: chooser.c.list.emptyText
                font.pixelSize: 12
                font.weight: Font.Medium
                color: Qt.rgba(1, 1, 1, 0.7)
            }
            Item { Layout.fillWidth: true }
        }
        Flickable {
            id: list
            objectName: "chooserList"
            visible: chooser.rows.count > 0
            Layout.fillWidth: true
            Layout.preferredHeight: chooser.c.list.height
            clip: true
            contentWidth: width
            contentHeight: stack.height
            boundsBehavior: Flickable.StopAtBounds
            interactive: chooser.c.list.scrolls
            ScrollBar.vertical: ScrollBar {
                objectName: "scrollIndicator"
                policy: chooser.c.list.scrolls ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
                width: 6
                padding: 0
                contentItem: Rectangle {
                    implicitWidth: 4
                    radius: 2
                    color: Qt.rgba(1, 1, 1, 0.3)
                }
                background: Item {}
            }
            Column {
                id: stack
                width: list.width - (chooser.c.list.scrolls ? 10 : 0)
                spacing: 4
                Repeater {
                    model: chooser.rows
                    WindowRow {
                        // Delegates read the chooser as Qt 6.4's qmllint cannot check.
                        readonly property Flickable scroller: list // qmllint disable unqualified
                        island: chooser.island // qmllint disable unqualified
                        width: parent.width
                        onActiveFocusChanged: if (activeFocus) scroller.contentY = Math.max(0,
                            Math.min(y, Math.max(0, scroller.contentHeight - scroller.height)))
                    }
                }
            }
        }

        // Buttons
        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            IslandButton {
                objectName: "notNow"
                animate: chooser.island.animate
                text: chooser.c.notNow.text
                prominent: chooser.c.notNow.prominent
                enabled: chooser.c.notNow.enabled
                opacity: chooser.c.notNow.opacity
                onClicked: chooser.island.notNow()
            }
            Item { Layout.fillWidth: true }
            IslandButton {
                objectName: "moveSelected"
                animate: chooser.island.animate
                text: chooser.c.moveSelected.text
                prominent: chooser.c.moveSelected.prominent
                enabled: chooser.c.moveSelected.enabled
                opacity: chooser.c.moveSelected.opacity
                onClicked: chooser.island.move(false)
            }
            IslandButton {
                objectName: "moveAll"
                animate: chooser.island.animate
                text: chooser.c.moveAll.text
                prominent: chooser.c.moveAll.prominent
                enabled: chooser.c.moveAll.enabled
                opacity: chooser.c.moveAll.opacity
                onClicked: chooser.island.move(true)
            }
        }
    }
}
