// The open levels, a tab each, and the one in front.
#include "ui/LevelTabs.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "data/cellRange.h"
#include "data/openLevel.h"
#include "ui/LevelDocument.h"

#include <QFileInfo>
#include <QMouseEvent>
#include <QStackedWidget>
#include <QTabBar>

#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

// Tells of a middle click on a tab.
class MiddleClickClose : public QObject {
public:
    MiddleClickClose(QTabBar& bar, std::function<void(int)> close)
        : QObject(&bar), bar_(bar), close_(std::move(close)) {
        bar.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonRelease) {
            return false;
        }
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const int index = bar_.tabAt(mouse->position().toPoint());
        if (mouse->button() != Qt::MiddleButton || index < 0) {
            return false;
        }
        close_(index);
        return true;
    }

private:
    QTabBar& bar_;
    std::function<void(int)> close_;
};

} // namespace

LevelTabs::LevelTabs(ViewServices services, QWidget& parent)
    : services_(std::move(services)), bar_(new QTabBar(&parent)),
      views_(new QStackedWidget(&parent)) {
    bar_->setObjectName("tabLevels");
    bar_->setFocusPolicy(Qt::NoFocus);
    bar_->setDocumentMode(true);
    bar_->setExpanding(false);
    views_->setObjectName("views");
    connect(bar_, &QTabBar::currentChanged, this, [this](int index) {
        if (index >= 0 && index < views_->count()) {
            views_->setCurrentIndex(index);
            emit currentChanged();
        }
    });
    new MiddleClickClose(*bar_, [this](int index) { emit closeRequested(index); });
}

LevelTabs::~LevelTabs() {
    // The views refer to their documents. The window that follows the tabs
    // hears nothing of the views shown in turn as they go.
    blockSignals(true);
    while (views_->count() > 0) {
        delete views_->widget(0);
    }
}

LevelDocument* LevelTabs::current() const {
    const int index = currentIndex();
    return index >= 0 && index < count() ? documents_[std::size_t(index)].get() : nullptr;
}

LevelView* LevelTabs::currentView() const {
    return qobject_cast<LevelView*>(views_->currentWidget());
}

int LevelTabs::currentIndex() const {
    return bar_->currentIndex();
}

std::optional<int> LevelTabs::indexOf(const fs::path& file) const {
    // A bare name is the data folder's, found whatever its case.
    const fs::path wanted = levelFilePath(services_.shared.dataFolder(), file);
    std::error_code error;
    for (int i = 0; i < count(); ++i) {
        const fs::path open = document(i).file();
        if (open == wanted || fs::equivalent(open, wanted, error)) {
            return i;
        }
    }
    return std::nullopt;
}

int LevelTabs::tabOf(const LevelDocument& document) const {
    for (int i = 0; i < count(); ++i) {
        if (documents_[std::size_t(i)].get() == &document) {
            return i;
        }
    }
    return -1;
}

LevelDocument& LevelTabs::add(std::unique_ptr<LevelDocument> document) {
    LevelDocument& added = *document;
    connectDocument(added);
    LevelView& view = makeView(added);
    documents_.push_back(std::move(document));
    views_->addWidget(&view);
    const int index = bar_->addTab(QString());
    retitle(added);
    bar_->setCurrentIndex(index);
    emit currentChanged();
    return added;
}

LevelView& LevelTabs::makeView(LevelDocument& document) {
    auto* view = new LevelView(document, services_, views_);
    connect(view, &LevelView::viewMoved, this, [this, view] {
        if (view == currentView()) {
            emit currentViewMoved();
        }
    });
    connect(view, &LevelView::cellStatus, this, &LevelTabs::cellStatus);
    connect(view, &LevelView::brushChanged, this, &LevelTabs::brushChanged);
    return *view;
}

void LevelTabs::connectDocument(LevelDocument& document) {
    LevelDocument* changed = &document;
    const auto ifCurrent = [this, changed](auto action) {
        return [this, changed, action](auto&&... arguments) {
            if (changed == current()) {
                action(arguments...);
            }
        };
    };
    connect(changed, &LevelDocument::historyChanged, this,
            ifCurrent([this] { emit currentStateChanged(); }));
    connect(changed, &LevelDocument::selectionChanged, this,
            ifCurrent([this] { emit currentSelectionChanged(); }));
    connect(changed, &LevelDocument::cellsChanged, this,
            ifCurrent([this](const CellRange& range) { emit currentCellsChanged(range); }));
    connect(changed, &LevelDocument::levelReplaced, this, [this, changed] {
        retitle(*changed);
        if (changed == current()) {
            emit currentChanged();
        }
    });
    connect(changed, &LevelDocument::graphicsChanged, this,
            ifCurrent([this] { emit currentGraphicsChanged(); }));
    connect(changed, &LevelDocument::modifiedChanged, this,
            [this, changed] { fileStateChanged(*changed); });
    connect(changed, &LevelDocument::fileChangedOnDisk, this, [this, changed] {
        fileStateChanged(*changed);
        if (changed == current()) {
            emit notice(QFileInfo(toQString(changed->file())).fileName() +
                        " was changed by another program: File > Reload reads it again.");
        }
    });
    connect(changed, &LevelDocument::notice, this, &LevelTabs::notice);
}

void LevelTabs::fileStateChanged(const LevelDocument& document) {
    retitle(document);
    if (&document == current()) {
        emit currentStateChanged();
    }
}

void LevelTabs::retitle(const LevelDocument& document) {
    const int index = tabOf(document);
    if (index < 0) {
        return;
    }
    const QString file = toQString(document.file());
    QString title = QFileInfo(file).completeBaseName().toUpper();
    if (document.modified()) {
        title += " *";
    }
    if (document.changedOnDisk()) {
        title += " (changed on disk)";
    }
    bar_->setTabText(index, title);
    bar_->setTabToolTip(index, file);
}

void LevelTabs::remove(int index) {
    QWidget* view = views_->widget(index);
    views_->removeWidget(view);
    delete view;
    documents_.erase(documents_.begin() + index);
    bar_->removeTab(index);
    emit currentChanged();
}

void LevelTabs::switchTo(int index) {
    releaseModifiers();
    bar_->setCurrentIndex(index);
}

void LevelTabs::step(int by) {
    if (count() > 1) {
        switchTo((currentIndex() + by + count()) % count());
    }
}

void LevelTabs::releaseModifiers() {
    if (LevelView* view = currentView()) {
        view->releaseModifiers();
    }
}

void LevelTabs::followMode() {
    for (int i = 0; i < views_->count(); ++i) {
        qobject_cast<LevelView*>(views_->widget(i))->followMode();
    }
}

} // namespace marvek
