import QtQuick
import QtQuick.Controls.impl

// An application's icon: a file, else the icon theme's picture of that name,
// else a tile with the application's initial so that rows still line up.
Item {
    id: appIcon
    objectName: "appIcon"
    property string icon
    property string app

    readonly property bool isFile: icon.startsWith("/")

    IconImage {
        id: picture
        anchors.fill: parent
        sourceSize.width: 60
        sourceSize.height: 60
        fillMode: Image.PreserveAspectFit
        source: appIcon.isFile ? "file://" + appIcon.icon : ""
        name: appIcon.isFile ? "" : appIcon.icon
        smooth: true
    }
    Rectangle {
        anchors.fill: parent
        visible: picture.status !== Image.Ready
        radius: 8
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.hsla(appIcon.hue, 0.55, 0.52, 1) }
            GradientStop { position: 1; color: Qt.hsla(appIcon.hue, 0.6, 0.40, 1) }
        }
        Text {
            anchors.centerIn: parent
            text: appIcon.app.length > 0 ? appIcon.app.charAt(0).toUpperCase() : "?"
            font.pixelSize: 15
            font.weight: Font.Bold
            color: "white"
        }
    }
    // A steady colour per application, so the same app looks the same in every row.
    readonly property real hue: {
        let h = 0;
        for (let i = 0; i < app.length; ++i)
            h = (h * 31 + app.charCodeAt(i)) % 360;
        return h / 360;
    }
}
