import QtQuick
import QtQuick.Controls.Basic
import tarnwick.quick
import "Style.js" as Style

// The settings window: one grouped form, scrolling, drawn from what the
// view model decides.
Rectangle {
    id: root
    objectName: "settingsRoot"

    required property SettingsBridge view

    width: root.view.windowWidth
    height: root.view.windowHeight
    color: Style.window

    Flickable {
        id: flick
        objectName: "settingsScroll"
        anchors.fill: parent
        contentWidth: width
        contentHeight: form.implicitHeight + 44
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {
            policy: flick.contentHeight > flick.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
        }

        Column {
            id: form
            x: 22
            y: 20
            width: flick.width - 44
            spacing: 18
            // The groups and their lines follow the form in place (the
            // bridge's list models), so the keyboard focus stays put.
            Repeater {
                model: root.view.form
                FormSection {
                    // Delegates read the window as Qt 6.4's qmllint cannot check.
                    bridge: root.view // qmllint disable unqualified
                    width: parent.width
                }
            }
        }
    }

    // Tabbing to a control below the fold scrolls it into view.
    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            let item = root.Window.activeFocusItem
            let inside = false
            for (let p = item; p; p = p.parent)
                if (p === flick.contentItem) inside = true
            if (!inside)
                return
            const top = item.mapToItem(flick.contentItem, 0, 0).y
            const bottom = top + item.height
            if (top - 12 < flick.contentY)
                flick.contentY = Math.max(0, top - 12)
            else if (bottom + 12 > flick.contentY + flick.height)
                flick.contentY = Math.min(flick.contentHeight - flick.height, bottom + 12 - flick.height)
        }
    }
}
