#pragma once

#include <QUrl>

#include <filesystem>

namespace imex::platform {

/// The URL of a file, by its path in full. Byte for byte, because a file name need not be text: whatever might mean
/// something in an address is written "%XX".
QUrl fileUrl(const std::filesystem::path& path);

} // namespace imex::platform
