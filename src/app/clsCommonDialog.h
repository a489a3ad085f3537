#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <map>
#include <optional>

class QWidget;

namespace marvek {

// The open, save, folder and colour dialogs. Remembers the folder last used,
// so that a file dialog opens where the user last was; what is asked of the
// platform is left to a subclass (Qt's dialogs, or scripted answers).
// Pictures keep a last folder of their own, so that exchanging a picture
// elsewhere does not move the level dialogs away from the data folder.
class clsCommonDialog {
public:
    // Flags of a file dialog that change what it does here.
    static constexpr std::int32_t overwritePrompt = 0x2;
    static constexpr std::int32_t allowMultiSelect = 0x200;
    static constexpr std::int32_t fileMustExist = 0x1000;
    // What the program passes to openFile, and to saveFile.
    static constexpr std::int32_t openFlags = 0x281204;
    static constexpr std::int32_t saveFlags = 0x8006;

    // Chosen paths by their place in the list, sorted ignoring case.
    using FileList = std::map<std::int32_t, QString>;

    // Which last folder a file dialog starts in and moves.
    enum class FileKind { level, picture };

    virtual ~clsCommonDialog() = default;

    const QString& lastFolder() const noexcept { return lastFolder_; }
    void setLastFolder(const QString& folder) { lastFolder_ = folder; }
    // The last folder of the picture dialogs; the level one until a picture
    // dialog chose a file.
    const QString& pictureFolder() const noexcept {
        return pictureFolder_.isEmpty() ? lastFolder_ : pictureFolder_;
    }

    // "" when cancelled. The choice does not become the last folder.
    QString selectFolder(QWidget* owner, const QString& prompt);
    // A colour value (0x00BBGGRR), or -1 when cancelled.
    std::int32_t getColor(QWidget* owner, std::int32_t flags, std::int32_t initialColour);
    // filter: "Description|pattern|Description|pattern". Empty when cancelled.
    FileList openFile(QWidget* owner, const QString& title, const QString& filter,
                      const QString& initialFile, std::int32_t flags, std::int32_t filterIndex,
                      FileKind kind = FileKind::level);
    // "" when cancelled. No extension is added.
    QString saveFile(QWidget* owner, const QString& title, const QString& filter,
                     const QString& initialFile, std::int32_t flags, std::int32_t filterIndex,
                     FileKind kind = FileKind::level);

    // What a file dialog is asked to show.
    struct FileRequest {
        QString title;
        // Qt's form: "Description (*.bmp)".
        QStringList filters;
        // 0-based; within filters.
        int filterIndex = 0;
        QString folder;
        // The initial name without its folder.
        QString initialName;
        std::int32_t flags = 0;
    };

protected:
    clsCommonDialog() = default;
    clsCommonDialog(const clsCommonDialog&) = default;
    clsCommonDialog& operator=(const clsCommonDialog&) = default;

    // Full paths chosen; empty when cancelled.
    virtual QStringList askOpen(QWidget* owner, const FileRequest& request) = 0;
    // The full path chosen; empty when cancelled.
    virtual QString askSave(QWidget* owner, const FileRequest& request) = 0;
    virtual QString askFolder(QWidget* owner, const QString& prompt, const QString& start) = 0;
    virtual std::optional<std::uint32_t> askColour(QWidget* owner, std::uint32_t initial) = 0;

private:
    FileRequest requestFor(const QString& title, const QString& filter, const QString& initialFile,
                           std::int32_t flags, std::int32_t filterIndex, FileKind kind) const;
    void remember(FileKind kind, const QString& chosenPath);

    QString lastFolder_;
    QString pictureFolder_;
};

// "Desc|*.bmp|All files (*.*)|*.*" as Qt's filters; "*.*" matches every
// name, with or without a dot, as it does on the platform it comes from.
QStringList qtFilters(const QString& filter);

class QtCommonDialog final : public clsCommonDialog {
protected:
    QStringList askOpen(QWidget* owner, const FileRequest& request) override;
    QString askSave(QWidget* owner, const FileRequest& request) override;
    QString askFolder(QWidget* owner, const QString& prompt, const QString& start) override;
    std::optional<std::uint32_t> askColour(QWidget* owner, std::uint32_t initial) override;
};

} // namespace marvek
