import QtQuick
import QtQuick.Layouts
import "Style.js" as Style

// A titled group of rows with its footer; the header stands alone, unboxed.
Column {
    id: group

    property string sectionTitle
    property string sectionFooter
    // The header item when the group is the window's header, else null.
    property var headerItem: null
    // The group's lines (the bridge's FormRows): each an item and the ones
    // laid out beside it, and whether a rule goes above it.
    property var rows: null
    property int sectionIndex: 0
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
                    width: rowsColumn.width
                    items: model.items
                    separated: model.separated
                    sectionIndex: group.sectionIndex
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
