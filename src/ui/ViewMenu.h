#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace marvek {

// The View menu: every view toggle with its key and a check mark. The key is
// only shown in the menu; the window hands typed letters to runKey, so a
// letter typed into a text field stays in the field.
class ViewMenu : public QObject {
    Q_OBJECT

public:
    ViewMenu(QMenuBar& menuBar, QObject* parent);

    // name: the action's objectName; key: one letter, or empty; toggle
    // changes the view; isOn tells the check mark.
    QAction* addToggle(const char* name, const QString& caption, const QString& key,
                       std::function<void()> toggle, std::function<bool()> isOn);
    QMenu& menu() noexcept { return *menu_; }
    // Runs the toggle of the letter; false when no toggle has that key.
    bool runKey(const QString& typed);
    // Sets every check mark from what is on now.
    void sync();

private:
    struct Toggle {
        QAction* action;
        QString key;
        std::function<void()> toggle;
        std::function<bool()> isOn;
    };
    void run(const Toggle& toggle);

    QMenu* menu_;
    std::vector<Toggle> toggles_;
};

} // namespace marvek
