#include "app/clsScreenCursor.h"

#include <QCursor>

namespace marvek {

QPoint QtScreenCursor::pos() const {
    return QCursor::pos();
}

void QtScreenCursor::setPos(const QPoint& position) {
    QCursor::setPos(position);
}

} // namespace marvek
