#pragma once

#include "app/browserLayouts.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsSurface.h"
#include "graphics/paletteChoices.h"
#include "graphics/pictureFormat.h"

#include <QDialog>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QGridLayout;
class QLabel;
class QListWidget;
class QPushButton;

namespace marvek {

struct OpenedLevel;
struct SharedObjects;
class PictureBox;
class UpDown;

// Browses the game's raw bitplane pictures in the data folder, read with
// the size, planes and palette the user gives, and exchanges them with BMP
// files. Each file comes back as it was last shown; the open level's tile
// set and sprite sheet are first shown as the level reads them.
class frmGraphics : public QDialog {
    Q_OBJECT

public:
    explicit frmGraphics(SharedObjects& shared, QWidget* parent = nullptr);

    // Fills the lists afresh and shows the browser modally, knowing the
    // layouts of the open level's graphics (none without a level). True
    // when an import replaced that level's tile set or sprite sheet.
    bool showModal(const OpenedLevel* openLevel = nullptr);
    // The parameters as the boxes hold them.
    PictureFormat format() const;
    // The picture shown, empty while the boxes give none.
    const clsSurface& picture() const noexcept { return picture_; }

private:
    QLineEdit* addNumber(const char* name, const QString& caption, PictureParameter parameter);
    void buildControls();
    void fillLists();
    void loadSelectedFile();
    // Fills the boxes with the layout kept for the file, else the one known
    // for it; leaves them as they are for any other.
    void showLayoutOf(const QString& file);
    void applyLayout(const BrowserLayout& layout);
    // Keeps how the file shown is read, for the next time it is chosen.
    void rememberLayout();
    // The open level's graphics and palette.
    void offerLevel(const OpenedLevel& openLevel);
    void saveLayouts();
    void redraw();
    // Why no picture is shown; an empty text hides the line.
    void showProblem(const QString& problem);
    bool confirmReplacing(const std::filesystem::path& target, const std::filesystem::path& bitmap);
    void exportPicture();
    void importPicture();
    QString selectedFile() const;
    bool isLevelGraphics(const std::filesystem::path& file) const;

    SharedObjects& shared_;
    std::vector<PaletteChoice> choices_;
    // The open level's own colours, offered after the usual choices.
    std::optional<PaletteChoice> levelPalette_;
    BrowserLayouts layouts_;
    BrowserLayouts known_;
    // The open level's graphics, which an import makes it read again.
    std::vector<std::filesystem::path> levelGraphics_;
    bool levelGraphicsReplaced_ = false;
    QString shownFile_;
    std::vector<std::uint8_t> bytes_;
    bool loaded_ = false;
    clsSurface picture_;
    clsBackBuffer buffer_;

    QListWidget* lstFiles_ = nullptr;
    QLineEdit* txtWidth_ = nullptr;
    QLineEdit* txtHeight_ = nullptr;
    QLineEdit* txtBitPlanes_ = nullptr;
    QLineEdit* txtOffset_ = nullptr;
    QLineEdit* txtSubImages_ = nullptr;
    QLineEdit* txtXCount_ = nullptr;
    UpDown* udOffset_ = nullptr;
    QComboBox* cmbPalette_ = nullptr;
    QCheckBox* chkShiftColors_ = nullptr;
    PictureBox* picImage_ = nullptr;
    QLabel* lblProblem_ = nullptr;
    QPushButton* cmdExport_ = nullptr;
    QGridLayout* form_ = nullptr;
};

} // namespace marvek
