#pragma once

#include <QString>

#include <functional>
#include <string>
#include <string_view>

class QWidget;

namespace marvek {

class clsCommonDialog;
class clsMessageBox;

// What a picture export asks of the user.
struct PictureSaveRequest {
    QString title;
    // "Desc|pattern|..." as clsCommonDialog takes it.
    QString filter;
    QString proposedName;
    // The name the export really writes for the name chosen (".bmp" added,
    // say); the question about an existing file is about that one.
    std::function<std::string(std::string_view)> writtenName;
};

// The path a picture export may write, or "" when the user cancelled. The
// save dialog starts in the pictures' last folder. An existing file is
// replaced only after the user says yes to replacing it by the name that
// will be written; No brings the dialog back.
QString askPictureSavePath(clsCommonDialog& dialogs, clsMessageBox& messages, QWidget* owner,
                           const PictureSaveRequest& request);

} // namespace marvek
