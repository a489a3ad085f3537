#include "ui/TiledMapCommands.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "data/openLevel.h"
#include "io/packedFile.h"
#include "maps/levelProperties.h"
#include "maps/tiledMapFiles.h"
#include "ui/EditingState.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTabs.h"
#include "ui/frmStatus.h"

#include <QFileInfo>
#include <QMainWindow>
#include <QStatusBar>

#include <algorithm>
#include <exception>

namespace marvek {
namespace {

const QString mapFilter = "Tiled maps (*.tmx;*.tmj;*.json)|*.tmx;*.tmj;*.json|"
                          "All files (*.*)|*.*";

// What saving the open level would write, with the magic it would keep.
LevelFile savedFile(const OpenedLevel& opened) {
    std::string magic = "IMP!";
    try {
        magic = packedMagicOf(opened.level.fileName);
    } catch (const std::exception&) {
        // A level whose file went away is saved as a new one.
    }
    return {opened.level, opened.palette, magic};
}

} // namespace

void TiledMapCommands::tell(const QString& text, int style) const {
    shared_.messages->show(&window_, text, style);
}

bool TiledMapCommands::exportMap() {
    const LevelDocument* document = tabs_.current();
    if (document == nullptr) {
        return false;
    }
    const OpenedLevel* opened = &document->opened();
    const QString name = QFileInfo(toQString(opened->level.fileName)).completeBaseName() + ".tmx";
    const QString chosen = shared_.dialogs->saveFile(&window_, "Export Tiled Map", mapFilter, name,
                                                     clsCommonDialog::saveFlags, 1);
    if (chosen.isEmpty()) {
        return false;
    }
    TiledExport request;
    request.mapFile = toPath(chosen);
    request.tileSetName = opened->tileFile.filename().string();
    request.configurationName = opened->configuration;
    try {
        exportTiledMap(savedFile(*opened), opened->tileSet, opened->specialSet,
                       clsRenderOptions(shared_.editorFont, editing_.alphaBlending), request);
    } catch (const std::exception& error) {
        tell("The Tiled map was not written.\n\n" + QString::fromStdString(error.what()),
             messageStyle::exclamation);
        return false;
    }
    window_.statusBar()->showMessage("Exported " + chosen);
    return true;
}

bool TiledMapCommands::importMap() {
    LevelDocument* document = tabs_.current();
    if (document == nullptr) {
        return false;
    }
    const OpenedLevel* opened = &document->opened();
    const auto chosen = shared_.dialogs->openFile(&window_, "Import Tiled Map", mapFilter,
                                                  QString(), clsCommonDialog::openFlags, 1);
    if (chosen.empty()) {
        return false;
    }
    const LevelFile current = savedFile(*opened);
    TiledImport imported;
    try {
        imported = importTiledMap(toPath(chosen.begin()->second), &current);
    } catch (const std::exception& error) {
        tell("The Tiled map was not imported, and the level is as it was.\n\n" +
                 QString::fromStdString(error.what()),
             messageStyle::exclamation);
        return false;
    }
    try {
        document->replaceContents("Import Tiled Map", imported.file.level, imported.file.palette);
    } catch (const std::exception& error) {
        tell("The Tiled map was not imported: the graphics could not be read with its "
             "palette, so the level is as it was.\n\n" +
                 QString::fromStdString(error.what()),
             messageStyle::exclamation);
        return false;
    }
    if (!imported.warning.empty()) {
        tell(QString::fromStdString(imported.warning), messageStyle::information);
    }
    return true;
}

} // namespace marvek
