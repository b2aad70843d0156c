#pragma once

namespace imex {

/// Delivers what waits in the application's event queue, but for what the user did: keys, shortcuts, clicks, the wheel,
/// touches, the pen, an input method and what was dragged into a window are dropped, whichever window they are for.
/// Called after work that has blocked the user interface, so that a user who did not wait neither changes what was
/// worked on nor types into what the work has just opened. An error that leaves an event goes to the caller where the
/// application's notify() lets it through.
///
/// A key that comes up is still seen by the filters of the application, and by nothing else: whoever keeps which keys
/// are held learns of it.
void dropWaitingInput();

} // namespace imex
