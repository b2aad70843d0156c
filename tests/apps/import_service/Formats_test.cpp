#include "import_service/Formats.h"

#include "apps/import_service/requests.h"
#include "import_service/ExitCode.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;

constexpr std::array<const char*, 6> kKeys{"CUSTOMERAGENT", "CUSTOMERHALVIK",  "PRODUCTAGENT",
                                           "INVOICEAGENT",  "COMMISSIONAGENT", "BALLASTSHALVIK"};
constexpr std::array<const char*, 6> kFiles{"formatagentcustomer.dat",   "formathalvikcustomer.dat",
                                            "formatagentproduct.dat",    "formatagentinvoice.dat",
                                            "formatagentcommission.dat", "formathalvikballasts.dat"};

constexpr const char* kColumns =
    R"([{"name": "Code", "maxLength": 10, "required": true, "numeric": false, "key": true},
        {"name": "Größe", "maxLength": 12, "required": false, "numeric": true, "key": false}])";

/// An application directory whose six formats all have the columns "Code" and "Größe".
class FormatsTest : public testing::Test {
 protected:
  FormatsTest() {
    std::string json = "{";
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
      folder.write(std::string("docs/") + kFiles[i], "Code\r\n\r\nGröße\r\n");
      json += (i == 0 ? "\"" : ",\"") + std::string(kKeys[i]) + "\": " + kColumns;
    }
    m_json = json + "}";
    folder.write("docs/columns.json", m_json);
  }

  void change(std::string_view from, std::string_view to) {
    folder.write("docs/columns.json", replaced(m_json, from, to));
  }

  std::string load() {
    try {
      loadFormats(folder.path().string());
      return "";
    } catch (const StartError& error) {
      EXPECT_EQ(error.code(), ExitCode::noInput);
      return error.what();
    }
  }

  std::string complaint(const std::string& what) { return folder / "docs/columns.json" + ": " + what; }

  TemporaryFolder folder;

 private:
  std::string m_json;
};

TEST_F(FormatsTest, theColumnsOfEveryFormat_areRead) {
  const Formats formats = loadFormats(folder.path().string());
  ASSERT_EQ(formats.size(), kKeys.size());
  for (const char* key : kKeys) {
    const Format& format = formats.at(key);
    ASSERT_EQ(format.size(), 2U);
    EXPECT_EQ(format[0].name, "Code");
    EXPECT_EQ(format[0].maxLength, 10U);
    EXPECT_TRUE(format[0].isRequired && format[0].isKey && !format[0].isNumeric);
    EXPECT_EQ(format[1].name, "Größe");
    EXPECT_TRUE(format[1].isNumeric && !format[1].isKey && !format[1].isRequired);
  }
}

TEST_F(FormatsTest, aMissingFile_isNamed) {
  const std::string hint = " (the application directory is the folder that holds docs)";
  std::filesystem::remove(folder / "docs/formatagentinvoice.dat");
  EXPECT_EQ(load(), folder / "docs/formatagentinvoice.dat" + ": File not found" + hint);
  std::filesystem::remove(folder / "docs/columns.json");
  EXPECT_EQ(load(), complaint("File not found" + hint));
  std::filesystem::remove_all(folder / "docs");
  EXPECT_EQ(load(), complaint("Path not found" + hint));
}

TEST_F(FormatsTest, aNameThatDiffers_isShownBesideTheFormatFiles) {
  change("\"Größe\"", "\"Grösse\"");
  EXPECT_EQ(load(), complaint("CUSTOMERAGENT, column 2: the name is \"Grösse\", but the format file has \"Größe\""));
}

TEST_F(FormatsTest, anotherNumberOfColumns_isRefused) {
  folder.write("docs/formatagentproduct.dat", "Code\r\n");
  EXPECT_EQ(load(), complaint("PRODUCTAGENT must be an array of 1 column, as the format file has"));
  folder.write("docs/formatagentproduct.dat", "Code\r\nGröße\r\nMore");
  EXPECT_EQ(load(), complaint("PRODUCTAGENT must be an array of 3 columns, as the format file has"));
}

TEST_F(FormatsTest, aMissingFormat_isNamed) {
  change("\"INVOICEAGENT\"", "\"INVOICEHALVIK\"");
  EXPECT_EQ(load(), complaint("INVOICEAGENT is missing"));
}

TEST_F(FormatsTest, aValueOfTheWrongKind_isNamedWithItsColumn) {
  const std::string column = "CUSTOMERAGENT, column 1: ";
  const std::string length = column + "\"maxLength\" must be a whole number from 1 to 32767";
  for (const char* bad : {": 0", ": 32768", ": -1", ": 1.5", ": \"10\""}) {
    change(": 10", bad);
    EXPECT_EQ(load(), complaint(length)) << bad;
  }
  change(", \"maxLength\": 10", "");
  EXPECT_EQ(load(), complaint(length));
  change("\"required\": true", "\"required\": 1");
  EXPECT_EQ(load(), complaint(column + "\"required\" must be true or false"));
  change("\"numeric\": false, ", "");
  EXPECT_EQ(load(), complaint(column + "\"numeric\" must be true or false"));
  change("\"name\": \"Code\"", "\"name\": 5");
  EXPECT_EQ(load(), complaint(column + "\"name\" must be a text"));
  change("\"required\": true", "\"required\": false");
  EXPECT_EQ(load(), complaint(column + "a key column must be required"));
}

TEST_F(FormatsTest, aFormatWithoutAKey_isRefused) {
  change("\"key\": true", "\"key\": false");
  EXPECT_EQ(load(), complaint("CUSTOMERAGENT has no key column"));
}

TEST_F(FormatsTest, whatIsNoJsonObject_isRefused) {
  folder.write("docs/columns.json", "{");
  EXPECT_EQ(load(), complaint("not valid JSON"));
  folder.write("docs/columns.json", "[]");
  EXPECT_EQ(load(), complaint("not a JSON object"));
  change("[{", "[5, {");
  EXPECT_EQ(load(), complaint("CUSTOMERAGENT must be an array of 2 columns, as the format file has"));
}

TEST(Formats, theInstalledApplicationDirectory_isAccepted) {
  const Formats formats = loadFormats(IMEX_SOURCE_DIR "/share");
  EXPECT_EQ(formats.size(), kKeys.size());
}

} // namespace imex::import_service::test
