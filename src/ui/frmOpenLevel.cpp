#include "ui/frmOpenLevel.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/levelConfiguration.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace marvek {
namespace {

template <typename Widget> Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
}

} // namespace

frmOpenLevel::frmOpenLevel(SharedObjects& shared, QWidget* parent)
    : QDialog(parent), shared_(shared) {
    setObjectName("frmOpenLevel");
    setWindowTitle("Open Level");
    buildControls();
    shared_.utils.comboConfigs(*cmbConfig_, QString(defaultConfigurationName.data()));
    showConfiguration();
}

void frmOpenLevel::buildControls() {
    cmbConfig_ = named(new QComboBox(this), "cmbConfig");
    txtTileSet_ = named(new QLineEdit(this), "txtTileSet");
    txtSpriteset_ = named(new QLineEdit(this), "txtSpriteset");
    txtTileSet_->setMinimumWidth(320);
    auto* cmdBrowseTileset = named(new QPushButton("Browse...", this), "cmdBrowseTileset");
    auto* cmdBrowseSpriteset = named(new QPushButton("Browse...", this), "cmdBrowseSpriteset");
    cmdBrowseTileset->setAutoDefault(false);
    cmdBrowseSpriteset->setAutoDefault(false);
    chkLoadUnknown_ = named(new QCheckBox("Load unknown special IDs", this), "chkLoadUnknown");

    auto* grid = new QGridLayout(this);
    grid->addWidget(named(new QLabel("Level configuration", this), "lblConfig"), 0, 0);
    grid->addWidget(cmbConfig_, 0, 1, 1, 2);
    grid->addWidget(named(new QLabel("Tile set", this), "lblTileSet"), 1, 0);
    grid->addWidget(txtTileSet_, 1, 1);
    grid->addWidget(cmdBrowseTileset, 1, 2);
    grid->addWidget(named(new QLabel("Sprite set", this), "lblSpriteset"), 2, 0);
    grid->addWidget(txtSpriteset_, 2, 1);
    grid->addWidget(cmdBrowseSpriteset, 2, 2);
    grid->addWidget(chkLoadUnknown_, 3, 0, 1, 3);
    auto* buttons = new QDialogButtonBox(this);
    named(buttons->addButton("OK", QDialogButtonBox::AcceptRole), "cmdOk")->setDefault(true);
    named(buttons->addButton("Cancel", QDialogButtonBox::RejectRole), "cmdCancel");
    grid->addWidget(buttons, 4, 0, 1, 3);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(cmbConfig_, &QComboBox::currentIndexChanged, this, &frmOpenLevel::showConfiguration);
    connect(cmdBrowseTileset, &QPushButton::clicked, this,
            [this] { browse(*txtTileSet_, "Select Tile Set"); });
    connect(cmdBrowseSpriteset, &QPushButton::clicked, this,
            [this] { browse(*txtSpriteset_, "Select Sprite Set"); });
}

bool frmOpenLevel::showModal() {
    return exec() == QDialog::Accepted;
}

QString frmOpenLevel::configuration() const {
    return cmbConfig_->currentText();
}

bool frmOpenLevel::loadUnknown() const {
    return chkLoadUnknown_->isChecked();
}

void frmOpenLevel::showConfiguration() {
    txtTileSet_->clear();
    txtSpriteset_->clear();
    txtTileSet_->setPlaceholderText({});
    if (cmbConfig_->currentIndex() < 0) {
        return;
    }
    const auto path =
        configurationPath(shared_.applicationFolder, cmbConfig_->currentText().toStdString());
    const QString dataFolder = toQString(shared_.dataFolder());
    try {
        const LevelConfiguration configuration = readLevelConfiguration(path);
        txtTileSet_->setText(dataFolder + "/" + toQString(configuration.tileSet));
        txtSpriteset_->setText(dataFolder + "/" + toQString(configuration.spriteSet));
    } catch (const std::exception& error) {
        // Opening with it would fail and say so; here the boxes say why.
        txtTileSet_->setPlaceholderText(QString::fromStdString(error.what()));
    }
    txtTileSet_->end(false);
    txtSpriteset_->end(false);
}

void frmOpenLevel::browse(QLineEdit& text, const QString& title) {
    const auto chosen = shared_.dialogs->openFile(this, title, "All files (*.*)|*.*", QString(),
                                                  clsCommonDialog::openFlags, 1);
    if (!chosen.empty()) {
        text.setText(chosen.begin()->second);
    }
}

} // namespace marvek
