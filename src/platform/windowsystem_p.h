// SPDX-License-Identifier: MIT
#pragma once

// What the window system lets a client know and do. Not part of the installed API.

#include <QGuiApplication>

namespace WindowSystem {

/**
 * A Wayland session: the client learns where the pointer is only from the events that
 * reach its own surfaces, cannot place a top-level window, and has a popup shown only
 * as a transient of one of its windows.
 */
inline bool IsWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

} // namespace WindowSystem
