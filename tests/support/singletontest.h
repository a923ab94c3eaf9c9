// SPDX-License-Identifier: MIT
#pragma once

// Shared by the tests of the library's singletons: the GUI-thread rule and release
// from inside the instance's own destruction, checked the same way for each.

#include <QCoreApplication>
#include <QRegularExpression>
#include <QThread>
#include <QtTest>

#include <thread>
#include <type_traits>

namespace SingletonTest {

inline void ExpectRefusal(const char *className, const char *operation)
{
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^%1::%2\\(\\) called from a thread other than the GUI "
                                                           "thread: refused")
                                                .arg(QLatin1String(className), QLatin1String(operation))));
}

/**
 * T::Instance() and T::ReleaseInstance() from another thread warn and do nothing:
 * no instance is made there (one made there would belong to that thread), and the
 * GUI thread's instance stays.
 */
template <typename T>
void CheckRefusedOffTheGuiThread(const char *className)
{
    T::ReleaseInstance();
    T *firstTouch = reinterpret_cast<T *>(quintptr(1));
    ExpectRefusal(className, "Instance");
    std::thread([&firstTouch] { firstTouch = T::Instance(); }).join();
    QCOMPARE(firstTouch, static_cast<T *>(nullptr));

    T *mine = T::Instance();
    QVERIFY(mine);
    if constexpr (std::is_base_of<QObject, T>::value)
        QCOMPARE(static_cast<QObject *>(mine)->thread(), QCoreApplication::instance()->thread());
    T *again = reinterpret_cast<T *>(quintptr(1));
    ExpectRefusal(className, "Instance");
    ExpectRefusal(className, "ReleaseInstance");
    std::thread([&again] {
        again = T::Instance();
        T::ReleaseInstance();
    }).join();
    QCOMPARE(again, static_cast<T *>(nullptr));
    QCOMPARE(T::Instance(), mine);
}

/**
 * Calls @p onDestruction while T's instance is being destroyed by ReleaseInstance()
 * (through @p attach, which hooks it to the instance), which may ask for the
 * instance and release it again. That used to wait for ever on the lock the
 * release itself held.
 */
template <typename T, typename Attach>
void CheckReleaseFromItsOwnDestruction(Attach attach)
{
    bool ran = false;
    T *dying = T::Instance();
    T *seen = nullptr;
    attach(dying, [&ran, &seen] {
        ran = true;
        T::ReleaseInstance();
        seen = T::Instance();
        T::ReleaseInstance();
    });
    T::ReleaseInstance();
    QVERIFY(ran);
    QVERIFY(seen);
    // Usable afterwards, and released cleanly.
    QVERIFY(T::Instance());
    T::ReleaseInstance();
}

/** Runs a callback when destroyed: a child that notices its parent going. */
class DestructionHook : public QObject
{
public:
    template <typename Callback>
    DestructionHook(QObject *parent, Callback callback)
        : QObject(parent)
        , m_callback(callback)
    {
    }
    ~DestructionHook() override { m_callback(); }

private:
    std::function<void()> m_callback;
};

/** CheckReleaseFromItsOwnDestruction() for a QObject singleton: a child runs the callback. */
template <typename T>
void CheckQObjectReleaseFromItsOwnDestruction()
{
    CheckReleaseFromItsOwnDestruction<T>([](T *instance, std::function<void()> callback) {
        new DestructionHook(instance, std::move(callback));
    });
}

} // namespace SingletonTest
