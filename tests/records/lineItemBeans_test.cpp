#include "records/ImportOrderLineItemBean.h"
#include "records/ImportProjectLineItemBean.h"
#include "records/ImportQuoteLIneItemBean.h"

#include "support/TestHost.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <type_traits>

namespace imex::test {
namespace {

/// A property by its two accessors, for any of the three classes.
struct Property {
  std::string_view name;
  std::string (LineItemRecord::*read)() const;
  void (LineItemRecord::*write)(std::string);
};

constexpr std::array<Property, 11> kProperties = {{
    {"quantity", &LineItemRecord::quantity, &LineItemRecord::quantity},
    {"AType", &LineItemRecord::AType, &LineItemRecord::AType},
    {"Brand", &LineItemRecord::Brand, &LineItemRecord::Brand},
    {"CatalogNumber", &LineItemRecord::CatalogNumber, &LineItemRecord::CatalogNumber},
    {"Col1x", &LineItemRecord::Col1x, &LineItemRecord::Col1x},
    {"Column1Price", &LineItemRecord::Column1Price, &LineItemRecord::Column1Price},
    {"Column2Price", &LineItemRecord::Column2Price, &LineItemRecord::Column2Price},
    {"Column3Price", &LineItemRecord::Column3Price, &LineItemRecord::Column3Price},
    {"Column1Commission", &LineItemRecord::Column1Commission, &LineItemRecord::Column1Commission},
    {"Column2Commission", &LineItemRecord::Column2Commission, &LineItemRecord::Column2Commission},
    {"Column3Commission", &LineItemRecord::Column3Commission, &LineItemRecord::Column3Commission},
}};

template <class Record>
struct NameOf;
template <>
struct NameOf<ImportProjectLineItemBean> {
  static constexpr std::string_view value = "ImportProjectLineItemBean";
};
template <>
struct NameOf<ImportQuoteLIneItemBean> {
  static constexpr std::string_view value = "ImportQuoteLIneItemBean";
};
template <>
struct NameOf<ImportOrderLineItemBean> {
  static constexpr std::string_view value = "ImportOrderLineItemBean";
};

/// "> ImportOrderLineItemBean Brand()"
template <class Record>
std::string traceLine(char mark, const Property& property) {
  return std::string(1, mark) + " " + std::string(NameOf<Record>::value) + " " + std::string(property.name) + "()";
}

template <class Record>
std::string errorRecord(const Property& property) {
  return "! " + std::string(NameOf<Record>::value) + " " + std::string(property.name) +
         " 1009 TraceLog: The trace is full";
}

template <class Record>
bool isReadTraced(const Property& property) {
  return !(std::is_same_v<Record, ImportQuoteLIneItemBean> && property.name == "Column2Price");
}

std::string read(const LineItemRecord& record, const Property& property) {
  return (record.*property.read)();
}

void write(LineItemRecord& record, const Property& property, std::string value) {
  (record.*property.write)(std::move(value));
}

template <class Record>
class LineItemBeans : public testing::Test {
 protected:
  void failTraces() {
    host.trace->onTrace = [] { throw RuntimeError(1009, "TraceLog", "The trace is full"); };
  }

