// SPDX-License-Identifier: MIT
#include "guisingleton_p.h"

#include <QCoreApplication>
#include <QThread>

bool GuiSingletonCheck::OnGuiThread(const char *className, const char *operation)
{
    const QCoreApplication *app = QCoreApplication::instance();
    if (!app || QThread::currentThread() == app->thread())
        return true;
    qWarning("%s::%s() called from a thread other than the GUI thread: refused, it returns nothing",
             className, operation);
    return false;
}
