#include "app/pictureSaveDialog.h"

#include "app/clsCommonDialog.h"
#include "app/clsMessageBox.h"
#include "app/qtPaths.h"

#include <filesystem>
#include <system_error>

namespace marvek {

QString askPictureSavePath(clsCommonDialog& dialogs, clsMessageBox& messages, QWidget* owner,
                           const PictureSaveRequest& request) {
    // The dialog's own question would be about the name typed, which is not
    // always the file written.
    constexpr auto flags = clsCommonDialog::saveFlags & ~clsCommonDialog::overwritePrompt;
    QString proposed = request.proposedName;
    for (;;) {
        const QString chosen = dialogs.saveFile(owner, request.title, request.filter, proposed,
                                                flags, 1, clsCommonDialog::FileKind::picture);
        if (chosen.isEmpty()) {
            return {};
        }
        const QString written = toQString(request.writtenName(chosen.toStdString()));
        std::error_code error;
        if (!std::filesystem::exists(toPath(written), error) ||
            messages.show(owner, written + " already exists. Do you want to replace it?",
                          messageStyle::yesNoQuestion) == messageAnswer::yes) {
            return written;
        }
        proposed = written;
    }
}

} // namespace marvek
