#pragma once

#include "data/clsRenderOptions.h"

#include <QDialog>

class QCheckBox;
class QListWidget;

namespace marvek {

class clsSpecialSet;

// Chooses which specials the level bitmap shows, by their tags.
class frmExportLevel : public QDialog {
    Q_OBJECT

public:
    static constexpr const char* information =
        "Tags are groups of specials that will be exported to the level bitmap when selected. "
        "Rendering all specials will also render specials that are marked to never be exported.";

    explicit frmExportLevel(QWidget* parent = nullptr);

    // Lists the set's tags, each once in the order of first use, with the
    // usual five chosen, and clears the earlier answer.
    void manualActivate(const clsSpecialSet& specialSet);
    // Shows the dialog modally; read the answer afterwards.
    void showModal();

    bool cancelled() const noexcept { return cancelled_; }
    const TagChoice& tagChoice() const noexcept { return tagChoice_; }
    bool renderAll() const noexcept { return renderAll_; }

private:
    void buildControls();
    void ok();

    QListWidget* lstTags_ = nullptr;
    QCheckBox* chkRenderAll_ = nullptr;
    TagChoice tagChoice_;
    bool renderAll_ = false;
    bool cancelled_ = false;
};

} // namespace marvek
