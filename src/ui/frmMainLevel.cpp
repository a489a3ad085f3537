// The main window's open level: loading it, sizing the views, drawing them.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/openLevel.h"
#include "data/tilePalette.h"
#include "ui/OverviewPanel.h"
#include "ui/PictureBox.h"
#include "ui/SelectTool.h"
#include "ui/SpecialsListPanel.h"
#include "ui/frmOpenLevel.h"
#include "ui/frmStatus.h"

#include <QScrollBar>
#include <QTabBar>

#include <cmath>
#include <exception>

namespace marvek {
namespace {

// The first line before the loader names its stages.
const QString loadingStatus = "Loading level data";

const QString defaultLevelMessage =
    "The default level is invalid and cannot be loaded. Please reconfigure.";

std::int32_t rounded(double value) {
    return static_cast<std::int32_t>(std::nearbyint(value));
}

} // namespace

bool frmMain::initialLoad() {
    loadOptions();
    restorePanels();
    const clsConfiguration& settings = shared_.settings;
    const QString defaultConfig = toQString(settingText(settings, settingKey::defaultConfig, {}));
    QString failure;
    if (shared_.startupLevel) {
        const QString config =
            shared_.startupConfiguration ? toQString(*shared_.startupConfiguration) : defaultConfig;
        if (useConfig(*shared_.startupLevel, config, dialogs_.openLevel.loadUnknown(), &failure)) {
            showNewLevel();
            rememberRecent(*shared_.startupLevel, config);
            activateWindow();
            return true;
        }
        // The default level still opens, from the settings' data folder, so
        // the editor is there to try again.
        shared_.messages->show(this, "The level could not be opened.\n\n" + failure,
                               messageStyle::exclamation);
        shared_.startupLevel.reset();
        shared_.startupConfiguration.reset();
        shared_.runDataFolder.reset();
    }
    const std::filesystem::path level =
        shared_.dataFolder() / settingText(settings, settingKey::defaultLevel, {});
    if (!useConfig(level, defaultConfig, dialogs_.openLevel.loadUnknown(), &failure)) {
        // The options come next; an empty editor behind them helps no one.
        hide();
        shared_.messages->show(this, defaultLevelMessage + "\n\n" + failure,
                               messageStyle::exclamation);
        // The options can only change the settings' folder, so the next try
        // is in that one rather than in this run's again.
        shared_.runDataFolder.reset();
        return false;
    }
    showNewLevel();
    // Without a window manager nobody hands the window the keyboard, and
    // menu shortcuts only work in the active window.
    activateWindow();
    return true;
}

void frmMain::showNewLevel() {
    resetEditState();
    showLevelInPanels();
    createBuffers();
    renderLevel();
    renderPalette();
}

bool frmMain::openWithConfig(const std::filesystem::path& levelFile, const QString& configuration,
                             bool loadUnknown, QString* failure) {
    dialogs_.status.setStatus(loadingStatus);
    setEnabled(false);
    // The window comes back and the notice goes on every path.
    struct Restore {
        frmMain& window;
        ~Restore() {
            window.setEnabled(true);
            window.dialogs_.status.hideStatus();
        }
    } restore{*this};

    OpenLevelRequest request;
    request.applicationFolder = shared_.applicationFolder;
    request.dataFolder = shared_.dataFolder();
    request.levelFile = levelFile;
    request.configuration = configuration.toStdString();
    request.loadUnknownSpecials = loadUnknown;
    try {
        // Everything loads into new objects; only a complete load replaces
        // the open level and its history.
        auto opened =
            std::make_unique<OpenedLevel>(openLevel(request, [this](std::string_view text) {
                dialogs_.status.setStatus(QString::fromUtf8(text.data(), qsizetype(text.size())));
            }));
        opened_ = std::move(opened);
        // The panels held the former level until they are shown this one.
        overview_->forgetLevel();
        specialsList_->forgetLevel();
    } catch (const std::exception& error) {
        if (failure != nullptr) {
            *failure = QString::fromStdString(error.what());
        }
        return false;
    }
    history_.clear();
    resetEditState();
    updateCommands();
    if (!opened_->repairs.empty()) {
        setEnabled(true);
        dialogs_.status.hideStatus();
        warnOfRepairs();
    }
    return true;
}

void frmMain::warnOfRepairs() {
    QString text = "Parts of these files were missing and were filled in while reading them; "
                   "saving writes the level as it is shown now:";
    for (const std::string& repair : opened_->repairs) {
        text += "\n\n" + toQString(repair);
    }
    shared_.messages->show(this, text, messageStyle::exclamation);
}

void frmMain::loadOptions() {
    const clsConfiguration& settings = shared_.settings;
    alphaBlending_ = settingNumber(settings, settingKey::alphaBlending, 1) != 0;
    autoPlaceSpecials_ = settingNumber(settings, settingKey::autoPlaceSpecials, 1) != 0;
    specialsInTilesMode_ = settingNumber(settings, settingKey::specialsInTilesMode, 1) != 0;
    history_.setMaximum(settingNumber(settings, settingKey::undoLevels, 64));
    moveSensitivity_ =
        static_cast<float>(settingNumber(settings, settingKey::moveSensitivity, 10)) / 10.0F;
    clsFont font;
    const auto fontPath = editorFontPath(shared_);
    if (font.loadFromFile(fontPath)) {
        shared_.editorFont = std::move(font);
    } else if (shared_.editorFont.handle() != 0) {
        shared_.messages->show(
            this, toQString(fontPath) + ": the editor font does not load; the previous font stays.",
            messageStyle::exclamation);
    }
}

void frmMain::resetEditState() {
    levelCamera_ = clsCamera();
    paletteCamera_ = clsCamera();
    brush_ = TileGrid(1, 1);
    brush_.at(0, 0) = 1;
    brushCells_.reset();
    specialsBrush_.reset();
    stepWatch_.reset();
    selection_ = clsRectangle();
    selectionVisible_ = false;
    if (selectTool_) {
        selectTool_->drop();
    }
    paletteSelection_ = clsRectangle();
    paletteSelectionVisible_ = true;
    selectedSpecial_ = nullptr;
    if (opened_ && opened_->specialSet.count() > 0) {
        selectedSpecial_ = &opened_->specialSet.getSpecial(0);
    }
    mode_ = tabMode_->currentIndex() + 1;
    moveSensitivity_ =
        static_cast<float>(settingNumber(shared_.settings, settingKey::moveSensitivity, 10)) /
        10.0F;
    zoomed_ = true;
    renderFlags_ = 12;
    if (opened_) {
        opened_->level.tileSpacing = 16;
    }
    applyModeFlags();
}

void frmMain::applyModeFlags() {
    renderFlags_ |= renderFlags::tiles;
    renderFlags_ &= ~(renderFlags::specials | renderFlags::faintSpecials);
    if (mode_ != tilesMode) {
        renderFlags_ |= renderFlags::specials;
    } else if (specialsInTilesMode_) {
        // Seen, so that what painting does to them is seen too.
        renderFlags_ |= renderFlags::specials | renderFlags::faintSpecials;
    }
}

void frmMain::createBuffers() {
    if (!opened_) {
        return;
    }
    const std::int32_t z = zoomFactor();
    const clsLevel& level = opened_->level;
    picLevel_->clear();
    picPalette_->clear();
    levelBuffer_.Create(rounded(double(picLevel_->width() - 4) / z),
                        rounded(double(picLevel_->height() - 4) / z), z);
    paletteBuffer_.Create(picPalette_->width() - 4, picPalette_->height() - 4, 1);

    levelCamera_.viewWidth = levelBuffer_.width();
    levelCamera_.viewHeight = levelBuffer_.height();
    levelCamera_.levelWidth = level.width * level.tileSpacing;
    levelCamera_.levelHeight = level.height * level.tileSpacing;
    levelCamera_.checkPosition();

    paletteCamera_.viewWidth = paletteBuffer_.width();
    paletteCamera_.viewHeight = paletteBuffer_.height();
    paletteCamera_.levelWidth = paletteBuffer_.width();
    paletteCamera_.levelHeight =
        mode_ == specialsMode ? opened_->specialSet.paletteHeight()
                              : tilePaletteRows(opened_->tileSet.count()) * level.tileSpacing;
    paletteCamera_.checkPosition();
    updatePaletteScroll();
}

void frmMain::updatePaletteScroll() {
    if (!opened_) {
        return;
    }
    // The last row counts when partial, so that its tiles can be reached.
    const int maximum = mode_ == tilesMode
                            ? tilePaletteRows(opened_->tileSet.count()) * clsTileSet::tileSize -
                                  picPalette_->height() + 5
                            : opened_->specialSet.paletteHeight() - picPalette_->height();
    {
        const QSignalBlocker quiet(scrlPalette_);
        scrlPalette_->setMaximum(std::max(maximum, 0));
    }
    showPaletteScroll();
}

void frmMain::showPaletteScroll() {
    if (!opened_) {
        return;
    }
    paletteCamera_.y = scrlPalette_->value();
    renderPalette();
}

clsRenderOptions frmMain::renderOptions() const {
    return {shared_.editorFont, alphaBlending_};
}

void frmMain::renderLevel() {
    if (!opened_ || !levelBuffer_.isUsable()) {
        return;
    }
    const clsLevel& level = opened_->level;
    level.renderTo(levelBuffer_, levelCamera_, opened_->tileSet, opened_->specialSet, renderFlags_,
                   renderOptions());
    renderToolMarks();
    if (selectionVisible_) {
        level.renderTileRect(levelBuffer_, levelCamera_, selection_, alphaBlending_);
    }
    drawNavigationMarks();
    levelBuffer_.Present(*picLevel_);
    refreshNavigation();
}

void frmMain::renderPalette() {
    if (!opened_ || !paletteBuffer_.isUsable()) {
        return;
    }
    if (mode_ == specialsMode) {
        opened_->specialSet.renderTo(paletteBuffer_, paletteCamera_, selectedSpecial_,
                                     shared_.editorFont, alphaBlending_);
    } else {
        opened_->tileSet.renderTo(paletteBuffer_, paletteCamera_);
        if (paletteSelectionVisible_) {
            opened_->tileSet.renderSelected(paletteBuffer_, paletteSelection_, paletteCamera_,
                                            alphaBlending_ ? 1 : 0);
        }
    }
    paletteBuffer_.Present(*picPalette_);
}

} // namespace marvek
