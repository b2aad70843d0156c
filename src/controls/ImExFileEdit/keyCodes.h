#pragma once

#include <Qt>

#include <optional>

class QKeyEvent;

namespace imex {

// The numbers by which the handlers of keys and of the mouse know what was pressed, and which they trace.

// Shift states are sums of these.
inline constexpr int kNoShift = 0;
inline constexpr int kShift = 1;
inline constexpr int kCtrl = 2;
inline constexpr int kAlt = 4;

// Key codes are virtual-key codes: a letter or a digit has its own character code, in capitals.
inline constexpr int kBackspaceKey = 8;
inline constexpr int kTabKey = 9;
inline constexpr int kEnterKey = 13;
inline constexpr int kDeleteKey = 46;
inline constexpr int kBarKey = 220;

/// The code of the vertical bar as a character.
inline constexpr int kBarCharacter = 124;

/// A key as it goes down or up.
struct KeyStroke {
  int code;  ///< 0 for a key that has no code
  int shift; ///< the shift state. A shift key that goes down counts already, one that goes up does not count any more

  bool operator==(const KeyStroke&) const = default;
};

/// The stroke of a key. Keys are told apart by what stands on them on an American keyboard. A key that types the
/// vertical bar is always the one with the code 220 under Shift, wherever the user's keyboard has it: the bar is
/// guarded by this code.
KeyStroke keyStroke(const QKeyEvent& event);

/// The code of the character that a pressed key types: 13 for Enter, 8 for Backspace, 27 for Escape, 1 to 26 for Ctrl
/// with a letter, and otherwise the character's code point. Nothing for a key that types none: Tab, Delete, the arrows,
/// the function keys, a letter under Alt.
std::optional<int> characterCode(const QKeyEvent& event);

/// The shift state of these modifiers.
int shiftState(Qt::KeyboardModifiers modifiers);

/// 1 for the left, 2 for the right, 4 for the middle button, 0 for any other.
int buttonCode(Qt::MouseButton button);

} // namespace imex
