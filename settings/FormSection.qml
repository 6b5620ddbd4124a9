import QtQuick
import QtQuick.Layouts
import "Style.js" as Style

// A titled group of rows with its footer; the header stands alone, unboxed.
Column {
    id: group

    property var section: ({})
    property int sectionIndex: 0
    readonly property var items: group.section.items || []
    readonly property bool isHeader: items.length > 0 && items[0].kind === "header"
    // Items marked sameRow join the line of the item before them.
    readonly property var rows: {
        const out = []
        for (let i = 0; i < items.length; ++i) {
            if (items[i].sameRow && out.length > 0)
                out[out.length - 1].push(items[i])
            else
                out.push([items[i]])
        }
        return out
    }

    spacing: 7

    Text {
        visible: text !== ""
        leftPadding: 2
        text: group.section.title || ""
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
                text: group.isHeader ? group.items[0].text : ""
                font.pixelSize: Style.title
                font.weight: Font.Bold
                color: Style.primary
            }
            Text {
                text: group.isHeader ? group.items[0].detail : ""
                font.pixelSize: Style.body
                color: Style.secondary
            }
        }
    }

    Rectangle {
        visible: !group.isHeader && group.rows.length > 0
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
                model: group.isHeader ? 0 : group.rows.length
                FormRow {
                    width: rowsColumn.width
                    items: group.rows[index]
                    sectionIndex: group.sectionIndex
                    // Filled buttons stand apart on their own; a rule between them is noise.
                    separated: index > 0 && !group.rows[index][0].prominent
                               && !group.rows[index - 1][0].prominent
                }
            }
        }
    }

    Text {
        visible: text !== ""
        width: group.width
        leftPadding: 2
        rightPadding: 2
        text: group.section.footer || ""
        font.pixelSize: Style.caption
        color: Style.secondary
        wrapMode: Text.WordWrap
    }
}
