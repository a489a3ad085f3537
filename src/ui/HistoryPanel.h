#pragma once

#include <QWidget>

class QListWidget;

namespace marvek {

class UndoHistory;

// The History panel: the level's state before any kept step, then every
// named step, oldest first; the current state is marked. Clicking an entry
// asks for the level as it was there. While hidden it only notes that the
// history changed, and catches up when shown.
class HistoryPanel : public QWidget {
    Q_OBJECT

public:
    explicit HistoryPanel(QWidget* parent = nullptr);

    // The history changed (or another is followed now); it must live until
    // the next call or forgetHistory.
    void historyChanged(const UndoHistory& history);
    void forgetHistory();
    // The entries as shown, the first being the state before every step.
    QStringList entries() const;
    int currentEntry() const;

signals:
    // Entry index: 0 is the state before every kept step, n the state after
    // the n-th.
    void entryChosen(int index);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void catchUp();
    void refresh(const UndoHistory& history);

    QListWidget* lstHistory_ = nullptr;
    const UndoHistory* history_ = nullptr;
    bool pending_ = false;
};

} // namespace marvek
