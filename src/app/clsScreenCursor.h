#pragma once

#include <QPoint>

namespace marvek {

// The pointer's place on the screen, read and set. The scroll drag puts the
// pointer back where the drag began after every move; tests script it,
// since an offscreen platform has no pointer to move.
class clsScreenCursor {
public:
    virtual ~clsScreenCursor() = default;

    virtual QPoint pos() const = 0;
    virtual void setPos(const QPoint& position) = 0;

protected:
    clsScreenCursor() = default;
    clsScreenCursor(const clsScreenCursor&) = default;
    clsScreenCursor& operator=(const clsScreenCursor&) = default;
};

class QtScreenCursor final : public clsScreenCursor {
public:
    QPoint pos() const override;
    void setPos(const QPoint& position) override;
};

} // namespace marvek
