#include "ui/ViewMenu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace marvek {

ViewMenu::ViewMenu(QMenuBar& menuBar, QObject* parent)
    : QObject(parent), menu_(menuBar.addMenu("&View")) {
    menu_->setObjectName("mnuView");
}

QAction* ViewMenu::addToggle(const char* name, const QString& caption, const QString& key,
                             std::function<void()> toggle, std::function<bool()> isOn) {
    // Text after a tab shows in the shortcut column without taking the key.
    QAction* action = menu_->addAction(key.isEmpty() ? caption : caption + "\t" + key);
    action->setObjectName(name);
    action->setCheckable(true);
    toggles_.push_back({action, key.toUpper(), std::move(toggle), std::move(isOn)});
    const std::size_t index = toggles_.size() - 1;
    connect(action, &QAction::triggered, this, [this, index] { run(toggles_[index]); });
    action->setChecked(toggles_.back().isOn());
    return action;
}

bool ViewMenu::runKey(const QString& typed) {
    if (typed.isEmpty()) {
        return false;
    }
    for (const Toggle& toggle : toggles_) {
        if (toggle.key == typed.toUpper()) {
            run(toggle);
            return true;
        }
    }
    return false;
}

void ViewMenu::run(const Toggle& toggle) {
    toggle.toggle();
    sync();
}

void ViewMenu::sync() {
    for (const Toggle& toggle : toggles_) {
        toggle.action->setChecked(toggle.isOn());
    }
}

} // namespace marvek
