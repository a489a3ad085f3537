#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace marvek {

struct EditingState;
struct SharedObjects;
class CellBlock;
class clsRectangle;
class frmEditPalette;
class frmReplaceTile;
class frmStatus;
class LevelDocument;
class LevelView;

// The dialogs the Edit commands ask through.
struct EditDialogs {
    frmReplaceTile& replaceTile;
    frmEditPalette& editPalette;
    frmStatus& status;
};

// The Edit menu's commands on the level in front: undo, redo and the
// History, the clipboard and the selection, Replace Tile and the palette.
// Each first lets go of a held Shift or Ctrl, and does nothing without a
// level.
class EditCommands : public QObject {
    Q_OBJECT

public:
    // window: the parent of the messages; currentView: the view in front,
    // or null.
    EditCommands(SharedObjects& shared, EditingState& editing, EditDialogs dialogs,
                 std::function<LevelView*()> currentView, QWidget& window);

    // The level's selected cells, normalised; none when nothing is selected.
    std::optional<clsRectangle> selection() const;

    void undo();
    void redo();
    // The level as it was at a History entry: 0 before every kept step, n
    // after the n-th.
    void goToHistoryEntry(int index);
    // Cut and Delete work on the selection's specials alone in Specials mode.
    void cut();
    void copy();
    void paste();
    void deleteSelection();
    void selectAll();
    void selectNone();
    void replaceTile();
    // Edits the level's palette, a History step; the graphics are read
    // again with it.
    void editPalette();

signals:
    void statusMessage(const QString& text);
    // The pasted cells are the brush of that mode now.
    void brushPasted(std::int32_t mode);

private:
    // The document in front, with Shift and Ctrl let go; null when none.
    LevelDocument* startCommand() const;
    void tell(const QString& text, int style) const;
    bool copyToClipboard(const LevelDocument& document);
    void clearSelection(LevelDocument& document, const std::string& command);

    SharedObjects& shared_;
    EditingState& editing_;
    EditDialogs dialogs_;
    std::function<LevelView*()> currentView_;
    QWidget& window_;
};

} // namespace marvek