  TestHost host;
  Record record;
};

struct RecordNames {
  template <class Record>
  static std::string GetName(int) {
    return std::string(NameOf<Record>::value);
  }
};

using Records = testing::Types<ImportProjectLineItemBean, ImportQuoteLIneItemBean, ImportOrderLineItemBean>;
TYPED_TEST_SUITE(LineItemBeans, Records, RecordNames);

static_assert(!std::is_same_v<ImportProjectLineItemBean, ImportQuoteLIneItemBean>);
static_assert(!std::is_same_v<ImportQuoteLIneItemBean, ImportOrderLineItemBean>);
static_assert(!std::is_same_v<ImportProjectLineItemBean, ImportOrderLineItemBean>);
static_assert(!std::is_default_constructible_v<LineItemRecord>);

TYPED_TEST(LineItemBeans, freshRecord_isEmpty) {
  for (const Property& property : kProperties)
    EXPECT_EQ(read(this->record, property), "") << property.name;
}

TYPED_TEST(LineItemBeans, properties_keepTheirOwnTextUnconverted) {
  for (const Property& property : kProperties)
    write(this->record, property, " 1,0é\t" + std::string(property.name));

  for (const Property& property : kProperties)
    EXPECT_EQ(read(this->record, property), " 1,0é\t" + std::string(property.name));
}

TYPED_TEST(LineItemBeans, aSecondText_replacesTheFirst) {
  for (const Property& property : kProperties) {
    write(this->record, property, "first");
    write(this->record, property, "");
    EXPECT_EQ(read(this->record, property), "") << property.name;
  }
}

TYPED_TEST(LineItemBeans, aCopy_hasTextsOfItsOwn) {
  for (const Property& property : kProperties)
    write(this->record, property, "original");
  TypeParam copy = this->record;
  for (const Property& property : kProperties)
    write(copy, property, "copy");

  for (const Property& property : kProperties)
    EXPECT_EQ(read(this->record, property), "original") << property.name;
}

TYPED_TEST(LineItemBeans, everyWrite_isTraced) {
  Texts expected;
  for (const Property& property : kProperties) {
    write(this->record, property, "text");
    expected.push_back(traceLine<TypeParam>('>', property));
    expected.push_back(traceLine<TypeParam>('<', property));
  }

  EXPECT_EQ(this->host.trace->lines, expected);
}

TYPED_TEST(LineItemBeans, everyReadButOneOfQuotes_isTraced) {
  Texts expected;
  for (const Property& property : kProperties) {
    (void)read(this->record, property);
    if (!isReadTraced<TypeParam>(property))
      continue;
    expected.push_back(traceLine<TypeParam>('>', property));
    expected.push_back(traceLine<TypeParam>('<', property));
  }

  EXPECT_EQ(this->host.trace->lines, expected);
}

TYPED_TEST(LineItemBeans, aWriteThatFails_isRecordedAndLeavesTheText) {
  for (const Property& property : kProperties)
    write(this->record, property, "old");
  this->failTraces();
  Texts expected;
  for (const Property& property : kProperties) {
    write(this->record, property, "new");
    expected.push_back(errorRecord<TypeParam>(property));
  }

  this->host.trace->onTrace = [] {};
  EXPECT_EQ(this->host.trace->errors(), expected);
  for (const Property& property : kProperties)
    EXPECT_EQ(read(this->record, property), "old") << property.name;
}

TYPED_TEST(LineItemBeans, aReadThatFails_isRecordedAndGivesTheText) {
  for (const Property& property : kProperties)
    write(this->record, property, std::string(property.name));
  this->failTraces();
  Texts expected;
  for (const Property& property : kProperties) {
    EXPECT_EQ(read(this->record, property), property.name);
    if (isReadTraced<TypeParam>(property))
      expected.push_back(errorRecord<TypeParam>(property));
  }

  EXPECT_EQ(this->host.trace->errors(), expected);
}

TEST(ImportQuoteLIneItemBeanTest, readsOfColumn2Price_leaveNoTrace) {
  const TestHost host;
  ImportQuoteLIneItemBean record;
  record.Column2Price("55.00");

  EXPECT_EQ(record.Column2Price(), "55.00");

  EXPECT_EQ(host.trace->lines,
            (Texts{"> ImportQuoteLIneItemBean Column2Price()", "< ImportQuoteLIneItemBean Column2Price()"}));
}

TEST(ImportQuoteLIneItemBeanTest, readsOfItsOtherPrices_leaveOne) {
  const TestHost host;
  const ImportQuoteLIneItemBean record;

  (void)record.Column1Price();
  (void)record.Column3Price();

  EXPECT_EQ(host.trace->lines,
            (Texts{"> ImportQuoteLIneItemBean Column1Price()", "< ImportQuoteLIneItemBean Column1Price()",
                   "> ImportQuoteLIneItemBean Column3Price()", "< ImportQuoteLIneItemBean Column3Price()"}));
}

} // namespace
} // namespace imex::test
