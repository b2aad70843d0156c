#pragma once

#include "desk/DeskSettings.h"

#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <array>

namespace imex::desk {

/// Asks for the settings. What is typed is checked at once: what is wrong with it is said beside the field, and there
/// is no OK until everything is right. OK saves; where that fails the user is told why, and the dialog stays as it is.
class SettingsDialog : public QDialog {
  Q_OBJECT

 public:
  /// `settings` outlives the dialog.
  explicit SettingsDialog(DeskSettings& settings, QWidget* parent = nullptr);

  void accept() override;

 private:
  /// A line edit with what stands beside it: what may be typed, or what is wrong.
  struct Field {
    QLineEdit* edit;
    QLabel* remark;
    QString hint;
    QString (*check)(const QString&);
  };

  Field addField(const QString& label, const char* name, const QString& hint, QString (*check)(const QString&));
  void addButtons();
  void fill(const SettingValues& values);
  SettingValues values() const;
  void checkFields();

  DeskSettings& m_settings;
  QGridLayout* m_grid;
  Field m_secured;
  Field m_unsecured;
  Field m_proxyPort;
  Field m_timeout;
  Field m_userName;
  Field m_userId;
  QCheckBox* m_isCentral;
  QPushButton* m_ok;
};

} // namespace imex::desk
