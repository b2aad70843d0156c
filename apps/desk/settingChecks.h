#pragma once

#include <QString>

namespace imex::desk {

// What may be set. Each returns what is wrong with a text, for the user, and nothing where it is right.

/// The address of a service, http or https; empty means that there is none.
QString checkAddress(const QString& text);

/// A port from 1 to 65535 in decimal; empty means that there is no proxy.
QString checkPort(const QString& text);

/// A number of milliseconds from 0 to 2147483647 in decimal.
QString checkTimeout(const QString& text);

} // namespace imex::desk
