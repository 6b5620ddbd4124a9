import QtQuick
import tarnwick.settings

Row {
    id: line

    property var row: ({})
    // Whether a finished step pops.
    required property bool animate
    property real symbolSize: 16
    property real gap: 10

    spacing: gap

    Image {
        id: mark
        anchors.verticalCenter: parent.verticalCenter
        width: line.symbolSize
        height: line.symbolSize
        sourceSize.width: line.symbolSize
        sourceSize.height: line.symbolSize
        source: Style.symbol(line.row.symbol, Style.tint(line.row.symbolColour))
        // The symbol swaps with a small pop, as a finished step ticks off.
        onSourceChanged: if (line.animate) pop.restart()
        SequentialAnimation {
            id: pop
            NumberAnimation { target: mark; property: "scale"; from: 0.4; to: 1.12; duration: 160; easing.type: Easing.OutCubic }
            NumberAnimation { target: mark; property: "scale"; to: 1; duration: 120 }
        }
    }
    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: line.row.title
        font.pixelSize: Style.body
        font.weight: line.row.semibold ? Font.DemiBold : Font.Normal
        color: Style.tint(line.row.titleColour)
    }
}
