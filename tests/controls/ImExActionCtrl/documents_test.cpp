#include "controls/ImExActionCtrl/documents.h"

#include <gtest/gtest.h>

namespace imex {

namespace {

TEST(ImExActionCtrlDocuments, newFileIsNamedAfterTheMinute) {
  EXPECT_EQ("070320241405.txt", newFileName({2024, 7, 3, 14, 5}));
  EXPECT_EQ("123120252359.txt", newFileName({2025, 12, 31, 23, 59}));
  EXPECT_EQ("010120260000.txt", newFileName({2026, 1, 1, 0, 0}));
}

TEST(ImExActionCtrlDocuments, documentationPathKeepsTheCaseOfItsPrefix) {
  EXPECT_EQ("/opt/imex\\docs\\SPECCUSTOMERAGENT.html",
            documentationPath("/opt/imex", kSpecificationPrefix, "CUSTOMER", "AGENT"));
  EXPECT_EQ("C:\\ImEx\\docs\\specBALLASTSHALVIK.html",
            documentationPath("C:\\ImEx", kMoreInformationPrefix, "BALLASTS", "HALVIK"));
  EXPECT_EQ("\\docs\\SPEC.html", documentationPath("", kSpecificationPrefix, "", ""));
}

TEST(ImExActionCtrlDocuments, templateIsOneLineOfNamesBetweenTabs) {
  EXPECT_EQ("", templateLine({}));
  EXPECT_EQ("Code", templateLine({"Code"}));
  EXPECT_EQ("Code\tFirm Name\tZip", templateLine({"Code", "Firm Name", "Zip"}));
  EXPECT_EQ("\t \t", templateLine({"", " ", ""}));
}

} // namespace

} // namespace imex
