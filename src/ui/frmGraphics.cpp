#include "ui/frmGraphics.h"

#include "app/SharedObjects.h"
#include "app/pictureSaveDialog.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/openLevel.h"
#include "graphics/clsPalette.h"
#include "graphics/pictureCodec.h"
#include "graphics/pictureFiles.h"
#include "ui/PictureBox.h"
#include "ui/UpDown.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <exception>
#include <system_error>

namespace marvek {
namespace {

const QString importFilter = "Pictures (*.bmp *.png)|*.bmp;*.png|Bitmap files (*.bmp)|*.bmp|"
                             "PNG pictures (*.png)|*.png|All files (*.*)|*.*";
const QString exportFilter =
    "Windows bitmap files (*.bmp)|*.bmp|PNG pictures (*.png)|*.png|All files (*.*)|*.*";

} // namespace

frmGraphics::frmGraphics(SharedObjects& shared, QWidget* parent)
    : QDialog(parent), shared_(shared) {
    setObjectName("frmGraphics");
    setWindowTitle("Graphics Browser");
    buildControls();
    resize(980, 640);
}

QLineEdit* frmGraphics::addNumber(const char* name, const QString& caption,
                                  PictureParameter parameter) {
    auto* box = new QLineEdit(this);
    box->setObjectName(name);
    box->setMaximumWidth(80);
    const int row = form_->rowCount();
    form_->addWidget(new QLabel(caption, this), row, 0);
    form_->addWidget(box, row, 1);
    // Redrawing reads the boxes through format(), which keeps to the limits
    // while a box is still being typed in.
    connect(box, &QLineEdit::textChanged, this, &frmGraphics::redraw);
    limitOnLeaving(*box, parameterRange(parameter).minimum, parameterRange(parameter).maximum);
    return box;
}

void frmGraphics::buildControls() {
    lstFiles_ = new QListWidget(this);
    lstFiles_->setObjectName("lstFiles");
    lstFiles_->setMaximumWidth(160);
    form_ = new QGridLayout;
    txtWidth_ = addNumber("txtWidth", "Width", PictureParameter::width);
    txtHeight_ = addNumber("txtHeight", "Height", PictureParameter::height);
    txtBitPlanes_ = addNumber("txtBitPlanes", "Bit planes", PictureParameter::planes);
    txtOffset_ = addNumber("txtOffset", "Offset", PictureParameter::offset);
    udOffset_ = new UpDown(*txtOffset_, parameterRange(PictureParameter::offset).minimum,
                           parameterRange(PictureParameter::offset).maximum, this);
    udOffset_->setObjectName("udOffset");
    form_->addWidget(udOffset_, form_->rowCount() - 1, 2);
    txtSubImages_ = addNumber("txtSubImages", "Sub-images", PictureParameter::count);
    txtXCount_ = addNumber("txtXCount", "Across", PictureParameter::across);
    cmbPalette_ = new QComboBox(this);
    cmbPalette_->setObjectName("cmbPalette");
    form_->addWidget(new QLabel("Palette", this), form_->rowCount(), 0);
    form_->addWidget(cmbPalette_, form_->rowCount() - 1, 1, 1, 2);
    chkShiftColors_ = new QCheckBox("Shift colours (16-31)", this);
    chkShiftColors_->setObjectName("chkShiftColors");
    form_->addWidget(chkShiftColors_, form_->rowCount(), 0, 1, 3);
    cmdExport_ = new QPushButton("Export...", this);
    cmdExport_->setObjectName("cmdExport");
    cmdExport_->setEnabled(false);
    auto* cmdImport = new QPushButton("Import...", this);
    cmdImport->setObjectName("cmdImport");
    form_->addWidget(cmdExport_, form_->rowCount(), 0, 1, 3);
    form_->addWidget(cmdImport, form_->rowCount(), 0, 1, 3);
    form_->setRowStretch(form_->rowCount(), 1);

    picImage_ = new PictureBox;
    picImage_->setObjectName("picImage");
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName("scrollImage");
    scroll->setWidget(picImage_);
    scroll->setBackgroundRole(QPalette::Dark);

    lblProblem_ = new QLabel(this);
    lblProblem_->setObjectName("lblProblem");
    lblProblem_->setWordWrap(true);
    lblProblem_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblProblem_->hide();
    auto* shown = new QVBoxLayout;
    shown->addWidget(lblProblem_);
    shown->addWidget(scroll, 1);

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(lstFiles_);
    layout->addLayout(form_);
    layout->addLayout(shown, 1);

    const PictureFormat defaults;
    txtWidth_->setText(QString::number(defaults.width));
    txtHeight_->setText(QString::number(defaults.height));
    txtBitPlanes_->setText(QString::number(defaults.planes));
    txtOffset_->setText(QString::number(defaults.offset));
    txtSubImages_->setText(QString::number(defaults.count));
    txtXCount_->setText(QString::number(defaults.across));
    udOffset_->setStep(offsetStep(defaults.width));

    connect(lstFiles_, &QListWidget::currentRowChanged, this, &frmGraphics::loadSelectedFile);
    connect(cmbPalette_, &QComboBox::currentIndexChanged, this, &frmGraphics::redraw);
    connect(chkShiftColors_, &QCheckBox::toggled, this, &frmGraphics::redraw);
    connect(txtWidth_, &QLineEdit::textChanged, this,
            [this] { udOffset_->setStep(offsetStep(format().width)); });
    connect(cmdExport_, &QPushButton::clicked, this, &frmGraphics::exportPicture);
    connect(cmdImport, &QPushButton::clicked, this, &frmGraphics::importPicture);
}

bool frmGraphics::showModal(const OpenedLevel* openLevel) {
    layouts_ = readBrowserLayouts(shared_.settings);
    known_.clear();
    levelGraphics_.clear();
    levelPalette_.reset();
    if (openLevel != nullptr) {
        offerLevel(*openLevel);
    }
    levelGraphicsReplaced_ = false;
    shownFile_.clear();
    fillLists();
    exec();
    rememberLayout();
    saveLayouts();
    return levelGraphicsReplaced_;
}

void frmGraphics::offerLevel(const OpenedLevel& openLevel) {
    levelGraphics_ = {openLevel.tileFile, openLevel.spriteFile};
    const QString level = QFileInfo(toQString(openLevel.level.fileName)).completeBaseName();
    levelPalette_ = PaletteChoice{"Level " + level.toUpper().toStdString(),
                                  PaletteChoice::Kind::given,
                                  {},
                                  openLevel.palette};
    // The level's graphics are first shown as the level shows them.
    known_ = knownLayouts(openLevel, shared_.dataFolder());
    for (auto& [file, layout] : known_) {
        layout.palette = levelPalette_->name;
    }
}

void frmGraphics::rememberLayout() {
    if (!shownFile_.isEmpty()) {
        layouts_[shownFile_.toStdString()] = {format(), cmbPalette_->currentText().toStdString()};
    }
}

void frmGraphics::saveLayouts() {
    writeBrowserLayouts(shared_.settings, layouts_);
    try {
        shared_.settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const std::exception&) {
        // Not worth a message on closing a browser: the layouts are still
        // kept until the program ends, and the next save of the settings
        // tries again.
    }
}

void frmGraphics::showLayoutOf(const QString& file) {
    const std::string name = file.toStdString();
    if (const auto kept = layouts_.find(name); kept != layouts_.end()) {
        applyLayout(kept->second);
    } else if (const auto known = known_.find(name); known != known_.end()) {
        applyLayout(known->second);
    }
}

void frmGraphics::applyLayout(const BrowserLayout& layout) {
    const PictureFormat& format = layout.format;
    txtWidth_->setText(QString::number(format.width));
    txtHeight_->setText(QString::number(format.height));
    txtBitPlanes_->setText(QString::number(format.planes));
    txtOffset_->setText(QString::number(format.offset));
    txtSubImages_->setText(QString::number(format.count));
    txtXCount_->setText(QString::number(format.across));
    chkShiftColors_->setChecked(format.shiftColours);
    if (const auto choice = findPaletteChoice(choices_, layout.palette)) {
        cmbPalette_->setCurrentIndex(static_cast<int>(*choice));
    }
}

void frmGraphics::fillLists() {
    const QString former = cmbPalette_->currentText();
    const QString file = selectedFile();
    choices_ = listPaletteChoices(shared_.applicationFolder);
    if (levelPalette_) {
        choices_.push_back(*levelPalette_);
    }
    {
        const QSignalBlocker quiet(cmbPalette_);
        cmbPalette_->clear();
        for (const PaletteChoice& choice : choices_) {
            cmbPalette_->addItem(toQString(choice.name));
        }
        if (!choices_.empty()) {
            cmbPalette_->setCurrentIndex(
                static_cast<int>(restoredPaletteChoice(choices_, former.toStdString())));
        }
    }
    const QSignalBlocker quiet(lstFiles_);
    lstFiles_->clear();
    // A data folder gone since start-up (a removed disk, a renamed folder)
    // leaves the list empty, said once, and the editor running.
    try {
        for (const std::string& name : listDataFiles(shared_.dataFolder())) {
            lstFiles_->addItem(toQString(name));
        }
    } catch (const std::exception& error) {
        shared_.messages->show(this, QString::fromStdString(error.what()),
                               messageStyle::exclamation);
    }
    const auto kept = lstFiles_->findItems(file, Qt::MatchExactly);
    if (!kept.isEmpty()) {
        lstFiles_->setCurrentItem(kept.front());
        loadSelectedFile();
    }
}

bool frmGraphics::isLevelGraphics(const std::filesystem::path& file) const {
    return std::any_of(levelGraphics_.begin(), levelGraphics_.end(),
                       [&file](const std::filesystem::path& graphics) {
                           std::error_code error;
                           return std::filesystem::equivalent(file, graphics, error);
                       });
}

QString frmGraphics::selectedFile() const {
    const QListWidgetItem* item = lstFiles_->currentItem();
    return item == nullptr ? QString() : item->text();
}

PictureFormat frmGraphics::format() const {
    PictureFormat format;
    format.width = leadingNumber(txtWidth_->text());
    format.height = leadingNumber(txtHeight_->text());
    format.planes = leadingNumber(txtBitPlanes_->text());
    format.offset = leadingNumber(txtOffset_->text());
    format.count = leadingNumber(txtSubImages_->text());
    format.across = leadingNumber(txtXCount_->text());
    format.shiftColours = chkShiftColors_->isChecked();
    return clampedFormat(format);
}

void frmGraphics::loadSelectedFile() {
    // Nothing is drawn while the boxes change to the file's layout.
    loaded_ = false;
    rememberLayout();
    const QString name = selectedFile();
    shownFile_ = name;
    showLayoutOf(name);
    if (!name.isEmpty()) {
        const std::filesystem::path dataFolder = shared_.dataFolder();
        try {
            bytes_ = readPictureFile(dataFolder / name.toStdString());
            loaded_ = true;
        } catch (const std::exception& error) {
            shared_.messages->show(this, QString::fromStdString(error.what()),
                                   messageStyle::exclamation);
        }
    }
    redraw();
}

void frmGraphics::redraw() {
    // A picture that no longer matches the boxes is never shown or exported.
    picImage_->clear();
    picImage_->hide();
    picture_ = clsSurface();
    cmdExport_->setEnabled(false);
    showProblem({});
    const int choice = cmbPalette_->currentIndex();
    if (!loaded_ || choice < 0 || choice >= static_cast<int>(choices_.size())) {
        return;
    }
    try {
        const PictureFormat shown = format();
        clsSurface picture = decodePicture(bytes_, shown);
        const clsPalette palette =
            choosePalette(choices_[static_cast<std::size_t>(choice)], bytes_, shown);
        if (!drawPicture(picture, palette, buffer_)) {
            showProblem("The picture cannot be drawn with this palette.");
            return;
        }
        picture_ = std::move(picture);
        picImage_->resize(buffer_.width() + 2 * PictureBox::border,
                          buffer_.height() + 2 * PictureBox::border);
        buffer_.Present(*picImage_);
        picImage_->show();
        cmdExport_->setEnabled(true);
    } catch (const std::exception& error) {
        showProblem(QString::fromStdString(error.what()));
    }
}

void frmGraphics::showProblem(const QString& problem) {
    lblProblem_->setText(problem.isEmpty() ? problem : "Nothing to show: " + problem);
    lblProblem_->setVisible(!problem.isEmpty());
}

void frmGraphics::exportPicture() {
    if (!loaded_ || picture_.planarWidth() <= 0) {
        shared_.messages->show(this, "There is no picture to export: " + lblProblem_->text(),
                               messageStyle::exclamation);
        return;
    }
    const QString chosen = askPictureSavePath(
        *shared_.dialogs, *shared_.messages, this,
        {"Export Bitmap", exportFilter, selectedFile() + ".bmp", pictureExportName});
    if (chosen.isEmpty()) {
        return;
    }
    try {
        writePictureFile(picture_, toPath(chosen));
    } catch (const std::exception& error) {
        shared_.messages->show(this, QString::fromStdString(error.what()),
                               messageStyle::exclamation);
    }
}

void frmGraphics::importPicture() {
    const QString name = selectedFile();
    if (name.isEmpty() || cmbPalette_->currentIndex() < 0) {
        return;
    }
    const auto chosen = shared_.dialogs->openFile(this, "Import Bitmap", importFilter, QString(),
                                                  clsCommonDialog::openFlags, 1,
                                                  clsCommonDialog::FileKind::picture);
    if (chosen.empty()) {
        return;
    }
    const std::filesystem::path dataFolder = shared_.dataFolder();
    const std::filesystem::path target = dataFolder / name.toStdString();
    const std::filesystem::path bitmap = toPath(chosen.begin()->second);
    const PaletteChoice& choice = choices_[static_cast<std::size_t>(cmbPalette_->currentIndex())];
    ImportResult result;
    try {
        result = marvek::importPicture(bitmap, target, format(), choice,
                                       [this, &bitmap](const std::filesystem::path& file) {
                                           return confirmReplacing(file, bitmap);
                                       });
    } catch (const std::exception& error) {
        shared_.messages->show(this, QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    if (!result.written) {
        return;
    }
    levelGraphicsReplaced_ = levelGraphicsReplaced_ || isLevelGraphics(target);
    loadSelectedFile();
    QString done = toQString(target) + " now holds the picture of " + toQString(bitmap) + ".";
    if (result.keptOriginal) {
        done += " The original is kept as " + toQString(result.original) + ".";
    }
    shared_.messages->show(this, done, messageStyle::information);
}

bool frmGraphics::confirmReplacing(const std::filesystem::path& target,
                                   const std::filesystem::path& bitmap) {
    std::error_code error;
    QString question = "Replace the game file " + toQString(target.filename()) +
                       " with the picture of " + toQString(bitmap) + "?";
    const std::filesystem::path original = originalCopyPath(target);
    question += std::filesystem::exists(original, error)
                    ? " Its first original stays kept as " + toQString(original) + "."
                    : " The original will be kept as " + toQString(original) + ".";
    return shared_.messages->show(this, question, messageStyle::yesNoQuestion) ==
           messageAnswer::yes;
}

} // namespace marvek
