#include "controls/ImExFileEdit/keyCodes.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace imex {

namespace {

struct NamedKey {
  int key;
  int code;
};

constexpr auto kNamedKeys = std::to_array<NamedKey>({
    {Qt::Key_Backspace, kBackspaceKey},
    {Qt::Key_Tab, kTabKey},
    {Qt::Key_Backtab, kTabKey},
    {Qt::Key_Clear, 12},
    {Qt::Key_Return, kEnterKey},
    {Qt::Key_Enter, kEnterKey},
    {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},
    {Qt::Key_Alt, 18},
    {Qt::Key_AltGr, 18},
    {Qt::Key_Pause, 19},
    {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, 27},
    {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, kDeleteKey},
    {Qt::Key_Meta, 91},
    {Qt::Key_Menu, 93},
    {Qt::Key_NumLock, 144},
    {Qt::Key_ScrollLock, 145},
});

// The signs of an American keyboard, on the keys that type them.
constexpr auto kSigns = std::to_array<NamedKey>({
    {Qt::Key_ParenRight, '0'},  {Qt::Key_Exclam, '1'},       {Qt::Key_At, '2'},
    {Qt::Key_NumberSign, '3'},  {Qt::Key_Dollar, '4'},       {Qt::Key_Percent, '5'},
    {Qt::Key_AsciiCircum, '6'}, {Qt::Key_Ampersand, '7'},    {Qt::Key_Asterisk, '8'},
    {Qt::Key_ParenLeft, '9'},   {Qt::Key_Semicolon, 186},    {Qt::Key_Colon, 186},
    {Qt::Key_Equal, 187},       {Qt::Key_Plus, 187},         {Qt::Key_Comma, 188},
    {Qt::Key_Less, 188},        {Qt::Key_Minus, 189},        {Qt::Key_Underscore, 189},
    {Qt::Key_Period, 190},      {Qt::Key_Greater, 190},      {Qt::Key_Slash, 191},
    {Qt::Key_Question, 191},    {Qt::Key_QuoteLeft, 192},    {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BracketLeft, 219}, {Qt::Key_BraceLeft, 219},    {Qt::Key_Backslash, kBarKey},
    {Qt::Key_Bar, kBarKey},     {Qt::Key_BracketRight, 221}, {Qt::Key_BraceRight, 221},
    {Qt::Key_Apostrophe, 222},  {Qt::Key_QuoteDbl, 222},
});

// The same signs on the number pad are keys of their own.
constexpr auto kPadSigns = std::to_array<NamedKey>({
    {Qt::Key_Asterisk, 106},
    {Qt::Key_Plus, 107},
    {Qt::Key_Minus, 109},
    {Qt::Key_Period, 110},
    {Qt::Key_Slash, 111},
});

constexpr int kPadZero = 96;
constexpr int kFirstFunctionKey = 112;

template <class Keys>
int find(const Keys& keys, int key) {
  const auto found = std::ranges::find(keys, key, &NamedKey::key);
  return found == keys.end() ? 0 : found->code;
}

bool isBetween(int key, int first, int last) {
  return first <= key && key <= last;
}

int padCode(int key) {
  return isBetween(key, Qt::Key_0, Qt::Key_9) ? kPadZero + (key - Qt::Key_0) : find(kPadSigns, key);
}

int keyCode(int key, bool isOnPad) {
  if (const int code = isOnPad ? padCode(key) : 0)
    return code;
  if (isBetween(key, Qt::Key_A, Qt::Key_Z) || isBetween(key, Qt::Key_0, Qt::Key_9))
    return key;
  if (isBetween(key, Qt::Key_F1, Qt::Key_F24))
    return kFirstFunctionKey + (key - Qt::Key_F1);
  const int code = find(kNamedKeys, key);
  return code != 0 ? code : find(kSigns, key);
}

/// The part of the shift state that a key itself stands for.
int ownShift(int key) {
  switch (key) {
  case Qt::Key_Shift:
    return kShift;
  case Qt::Key_Control:
    return kCtrl;
  case Qt::Key_Alt:
    return kAlt;
  default:
    return kNoShift;
  }
}

} // namespace

int shiftState(Qt::KeyboardModifiers modifiers) {
  return (modifiers & Qt::ShiftModifier ? kShift : 0) | (modifiers & Qt::ControlModifier ? kCtrl : 0) |
         (modifiers & Qt::AltModifier ? kAlt : 0);
}

KeyStroke keyStroke(const QKeyEvent& event) {
  if (event.text() == QLatin1String("|"))
    return {kBarKey, kShift};
  const int own = ownShift(event.key());
  const int others = shiftState(event.modifiers()) & ~own;
  const bool isOnPad = event.modifiers().testFlag(Qt::KeypadModifier);
  const bool goesDown = event.type() == QEvent::KeyPress;
  const int shiftOfTab = event.key() == Qt::Key_Backtab ? kShift : kNoShift;
  return {keyCode(event.key(), isOnPad), others | (goesDown ? own : kNoShift) | shiftOfTab};
}

std::optional<int> characterCode(const QKeyEvent& event) {
  constexpr int kNewLine = 10;
  constexpr int kEscape = 27;
  const int shift = shiftState(event.modifiers());
  const int key = event.key();
  if ((shift & (kCtrl | kAlt)) == kAlt)
    return std::nullopt;
  if (key == Qt::Key_Return || key == Qt::Key_Enter)
    return shift & kCtrl ? kNewLine : kEnterKey;
  if (key == Qt::Key_Backspace)
    return kBackspaceKey;
  if (key == Qt::Key_Escape)
    return kEscape;
  if ((shift & (kCtrl | kAlt)) == kCtrl && isBetween(key, Qt::Key_A, Qt::Key_Z))
    return key - Qt::Key_A + 1;
  const QList<uint> typed = event.text().toUcs4();
  constexpr uint kDelete = 127;
  const bool isTyped = !typed.isEmpty() && typed.constFirst() >= uint{' '} && typed.constFirst() != kDelete;
  return isTyped ? std::optional(static_cast<int>(typed.constFirst())) : std::nullopt;
}

int buttonCode(Qt::MouseButton button) {
  switch (button) {
  case Qt::LeftButton:
    return 1;
  case Qt::RightButton:
    return 2;
  case Qt::MiddleButton:
    return 4;
  default:
    return 0;
  }
}

} // namespace imex
