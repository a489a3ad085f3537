#include "ui/HistoryPanel.h"

#include "app/qtPaths.h"
#include "data/UndoHistory.h"

#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace marvek {
namespace {

constexpr auto currentMark = "\u25B6 ";
constexpr auto otherMark = "    ";

} // namespace

HistoryPanel::HistoryPanel(QWidget* parent) : QWidget(parent) {
    lstHistory_ = new QListWidget(this);
    lstHistory_->setObjectName("lstHistory");
    // The editor's letter keys must keep reaching the main window.
    lstHistory_->setFocusPolicy(Qt::NoFocus);
    setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lstHistory_);
    connect(lstHistory_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { emit entryChosen(lstHistory_->row(item)); });
}

void HistoryPanel::historyChanged(const UndoHistory& history) {
    history_ = &history;
    pending_ = true;
    catchUp();
}

void HistoryPanel::forgetHistory() {
    history_ = nullptr;
    pending_ = false;
    lstHistory_->clear();
}

void HistoryPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    catchUp();
}

void HistoryPanel::catchUp() {
    if (pending_ && history_ != nullptr && isVisible()) {
        pending_ = false;
        refresh(*history_);
    }
}

void HistoryPanel::refresh(const UndoHistory& history) {
    const QSignalBlocker quiet(lstHistory_);
    lstHistory_->clear();
    QStringList names{history.droppedSteps() ? "Earlier steps" : "Opened"};
    for (const std::string& step : history.steps()) {
        names.append(toQString(step));
    }
    const int current = static_cast<int>(history.applied());
    for (int i = 0; i < names.size(); ++i) {
        auto* item =
            new QListWidgetItem(QString(i == current ? currentMark : otherMark) + names[i]);
        item->setData(Qt::UserRole, names[i]);
        if (i > current) {
            // Steps that redo would bring back.
            item->setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
        }
        lstHistory_->addItem(item);
    }
    lstHistory_->setCurrentRow(current);
    lstHistory_->scrollToItem(lstHistory_->item(current));
}

QStringList HistoryPanel::entries() const {
    QStringList names;
    for (int i = 0; i < lstHistory_->count(); ++i) {
        names.append(lstHistory_->item(i)->data(Qt::UserRole).toString());
    }
    return names;
}

int HistoryPanel::currentEntry() const {
    return lstHistory_->currentRow();
}

} // namespace marvek
