#pragma once

#include "host/ImportBean.h"
#include "host/SoapNode.h"
#include "runtime/export.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace imex::host {

/// What one call of the import service is made of, in the order in which it is given.
struct ServiceRequest {
  std::string_view space;      ///< "urn:ImportExportService" or "urn:UnsecuredImportExportService"
  std::string_view methodName; ///< "importData"
  std::string_view beanType;   ///< "HXImportBean"
  const ImportBean& bean;      ///< valid during the call
  std::string_view address;    ///< of the service
  std::int32_t timeout;        ///< milliseconds; 0 is without limit
  std::string_view userId;     ///< host::CurrentUser::id()
};

/// Calls the host's import service.
class IMEX_EXPORT ServiceCall {
 public:
  virtual ~ServiceCall() = default;

  /// Makes the call, waits for the answer and returns its result element, which keeps its message alive; null where the
  /// answer has none. Failures are RuntimeErrors.
  virtual std::shared_ptr<SoapNode> call(const ServiceRequest& request) = 0;
};

} // namespace imex::host
