#pragma once

#include <QString>

#include <cstdint>
#include <filesystem>

class QComboBox;

namespace marvek {

struct NameList;

// The window services every window shares: filling the drop-down lists from
// folders, opening files with the system, the system's typeface. The packed
// file work lives with the readers, in io/.
class clsUtils {
public:
    explicit clsUtils(std::filesystem::path applicationFolder)
        : applicationFolder_(std::move(applicationFolder)) {}

    // Opens the file with the system's default handler; false when none
    // took it.
    bool shellOpen(const std::filesystem::path& path) const;
    // Gives every window the system's user-interface typeface.
    bool applyDefaultSystemFont() const;
    // Qt registers its controls itself.
    bool initCommonControls() const { return true; }
    std::int32_t getAddressOfFunction(std::int32_t value) const { return value; }

    void comboFonts(QComboBox& list, const QString& select) const;
    void comboConfigs(QComboBox& list, const QString& select) const;
    void comboLevels(QComboBox& list, const std::filesystem::path& folder,
                     const QString& select) const;

private:
    std::filesystem::path applicationFolder_;
};

// Fills the list with the names, selecting the chosen one (none otherwise).
void fillCombo(QComboBox& list, const NameList& names);

} // namespace marvek
