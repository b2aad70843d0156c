#include "PanelTest.h"

namespace imex::test {

namespace {

/// A member of the panel as a host calls it.
struct Member {
  const char* name;
  std::function<void(ImExActionCtrl&)> call;
  bool isTraced = true;
};

const std::string kText = "Ann";

const std::vector<Member>& members() {
  static const QString value = toQt(kText);
  static const std::vector<Member> all = {
      {"setDataType", [](auto& p) { p.setDataType(0); }},
      {"SelectedData", [](auto& p) { (void)p.SelectedData(); }},
      {"SelectedData", [](auto& p) { p.SelectedData(value); }},
      {"ImportExport", [](auto& p) { (void)p.ImportExport(); }},
      {"ImportExport", [](auto& p) { p.ImportExport(value); }},
      {"DataType", [](auto& p) { (void)p.DataType(); }, false},
      {"DataType", [](auto& p) { p.DataType(value); }},
      {"RestrictedDataType", [](auto& p) { p.RestrictedDataType(0); }},
      {"Schedule", [](auto& p) { (void)p.Schedule(); }},
      {"Schedule", [](auto& p) { p.Schedule(value); }},
      {"DataOrigin", [](auto& p) { (void)p.DataOrigin(); }, false},
      {"DataOrigin", [](auto& p) { p.DataOrigin(value); }},
      {"Requestor", [](auto& p) { (void)p.Requestor(); }},
      {"Requestor", [](auto& p) { p.Requestor(value); }},
      {"CheckedFileName", [](auto& p) { (void)p.CheckedFileName(); }},
      {"CheckedFileName", [](auto& p) { p.CheckedFileName(value); }},
      {"LoginReqd", [](auto& p) { (void)p.LoginReqd(); }},
      {"LoginReqd", [](auto& p) { p.LoginReqd(true); }},
  };
  return all;
}

class ImExActionCtrlProperties : public PanelTest {};

TEST_F(ImExActionCtrlProperties, beforeAModeCallEveryOneFails) {
  for (const Member& member : members()) {
    const std::optional<RuntimeError> error = raised([&] { member.call(panel); });
    ASSERT_TRUE(error) << member.name;
    EXPECT_EQ(91, error->number()) << member.name;
    EXPECT_EQ("Object variable not set", error->description());
    Texts expected;
    if (member.isTraced)
      expected.push_back("> panel " + std::string(member.name) + "()");
    expected.push_back("! ImExActionCtrl " + std::string(member.name) + " 91 ImExActionCtrl: Object variable not set");
    EXPECT_EQ(expected, everything()) << member.name;
  }
}

TEST_F(ImExActionCtrlProperties, beforeAModeCallTheRestrictedOriginFailsUntraced) {
  EXPECT_EQ(91, raisedNumber([&] { panel.RestrictDataOrigin(1); }));
  EXPECT_EQ(Texts{}, everything());
  EXPECT_EQ(91, raisedNumber([&] { (void)panel.RestrictDataOrigin(); }));
  EXPECT_EQ((Texts{"> panel DataOrigin()", "! ImExActionCtrl DataOrigin 91 ImExActionCtrl: Object variable not set"}),
            everything());
}

TEST_F(ImExActionCtrlProperties, restrictedDataTypeReadsEmptyAlsoBeforeAModeCall) {
  EXPECT_FALSE(panel.RestrictedDataType().isValid());
  EXPECT_EQ(plain("RestrictedDataType"), everything());
}

TEST_F(ImExActionCtrlProperties, membersAreTracedAndGuarded) {
  panel.initializeClientToServer();
  for (const Member& member : members()) {
    everything();
    member.call(panel);
    const Texts lines = happened();
    const std::string name = member.name;
    if (name == "setDataType" || name == "RestrictedDataType")
      continue; // below
    const bool isRead = !member.isTraced;
    Texts traces;
    for (const std::string& line : lines) {
      if (line[0] != '!')
        traces.push_back(line);
    }
    EXPECT_EQ(isRead ? Texts{} : plain(name), traces) << name;
  }
}

TEST_F(ImExActionCtrlProperties, valuesGoToTheRequestAndBack) {
  panel.initializeClientToServer();
  panel.SelectedData(QStringLiteral("Größe"));
  panel.ImportExport(QStringLiteral("EXPORT"));
  panel.DataType(QStringLiteral("PRODUCT"));
  panel.Schedule(QStringLiteral("LATER"));
  panel.DataOrigin(QStringLiteral("AGENT"));
  panel.Requestor(QStringLiteral("Ann Agent"));
  panel.CheckedFileName(QStringLiteral("/tmp/a b.txt"));
  panel.LoginReqd(true);
  EXPECT_EQ(QStringLiteral("Größe"), panel.SelectedData());
  EXPECT_EQ(QStringLiteral("EXPORT"), panel.ImportExport());
  EXPECT_EQ(QStringLiteral("PRODUCT"), panel.DataType());
  EXPECT_EQ(QStringLiteral("LATER"), panel.Schedule());
  EXPECT_EQ(QStringLiteral("AGENT"), panel.DataOrigin());
  EXPECT_EQ(QStringLiteral("Ann Agent"), panel.Requestor());
  EXPECT_EQ(QStringLiteral("/tmp/a b.txt"), panel.CheckedFileName());
  EXPECT_TRUE(panel.LoginReqd());
  panel.LoginReqd(false);
  EXPECT_FALSE(panel.LoginReqd());
}

TEST_F(ImExActionCtrlProperties, errorReachesTheHostAsItWasCaught) {
  panel.initializeClientToServer();
  bool fails = true;
  host.trace->onTrace = [&] {
    if (std::exchange(fails, false))
      throw RuntimeError(1234, "log", "the log is full");
  };
  const std::optional<RuntimeError> error = raised([&] { panel.Requestor(QStringLiteral("Ann")); });
  ASSERT_TRUE(error);
  EXPECT_EQ(1234, error->number());
  EXPECT_EQ("log", error->source());
  EXPECT_EQ("the log is full", error->description());
}

TEST_F(ImExActionCtrlProperties, errorNumberPast16BitsEscapesAsOverflow) {
  panel.initializeClientToServer();
  bool fails = true;
  host.trace->onTrace = [&] {
    if (std::exchange(fails, false))
      throw RuntimeError(-2147467259, "log", "unspecified");
  };
  EXPECT_EQ(6, raisedNumber([&] { panel.Requestor(QStringLiteral("Ann")); }));
}

// --- Choices that the host fixes ------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlProperties, setDataTypeRunsTheClickHandlerTwice) {
  panel.initializeClientToClient();
  happened();
  panel.setDataType(1);
  EXPECT_EQ(Texts{"> panel setDataType()"} + plain("cmbDataType_Click") + plain("cmbDataType_Click") +
                lines("< panel setDataType()"),
            happened());
  EXPECT_EQ(QStringLiteral("QUOTELINEITEM"), panel.DataType());
  EXPECT_EQ(QStringLiteral("Quote Line Items"), list("cmbDataType").currentText());
  EXPECT_TRUE(list("cmbDataType").isLocked());
  EXPECT_FALSE(list("cmbDataType").isEnabled());
}

TEST_F(ImExActionCtrlProperties, indexOutsideTheListIsRefusedBeforeAnythingIsFixed) {
  panel.initializeClientToClient();
  for (const int index : {3, -2, 32767}) {
    happened();
    EXPECT_EQ(9, raisedNumber([&] { panel.setDataType(index); })) << index;
    EXPECT_EQ((Texts{"> panel setDataType()", "! ImExActionCtrl setDataType 9 DropDownList: Subscript out of range"}),
              happened());
    EXPECT_EQ(9, raisedNumber([&] { panel.RestrictedDataType(index); })) << index;
  }
  EXPECT_FALSE(list("cmbDataType").isLocked());
  EXPECT_TRUE(list("cmbDataType").isEnabled());
}

TEST_F(ImExActionCtrlProperties, indexMinusOneChoosesNothing) {
  panel.initializeClientToServer();
  panel.setDataType(-1);
  EXPECT_EQ(-1, list("cmbDataType").listIndex());
  EXPECT_EQ(QStringLiteral("CUSTOMER"), panel.DataType());
}

TEST_F(ImExActionCtrlProperties, restrictedDataTypeZeroLeavesTheFormatOpen) {
  panel.initializeClientToServer();
  happened();
  panel.RestrictedDataType(0);
  EXPECT_EQ(Texts{"> panel RestrictedDataType()"} + plain("cmbDataType_Click") + lines("< panel RestrictedDataType()"),
            happened());
  EXPECT_TRUE(list("cmbDataType").isLocked());
  EXPECT_FALSE(list("cmbDataType").isEnabled());
  EXPECT_TRUE(list("cmbDataOrigin").isEnabled());
  EXPECT_FALSE(list("cmbImportExport").isEnabled());
  EXPECT_FALSE(list("cmbSchedule").isEnabled());
}

TEST_F(ImExActionCtrlProperties, restrictedDataTypeOtherThanZeroFixesTheFormatToo) {
  for (const int index : {1, 2, 3, 4, -1}) {
    ImExActionCtrl other;
    other.initializeClientToServer();
    other.RestrictedDataType(index);
    EXPECT_FALSE(other.findChild<QWidget*>(QStringLiteral("cmbDataOrigin"))->isEnabled()) << index;
  }
}

TEST_F(ImExActionCtrlProperties, restrictDataOriginChoosesTheFormat) {
  panel.initializeClientToServer();
  everything();
  panel.RestrictDataOrigin(0);
  EXPECT_EQ(Texts{}, everything());
  EXPECT_EQ(QStringLiteral("HALVIK"), panel.DataOrigin());
  EXPECT_EQ(QStringLiteral("Halvik Format"), list("cmbDataOrigin").currentText());
}

TEST_F(ImExActionCtrlProperties, readingRestrictDataOriginWritesTheIndexIntoTheRequest) {
  panel.initializeClientToServer();
  panel.RestrictDataOrigin(1);
  EXPECT_EQ(QStringLiteral("AGENT"), panel.DataOrigin());
  everything();
  EXPECT_FALSE(panel.RestrictDataOrigin().isValid());
  EXPECT_EQ(plain("DataOrigin"), everything());
  EXPECT_EQ(QStringLiteral("1"), panel.DataOrigin());
}

TEST_F(ImExActionCtrlProperties, restrictedOriginIsZeroUntilItIsWritten) {
  panel.initializeClientToServer();
  (void)panel.RestrictDataOrigin();
  EXPECT_EQ(QStringLiteral("0"), panel.DataOrigin());
}

TEST_F(ImExActionCtrlProperties, refusedRestrictedOriginIsKeptAllTheSame) {
  panel.initializeClientToServer();
  everything();
  EXPECT_EQ(9, raisedNumber([&] { panel.RestrictDataOrigin(100000); }));
  EXPECT_EQ(Texts{}, everything());
  (void)panel.RestrictDataOrigin();
  EXPECT_EQ(QStringLiteral("100000"), panel.DataOrigin());
}

} // namespace

} // namespace imex::test
