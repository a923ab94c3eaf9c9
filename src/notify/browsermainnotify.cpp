#include "browsermainnotify.h"

#include <QAtomicPointer>
#include <QCoreApplication>
#include <QMutex>
#include <QMutexLocker>

namespace {

QAtomicPointer<BrowserMainNotify> g_instance;

QMutex &InstanceMutex()
{
    // Created once, thread-safely, at the first call; destroyed at process exit.
    static QMutex mutex;
    return mutex;
}

} // namespace

BrowserMainNotify::BrowserMainNotify()
    : QObject(nullptr)
{
    // Whichever thread asks first, the hub belongs to the GUI thread, where the
    // host's window connects to it; a worker thread that ends must not take it along.
    if (QCoreApplication *app = QCoreApplication::instance())
        moveToThread(app->thread());
}

BrowserMainNotify::~BrowserMainNotify() = default;

BrowserMainNotify *BrowserMainNotify::Instance()
{
    QMutex &mutex = InstanceMutex();
    if (BrowserMainNotify *existing = g_instance.loadAcquire())
        return existing;
    QMutexLocker locker(&mutex);
    BrowserMainNotify *instance = g_instance.loadAcquire();
    if (!instance) {
        instance = new BrowserMainNotify;
        g_instance.storeRelease(instance);
    }
    return instance;
}

void BrowserMainNotify::ReleaseInstance()
{
    if (!g_instance.loadAcquire())
        return;
    QMutexLocker locker(&InstanceMutex());
    if (BrowserMainNotify *instance = g_instance.loadAcquire()) {
        g_instance.storeRelease(nullptr);
        delete instance;
    }
}
