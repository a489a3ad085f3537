#pragma once

#include <QWidget>

class QListWidget;

namespace marvek {

class UndoHistory;

// The History panel: the level's state before any kept step, then every
// named step, oldest first; the current state is marked. Clicking an entry
// asks for the level as it was there.
class HistoryPanel : public QWidget {
    Q_OBJECT

public:
    explicit HistoryPanel(QWidget* parent = nullptr);

    // Shows the history as it is now.
    void refresh(const UndoHistory& history);
    // The entries as shown, the first being the state before every step.
    QStringList entries() const;
    int currentEntry() const;

signals:
    // Entry index: 0 is the state before every kept step, n the state after
    // the n-th.
    void entryChosen(int index);

private:
    QListWidget* lstHistory_ = nullptr;
};

} // namespace marvek
