#pragma once

#include "ui/LevelView.h"

#include <QObject>
#include <QString>

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

class QStackedWidget;
class QTabBar;
class QWidget;

namespace marvek {

class LevelDocument;
struct CellRange;

// The open levels: a document and its view for each tab, the tab bar and
// the tab in front. Whoever follows the level in front connects once, here,
// rather than to each document.
class LevelTabs : public QObject {
    Q_OBJECT

public:
    // The bar and the views are made in parent; the window places them.
    LevelTabs(ViewServices services, QWidget& parent);
    ~LevelTabs() override;
    LevelTabs(const LevelTabs&) = delete;
    LevelTabs& operator=(const LevelTabs&) = delete;

    QTabBar& bar() const noexcept { return *bar_; }
    QStackedWidget& views() const noexcept { return *views_; }

    // Null before the first level opens.
    LevelDocument* current() const;
    LevelView* currentView() const;
    int count() const noexcept { return static_cast<int>(documents_.size()); }
    int currentIndex() const;
    LevelDocument& document(int index) const { return *documents_.at(std::size_t(index)); }
    // The tab holding that file, if any (ignoring case where the file system does).
    std::optional<int> indexOf(const std::filesystem::path& file) const;

    // A new tab in front.
    LevelDocument& add(std::unique_ptr<LevelDocument> document);
    // The tab goes, unasked.
    void remove(int index);
    void switchTo(int index);
    // By steps, round the end: Ctrl+Tab and Ctrl+Shift+Tab.
    void step(int by);

    // What letting go of Shift or Ctrl does; commands start with it.
    void releaseModifiers();
    // The shared mode or view toggles changed: every view follows.
    void followMode();
    // The document's file, lock or saved state changed without a signal of
    // its own (a save, a lock): its tab and the window follow.
    void fileStateChanged(const LevelDocument& document);

signals:
    // Another level is in front: a tab switched, came or went, or the level
    // in the front tab was replaced.
    void currentChanged();
    // The level in front: its history, modified state, file or lock.
    void currentStateChanged();
    void currentSelectionChanged();
    void currentCellsChanged(const CellRange& range);
    void currentGraphicsChanged();
    // The view in front moved.
    void currentViewMoved();
    // Passed on from any view.
    void cellStatus(const QString& text);
    void brushChanged();
    // Something the user should read in the status bar.
    void notice(const QString& text);
    // A middle click on a tab.
    void closeRequested(int index);

private:
    void connectDocument(LevelDocument& document);
    LevelView& makeView(LevelDocument& document);
    void retitle(const LevelDocument& document);
    int tabOf(const LevelDocument& document) const;

    ViewServices services_;
    QTabBar* bar_;
    QStackedWidget* views_;
    // One per tab, in the tabs' order.
    std::vector<std::unique_ptr<LevelDocument>> documents_;
};

} // namespace marvek
