#include "app/clsUtils.h"

#include "app/qtPaths.h"
#include "data/levelConfiguration.h"

#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QFontDatabase>
#include <QUrl>

namespace marvek {

void fillCombo(QComboBox& list, const NameList& names) {
    const QSignalBlocker quiet(list);
    list.clear();
    for (const std::string& name : names.names) {
        list.addItem(toQString(name));
    }
    list.setCurrentIndex(names.selected ? static_cast<int>(*names.selected) : -1);
}

bool clsUtils::shellOpen(const std::filesystem::path& path) const {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(toQString(path)));
}

bool clsUtils::applyDefaultSystemFont() const {
    QApplication::setFont(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    return true;
}

void clsUtils::comboFonts(QComboBox& list, const QString& select) const {
    fillCombo(list, listFonts(applicationFolder_, select.toStdString()));
}

void clsUtils::comboConfigs(QComboBox& list, const QString& select) const {
    fillCombo(list, listConfigurations(applicationFolder_, select.toStdString()));
}

void clsUtils::comboLevels(QComboBox& list, const std::filesystem::path& folder,
                           const QString& select) const {
    fillCombo(list, listLevels(folder, select.toStdString()));
}

} // namespace marvek
