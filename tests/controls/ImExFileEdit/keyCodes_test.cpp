#include "controls/ImExFileEdit/keyCodes.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <vector>

namespace imex::test {

namespace {

struct Key {
  int key;
  QString text = {};
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

QKeyEvent event(const Key& key, QEvent::Type type = QEvent::KeyPress) {
  return {type, key.key, key.modifiers, key.text};
}

KeyStroke pressed(const Key& key) {
  return keyStroke(event(key));
}

KeyStroke released(const Key& key) {
  return keyStroke(event(key, QEvent::KeyRelease));
}

TEST(KeyCodes, lettersAndDigitsAreTheirCharacters) {
  EXPECT_EQ((KeyStroke{'A', 0}), pressed({Qt::Key_A, QStringLiteral("a")}));
  EXPECT_EQ((KeyStroke{'Z', 1}), pressed({Qt::Key_Z, QStringLiteral("Z"), Qt::ShiftModifier}));
  EXPECT_EQ((KeyStroke{'0', 0}), pressed({Qt::Key_0, QStringLiteral("0")}));
  EXPECT_EQ((KeyStroke{'9', 0}), pressed({Qt::Key_9, QStringLiteral("9")}));
}

TEST(KeyCodes, keysWithNamesHaveTheCodesOfThePlatform) {
  const std::vector<std::pair<int, int>> keys = {
      {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Return, 13}, {Qt::Key_Enter, 13},
      {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27}, {Qt::Key_Space, 32},
      {Qt::Key_PageUp, 33},   {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},    {Qt::Key_Home, 36},
      {Qt::Key_Left, 37},     {Qt::Key_Up, 38},       {Qt::Key_Right, 39},  {Qt::Key_Down, 40},
      {Qt::Key_Insert, 45},   {Qt::Key_Delete, 46},   {Qt::Key_F1, 112},    {Qt::Key_F12, 123},
      {Qt::Key_F24, 135},     {Qt::Key_NumLock, 144}, {Qt::Key_unknown, 0}};
  for (const auto& [key, code] : keys) {
    EXPECT_EQ((KeyStroke{code, 0}), pressed({key})) << key;
  }
}

TEST(KeyCodes, signsAreTheKeysOfAnAmericanKeyboard) {
  const std::vector<std::pair<int, int>> keys = {
      {Qt::Key_Exclam, '1'},     {Qt::Key_ParenRight, '0'},  {Qt::Key_Semicolon, 186}, {Qt::Key_Colon, 186},
      {Qt::Key_Equal, 187},      {Qt::Key_Plus, 187},        {Qt::Key_Comma, 188},     {Qt::Key_Minus, 189},
      {Qt::Key_Underscore, 189}, {Qt::Key_Period, 190},      {Qt::Key_Slash, 191},     {Qt::Key_Question, 191},
      {Qt::Key_QuoteLeft, 192},  {Qt::Key_BracketLeft, 219}, {Qt::Key_Backslash, 220}, {Qt::Key_BracketRight, 221},
      {Qt::Key_Apostrophe, 222}, {Qt::Key_QuoteDbl, 222}};
  for (const auto& [key, code] : keys) {
    EXPECT_EQ(code, pressed({key}).code) << key;
  }
}

TEST(KeyCodes, numberPadHasCodesOfItsOwn) {
  const auto onPad = [](int key) { return pressed({key, {}, Qt::KeypadModifier}); };
  EXPECT_EQ((KeyStroke{96, 0}), onPad(Qt::Key_0));
  EXPECT_EQ((KeyStroke{105, 0}), onPad(Qt::Key_9));
  EXPECT_EQ((KeyStroke{106, 0}), onPad(Qt::Key_Asterisk));
  EXPECT_EQ((KeyStroke{107, 0}), onPad(Qt::Key_Plus));
  EXPECT_EQ((KeyStroke{109, 0}), onPad(Qt::Key_Minus));
  EXPECT_EQ((KeyStroke{110, 0}), onPad(Qt::Key_Period));
  EXPECT_EQ((KeyStroke{111, 0}), onPad(Qt::Key_Slash));
  EXPECT_EQ((KeyStroke{13, 0}), onPad(Qt::Key_Enter));
  EXPECT_EQ((KeyStroke{37, 0}), onPad(Qt::Key_Left));
}

TEST(KeyCodes, shiftStatesAreAdded) {
  EXPECT_EQ(0, shiftState(Qt::NoModifier));
  EXPECT_EQ(1, shiftState(Qt::ShiftModifier));
  EXPECT_EQ(2, shiftState(Qt::ControlModifier));
  EXPECT_EQ(4, shiftState(Qt::AltModifier));
  EXPECT_EQ(7, shiftState(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier));
  EXPECT_EQ(0, shiftState(Qt::KeypadModifier));
}

TEST(KeyCodes, shiftKeyCountsWhenItGoesDownAndNotWhenItComesUp) {
  EXPECT_EQ((KeyStroke{16, 1}), pressed({Qt::Key_Shift}));
  EXPECT_EQ((KeyStroke{16, 1}), pressed({Qt::Key_Shift, {}, Qt::ShiftModifier}));
  EXPECT_EQ((KeyStroke{16, 0}), released({Qt::Key_Shift, {}, Qt::ShiftModifier}));
  EXPECT_EQ((KeyStroke{17, 3}), pressed({Qt::Key_Control, {}, Qt::ShiftModifier}));
  EXPECT_EQ((KeyStroke{18, 0}), released({Qt::Key_Alt}));
}

TEST(KeyCodes, tabBackwardsIsTabWithShift) {
  EXPECT_EQ((KeyStroke{9, 1}), pressed({Qt::Key_Backtab}));
  EXPECT_EQ((KeyStroke{9, 1}), pressed({Qt::Key_Backtab, {}, Qt::ShiftModifier}));
  EXPECT_EQ((KeyStroke{9, 1}), pressed({Qt::Key_Tab, {}, Qt::ShiftModifier}));
}

TEST(KeyCodes, verticalBarIsOneStrokeOnEveryKeyboard) {
  const KeyStroke bar{220, 1};
  EXPECT_EQ(bar, pressed({Qt::Key_Bar, QStringLiteral("|"), Qt::ShiftModifier}));
  EXPECT_EQ(bar, pressed({Qt::Key_Bar, QStringLiteral("|")})) << "with AltGr";
  EXPECT_EQ(bar, pressed({Qt::Key_Bar, QStringLiteral("|"), Qt::ControlModifier | Qt::AltModifier}));
  EXPECT_EQ(bar, pressed({Qt::Key_Less, QStringLiteral("|"), Qt::GroupSwitchModifier}));
  EXPECT_EQ(bar, released({Qt::Key_Bar, QStringLiteral("|"), Qt::ShiftModifier}));
  EXPECT_EQ((KeyStroke{220, 0}), pressed({Qt::Key_Backslash, QStringLiteral("\\")}));
}

TEST(KeyCodes, charactersOfKeysThatTypeOne) {
  EXPECT_EQ('a', characterCode(event({Qt::Key_A, QStringLiteral("a")})));
  EXPECT_EQ('A', characterCode(event({Qt::Key_A, QStringLiteral("A"), Qt::ShiftModifier})));
  EXPECT_EQ(' ', characterCode(event({Qt::Key_Space, QStringLiteral(" ")})));
  EXPECT_EQ('~', characterCode(event({Qt::Key_AsciiTilde, QStringLiteral("~")})));
  EXPECT_EQ('|', characterCode(event({Qt::Key_Bar, QStringLiteral("|"), Qt::ShiftModifier})));
  EXPECT_EQ('@', characterCode(event({Qt::Key_At, QStringLiteral("@"), Qt::ControlModifier | Qt::AltModifier})));
  EXPECT_EQ(0xE9, characterCode(event({Qt::Key_Eacute, QStringLiteral("é")})));
  EXPECT_EQ(0x1F600, characterCode(event({Qt::Key_unknown, QStringLiteral("😀")})));
}

TEST(KeyCodes, keysOfControlHaveControlCharacters) {
  EXPECT_EQ(13, characterCode(event({Qt::Key_Return, QStringLiteral("\r")})));
  EXPECT_EQ(13, characterCode(event({Qt::Key_Enter, QStringLiteral("\r"), Qt::KeypadModifier | Qt::ShiftModifier})));
  EXPECT_EQ(10, characterCode(event({Qt::Key_Return, QStringLiteral("\r"), Qt::ControlModifier})));
  EXPECT_EQ(8, characterCode(event({Qt::Key_Backspace, QStringLiteral("\b")})));
  EXPECT_EQ(27, characterCode(event({Qt::Key_Escape, QStringLiteral("\x1b")})));
  EXPECT_EQ(1, characterCode(event({Qt::Key_A, QStringLiteral("\x01"), Qt::ControlModifier})));
  EXPECT_EQ(3, characterCode(event({Qt::Key_C, QStringLiteral("c"), Qt::ControlModifier})));
  EXPECT_EQ(26, characterCode(event({Qt::Key_Z, {}, Qt::ControlModifier | Qt::ShiftModifier})));
}

TEST(KeyCodes, otherKeysTypeNothing) {
  const std::vector<Key> keys = {{Qt::Key_Tab, QStringLiteral("\t")},
                                 {Qt::Key_Delete, QStringLiteral("\x7f")},
                                 {Qt::Key_Left},
                                 {Qt::Key_F5},
                                 {Qt::Key_Shift},
                                 {Qt::Key_S, QStringLiteral("s"), Qt::AltModifier},
                                 {Qt::Key_Return, QStringLiteral("\r"), Qt::AltModifier}};
  for (const Key& key : keys) {
    EXPECT_EQ(std::nullopt, characterCode(event(key))) << key.key;
  }
}

TEST(KeyCodes, mouseButtons) {
  EXPECT_EQ(1, buttonCode(Qt::LeftButton));
  EXPECT_EQ(2, buttonCode(Qt::RightButton));
  EXPECT_EQ(4, buttonCode(Qt::MiddleButton));
  EXPECT_EQ(0, buttonCode(Qt::BackButton));
}

} // namespace

} // namespace imex::test
