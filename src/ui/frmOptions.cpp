#include "ui/frmOptions.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "io/FileError.h"
#include "ui/UpDown.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <utility>

namespace marvek {
namespace {

constexpr int moveSensitivityMaximum = 30;
constexpr int undoLevelsMaximum = 1024;

const QString noLevelMessage = "Please choose the default level. The data path must be a folder "
                               "that holds the game's level files.";
const QString noConfigMessage = "Please choose the default configuration.";
const QString noFontMessage = "Please choose the editor font.";

bool nothingChosen(const QComboBox& list) {
    return list.currentIndex() < 0 || list.currentText().isEmpty();
}

template <typename Widget>
Widget* named(Widget* widget, const char* name, const QString& toolTip = {}) {
    widget->setObjectName(name);
    if (!toolTip.isEmpty()) {
        widget->setToolTip(toolTip);
    }
    return widget;
}

QHBoxLayout* numberWithArrows(QLineEdit* text, UpDown* arrows) {
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    text->setMaximumWidth(64);
    row->addWidget(text);
    row->addWidget(arrows);
    row->addStretch();
    return row;
}

} // namespace

frmOptions::frmOptions(SharedObjects& shared, QWidget* parent) : QDialog(parent), shared_(shared) {
    setObjectName("frmOptions");
    setWindowTitle("Options");
    buildControls();
}

void frmOptions::buildControls() {
    const QString levelTip = "The default level to load when Marvek starts.";
    const QString configTip = "The default level configuration to load when Marvek starts.";
    const QString fontTip = "The font used to display text in the editor.";
    const QString moveTip = "MOvement sensitivty when scrolling through the level using the mouse.";
    const QString undoTip =
        "The number of undo levels remembered. Each level takes about 100 Kb of memory.";

    txtDataPath_ = named(new QLineEdit(this), "txtDataPath");
    txtDataPath_->setMinimumWidth(320);
    cmdBrowseDataPath_ = named(new QPushButton("Browse...", this), "cmdBrowseDataPath");
    cmdBrowseDataPath_->setAutoDefault(false);
    auto* lblInfo = named(
        new QLabel("The data path must point to a valid Thornwick CD32 \"TWDATA\" folder.", this),
        "lblInfo");
    lblInfo->setWordWrap(true);
    cmbDefLevel_ = named(new QComboBox(this), "cmbDefLevel", levelTip);
    cmbDefConfig_ = named(new QComboBox(this), "cmbDefConfig", configTip);
    cmbEditorFont_ = named(new QComboBox(this), "cmbEditorFont", fontTip);
    txtMoveSens_ = named(new QLineEdit(this), "txtMoveSens", moveTip);
    auto* udMoveSens =
        named(new UpDown(*txtMoveSens_, 1, moveSensitivityMaximum, this), "udMoveSens", moveTip);
    txtUndoLevels_ = named(new QLineEdit(this), "txtUndoLevels", undoTip);
    auto* udUndoLevels =
        named(new UpDown(*txtUndoLevels_, 1, undoLevelsMaximum, this), "udUndoLevels", undoTip);
    chkAlphaBlend_ = named(new QCheckBox("Alpha blending", this), "chkAlphaBlend",
                           "When disabled, will replace alpha blending effects with a faster "
                           "alternating pixel effect.");
    chkAutoSpecials_ = named(new QCheckBox("Auto-place specials", this), "chkAutoSpecials",
                             "When enabled, will place the appropriate specials along with tiles.");

    auto* grid = new QGridLayout(this);
    grid->addWidget(named(new QLabel("Thornwick data path", this), "lblDataPath"), 0, 0, 1, 3);
    grid->addWidget(txtDataPath_, 1, 0, 1, 2);
    grid->addWidget(cmdBrowseDataPath_, 1, 2);
    grid->addWidget(lblInfo, 2, 0, 1, 3);
    grid->addWidget(named(new QLabel("Default level", this), "lblDefLevel", levelTip), 3, 0);
    grid->addWidget(cmbDefLevel_, 3, 1, 1, 2);
    grid->addWidget(named(new QLabel("Default configuration", this), "lblDefConfig", configTip), 4,
                    0);
    grid->addWidget(cmbDefConfig_, 4, 1, 1, 2);
    grid->addWidget(named(new QLabel("Editor font", this), "lblEditorFont", fontTip), 5, 0);
    grid->addWidget(cmbEditorFont_, 5, 1, 1, 2);
    grid->addWidget(named(new QLabel("Movement sensitivity", this), "lblMoveSens", moveTip), 6, 0);
    grid->addLayout(numberWithArrows(txtMoveSens_, udMoveSens), 6, 1, 1, 2);
    grid->addWidget(named(new QLabel("Undo levels", this), "lblUndoLevels", undoTip), 7, 0);
    grid->addLayout(numberWithArrows(txtUndoLevels_, udUndoLevels), 7, 1, 1, 2);
    grid->addWidget(chkAlphaBlend_, 8, 0, 1, 3);
    grid->addWidget(chkAutoSpecials_, 9, 0, 1, 3);

    auto* buttons = new QDialogButtonBox(this);
    auto* cmdOk = named(buttons->addButton("OK", QDialogButtonBox::AcceptRole), "cmdOk");
    named(buttons->addButton("Cancel", QDialogButtonBox::RejectRole), "cmdCancel");
    cmdOk->setDefault(true);
    grid->addWidget(buttons, 10, 0, 1, 3);
    grid->setRowStretch(11, 1);

    connect(buttons, &QDialogButtonBox::accepted, this, &frmOptions::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmOptions::reject);
    connect(cmdBrowseDataPath_, &QPushButton::clicked, this, &frmOptions::browseDataPath);
    connect(txtDataPath_, &QLineEdit::textEdited, this, &frmOptions::dataPathTyped);
    limitOnLeaving(*txtMoveSens_, 1, moveSensitivityMaximum);
    limitOnLeaving(*txtUndoLevels_, 1, undoLevelsMaximum);
}

bool frmOptions::showModal() {
    cancelled_ = false;
    // A dialog ended from outside (the program is ending) counts as a cancel.
    return exec() == QDialog::Accepted && !cancelled_;
}

void frmOptions::showEvent(QShowEvent* event) {
    fillFromSettings();
    QDialog::showEvent(event);
}

void frmOptions::fillFromSettings() {
    const clsConfiguration& settings = shared_.settings;
    QString dataPath = toQString(settingText(settings, settingKey::thornwickData, {}));
    if (dataPath.isEmpty()) {
        if (const auto sample = shared_.offeredSampleData()) {
            dataPath = toQString(*sample);
        }
    }
    txtDataPath_->setText(dataPath);
    txtMoveSens_->setText(
        QString::number(settingNumber(settings, settingKey::moveSensitivity, 10)));
    chkAlphaBlend_->setChecked(settingNumber(settings, settingKey::alphaBlending, 1) != 0);
    txtUndoLevels_->setText(QString::number(settingNumber(settings, settingKey::undoLevels, 64)));
    chkAutoSpecials_->setChecked(settingNumber(settings, settingKey::autoPlaceSpecials, 1) != 0);
    showLevelsOf(dataPath);
    shared_.utils.comboConfigs(
        *cmbDefConfig_, toQString(settingText(settings, settingKey::defaultConfig, "world1")));
    shared_.utils.comboFonts(*cmbEditorFont_,
                             toQString(settingText(settings, settingKey::editorFont, "game")));
}

void frmOptions::fillLevels(const QString& folder) {
    shared_.utils.comboLevels(
        *cmbDefLevel_, toPath(folder),
        toQString(settingText(shared_.settings, settingKey::defaultLevel, "L1MA1")));
    cmbDefLevel_->setEnabled(true);
}

void frmOptions::showLevelsOf(const QString& folder) {
    if (!folder.isEmpty() && QDir(folder).exists()) {
        fillLevels(folder);
    } else {
        cmbDefLevel_->clear();
        cmbDefLevel_->setEnabled(false);
    }
}

void frmOptions::dataPathTyped() {
    // A folder typed by hand is not tested here, but its levels are offered.
    showLevelsOf(txtDataPath_->text());
}

bool frmOptions::everyListChosen() {
    for (const auto& [list, message] :
         {std::pair{cmbDefLevel_, noLevelMessage}, std::pair{cmbDefConfig_, noConfigMessage},
          std::pair{cmbEditorFont_, noFontMessage}}) {
        if (nothingChosen(*list)) {
            shared_.messages->show(this, message, messageStyle::exclamation);
            return false;
        }
    }
    return true;
}

void frmOptions::browseDataPath() {
    const QString folder =
        shared_.dialogs->selectFolder(this, "Please select a Thornwick CD32 data folder");
    if (folder.isEmpty()) {
        return;
    }
    if (!isDataFolder(toPath(folder))) {
        shared_.messages->show(this,
                               "The path you specified is not a valid Thornwick CD32 data path.",
                               messageStyle::exclamation);
        return;
    }
    txtDataPath_->setText(folder);
    fillLevels(folder);
}

void frmOptions::accept() {
    // An empty name would stop every later start at the default level.
    if (!everyListChosen()) {
        return;
    }
    clsConfiguration& settings = shared_.settings;
    const std::string before = settings.OutputConfiguration("\n", false);
    settings.WriteSetting(settingKey::thornwickData, txtDataPath_->text().toStdString(), false);
    settings.WriteSetting(settingKey::moveSensitivity,
                          limitedNumber(txtMoveSens_->text(), 1, moveSensitivityMaximum), false);
    settings.WriteSetting(settingKey::defaultLevel, cmbDefLevel_->currentText().toStdString(),
                          false);
    settings.WriteSetting(settingKey::defaultConfig, cmbDefConfig_->currentText().toStdString(),
                          false);
    settings.WriteSetting(settingKey::editorFont, cmbEditorFont_->currentText().toStdString(),
                          false);
    settings.WriteSetting(settingKey::alphaBlending, chkAlphaBlend_->isChecked() ? 1 : 0, false);
    settings.WriteSetting(settingKey::undoLevels,
                          limitedNumber(txtUndoLevels_->text(), 1, undoLevelsMaximum), false);
    settings.WriteSetting(settingKey::autoPlaceSpecials, chkAutoSpecials_->isChecked() ? 1 : 0,
                          false);
    try {
        settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const FileError& error) {
        // The settings stay as they were, and the dialog open so that the
        // user can try again or cancel.
        settings.InputConfiguration(before);
        shared_.messages->show(this, QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    QDialog::accept();
}

void frmOptions::reject() {
    cancelled_ = true;
    QDialog::reject();
}

} // namespace marvek
