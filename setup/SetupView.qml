import QtQuick

Item {
    width: 200
    height: 100
}
