#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace marvek {

// Gives the keyboard back when a modal window that had it closes: to the
// modal window under it, else to the editor's main window. A window manager
// does this itself; on a bare X server (scripts driving the editor) the
// keyboard would otherwise go nowhere until the next click.
class ModalFocusReturn final : public QObject {
public:
    // The window that takes the keyboard when no modal window is left; may
    // return null.
    explicit ModalFocusReturn(std::function<QWidget*()> mainWindow);
    ~ModalFocusReturn() override;
    ModalFocusReturn(const ModalFocusReturn&) = delete;
    ModalFocusReturn& operator=(const ModalFocusReturn&) = delete;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void returnFocus() const;

    std::function<QWidget*()> mainWindow_;
};

} // namespace marvek
