// SPDX-License-Identifier: MIT
#include "browsermainnotify.h"

#include "guisingleton_p.h"

namespace {

GuiSingleton<BrowserMainNotify> g_instance;

} // namespace

// Made on the GUI thread only (see Instance()), so it belongs there, where the
// host's window connects to it.
BrowserMainNotify::BrowserMainNotify()
    : QObject(nullptr)
{
}

BrowserMainNotify::~BrowserMainNotify() = default;

BrowserMainNotify *BrowserMainNotify::Instance()
{
    return g_instance.Instance("BrowserMainNotify", [] { return new BrowserMainNotify; });
}

void BrowserMainNotify::ReleaseInstance()
{
    g_instance.Release("BrowserMainNotify", [](BrowserMainNotify *instance) { delete instance; });
}
