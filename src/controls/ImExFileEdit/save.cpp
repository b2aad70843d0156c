#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/SavedLines.h"
#include "controls/ImExFileEdit/namedFile.h"
#include "controls/ImExFileEdit/savedEncoding.h"
#include "controls/ImExFileEdit/savedLine.h"
#include "host/Application.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "runtime/text.h"

namespace imex {

namespace {

constexpr std::string_view kNoData = "There is no data to save. Please select Cancel instead.";
constexpr std::string_view kSaveFailed =
    "An error has occurred while attempting to save an edited import file. If you have the file open in another "
    "application, close the file within the other application and try to save again.";

void tellOfNoData() {
  const std::string title = host::required(host::services().application).displayName();
  host::required(host::services().messageBox).show(kNoData, host::kInformationStyle, title);
}

} // namespace

/// A host may let the control go when it hears that the file was saved, so nothing comes after that.
void ImExFileEdit::cmdOK_Click() {
  handler("cmdOK_Click", kSaveFailed, [&] {
    if (hasNothingToSave()) {
      tellOfNoData();
      throw LeaveEarly();
    }
    namingFile(m_fileName, [&] { return encodingToSave(); });
    bool isAllowed = true;
    Q_EMIT saving(isAllowed);
    if (!isAllowed)
      throw LeaveEarly();
    namingFile(m_fileName, [&] {
      const Encoding encoding = encodingToSave(); // a host may have changed texts meanwhile
      writeFile(encoding);
      m_encoding = encoding;
    });
    Q_EMIT saved();
  });
}

/// A grid of one record, which is blank in every column, or of none; or one without a column of the file's, whose
/// saving would only empty the file.
bool ImExFileEdit::hasNothingToSave() const {
  constexpr int kOneRecord = 2;
  const host::GridSize size = grid().size();
  if (savedFields() <= 0)
    return true;
  if (size.rows > kOneRecord)
    return false;
  bool hasText = false;
  for (int column = 1; size.rows == kOneRecord && column < size.columns; ++column)
    hasText = hasText || !isBlank(grid().text({1, column}));
  return !hasText;
}

/// Neither the row numbers nor the messages are part of the file.
int ImExFileEdit::savedFields() const {
  return grid().size().columns - (m_isErrorsView ? 2 : 1);
}

/// Error 5 for a character that the file's encoding lacks, before the file is touched.
Encoding ImExFileEdit::encodingToSave() const {
  return savedEncoding({grid(), savedFields(), character(m_delimiterAscii)}, m_encoding);
}

void ImExFileEdit::writeFile(Encoding encoding) const {
  SavedLines lines(grid(), savedFields(), character(m_delimiterAscii));
  ImExModule::OutputFile file(m_fileName, encoding);
  std::string_view line;
  while (lines.next(line))
    file.writeLine(line);
  file.close();
}

} // namespace imex
