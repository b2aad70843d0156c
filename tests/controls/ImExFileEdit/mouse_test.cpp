#include "EditorTest.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace imex::test {

namespace {

class ImExFileEditMouse : public EditorTest {
 protected:
  ImExFileEditMouse() { open({"a|b", "c|d", "e|f"}, 2); }

  static Texts mouseDown(int button, int shift) {
    return traced("MSFlexGrid1_MouseDown(Button = " + std::to_string(button) + ", Shift = " + std::to_string(shift) +
                  ")");
  }
};

TEST_F(ImExFileEditMouse, pressInACellEntersIt) {
  pressCell(2, 2);
  EXPECT_EQ((GridCell{2, 2}), cells().current());
  const Texts lines = happened();
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "> editor MSFlexGrid1_EnterCell()"));
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "> editor MSFlexGrid1_LeaveCell()"));
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "> editor MSFlexGrid1_MouseDown(Button = 1, Shift = 0)"));
}

TEST_F(ImExFileEditMouse, pressOnARowNumberMakesItTheCurrentRow) {
  pressCell(1, 2);
  everything();
  pressRowNumber(3);
  EXPECT_EQ((GridCell{3, 2}), cells().current());
  EXPECT_EQ("f", lineText()) << "the edit line goes along";
  EXPECT_EQ(mouseDown(1, 0), happened()) << "nothing is entered or left";
}

TEST_F(ImExFileEditMouse, pressOnTheCornerLeavesTheRow) {
  pressRowNumber(2);
  pressRowNumber(0);
  EXPECT_EQ(2, cells().current().row);
}

TEST_F(ImExFileEditMouse, pressOnARowNumberFindsScrolledRows) {
  Texts lines;
  for (int number = 1; number <= 400; ++number)
    lines.push_back("x" + std::to_string(number) + "|y");
  open(lines, 2);
  cells().setCurrent({400, 1});
  pressRowNumber(399);
  EXPECT_EQ(399, cells().current().row);
  key(Qt::Key_Delete);
  EXPECT_EQ("x400", cell(399, 1));
}

TEST_F(ImExFileEditMouse, buttonAndShiftAreTraced) {
  everything();
  QTest::mouseClick(view().viewport(), Qt::RightButton, Qt::ShiftModifier | Qt::ControlModifier, QPoint(3, 3));
  const Texts lines = happened();
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "> editor MSFlexGrid1_MouseDown(Button = 2, Shift = 3)"));
}

TEST_F(ImExFileEditMouse, doubleClickIsTraced) {
  doubleClickCell(1, 1);
  const Texts lines = happened();
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "> editor MSFlexGrid1_DblClick()"));
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "< editor MSFlexGrid1_DblClick()"));
}

TEST_F(ImExFileEditMouse, doubleClickThatFailsIsShown) {
  editor.loadGridWithErrors(QString(), records({{"a"}}), messages({{1, "bad"}}), 1, 2,
                            std::make_shared<Strings>(Strings{"a", "Comments"}), 124);
  editor.reset();
  FakeMessageBox& boxes = host.messageBox;
  class FailingBox : public host::MessageBox {
   public:
    explicit FailingBox(host::MessageBox& next) : m_next(next) {}
    host::Answer show(std::string_view prompt, int style, std::string_view title) override {
      if (std::exchange(m_fails, false))
        throw RuntimeError(7, "Box", "Out of memory");
      return m_next.show(prompt, style, title);
    }

   private:
    host::MessageBox& m_next;
    bool m_fails = true;
  } box(boxes);
  host.services.messageBox = &box;
  host.install();
  doubleClickCell(1, 2);
  ASSERT_EQ(1U, boxes.boxes.size());
  EXPECT_EQ((Box{"An error has occurred while double-clicking within the row view of the file being edited.", 48,
                 "Error Number: 7 - Out of memory"}),
            boxes.boxes.front());
  EXPECT_EQ(Texts{"! ImExActionCtrl MSFlexGrid1_DblClick 7 Box: Out of memory"}, host.trace->errors());
}

TEST_F(ImExFileEditMouse, failuresOfMovesAndPressesAreShown) {
  const auto failing = [&](const char* procedure, const std::function<void()>& action) {
    host.messageBox.boxes.clear();
    everything();
    const std::string entry = std::string("> editor ") + procedure;
    host.trace->onTrace = [&] {
      if (!host.trace->lines.empty() && host.trace->lines.back().starts_with(entry))
        throw RuntimeError(57, "Log", "Device I/O error");
    };
    action();
    host.trace->onTrace = [] {};
    return host.messageBox.boxes;
  };
  const std::string title = "Error Number: 57 - Device I/O error";
  EXPECT_THAT(failing("MSFlexGrid1_MouseDown", [&] { pressCell(1, 1); }),
              testing::ElementsAre(
                  Box{"An error has occurred while processing the mouse down event within the row view.", 48, title}));
  EXPECT_THAT(
      failing("MSFlexGrid1_EnterCell", [&] { key(Qt::Key_Right); }),
      testing::ElementsAre(Box{"An error has occurred while navigating between cells of the row view.", 48, title}));
  EXPECT_THAT(failing("MSFlexGrid1_LeaveCell", [&] { key(Qt::Key_Left); }),
              testing::ElementsAre(Box{"The requested operation could not be completed.", 48, title}));
}

} // namespace

} // namespace imex::test
