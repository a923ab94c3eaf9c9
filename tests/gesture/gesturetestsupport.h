// SPDX-License-Identifier: MIT
#pragma once

// Shared by the gesture tests: a delegate and a usage recorder that write down
// every call, and a per-test settings sandbox.

#include "browsergesturehandler.h"
#include "igesturehandlerdelegate.h"
#include "imonitorsystem.h"
#include "kelmousegesture.h"
#include "recordingmonitor.h"
#include "vossettingmanager.h"

#include <QGuiApplication>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace GestureTest {

class RecordingDelegate : public IGestureHandlerDelegate
{
public:
    QStringList calls;     // action operations, in call order
    int areaRequests = 0;  // GetToastArea() is asked for position, not an action
    QRect area{100, 100, 800, 600};

    void ActionBack() override { calls << QStringLiteral("ActionBack"); }
    void ActionForward() override { calls << QStringLiteral("ActionForward"); }
    void ActionRefresh() override { calls << QStringLiteral("ActionRefresh"); }
    void ActionNewTab() override { calls << QStringLiteral("ActionNewTab"); }
    void ActionCloseTab() override { calls << QStringLiteral("ActionCloseTab"); }
    void ActionCloseAllTabs() override { calls << QStringLiteral("ActionCloseAllTabs"); }
    void ActionPreviousTab() override { calls << QStringLiteral("ActionPreviousTab"); }
    void ActionNextTab() override { calls << QStringLiteral("ActionNextTab"); }
    QRect GetToastArea() override
    {
        ++areaRequests;
        return area;
    }
    void ActionRecoverClosedTab() override { calls << QStringLiteral("ActionRecoverClosedTab"); }
};

using KelTest::RecordingMonitor;

/**
 * A settings database and a usage log of the test's own, and the release of every
 * singleton a gesture test touches. Create in init(), destroy in cleanup().
 */
class Sandbox
{
public:
    Sandbox()
    {
        QVERIFY(m_dir.isValid());
        VosSettingManager::Instance()->SetDatabasePath(m_dir.filePath(QStringLiteral("settings.sqlite")));
        IMonitorSystem::SetLogFilePath(m_dir.filePath(QStringLiteral("usage.jsonl")));
    }

    ~Sandbox()
    {
        IMonitorSystem::SetMonitorSystem(nullptr);
        IMonitorSystem::SetLogFilePath(QString());
        KelMouseGesture::ReleaseInstance();
        VosSettingManager::ReleaseInstance();
    }

    QString Path(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
};

/**
 * The offscreen platform the suite runs on cannot raise a window or pass size hints
 * on, and says so every time the toast, a tool window, is shown or resized. Those
 * two messages are about the test platform, not the code under test; every other
 * message still goes to QtTest's handler and fails the test when unexpected. The
 * filter stands in front of that handler while it lives: make it once QtTest has
 * installed its handler (in a test function, init() or initTestCase()).
 */
class OffscreenPlatformNoise
{
public:
    OffscreenPlatformNoise() { s_previous = qInstallMessageHandler(&Handle); }
    ~OffscreenPlatformNoise() { qInstallMessageHandler(s_previous); }
    Q_DISABLE_COPY(OffscreenPlatformNoise)

private:
    static void Handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type == QtWarningMsg && QGuiApplication::platformName() == QLatin1String("offscreen")
            && (message == QLatin1String("This plugin does not support raise()")
                || message == QLatin1String("This plugin does not support propagateSizeHints()")))
            return;
        if (s_previous)
            s_previous(type, context, message);
    }

    static inline QtMessageHandler s_previous = nullptr;
};

/**
 * What a test of gesture dispatch watches: a settings sandbox, a usage recorder
 * installed as the monitor and a delegate that records the actions, and the handler
 * that dispatches to them; the toast that the handler shows may draw the offscreen
 * platform's complaints, which are filtered out for as long as the recorders live.
 * Make one in init() and destroy it in cleanup(); the members go in reverse order,
 * the handler first, then the sandbox (which uninstalls the monitor and releases the
 * singletons) and the filter last.
 */
struct Recorders
{
    Recorders() { IMonitorSystem::SetMonitorSystem(&monitor); }

    /**
     * The handler under test, dispatching to the delegate; made on first use, so that
     * a test can store the settings it should read first.
     */
    BrowserGestureHandler *Handler()
    {
        if (!handler) {
            handler.reset(new BrowserGestureHandler(nullptr));
            handler->SetGestureHandlerDelegate(&delegate);
        }
        return handler.get();
    }

    OffscreenPlatformNoise noise;
    Sandbox sandbox;
    RecordingMonitor monitor;
    RecordingDelegate delegate;
    std::unique_ptr<BrowserGestureHandler> handler;
};

inline void StoreValue(const QString &key, const QString &value)
{
    VosSettingManager::Instance()->SetSystemValueSync(QStringLiteral("SYS_SETTING"), key, value);
}

inline QString StoredValue(const QString &key)
{
    return VosSettingManager::Instance()->GetSystemValue(QStringLiteral("SYS_SETTING"), key);
}

} // namespace GestureTest
