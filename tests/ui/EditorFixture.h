#pragma once

// A private application folder and data folder for each test, and the
// editor's windows made over them with scripted dialogs.

#include "app/SharedObjects.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "data/UndoHistory.h"
#include "data/openLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"
#include "support/TempDir.h"
#include "support/scripted.h"
#include "ui/EditorWindows.h"
#include "ui/LevelDocument.h"
#include "ui/LevelFileCommands.h"
#include "ui/LevelTabs.h"
#include "ui/LevelView.h"
#include "ui/PictureBox.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marvek::test {

namespace fs = std::filesystem;

// The window's control of that name; a test that names a missing one fails.
template <typename Widget> Widget& child(QWidget& window, const char* name) {
    auto* found = window.findChild<Widget*>(name);
    if (found == nullptr) {
        throw std::runtime_error(std::string("no control ") + name);
    }
    return *found;
}

class EditorFixture : public ::testing::Test {
protected:
    EditorFixture() {
        fs::create_directories(appFolder());
        for (const char* folder : {"config", "fonts", "pal", "bitmaps", "faq"}) {
            fs::copy(fs::path(MARVEK_APP_DIR) / folder, appFolder() / folder,
                     fs::copy_options::recursive);
        }
        fs::copy(MARVEK_SAMPLE_DATA, dataFolder(), fs::copy_options::recursive);
        auto messages = std::make_unique<ScriptedMessageBox>();
        auto dialogs = std::make_unique<ScriptedCommonDialog>();
        messages_ = messages.get();
        dialogs_ = dialogs.get();
        shared_ =
            std::make_unique<SharedObjects>(appFolder(), std::move(dialogs), std::move(messages));
        // Every edit of every test names the cells it changed.
        shared_->editRangeFault = [](const std::string& step) {
            ADD_FAILURE() << "\"" << step << "\" changed cells outside the range it named";
        };
        windows_ = std::make_unique<EditorWindows>(*shared_);
    }

    fs::path appFolder() const { return root_.path() / "bin"; }
    // Beside the application folder, where the build puts the sample data.
    fs::path dataFolder() const { return root_.path() / "sample-data"; }
    fs::path settingsFile() const { return appFolder() / "marvek.cfg"; }

    // A settings file as the options dialog writes it.
    void writeSettings(const std::string& data, const std::string& level = "L1MA1",
                       const std::string& config = "world1") {
        writeText(settingsFile(), "thornwickData = \"" + data +
                                      "\";\r\nmoveSensitivity = 10;\r\n"
                                      "defaultLevel = \"" +
                                      level + "\";\r\ndefaultConfig = \"" + config +
                                      "\";\r\neditorFont = \"game\";\r\n"
                                      "alphaBlending = 1;\r\nundoLevels = 64;\r\n"
                                      "autoPlaceSpecials = 1;\r\n");
    }

    // Start-up with a working settings file; fails the test unless the
    // main window runs.
    frmMain& startEditor() {
        writeSettings(dataFolder().string());
        const auto ended = startProgram(*shared_, *windows_);
        EXPECT_FALSE(ended.has_value()) << "start-up ended with " << ended.value_or(-1);
        frmMain* window = windows_->mainWindow();
        if (window == nullptr) {
            throw std::runtime_error("no main window");
        }
        window->resize(1280, 800);
        QApplication::processEvents();
        return *window;
    }

    // Answers the modal windows that the code under test opens, one action
    // each in turn; a window shown again counts as a new one.
    static void answerModals(std::vector<std::function<void(QWidget&)>> actions) {
        auto* timer = new QTimer(qApp); // NOLINT: deletes itself when done
        auto pending =
            std::make_shared<std::vector<std::function<void(QWidget&)>>>(std::move(actions));
        auto handled = std::make_shared<QPointer<QWidget>>();
        QObject::connect(timer, &QTimer::timeout, [timer, pending, handled] {
            QWidget* modal = QApplication::activeModalWidget();
            if (*handled && (*handled)->isVisible() && modal == *handled) {
                return; // still the showing answered last
            }
            handled->clear();
            if (modal == nullptr || !modal->isVisible()) {
                return;
            }
            *handled = modal;
            auto action = std::move(pending->front());
            pending->erase(pending->begin());
            if (pending->empty()) {
                timer->stop();
                timer->deleteLater();
            }
            action(*modal);
            // A window closed by the action may show again before the next tick.
            if (*handled && !(*handled)->isVisible()) {
                handled->clear();
            }
        });
        timer->start(5);
    }
    static void whenModal(std::function<void(QWidget&)> action) {
        answerModals({std::move(action)});
    }

    TempDir root_;
    ScriptedMessageBox* messages_ = nullptr;
    ScriptedCommonDialog* dialogs_ = nullptr;
    std::unique_ptr<SharedObjects> shared_;
    std::unique_ptr<EditorWindows> windows_;
};

// The editor started and shown, for tests that drive its level view and
// commands.
class ShownEditorFixture : public EditorFixture {
protected:
    frmMain& start() {
        window_ = &startEditor();
        window_->show();
        QApplication::processEvents();
        return *window_;
    }
    PictureBox& view() const { return child<PictureBox>(*window_, "picLevel"); }
    QAction& action(const char* name) const { return child<QAction>(*window_, name); }

    frmMain* window_ = nullptr;
};

} // namespace marvek::test
