import QtQuick

// One of our symbols at `size` points in `color`. The files are white; the
// "symbol" image provider tints them, since Qt Quick has no tint without
// graphical effects.
Image {
    id: symbol
    property string name
    property color color: "white"
    property real size: 16

    width: size
    height: size
    sourceSize.width: Math.ceil(size * 2)
    sourceSize.height: Math.ceil(size * 2)
    fillMode: Image.PreserveAspectFit
    smooth: true
    source: name.length > 0 ? "image://symbol/" + color.toString().slice(1) + "/" + name : ""
}
