import QtQuick
import QtQuick.Layouts
import tarnwick.quick
import "Style.js" as Style

// A titled group of rows with its footer; the header stands alone, unboxed.
Column {
    id: group

    // Where the lines' presses, switches and choices go.
    required property SettingsBridge bridge
    // The group as the bridge's FormSections has it: title, footer, the
    // header item when the group is the window's header (else null), and
    // its lines (FormRows), each an item and the ones laid out beside it,
    // and whether a rule goes above it.
    required property int index
    required property string title
    required property string footer
    required property var header
    required property var lines
    readonly property string sectionTitle: title
    readonly property string sectionFooter: footer
    readonly property var headerItem: header
    readonly property var rows: lines
    readonly property int sectionIndex: index
    readonly property bool isHeader: !!headerItem

    spacing: 7

    Text {
        visible: text !== ""
        leftPadding: 2
        text: group.sectionTitle
        font.pixelSize: Style.sectionTitle
        font.weight: Font.DemiBold
        color: Style.primary
    }

    Row {
        visible: group.isHeader
        spacing: 14
        leftPadding: 2
        Image {
            width: 64
            height: 64
            sourceSize.width: 128
            sourceSize.height: 128
            source: "qrc:/tarnwick/resources/desktop/org.tarnwick.Tarnwick.svg"
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3
            Text {
                text: group.isHeader ? group.headerItem.text : ""
                font.pixelSize: Style.title
                font.weight: Font.Bold
                color: Style.primary
            }
            Text {
                text: group.isHeader ? group.headerItem.detail : ""
                font.pixelSize: Style.body
                color: Style.secondary
            }
        }
    }

    Rectangle {
        visible: !group.isHeader && group.rows !== null && group.rows.count > 0
        width: group.width
        height: rowsColumn.implicitHeight
        radius: 9
        color: Style.box
        border.width: 1
        border.color: Style.boxBorder

        Column {
            id: rowsColumn
            width: parent.width
            Repeater {
                model: group.isHeader ? null : group.rows
                FormRow {
                    // Delegates read the group as Qt 6.4's qmllint cannot check.
                    bridge: group.bridge // qmllint disable unqualified
                    sectionIndex: group.sectionIndex // qmllint disable unqualified
                    width: parent.width
                }
            }
        }
    }

    Text {
        visible: text !== ""
        width: group.width
        leftPadding: 2
        rightPadding: 2
        text: group.sectionFooter
        font.pixelSize: Style.caption
        color: Style.secondary
        wrapMode: Text.WordWrap
    }
}
