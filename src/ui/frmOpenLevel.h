#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace marvek {

struct SharedObjects;

// Chooses the level configuration a level opens with, and shows the tile and
// sprite files that configuration names.
class frmOpenLevel : public QDialog {
    Q_OBJECT

public:
    explicit frmOpenLevel(SharedObjects& shared, QWidget* parent = nullptr);

    // Shows the dialog modally; false when the user closed it without OK.
    bool showModal();
    QString configuration() const;
    bool loadUnknown() const;

private:
    void buildControls();
    void showConfiguration();
    void browse(QLineEdit& text, const QString& title);

    SharedObjects& shared_;
    QComboBox* cmbConfig_ = nullptr;
    QLineEdit* txtTileSet_ = nullptr;
    QLineEdit* txtSpriteset_ = nullptr;
    QCheckBox* chkLoadUnknown_ = nullptr;
};

} // namespace marvek
