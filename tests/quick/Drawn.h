#pragma once

#include <QList>
#include <QQuickItem>

namespace tarnwick::quicktest {

// Every item drawn under `item`: delegates made by a Repeater are children
// in the scene, not in the object tree.
inline void drawn(QQuickItem* item, QList<QQuickItem*>& out) {
    for (auto* child : item->childItems()) {
        out << child;
        drawn(child, out);
    }
}

} // namespace tarnwick::quicktest
