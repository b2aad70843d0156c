#include "platform/browser/OwnFolderRequests.h"

#include "platform/browser/documentUrl.h"

#include <QFileInfo>

namespace imex::platform {

namespace {

bool isPart(QWebEngineUrlRequestInfo::ResourceType type) {
  return type == QWebEngineUrlRequestInfo::ResourceTypeImage ||
         type == QWebEngineUrlRequestInfo::ResourceTypeStylesheet ||
         type == QWebEngineUrlRequestInfo::ResourceTypeFontResource;
}

bool isInFolderOf(const QUrl& document, const QUrl& part) {
  if (!document.isLocalFile() || !part.isLocalFile())
    return false;
  const QFileInfo file(part.toLocalFile());
  const QString folder = QFileInfo(document.toLocalFile()).canonicalPath();
  const QString start = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
  return file.isFile() && file.canonicalFilePath().startsWith(start);
}

} // namespace

void OwnFolderRequests::interceptRequest(QWebEngineUrlRequestInfo& request) {
  request.block(!isAllowed(request));
}

bool OwnFolderRequests::isAllowed(const QWebEngineUrlRequestInfo& request) const {
  if (request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame)
    return isSameDocument(m_document, request.requestUrl());
  return isPart(request.resourceType()) && isInFolderOf(m_document, request.requestUrl());
}

} // namespace imex::platform
