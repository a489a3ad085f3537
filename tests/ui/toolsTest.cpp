#include "EditorFixture.h"

#include "data/levelExport.h"
#include "support/tool.h"
#include "ui/frmAbout.h"
#include "ui/frmExportLevel.h"
#include "ui/frmStatus.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <QTextBrowser>

namespace marvek::test {
namespace {

using Tools = EditorFixture;

QPushButton& button(QWidget& window, const char* name) {
    return *window.findChild<QPushButton*>(name);
}

QImage picture(const fs::path& path) {
    return QImage(toQString(path)).convertToFormat(QImage::Format_RGB32);
}

TEST_F(Tools, TheExportDialogOffersEachTagOnceWithTheUsualFiveChosen) {
    frmMain& window = startEditor();
    const TagChoice expected = defaultTagChoice(window.openedLevel()->specialSet);
    ASSERT_FALSE(expected.empty());
    dialogs_->fileAnswers = {{toQString(root_.path() / "map")}};
    whenModal([&](QWidget& dialog) {
        EXPECT_EQ(dialog.objectName(), "frmExportLevel");
        auto* tags = dialog.findChild<QListWidget*>("lstTags");
        ASSERT_EQ(tags->count(), static_cast<int>(expected.size()));
        for (int row = 0; row < tags->count(); ++row) {
            const auto& [tag, chosen] = expected[static_cast<std::size_t>(row)];
            EXPECT_EQ(tags->item(row)->text(), toQString(tag));
            EXPECT_EQ(tags->item(row)->isSelected(), chosen) << tag;
        }
        EXPECT_FALSE(dialog.findChild<QCheckBox*>("chkRenderAll")->isChecked());
        EXPECT_EQ(dialog.findChild<QLabel*>("lblInformation")->text(),
                  "Tags are groups of specials that will be exported to the level bitmap when "
                  "selected. Rendering all specials will also render specials that are marked "
                  "to never be exported.");
        button(dialog, "cmdCancel").click();
    });
    EXPECT_FALSE(window.fileExportBitmap());
    ASSERT_EQ(dialogs_->fileRequests.size(), 1U);
    const auto& request = dialogs_->fileRequests[0];
    EXPECT_EQ(request.title, "Save Level Bitmap");
    EXPECT_EQ(request.initialName, "L1MA1.bmp") << "the name of the file it writes";
    EXPECT_EQ(request.filters.front(), "Windows bitmap files (*.bmp)");
    EXPECT_FALSE(fs::exists(root_.path() / "map.bmp"));
    EXPECT_FALSE(fs::exists(root_.path() / "map"));
    // Cancelling the save dialog asks nothing more.
    EXPECT_FALSE(window.fileExportBitmap());
}

TEST_F(Tools, TheExportFollowsTheNameRulesAndMatchesMarvekToolPixelForPixel) {
    frmMain& window = startEditor();
    const fs::path folder = root_.path();
    dialogs_->fileAnswers = {{toQString(folder / "first")}, {toQString(folder / "Second.PNG")}};
    answerModals({[](QWidget& dialog) { button(dialog, "cmdOk").click(); },
                  [](QWidget& dialog) { button(dialog, "cmdOk").click(); }});
    ASSERT_TRUE(window.fileExportBitmap());
    ASSERT_TRUE(window.fileExportBitmap());
    EXPECT_EQ(readBytes(folder / "first.bmp").at(0), 'B');
    EXPECT_EQ(readBytes(folder / "Second.PNG").at(1), 'P');
    EXPECT_TRUE(window.isEnabled());
    EXPECT_FALSE(windows_->status()->isVisible());

    const ToolRun tool =
        runTool("export L1MA1 " + shellQuoted(folder / "tool.png") + " --data " +
                shellQuoted(dataFolder()) + " --config world1 --app " + shellQuoted(appFolder()));
    ASSERT_EQ(tool.exitCode, 0) << tool.errors;
    const QImage expected = picture(folder / "tool.png");
    ASSERT_EQ(expected.size(), QSize(300 * 16, 84 * 16));
    EXPECT_TRUE(picture(folder / "first.bmp") == expected);
    EXPECT_TRUE(picture(folder / "Second.PNG") == expected);
}

TEST_F(Tools, TheExportAsksBeforeReplacingTheFileItWritesAndSaysWhereThePictureWent) {
    frmMain& window = startEditor();
    const fs::path folder = root_.path();
    writeText(folder / "foo.bmp", "keep me");
    // "foo" writes foo.bmp: No brings the dialog back, and its cancel ends it.
    dialogs_->fileAnswers = {{toQString(folder / "foo")}, {}};
    messages_->answers = {messageAnswer::no};
    EXPECT_FALSE(window.fileExportBitmap());
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(messages_->shown[0].text,
              toQString(folder / "foo.bmp") + " already exists. Do you want to replace it?");
    EXPECT_EQ(messages_->shown[0].style, messageStyle::yesNoQuestion);
    EXPECT_EQ(readBytes(folder / "foo.bmp").size(), 7U);

    dialogs_->fileAnswers = {{toQString(folder / "foo")}};
    messages_->answers = {messageAnswer::yes};
    whenModal([](QWidget& dialog) { button(dialog, "cmdOk").click(); });
    ASSERT_TRUE(window.fileExportBitmap());
    EXPECT_EQ(readBytes(folder / "foo.bmp").at(0), 'B');
    EXPECT_EQ(window.statusBar()->currentMessage(),
              "The level bitmap was saved as " + toQString(folder / "foo.bmp") + ".");
}

// The help page's table of marvek-tool lists every command the tool has,
// and its settings paragraph names the installed copy's place.
TEST_F(Tools, TheHelpPageCoversEveryToolCommandAndWhereSettingsLive) {
    const auto bytes = readBytes(appFolder() / "faq" / "index.html");
    const QString page = QString::fromUtf8(reinterpret_cast<const char*>(bytes.data()),
                                           static_cast<qsizetype>(bytes.size()));
    const ToolRun usage = runTool("");
    QStringList commands;
    const QRegularExpression line("^  ([a-z][a-z-]+)\\b");
    for (const QString& text : QString::fromStdString(usage.output + usage.errors).split('\n')) {
        if (const auto match = line.match(text); match.hasMatch()) {
            commands << match.captured(1);
        }
    }
    ASSERT_GE(commands.size(), 9) << usage.output << usage.errors;
    for (const QString& command : commands) {
        EXPECT_TRUE(page.contains("<tr><td><code>" + command + " ")) << command.toStdString();
    }
    const qsizetype options = page.indexOf("<h2 id=\"options\">");
    const QString optionsSection = page.mid(options, page.indexOf("<h2", options + 1) - options);
    EXPECT_TRUE(optionsSection.contains("~/.config/marvek/marvek.cfg"));
}

TEST_F(Tools, TheBenchmarkAsksFirstAndReportsThreeFiguresOverTwoSeconds) {
    frmMain& window = startEditor();
    messages_->answers = {messageAnswer::no};
    window.toolsBenchmark();
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(messages_->shown[0].text,
              "This will run a few rendering benchmarks. Do you want to continue?");
    EXPECT_EQ(messages_->shown[0].style, messageStyle::yesNoQuestion);

    messages_->answers = {messageAnswer::yes};
    // 500 ms a reading: five steps make each test's two seconds.
    window.setTickClock([now = std::int64_t{0}]() mutable { return now += 500; });
    window.toolsBenchmark();
    ASSERT_EQ(messages_->shown.size(), 3U);
    EXPECT_EQ(messages_->shown[2].text, "Results...\r\n\r\nRender tiles\t2 FPS\r\n"
                                        "Render specials\t2 FPS\r\nPresent backbuffer\t2 FPS\r\n");
    EXPECT_EQ(messages_->shown[2].style, messageStyle::information);
}

TEST_F(Tools, TheAboutBoxScrollsWhileOpenAndStopsWhenClosed) {
    frmMain& window = startEditor();
    bool moved = false;
    frmAbout* about = nullptr;
    whenModal([&](QWidget& box) {
        about = qobject_cast<frmAbout*>(&box);
        ASSERT_NE(about, nullptr);
        // The event loop runs on while the credits move.
        for (int wait = 0; wait < 500 && about->scrolled() < 3; ++wait) {
            QTest::qWait(10);
        }
        moved = about->scrolled() >= 3 && about->isScrolling();
        button(box, "cmdOk").click();
    });
    window.helpAbout();
    EXPECT_TRUE(moved);
    ASSERT_NE(about, nullptr);
    EXPECT_FALSE(about->isScrolling());
}

TEST_F(Tools, HelpOpensTheFaqPageWithTheSystemsHandler) {
    frmMain& window = startEditor();
    QTextBrowser handler;
    QDesktopServices::setUrlHandler("file", &handler, "setSource");
    window.aboutFAQ();
    QDesktopServices::unsetUrlHandler("file");
    EXPECT_EQ(handler.source(), QUrl::fromLocalFile(toQString(appFolder() / "faq" / "index.html")));
    EXPECT_TRUE(messages_->shown.empty());
}

TEST_F(Tools, HelpThatCannotOpenThePageSaysWhichAndWhy) {
    frmMain& window = startEditor();
    const fs::path page = appFolder() / "faq" / "index.html";
    // The offscreen platform, like a system without a browser, has no
    // handler for web pages.
    window.aboutFAQ();
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(messages_->shown[0].text,
              "The help page " + toQString(page) +
                  " could not be opened: this system has no program set to open web pages.");
    EXPECT_EQ(messages_->shown[0].style, messageStyle::exclamation);

    fs::remove(page);
    window.aboutFAQ();
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_EQ(messages_->shown[1].text, "The help page " + toQString(page) + " does not exist.");
}

} // namespace
} // namespace marvek::test
