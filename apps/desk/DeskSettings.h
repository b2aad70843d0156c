#pragma once

#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/Settings.h"

#include <cstdint>
#include <optional>
#include <string>

namespace imex::platform {
class IniFile;
}

namespace imex::desk {

/// What the user sets in the settings dialog.
struct SettingValues {
  std::string secured;           ///< empty: no service is set
  std::string unsecured;         ///< the service for ballasts
  std::int32_t timeout = 30'000; ///< milliseconds; 0 is without limit
  std::string proxyPort;         ///< empty: no proxy
  std::string userName;
  std::string userId;
  bool isCentralServer = false;

  friend bool operator==(const SettingValues&, const SettingValues&) = default;
};

/// Two addresses of an import service.
struct ServiceAddresses {
  std::string secured;
  std::string unsecured;
};

/// The settings of the program, kept in an INI file, as the component asks for them: afresh at each use, so that a
/// change takes effect with the next import. Values that the file does not have are those of SettingValues, and the
/// user's name and identifier are then the user's login name.
class DeskSettings : public host::Settings, public host::Application, public host::CurrentUser {
 public:
  /// Nothing is read yet. `iniFile` need not exist; `applicationDirectory`, where it is not empty, stands over the one
  /// of the file, and `sampleDirectory` is taken where there is neither.
  DeskSettings(std::string iniFile, std::string applicationDirectory, std::string sampleDirectory);

  const std::string& iniFile() const { return m_iniFile; }

  /// Reads the file. Fails with an error that names the file and leaves everything as it was: error 5 for a line or a
  /// value that cannot be understood, else an error of the file system.
  void load();

  /// Sets the values and writes the file anew; comments and settings of others in it stay. Fails with an error that
  /// names the file; the file and the values in use are then what they were.
  void save(const SettingValues& values);

  const SettingValues& values() const { return m_values; }
  const std::string& traceFile() const { return m_traceFile; } ///< absolute; empty: nothing is traced

  /// Takes the place of addresses that are not set, until the program ends; nothing takes it back.
  void useLocalService(std::optional<ServiceAddresses> addresses) { m_localService = std::move(addresses); }

  // As the component sees them.
  std::string securedAddress() const override;
  std::string unsecuredAddress() const override;
  std::int32_t timeout() const override { return m_values.timeout; }
  std::string proxyPort() const override;
  std::string installationDirectory() const override { return path(); }
  std::string path() const override;
  std::string displayName() const override { return m_title; } // "Corvana" by default
  std::string name() const override { return m_values.userName; }
  std::string id() const override { return m_values.userId; }

 private:
  SettingValues valuesOf(const platform::IniFile& ini) const;

  std::string m_iniFile;
  std::string m_givenDirectory;
  std::string m_sampleDirectory;
  std::string m_directory; ///< of the file
  std::string m_title = "Corvana";
  std::string m_traceFile;
  SettingValues m_values;
  std::optional<ServiceAddresses> m_localService;
};

} // namespace imex::desk
