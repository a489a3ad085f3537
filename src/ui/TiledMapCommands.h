#pragma once

class QString;

namespace marvek {

class frmMain;
class LevelDocument;
struct SharedObjects;
struct LevelFile;

// File > Export > Tiled Map... and File > Import > Tiled Map... for the main
// window's open level.
class TiledMapCommands {
public:
    TiledMapCommands(frmMain& window, SharedObjects& shared) : window_(window), shared_(shared) {}

    // The level as a map with its tile sets beside it; true when written.
    bool exportMap();
    // A map's cells, palette and kept fields over the open level's, as one
    // History step; a map that cannot be this level changes nothing and the
    // user is told why. True when imported.
    bool importMap();

private:
    void tell(const QString& text, int style) const;

    frmMain& window_;
    SharedObjects& shared_;
};

} // namespace marvek
