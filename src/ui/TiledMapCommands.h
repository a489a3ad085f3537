#pragma once

class QMainWindow;
class QString;

namespace marvek {

class LevelTabs;
struct EditingState;
struct SharedObjects;
struct LevelFile;

// File > Export > Tiled Map... and File > Import > Tiled Map... for the level
// in the front tab.
class TiledMapCommands {
public:
    TiledMapCommands(LevelTabs& tabs, const EditingState& editing, SharedObjects& shared,
                     QMainWindow& window)
        : tabs_(tabs), editing_(editing), shared_(shared), window_(window) {}

    // The level as a map with its tile sets beside it; true when written.
    bool exportMap();
    // A map's cells, palette and kept fields over the open level's, as one
    // History step; a map that cannot be this level changes nothing and the
    // user is told why. True when imported.
    bool importMap();

private:
    void tell(const QString& text, int style) const;

    LevelTabs& tabs_;
    const EditingState& editing_;
    SharedObjects& shared_;
    QMainWindow& window_;
};

} // namespace marvek
