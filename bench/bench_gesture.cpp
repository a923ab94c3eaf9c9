// SPDX-License-Identifier: MIT
// How long one HandleGestureMoving() takes: the call the host makes on every change of
// a stroke in progress. Each call reads the user's gesture map from the settings
// store (SQLite, warm: the database is open and its pages cached), decodes it, looks
// the shape up and updates the toast. The shape changes on every call, so the toast's
// text does too; paint happens between batches, outside the timing, as the event loop
// would do it between pointer moves.
//
// Prints: gesture_moving_us <median microseconds per call> target 50

#include "browsergesturehandler.h"
#include "dpitool.h"
#include "igesturehandlerdelegate.h"
#include "kelmousegesture.h"
#include "vossettingmanager.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

class Delegate : public IGestureHandlerDelegate
{
public:
    void ActionBack() override {}
    void ActionForward() override {}
    void ActionRefresh() override {}
    void ActionNewTab() override {}
    void ActionCloseTab() override {}
    void ActionCloseAllTabs() override {}
    void ActionPreviousTab() override {}
    void ActionNextTab() override {}
    QRect GetToastArea() override { return QRect(100, 100, 800, 600); }
    void ActionRecoverClosedTab() override {}
};

QtMessageHandler g_previous = nullptr;

// The offscreen platform cannot raise windows and says so when the toast first shows.
void QuietHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    if (g_previous)
        g_previous(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    g_previous = qInstallMessageHandler(QuietHandler);
    QApplication app(argc, argv);
    DpiTool::SetScaleFactor(1.0);

    QTemporaryDir dir;
    if (!dir.isValid())
        return 1;
    VosSettingManager::Instance()->SetDatabasePath(dir.filePath(QStringLiteral("settings.sqlite")));
    // A stored map, so that every call really reads and decodes one.
    QMap<EMouseGestureDirection, EBrowserAction> map = KelMouseGesture::Instance()->GetDefaultGestureMap();
    map[MouseGestureLeft] = BrowserActionNextTab;
    KelMouseGesture::Instance()->SetGestureMap(map);

    Delegate delegate;
    {
        BrowserGestureHandler handler;
        handler.SetGestureHandlerDelegate(&delegate);
        const QList<QStringList> strokes{{QStringLiteral("R")}, {QStringLiteral("R"), QStringLiteral("U")},
                                         {QStringLiteral("L")}, {QStringLiteral("D"), QStringLiteral("R")}};

        constexpr int kBatch = 100;
        constexpr int kWarmupBatches = 20;
        constexpr int kBatches = 200;
        std::vector<double> perCall;
        int next = 0;
        for (int batch = 0; batch < kWarmupBatches + kBatches; ++batch) {
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < kBatch; ++i)
                handler.HandleGestureMoving(strokes.at(next++ % strokes.size()));
            const qint64 nanoseconds = timer.nsecsElapsed();
            QCoreApplication::processEvents();
            if (batch >= kWarmupBatches)
                perCall.push_back(double(nanoseconds) / kBatch / 1000.0);
        }
        handler.HandleGestureEvent(QStringList());
        std::sort(perCall.begin(), perCall.end());
        std::printf("gesture_moving_us %.2f target 50\n", perCall[perCall.size() / 2]);
    }

    KelMouseGesture::ReleaseInstance();
    VosSettingManager::ReleaseInstance();
    return 0;
}
