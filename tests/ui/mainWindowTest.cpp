#include "EditorFixture.h"

#include "data/clsRenderOptions.h"
#include "ui/PictureBox.h"
#include "ui/windowPlacement.h"

#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

namespace marvek::test {
namespace {

using MainWindow = EditorFixture;

void typeKey(QWidget& window, char key) {
    QTest::keyClick(&window, key);
}

void turnWheel(QWidget& widget, int delta) {
    QWheelEvent event(QPointF(10, 10), widget.mapToGlobal(QPointF(10, 10)), QPoint(),
                      QPoint(0, delta), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

TEST_F(MainWindow, OpensWithTilesAtZoomTwoAndTheTilePalette) {
    frmMain& window = startEditor();
    EXPECT_EQ(window.mode(), frmMain::tilesMode);
    EXPECT_EQ(window.renderFlags(), 79) << "tiles, faint specials, oversize marks and outlines";
    const auto& level = child<PictureBox>(window, "picLevel");
    EXPECT_EQ(window.levelBuffer().zoom(), 2);
    EXPECT_EQ(window.levelBuffer().width(), (level.width() - 4) / 2);
    // The level view shows the buffer's pixels, which are drawn.
    ASSERT_FALSE(level.image().isNull());
    EXPECT_EQ(level.image().width(), window.levelBuffer().bitmapWidth());
    // Down where the ground is, whatever room the panels leave the view.
    QTest::keyClick(&window, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_Home);
    QApplication::processEvents();
    std::set<QRgb> colours;
    for (int y = 0; y < level.image().height(); y += 7) {
        for (int x = 0; x < level.image().width(); x += 7) {
            colours.insert(level.image().pixel(x, y));
        }
    }
    EXPECT_GT(colours.size(), 8U) << "the level is drawn, not a blank box";
    const auto& palette = child<PictureBox>(window, "picPalette");
    EXPECT_EQ(palette.image().width(), palette.width() - 4);
}

TEST_F(MainWindow, OpensInsideTheScreensAvailableArea) {
    // A 2400 x 1500 screen at scale 2, less a panel: the preferred size does
    // not fit and the window shrinks, its frame kept on the screen.
    const QRect scaled(0, 0, 1200, 720);
    const QRect placed = fittedWindowGeometry(QSize(1280, 800), scaled);
    EXPECT_TRUE(scaled.contains(placed.adjusted(
        -windowDecoration.width() / 2, -(windowDecoration.height() - windowDecoration.width() / 2),
        windowDecoration.width() / 2, windowDecoration.width() / 2)))
        << placed.x() << "," << placed.y() << " " << placed.width() << "x" << placed.height();
    const QRect large(0, 0, 2560, 1440);
    EXPECT_EQ(fittedWindowGeometry(QSize(1280, 800), large).size(), QSize(1280, 800));

    // The real window, with its panels and tool bar, on the test's small screen.
    writeSettings(dataFolder().string());
    ASSERT_FALSE(startProgram(*shared_, *windows_).has_value());
    frmMain& window = *windows_->mainWindow();
    QApplication::processEvents();
    const QRect available = window.screen()->availableGeometry();
    EXPECT_TRUE(available.contains(window.frameGeometry()))
        << window.frameGeometry().width() << "x" << window.frameGeometry().height() << " in "
        << available.width() << "x" << available.height();
}

TEST_F(MainWindow, KeysToggleWhatIsDrawnInEitherCase) {
    frmMain& window = startEditor();
    const std::int32_t start = window.renderFlags();
    for (const auto& [key, flag] : std::vector<std::pair<char, std::int32_t>>{
             {'b', 8}, {'B', 8}, {'o', 4}, {'O', 4}, {'u', 16}, {'U', 16}}) {
        typeKey(window, key);
        EXPECT_EQ(window.renderFlags(), start ^ flag) << key;
        typeKey(window, key);
        EXPECT_EQ(window.renderFlags(), start) << key;
    }
    typeKey(window, 'x');
    typeKey(window, '1');
    EXPECT_EQ(window.renderFlags(), start) << "other keys do nothing";

    // The grid spaces cells 17 pixels apart and the view's limits follow.
    const std::int32_t levelWidth = window.openedLevel()->level.width;
    typeKey(window, 'g');
    EXPECT_EQ(window.renderFlags() & 32, 32);
    EXPECT_EQ(window.openedLevel()->level.tileSpacing, 17);
    EXPECT_EQ(window.levelCamera().levelWidth, levelWidth * 17);
    typeKey(window, 'G');
    EXPECT_EQ(window.openedLevel()->level.tileSpacing, 16);
    EXPECT_EQ(window.levelCamera().levelWidth, levelWidth * 16);
}

TEST_F(MainWindow, KShowsSpecialsFaintlyInTilesModeAndTheChoiceIsKept) {
    frmMain& window = startEditor();
    ASSERT_EQ(window.mode(), frmMain::tilesMode);
    const std::int32_t faint = renderFlags::specials | renderFlags::faintSpecials;
    EXPECT_EQ(window.renderFlags() & faint, faint) << "on when the setting is absent";
    auto* toggle = window.findChild<QAction*>("itmViewSpecialsInTilesMode");
    ASSERT_NE(toggle, nullptr);
    EXPECT_TRUE(toggle->isChecked());

    typeKey(window, 'k');
    EXPECT_EQ(window.renderFlags() & faint, 0);
    EXPECT_FALSE(toggle->isChecked());
    const auto settings = readBytes(settingsFile());
    EXPECT_NE(std::string(settings.begin(), settings.end()).find("specialsInTilesMode = 0"),
              std::string::npos);

    // Specials mode draws them at full strength whatever the choice.
    typeKey(window, 's');
    EXPECT_EQ(window.renderFlags() & faint, renderFlags::specials);
    typeKey(window, 't');
    EXPECT_EQ(window.renderFlags() & faint, 0);
    toggle->trigger();
    EXPECT_EQ(window.renderFlags() & faint, faint);
}

TEST_F(MainWindow, ASmallWindowKeepsAUsableLevelViewAndThePanelsGiveWay) {
    frmMain& window = startEditor();
    for (const char* panel : {"itmViewOverview", "itmViewSpecialsList", "itmViewHistory"}) {
        auto* toggle = window.findChild<QAction*>(panel);
        ASSERT_NE(toggle, nullptr);
        if (!toggle->isChecked()) {
            toggle->trigger();
        }
    }
    window.resize(400, 300);
    QApplication::processEvents();
    const auto& view = child<PictureBox>(window, "picLevel");
    EXPECT_GE(view.width(), 160);
    EXPECT_GE(view.height(), 96);
    EXPECT_GE(window.levelBuffer().width(), 80) << "at least five cells across at 200 %";
    for (const char* dock : {"dockOverview", "dockSpecials", "dockHistory"}) {
        if (auto* panel = window.findChild<QWidget*>(dock)) {
            EXPECT_TRUE(panel->isVisible()) << dock;
        }
    }
}

TEST_F(MainWindow, TheGridKeepsTheCellAtTheViewsTopLeft) {
    frmMain& window = startEditor();
    // Scroll well into the level, partway into a cell, by a right drag.
    auto cursor = std::make_unique<ScriptedScreenCursor>();
    ScriptedScreenCursor& pointer = *cursor;
    shared_->cursor = std::move(cursor);
    auto& view = child<PictureBox>(window, "picLevel");
    QTest::mousePress(&view, Qt::RightButton, {}, {50, 50});
    pointer.position = pointer.position + QPoint(1605, 37);
    QTest::mouseMove(&view, {60, 60});
    QTest::mouseRelease(&view, Qt::RightButton, {}, {60, 60});
    const clsCamera start = window.levelCamera();
    ASSERT_GT(start.x, 16 * 100);
    ASSERT_GT(start.y, 16);
    for (const char key : {'g', 'g', 'g'}) {
        const std::int32_t before = window.openedLevel()->level.tileSpacing;
        const clsCamera was = window.levelCamera();
        typeKey(window, key);
        const std::int32_t after = window.openedLevel()->level.tileSpacing;
        const clsCamera& now = window.levelCamera();
        EXPECT_EQ(now.x / after, was.x / before);
        EXPECT_EQ(now.y / after, was.y / before);
        EXPECT_EQ(now.x % after, std::min(was.x % before, after - 1));
    }
}

TEST_F(MainWindow, ZoomTwiceRestoresTheBufferAndKeepsTheCameraInside) {
    frmMain& window = startEditor();
    const auto width = window.levelBuffer().width();
    const auto height = window.levelBuffer().height();
    typeKey(window, 'z');
    EXPECT_FALSE(window.zoomed());
    EXPECT_EQ(window.levelBuffer().zoom(), 1);
    EXPECT_NEAR(window.levelBuffer().width(), width * 2, 1);
    typeKey(window, 'Z');
    EXPECT_EQ(window.levelBuffer().width(), width);
    EXPECT_EQ(window.levelBuffer().height(), height);
    const clsCamera& camera = window.levelCamera();
    EXPECT_GE(camera.x, 0);
    EXPECT_LE(camera.x + camera.viewWidth, camera.levelWidth);
}

TEST_F(MainWindow, TabsAndTheirKeysSwitchTheModeAndThePalette) {
    frmMain& window = startEditor();
    auto& tabs = child<QTabBar>(window, "tabMode");
    auto& scroll = child<QScrollBar>(window, "scrlPalette");
    const int tileMaximum = scroll.maximum();
    typeKey(window, 's');
    EXPECT_EQ(tabs.currentIndex(), 1);
    EXPECT_EQ(window.mode(), frmMain::specialsMode);
    EXPECT_EQ(window.renderFlags() & 67, 3) << "specials are drawn at full strength";
    const int specialsHeight = window.openedLevel()->specialSet.paletteHeight();
    EXPECT_EQ(scroll.maximum(),
              std::max(0, specialsHeight - child<PictureBox>(window, "picPalette").height()));
    typeKey(window, 'T');
    EXPECT_EQ(window.mode(), frmMain::tilesMode);
    EXPECT_EQ(window.renderFlags() & 67, 67) << "faint specials over the tiles";
    EXPECT_EQ(scroll.maximum(), tileMaximum);

    // Holding Shift shows the selection instead of the brush; the tab
    // entering Tiles lets go of the Tiles flag only.
    QTest::keyPress(&window, Qt::Key_Shift);
    EXPECT_TRUE(window.tileModifierHeld());
    EXPECT_TRUE(window.specialModifierHeld());
    tabs.setCurrentIndex(1);
    tabs.setCurrentIndex(0);
    EXPECT_FALSE(window.tileModifierHeld());
    EXPECT_FALSE(window.specialModifierHeld());
    QTest::keyPress(&window, Qt::Key_Control);
    QTest::keyRelease(&window, Qt::Key_Control);
    EXPECT_FALSE(window.tileModifierHeld());
    EXPECT_EQ(window.dragState(), 0);
}

TEST_F(MainWindow, TheWheelScrollsThePaletteWithinItsRange) {
    frmMain& window = startEditor();
    typeKey(window, 'm'); // the overview panel would keep the window tall
    // As small as the window goes: the level view keeps its least height.
    window.resize(1280, 160);
    QApplication::processEvents();
    window.resize(1280, 160);
    QApplication::processEvents();
    auto& scroll = child<QScrollBar>(window, "scrlPalette");
    ASSERT_GT(scroll.maximum(), 40) << "the tile palette is taller than its box";
    auto& palette = child<PictureBox>(window, "picPalette");
    turnWheel(palette, -120);
    EXPECT_EQ(scroll.value(), 16) << "a notch of 120 is 16 pixels";
    EXPECT_EQ(window.paletteCamera().y, 16);
    turnWheel(palette, -60);
    EXPECT_EQ(scroll.value(), 24);
    turnWheel(palette, 12000);
    EXPECT_EQ(scroll.value(), 0);
    turnWheel(palette, -120000);
    EXPECT_EQ(scroll.value(), scroll.maximum());
}

TEST_F(MainWindow, ResizingLaysOutAndRebuildsTheViews) {
    frmMain& window = startEditor();
    window.resize(1000, 600);
    QApplication::processEvents();
    const auto& level = child<PictureBox>(window, "picLevel");
    const auto& palette = child<PictureBox>(window, "picPalette");
    const auto& scroll = child<QScrollBar>(window, "scrlPalette");
    const auto& levelBar = child<QScrollBar>(window, "scrlLevelY");
    // Where each control lies in the window.
    const auto left = [&window](const QWidget& widget) {
        return widget.mapTo(&window, QPoint()).x();
    };
    const auto top = [&window](const QWidget& widget) {
        return widget.mapTo(&window, QPoint()).y();
    };
    EXPECT_EQ(left(levelBar), left(level) + level.width());
    EXPECT_EQ(left(palette), left(levelBar) + levelBar.width() + 4);
    EXPECT_EQ(top(palette), top(level));
    EXPECT_EQ(palette.height(), level.height());
    EXPECT_EQ(palette.width(), 324);
    EXPECT_EQ(left(scroll), left(palette) + palette.width());
    EXPECT_EQ(scroll.height(), palette.height() - 2);
    EXPECT_EQ(window.levelBuffer().width(), (level.width() - 4) / 2);
    // Half a pixel rounds to even.
    EXPECT_EQ(window.levelBuffer().height(), std::lrint((level.height() - 4) / 2.0));
    EXPECT_EQ(window.paletteBuffer().height(), palette.height() - 4);
    const int narrow = level.width();
    window.resize(1200, 600);
    QApplication::processEvents();
    EXPECT_EQ(level.width(), narrow + 200);
}

// The letter after a lone "&", lower case; none without one.
std::optional<QChar> accessKey(const QString& caption) {
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] == '&') {
            if (caption[i + 1] != '&') {
                return caption[i + 1].toLower();
            }
            ++i;
        }
    }
    return std::nullopt;
}

// Title case as menus and window titles use it: every word but the small
// ones starts with a capital.
bool isTitleCase(QString text) {
    text = text.section('\t', 0, 0).remove('&');
    static const QStringList small{"a",  "an", "and", "as", "at",  "by", "for",
                                   "in", "of", "on",  "or", "the", "to"};
    const QStringList words = text.split(' ', Qt::SkipEmptyParts);
    return std::all_of(words.begin(), words.end(), [](const QString& word) {
        return small.contains(word) || !word[0].isLetter() || word[0].isUpper();
    });
}

void checkMenu(const QMenu& menu) {
    std::set<QChar> keys;
    for (const QAction* action : menu.actions()) {
        if (action->isSeparator()) {
            continue;
        }
        if (const auto key = accessKey(action->text())) {
            EXPECT_TRUE(keys.insert(*key).second)
                << menu.title().toStdString() << ": " << action->text().toStdString()
                << " shares its access key";
        }
        // Recent Levels lists file names.
        if (menu.objectName() != "mnuFileRecent") {
            EXPECT_TRUE(isTitleCase(action->text())) << action->text().toStdString();
        }
        if (action->menu() != nullptr) {
            checkMenu(*action->menu());
        }
    }
}

TEST_F(MainWindow, MenusTitlesAndButtonsSpeakWithOneVoiceAndTheWindowHasAnIcon) {
    frmMain& window = startEditor();
    EXPECT_FALSE(window.windowIcon().isNull());
    EXPECT_TRUE(window.windowIcon().availableSizes().contains(QSize(256, 256)));

    std::set<QChar> menuKeys;
    for (const QAction* menu : window.menuBar()->actions()) {
        EXPECT_TRUE(menuKeys.insert(accessKey(menu->text()).value_or('?')).second);
        checkMenu(*menu->menu());
    }

    QList<QDialog*> dialogs = window.findChildren<QDialog*>();
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QDialog*>(top)) {
            dialogs << dialog;
        }
    }
    ASSERT_GE(dialogs.size(), 8);
    for (const QDialog* dialog : dialogs) {
        EXPECT_TRUE(isTitleCase(dialog->windowTitle())) << dialog->windowTitle().toStdString();
        for (const QPushButton* button : dialog->findChildren<QPushButton*>()) {
            EXPECT_NE(QString(button->text()).remove('&'), "Ok")
                << dialog->objectName().toStdString();
        }
    }

    // The file dialogs of the main window, each cancelled.
    window.files().open();
    window.files().saveAs();
    window.fileExportBitmap();
    ASSERT_EQ(dialogs_->fileRequests.size(), 3U);
    for (const auto& request : dialogs_->fileRequests) {
        EXPECT_TRUE(isTitleCase(request.title)) << request.title.toStdString();
    }

    // A dock is titled as the View menu names it.
    const auto* specialsEntry = window.findChild<QAction*>("itmViewSpecialsList");
    EXPECT_EQ(child<QDockWidget>(window, "dockSpecials").windowTitle(),
              specialsEntry->text().section('\t', 0, 0).remove('&'));
}

} // namespace
} // namespace marvek::test
