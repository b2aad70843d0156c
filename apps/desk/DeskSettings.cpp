#include "desk/DeskSettings.h"

#include "controls/common/text.h"
#include "desk/iniText.h"
#include "desk/settingChecks.h"
#include "platform/config/IniFile.h"
#include "platform/files/DiskFiles.h"
#include "runtime/RuntimeError.h"
#include "runtime/address.h"
#include "runtime/encoding.h"
#include "runtime/text.h"
#include "startup/startup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdlib>
#include <utility>

namespace imex::desk {

namespace {

constexpr const char* kSource = "DeskSettings";

std::string loginName() {
  for (const char* variable : {"LOGNAME", "USER"}) {
    if (const char* name = std::getenv(variable); name != nullptr && *name != '\0')
      return name;
  }
  return "agent1";
}

std::string textOf(const platform::IniFile& ini, const char* section, const char* key, std::string otherwise = {}) {
  return ini.value(section, key).value_or(std::move(otherwise));
}

/// The value, once it has passed its check; error 5 where it has not. An address may stand at any key by mistake.
std::string checked(const platform::IniFile& ini, const std::string& path, const char* key,
                    QString (*check)(const QString&), std::string otherwise = {}) {
  std::string value = textOf(ini, "service", key, std::move(otherwise));
  if (const QString wrong = check(toQt(value)); !wrong.isEmpty())
    throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::invalidProcedureCall), kSource,
                       path + ": [service] " + key + " = " + shownAddress(value) + ". " + toCore(wrong));
  return value;
}

bool isTrue(const std::string& value) {
  return equalsIgnoringCase(value, "true") || value == "1";
}

[[noreturn]] void raiseNotSaved(const std::string& path, const QString& why) {
  throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::deviceIoError), kSource,
                     "The settings could not be saved to " + path + ": " + toCore(why));
}

/// The text of the file, in UTF-8 whatever it is in; nothing where there is no file.
std::string readText(const std::string& path) {
  QFile file(toQt(path));
  if (!file.exists())
    return {};
  if (!file.open(QIODevice::ReadOnly))
    raiseNotSaved(path, file.errorString());
  const std::string bytes = file.readAll().toStdString();
  Utf8Validator validator;
  if (validator.feed(bytes) && validator.isComplete())
    return bytes;
  std::string text;
  appendWindows1252(text, bytes);
  return text;
}

/// Replaces the file as a whole or not at all. A new one is for the user alone, because an address may hold a
/// password; an existing one keeps its permissions.
void replaceFile(const std::string& path, const std::string& text) {
  const QDir folder = QFileInfo(toQt(path)).dir();
  if (!folder.mkpath(QStringLiteral(".")))
    raiseNotSaved(path, QStringLiteral("The folder cannot be made"));
  const bool isNew = !QFile::exists(toQt(path));
  QSaveFile file(toQt(path));
  const auto size = static_cast<qint64>(text.size());
  if (!file.open(QIODevice::WriteOnly) ||
      (isNew && !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)) ||
      file.write(text.data(), size) != size || !file.commit())
    raiseNotSaved(path, file.errorString());
}

std::vector<IniSetting> settingsOf(const SettingValues& values) {
  return {
      {"service", "secured", values.secured},
      {"service", "unsecured", values.unsecured},
      {"service", "timeout", std::to_string(values.timeout)},
      {"service", "proxyPort", values.proxyPort},
      {"user", "name", values.userName},
      {"user", "id", values.userId},
      {"server", "central", values.isCentralServer ? "true" : "false"},
  };
}

} // namespace

DeskSettings::DeskSettings(std::string iniFile, std::string applicationDirectory, std::string sampleDirectory)
    : m_iniFile(std::move(iniFile)), m_givenDirectory(std::move(applicationDirectory)),
      m_sampleDirectory(std::move(sampleDirectory)) {
  m_values.userName = loginName();
  m_values.userId = loginName();
}

void DeskSettings::load() {
  platform::DiskFiles files;
  const platform::IniFile ini = platform::IniFile::read(files, m_iniFile);
  m_values = valuesOf(ini);
  m_directory = absolutePath(textOf(ini, "application", "directory"));
  m_title = textOf(ini, "application", "title", m_title);
  m_traceFile = absolutePath(textOf(ini, "trace", "file"));
}

SettingValues DeskSettings::valuesOf(const platform::IniFile& ini) const {
  const SettingValues defaults;
  SettingValues values;
  values.secured = checked(ini, m_iniFile, "secured", checkAddress);
  values.unsecured = checked(ini, m_iniFile, "unsecured", checkAddress);
  values.timeout = std::stoi(checked(ini, m_iniFile, "timeout", checkTimeout, std::to_string(defaults.timeout)));
  values.proxyPort = checked(ini, m_iniFile, "proxyPort", checkPort);
  values.userName = textOf(ini, "user", "name", loginName());
  values.userId = textOf(ini, "user", "id", loginName());
  values.isCentralServer = isTrue(textOf(ini, "server", "central"));
  return values;
}

void DeskSettings::save(const SettingValues& values) {
  replaceFile(m_iniFile, withSettings(readText(m_iniFile), settingsOf(values)));
  m_values = values;
}

std::string DeskSettings::securedAddress() const {
  return m_values.secured.empty() && m_localService ? m_localService->secured : m_values.secured;
}

std::string DeskSettings::unsecuredAddress() const {
  return m_values.unsecured.empty() && m_localService ? m_localService->unsecured : m_values.unsecured;
}

/// The service on this machine is reached directly.
std::string DeskSettings::proxyPort() const {
  return m_localService && m_values.secured.empty() ? std::string() : m_values.proxyPort;
}

std::string DeskSettings::path() const {
  if (!m_givenDirectory.empty())
    return m_givenDirectory;
  return m_directory.empty() ? m_sampleDirectory : m_directory;
}

} // namespace imex::desk
