#include "app/clsCommonDialog.h"

#include <QColor>
#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>

namespace marvek {
namespace {

QString parentFolder(const QString& path) {
    return QFileInfo(path).absolutePath();
}

// "*.*" matches names without a dot too; several patterns are separated by ";".
QString qtPatterns(const QString& patterns) {
    QStringList converted;
    for (const QString& pattern : patterns.split(';', Qt::SkipEmptyParts)) {
        converted << (pattern.trimmed() == "*.*" ? QStringLiteral("*") : pattern.trimmed());
    }
    return converted.join(' ');
}

// The description without a trailing "(patterns)", which Qt would read as
// the patterns themselves.
QString bareDescription(const QString& description) {
    const auto open = description.lastIndexOf('(');
    if (open > 0 && description.endsWith(')')) {
        return description.left(open).trimmed();
    }
    return description.trimmed();
}

QColor qColourOf(std::uint32_t value) {
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>(value >> 8 & 0xFF),
                  static_cast<int>(value >> 16 & 0xFF));
}

std::uint32_t valueOf(const QColor& colour) {
    return static_cast<std::uint32_t>(colour.red()) |
           static_cast<std::uint32_t>(colour.green()) << 8 |
           static_cast<std::uint32_t>(colour.blue()) << 16;
}

} // namespace

QStringList qtFilters(const QString& filter) {
    const QStringList parts = filter.split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        filters << bareDescription(parts[i]) + " (" + qtPatterns(parts[i + 1]) + ")";
    }
    return filters;
}

QString clsCommonDialog::selectFolder(QWidget* owner, const QString& prompt) {
    return askFolder(owner, prompt, lastFolder_);
}

std::int32_t clsCommonDialog::getColor(QWidget* owner, std::int32_t /*flags*/,
                                       std::int32_t initialColour) {
    const auto chosen = askColour(owner, static_cast<std::uint32_t>(initialColour) & 0xFFFFFF);
    return chosen ? static_cast<std::int32_t>(*chosen) : -1;
}

clsCommonDialog::FileRequest
clsCommonDialog::requestFor(const QString& title, const QString& filter, const QString& initialFile,
                            std::int32_t flags, std::int32_t filterIndex, FileKind kind) const {
    FileRequest request;
    request.title = title;
    request.filters = qtFilters(filter);
    request.filterIndex =
        std::clamp<int>(filterIndex - 1, 0, std::max<int>(0, int(request.filters.size()) - 1));
    const QFileInfo initial(initialFile);
    const bool exists = !initialFile.isEmpty() && initial.exists();
    request.folder = exists                      ? initial.absolutePath()
                     : kind == FileKind::picture ? pictureFolder()
                                                 : lastFolder_;
    request.initialName = initial.fileName();
    request.flags = flags;
    return request;
}

void clsCommonDialog::remember(FileKind kind, const QString& chosenPath) {
    (kind == FileKind::picture ? pictureFolder_ : lastFolder_) = parentFolder(chosenPath);
}

clsCommonDialog::FileList clsCommonDialog::openFile(QWidget* owner, const QString& title,
                                                    const QString& filter,
                                                    const QString& initialFile, std::int32_t flags,
                                                    std::int32_t filterIndex, FileKind kind) {
    QStringList paths =
        askOpen(owner, requestFor(title, filter, initialFile, flags, filterIndex, kind));
    paths.removeAll(QString());
    FileList list;
    if (paths.isEmpty()) {
        return list;
    }
    remember(kind, paths.front());
    std::sort(paths.begin(), paths.end(), [](const QString& a, const QString& b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    for (qsizetype i = 0; i < paths.size(); ++i) {
        list.emplace(static_cast<std::int32_t>(i), paths[i]);
    }
    return list;
}

QString clsCommonDialog::saveFile(QWidget* owner, const QString& title, const QString& filter,
                                  const QString& initialFile, std::int32_t flags,
                                  std::int32_t filterIndex, FileKind kind) {
    const QString path =
        askSave(owner, requestFor(title, filter, initialFile, flags, filterIndex, kind));
    if (!path.isEmpty()) {
        remember(kind, path);
    }
    return path;
}

namespace {

void prepare(QFileDialog& dialog, const clsCommonDialog::FileRequest& request) {
    dialog.setWindowTitle(request.title);
    dialog.setNameFilters(request.filters);
    if (request.filterIndex < request.filters.size()) {
        dialog.selectNameFilter(request.filters[request.filterIndex]);
    }
    dialog.setDirectory(request.folder);
    if (!request.initialName.isEmpty()) {
        dialog.selectFile(request.initialName);
    }
}

} // namespace

QStringList QtCommonDialog::askOpen(QWidget* owner, const FileRequest& request) {
    QFileDialog dialog(owner);
    prepare(dialog, request);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    const bool many = (request.flags & allowMultiSelect) != 0;
    const bool mustExist = (request.flags & fileMustExist) != 0;
    dialog.setFileMode(many        ? QFileDialog::ExistingFiles
                       : mustExist ? QFileDialog::ExistingFile
                                   : QFileDialog::AnyFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

QString QtCommonDialog::askSave(QWidget* owner, const FileRequest& request) {
    QFileDialog dialog(owner);
    prepare(dialog, request);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, (request.flags & overwritePrompt) == 0);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().front();
}

QString QtCommonDialog::askFolder(QWidget* owner, const QString& prompt, const QString& start) {
    return QFileDialog::getExistingDirectory(owner, prompt, start);
}

std::optional<std::uint32_t> QtCommonDialog::askColour(QWidget* owner, std::uint32_t initial) {
    // Qt's dialog keeps the custom colours for the life of the program.
    const QColor chosen = QColorDialog::getColor(qColourOf(initial), owner);
    if (!chosen.isValid()) {
        return std::nullopt;
    }
    return valueOf(chosen);
}

} // namespace marvek
