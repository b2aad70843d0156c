#include "controls/ImExActionCtrl/ImExActionCtrl.h"

#include "controls/common/DropDownList.h"
#include "ui_ImExActionCtrl.h"

namespace imex {

QString ImExActionCtrl::SelectedData() const {
  return hostCalled("SelectedData", [&] { return toQt(request().SelectedData()); });
}

void ImExActionCtrl::SelectedData(const QString& value) {
  hostCalled("SelectedData", [&] { request().SelectedData(toCore(value)); });
}

QString ImExActionCtrl::ImportExport() const {
  return hostCalled("ImportExport", [&] { return toQt(request().ImportExport()); });
}

void ImExActionCtrl::ImportExport(const QString& value) {
  hostCalled("ImportExport", [&] { request().ImportExport(toCore(value)); });
}

/// Like DataOrigin, a read that trace readers do not expect to see: an error alone is recorded.
QString ImExActionCtrl::DataType() const {
  return guardedIn(
      *this, classLabels("DataType"), [&] { return toQt(request().DataType()); }, Reraise{});
}

void ImExActionCtrl::DataType(const QString& value) {
  hostCalled("DataType", [&] { request().DataType(toCore(value)); });
}

QString ImExActionCtrl::Schedule() const {
  return hostCalled("Schedule", [&] { return toQt(request().Schedule()); });
}

void ImExActionCtrl::Schedule(const QString& value) {
  hostCalled("Schedule", [&] { request().Schedule(toCore(value)); });
}

QString ImExActionCtrl::DataOrigin() const {
  return guardedIn(
      *this, classLabels("DataOrigin"), [&] { return toQt(request().DataOrigin()); }, Reraise{});
}

void ImExActionCtrl::DataOrigin(const QString& value) {
  hostCalled("DataOrigin", [&] { request().DataOrigin(toCore(value)); });
}

QString ImExActionCtrl::Requestor() const {
  return hostCalled("Requestor", [&] { return toQt(request().Requestor()); });
}

void ImExActionCtrl::Requestor(const QString& value) {
  hostCalled("Requestor", [&] { request().Requestor(toCore(value)); });
}

QString ImExActionCtrl::CheckedFileName() const {
  return hostCalled("CheckedFileName", [&] { return toQt(request().CheckedFileName()); });
}

void ImExActionCtrl::CheckedFileName(const QString& value) {
  hostCalled("CheckedFileName", [&] { request().CheckedFileName(toCore(value)); });
}

Boolean ImExActionCtrl::LoginReqd() const {
  return hostCalled("LoginReqd", [&] { return request().LoginReqd(); });
}

void ImExActionCtrl::LoginReqd(Boolean value) {
  hostCalled("LoginReqd", [&] { request().LoginReqd(value); });
}

// --- Choices that the host fixes ------------------------------------------------------------------------------------

void ImExActionCtrl::fixDataType(Integer index) {
  (void)request();
  m_ui->cmbDataType->setListIndex(index);
  m_ui->cmbDataType->setLocked(true);
  m_ui->cmbDataType->setEnabled(false);
}

/// Runs the click handler once more than the new index does.
void ImExActionCtrl::setDataType(Integer index) {
  hostCalled("setDataType", [&] {
    fixDataType(index);
    cmbDataType_Click();
  });
}

void ImExActionCtrl::RestrictedDataType(Integer index) {
  hostCalled("RestrictedDataType", [&] {
    fixDataType(index);
    if (index != 0)
      m_ui->cmbDataOrigin->setEnabled(false);
    m_ui->cmbImportExport->setEnabled(false);
    m_ui->cmbSchedule->setEnabled(false);
  });
}

QVariant ImExActionCtrl::RestrictedDataType() const {
  return hostCalled("RestrictedDataType", [] { return QVariant(); });
}

/// Neither this nor the read is traced, and their errors go straight to the host.
void ImExActionCtrl::RestrictDataOrigin(std::int32_t index) {
  m_restrictedOrigin = index;
  (void)request();
  m_ui->cmbDataOrigin->setListIndex(index);
}

QVariant ImExActionCtrl::RestrictDataOrigin() {
  DataOrigin(QString::number(m_restrictedOrigin));
  return {};
}

} // namespace imex
