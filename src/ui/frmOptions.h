#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace marvek {

struct SharedObjects;
class UpDown;

// The settings: the game data folder, what opens at start-up, the editor
// font and the editing options. The only writer of the settings file.
class frmOptions : public QDialog {
    Q_OBJECT

public:
    explicit frmOptions(SharedObjects& shared, QWidget* parent = nullptr);

    // Shows the dialog modally; false when the user cancelled it.
    bool showModal();
    bool cancelled() const noexcept { return cancelled_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildControls();
    void fillFromSettings();
    void fillLevels(const QString& folder);
    // The folder's levels, or an empty, disabled list when it does not exist.
    void showLevelsOf(const QString& folder);
    void dataPathTyped();
    void browseDataPath();
    // False, after saying which, when a list has nothing chosen.
    bool everyListChosen();
    void accept() override;
    void reject() override;

    SharedObjects& shared_;
    bool cancelled_ = false;
    QLineEdit* txtDataPath_ = nullptr;
    QPushButton* cmdBrowseDataPath_ = nullptr;
    QComboBox* cmbDefLevel_ = nullptr;
    QComboBox* cmbDefConfig_ = nullptr;
    QComboBox* cmbEditorFont_ = nullptr;
    QLineEdit* txtMoveSens_ = nullptr;
    QLineEdit* txtUndoLevels_ = nullptr;
    QCheckBox* chkAlphaBlend_ = nullptr;
    QCheckBox* chkAutoSpecials_ = nullptr;
};

} // namespace marvek
