#pragma once

#include <QUrl>

#include <string_view>

namespace imex::platform {

/// The URL of a document that host::Browser::navigate() is given, with the errors that are promised there. What starts
/// like no address is a path: "C:\docs\page.html", "page #1 100%.html", and "javascript:alert(1)" too. The URL of a
/// file has the file's real folder in it, so that nothing is left for a browser to resolve.
QUrl documentUrl(std::string_view address);

/// Whether this is a document of the file system or the empty page, which are looked at only.
bool isLookedAtOnly(const QUrl& document);

/// Whether two URLs are of one document, at whatever place in it.
bool isSameDocument(const QUrl& a, const QUrl& b);

} // namespace imex::platform
