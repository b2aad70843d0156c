#include "desk/SettingsDialog.h"

#include "controls/common/text.h"
#include "desk/panels.h"
#include "desk/settingChecks.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

namespace imex::desk {

namespace {

constexpr int kAddressWidth = 44; // characters
constexpr int kRemarkWidth = 34;

QString allowAnything(const QString& /*text*/) {
  return {};
}

/// Red that can be read on the background.
QColor warningColour(const QPalette& palette) {
  const bool isDark = palette.color(QPalette::Window).lightness() < 128;
  return isDark ? QColor(255, 138, 128) : QColor(176, 0, 32);
}

/// Shows what is wrong, or else the hint.
void showRemark(QLabel& label, const QString& wrong, const QString& hint) {
  QPalette palette = label.parentWidget()->palette();
  palette.setColor(QPalette::WindowText,
                   wrong.isEmpty() ? palette.color(QPalette::PlaceholderText) : warningColour(palette));
  label.setPalette(palette);
  label.setText(wrong.isEmpty() ? hint : wrong);
}

} // namespace

SettingsDialog::SettingsDialog(DeskSettings& settings, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_grid(new QGridLayout) {
  setWindowTitle(QStringLiteral("Settings"));
  const QString none = QStringLiteral("Empty: no service is set");
  m_secured = addField(QStringLiteral("&Import service:"), "secured", none, checkAddress);
  m_unsecured = addField(QStringLiteral("Service for &ballasts:"), "unsecured", none, checkAddress);
  m_proxyPort = addField(QStringLiteral("&Proxy port:"), "proxyPort", QStringLiteral("Empty: no proxy"), checkPort);
  m_timeout =
      addField(QStringLiteral("&Time-out:"), "timeout", QStringLiteral("Milliseconds; 0: no limit"), checkTimeout);
  m_userName = addField(QStringLiteral("User &name:"), "userName", {}, allowAnything);
  m_userId = addField(QStringLiteral("&User identifier:"), "userId", QStringLiteral("By which the service knows you"),
                      allowAnything);
  m_isCentral = new QCheckBox(QStringLiteral("This is the &central server"));
  m_isCentral->setObjectName(QStringLiteral("isCentral"));
  m_grid->addWidget(m_isCentral, m_grid->rowCount(), 1);
  m_grid->setColumnStretch(1, 1);
  m_grid->setColumnMinimumWidth(2, kRemarkWidth * fontMetrics().averageCharWidth());
  new QVBoxLayout(this);
  static_cast<QVBoxLayout*>(layout())->addLayout(m_grid);
  addButtons();
  fill(settings.values());
}

SettingsDialog::Field SettingsDialog::addField(const QString& label, const char* name, const QString& hint,
                                               QString (*check)(const QString&)) {
  const Field field{new QLineEdit, new QLabel, hint, check};
  field.edit->setObjectName(QString::fromLatin1(name));
  field.edit->setMinimumWidth(kAddressWidth * fontMetrics().averageCharWidth());
  field.remark->setObjectName(field.edit->objectName() + QStringLiteral("Remark"));
  field.remark->setWordWrap(true);
  auto* caption = new QLabel(label);
  caption->setBuddy(field.edit);
  field.edit->setAccessibleName(QString(label).remove(u'&').remove(u':'));
  const int row = m_grid->rowCount();
  m_grid->addWidget(caption, row, 0);
  m_grid->addWidget(field.edit, row, 1);
  m_grid->addWidget(field.remark, row, 2);
  connect(field.edit, &QLineEdit::textChanged, this, &SettingsDialog::checkFields);
  return field;
}

void SettingsDialog::addButtons() {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  m_ok = buttons->button(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout()->addWidget(buttons);
}

void SettingsDialog::fill(const SettingValues& values) {
  m_secured.edit->setText(toQt(values.secured));
  m_unsecured.edit->setText(toQt(values.unsecured));
  m_proxyPort.edit->setText(toQt(values.proxyPort));
  m_timeout.edit->setText(QString::number(values.timeout));
  m_userName.edit->setText(toQt(values.userName));
  m_userId.edit->setText(toQt(values.userId));
  m_isCentral->setChecked(values.isCentralServer);
  checkFields();
}

SettingValues SettingsDialog::values() const {
  return {toCore(m_secured.edit->text()),   toCore(m_unsecured.edit->text()), m_timeout.edit->text().toInt(),
          toCore(m_proxyPort.edit->text()), toCore(m_userName.edit->text()),  toCore(m_userId.edit->text()),
          m_isCentral->isChecked()};
}

void SettingsDialog::checkFields() {
  bool isRight = true;
  for (const Field* field : {&m_secured, &m_unsecured, &m_proxyPort, &m_timeout, &m_userName, &m_userId}) {
    const QString wrong = field->check(field->edit->text());
    showRemark(*field->remark, wrong, field->hint);
    field->edit->setAccessibleDescription(field->remark->text());
    isRight = isRight && wrong.isEmpty();
  }
  m_ok->setEnabled(isRight);
}

void SettingsDialog::accept() {
  try {
    m_settings.save(values());
    QDialog::accept();
  } catch (const RuntimeError& error) {
    showError(error);
  }
}

} // namespace imex::desk
