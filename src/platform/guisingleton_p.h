// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library: creation and release of its process-wide objects.

#include <QAtomicPointer>
#include <QMutex>

namespace GuiSingletonCheck {

/**
 * @return true when called on the GUI thread (the application object's thread), or
 * before an application object exists; otherwise prints one warning naming
 * @p className and @p operation and returns false.
 */
bool OnGuiThread(const char *className, const char *operation);

} // namespace GuiSingletonCheck

/**
 * The single instance of T, for the GUI thread only.
 *
 * The library's singletons are QObjects that take their thread from their creator,
 * hold a database connection that belongs to one thread, or keep widgets' state: a
 * call from another thread would bind them there or race with the GUI. So such a
 * call warns and gets null, and creates or releases nothing.
 *
 * The class-wide mutex guards creation (unlocked fast path, checked again under the
 * lock). Release takes the instance out under the lock and destroys it after the
 * lock is gone, so a destructor that asks for the instance again, or releases it,
 * never waits on a lock its own thread holds: it sees no instance (and may create a
 * fresh one, released by the next release like any other).
 *
 * Meant for objects of static storage duration: QAtomicPointer and QBasicMutex need
 * no dynamic initialisation.
 */
template <typename T>
class GuiSingleton
{
public:
    /**
     * @return the instance, made by @p create() on first use; null off the GUI thread.
     */
    template <typename Create>
    T *Instance(const char *className, Create create)
    {
        if (!GuiSingletonCheck::OnGuiThread(className, "Instance"))
            return nullptr;
        if (T *existing = m_instance.loadAcquire())
            return existing;
        m_mutex.lock();
        T *instance = m_instance.loadAcquire();
        if (!instance) {
            instance = create();
            m_instance.storeRelease(instance);
        }
        m_mutex.unlock();
        return instance;
    }

    /** Hands the instance, if any, to @p destroy; nothing off the GUI thread. */
    template <typename Destroy>
    void Release(const char *className, Destroy destroy)
    {
        if (!GuiSingletonCheck::OnGuiThread(className, "ReleaseInstance"))
            return;
        if (!m_instance.loadAcquire())
            return;
        m_mutex.lock();
        T *instance = m_instance.fetchAndStoreOrdered(nullptr);
        m_mutex.unlock();
        if (instance)
            destroy(instance);
    }

private:
    QAtomicPointer<T> m_instance;
    QBasicMutex m_mutex;
};
