#pragma once

#include <QString>

#include <filesystem>
#include <string>

namespace marvek {

// Paths and texts cross between Qt and the core as UTF-8.
inline std::filesystem::path toPath(const QString& text) {
    return std::filesystem::path(text.toStdString());
}

inline QString toQString(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

inline QString toQString(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace marvek
