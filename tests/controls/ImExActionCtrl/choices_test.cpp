#include "controls/ImExActionCtrl/choices.h"

#include <gtest/gtest.h>

#include <string>

namespace imex {

namespace {

TEST(ImExActionCtrlChoices, dataTypesHaveTheirCodes) {
  EXPECT_EQ("CUSTOMER", dataTypeCode("Customers"));
  EXPECT_EQ("PRODUCT", dataTypeCode("Products"));
  EXPECT_EQ("INVOICE", dataTypeCode("Invoices"));
  EXPECT_EQ("COMMISSION", dataTypeCode("Commissions"));
  EXPECT_EQ("BALLASTS", dataTypeCode("Ballasts"));
  EXPECT_EQ("PROJECTLINEITEM", dataTypeCode("Project Line Items"));
  EXPECT_EQ("QUOTELINEITEM", dataTypeCode("Quote Line Items"));
  EXPECT_EQ("ORDERLINEITEM", dataTypeCode("Order Line Items"));
}

TEST(ImExActionCtrlChoices, otherTextsHaveNoCode) {
  for (const char* text : {"", "customers", "Customers ", "CUSTOMER", "Agent Format"}) {
    EXPECT_EQ(std::nullopt, dataTypeCode(text)) << text;
  }
  for (const char* text : {"", "AGENT", "agent format", "Customers"}) {
    EXPECT_EQ(std::nullopt, dataOriginCode(text)) << text;
  }
}

TEST(ImExActionCtrlChoices, dataOriginsHaveTheirCodes) {
  EXPECT_EQ("HALVIK", dataOriginCode("Halvik Format"));
  EXPECT_EQ("AGENT", dataOriginCode("Agent Format"));
}

TEST(ImExActionCtrlChoices, delimitersGoByPosition) {
  EXPECT_EQ(std::nullopt, delimiterCode(-1));
  EXPECT_EQ("TAB", delimiterCode(0));
  EXPECT_EQ("PIPE", delimiterCode(1));
  EXPECT_EQ(std::nullopt, delimiterCode(2));
}

TEST(ImExActionCtrlChoices, everyDataTypeIsOfOneKind) {
  for (const Choice& type : kClientToServerTypes) {
    EXPECT_TRUE(isClientToServerType(type.text)) << type.text;
    EXPECT_FALSE(isClientToClientType(type.text)) << type.text;
  }
  for (const Choice& type : kClientToClientTypes) {
    EXPECT_FALSE(isClientToServerType(type.text)) << type.text;
    EXPECT_TRUE(isClientToClientType(type.text)) << type.text;
  }
  EXPECT_FALSE(isClientToServerType(""));
  EXPECT_FALSE(isClientToClientType(""));
}

TEST(ImExActionCtrlChoices, updateNotices) {
  EXPECT_EQ("Customer Code (Keyword) and Sales Persons and Sales Person Commission percents will be updated for "
            "customers in the import which exist in Corvana. ",
            updateNotice("Customers"));
  EXPECT_EQ("Product pricing and commission percents will be updated for products in the import which exist in "
            "Corvana. ",
            updateNotice("Products"));
  EXPECT_EQ("Invoice information will be updated for invoices being imported which already exist in Corvana.",
            updateNotice("Invoices"));
  EXPECT_EQ("Commission information will be updated for commission invoices being imported which already exist in "
            "Corvana.",
            updateNotice("Commissions"));
  for (const char* type : {"Ballasts", "Project Line Items", "Quote Line Items", "Order Line Items", ""}) {
    EXPECT_EQ("", updateNotice(type)) << type;
  }
}

} // namespace

} // namespace imex
