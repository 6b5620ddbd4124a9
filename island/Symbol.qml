import QtQuick

// One of our symbols at `size` points, recoloured by the bridge (the files are
// white and Qt Quick has no tint without graphical effects).
Image {
    id: symbol
    property string name
    property color color: "white"
    property real size: 16

    width: size
    height: size
    sourceSize: Qt.size(Math.ceil(size * 2), Math.ceil(size * 2))
    fillMode: Image.PreserveAspectFit
    smooth: true
    source: name.length > 0 ? view.symbol(name, color) : ""
}
