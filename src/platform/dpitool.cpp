// SPDX-License-Identifier: MIT
#include "dpitool.h"

#include "idpiadapter.h"

#include <QGuiApplication>
#include <QObject>
#include <QPointer>
#include <QScreen>

#include <cmath>

namespace {

constexpr double kDesignDpi = 96.0;
constexpr int kImageScale = 2;

double g_fixedFactor = 0.0;   // <= 0: follow the screen
double g_lastFactor = 0.0;    // the factor adapters were last told about

double ScreenFactor()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return 1.0;
    // A host that sets Qt::AA_Use96Dpi has its widgets and fonts laid out at 96 dpi
    // whatever the screen says; scaling our sizes by the screen would make tabs
    // disagree with the text inside them.
    if (QCoreApplication::testAttribute(Qt::AA_Use96Dpi))
        return 1.0;
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 1.0;
    const double dpi = screen->logicalDotsPerInch();
    return dpi > 0 ? dpi / kDesignDpi : 1.0;
}

void NotifyIfChanged()
{
    const double factor = DpiTool::ScaleFactor();
    if (qFuzzyCompare(factor, g_lastFactor))
        return;
    g_lastFactor = factor;
    IDpiAdapter::NotifyAll();
}

// Watches the primary screen's DPI. The watcher is a child of the application
// object, so it goes away with it and never outlives the screens it listens to.
void EnsureScreenWatch()
{
    static QPointer<QObject> watcher;
    auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (watcher || !app)
        return;
    watcher = new QObject(app);
    auto watchScreen = [](QScreen *screen) {
        if (screen)
            QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, watcher, [] {
                if (g_fixedFactor <= 0)
                    NotifyIfChanged();
            });
    };
    watchScreen(QGuiApplication::primaryScreen());
    QObject::connect(app, &QGuiApplication::primaryScreenChanged, watcher, [watchScreen](QScreen *screen) {
        watchScreen(screen);
        if (g_fixedFactor <= 0)
            NotifyIfChanged();
    });
}

} // namespace

double DpiTool::ScaleFactor()
{
    EnsureScreenWatch();
    return g_fixedFactor > 0 ? g_fixedFactor : ScreenFactor();
}

void DpiTool::SetScaleFactor(double factor)
{
    if (g_lastFactor <= 0)
        g_lastFactor = ScaleFactor();
    g_fixedFactor = factor > 0 ? factor : 0.0;
    NotifyIfChanged();
}

int DpiTool::ScaleDefault(int value)
{
    return static_cast<int>(std::lround(value * ScaleFactor()));
}

QPoint DpiTool::ScaleDefault(const QPoint &point)
{
    return QPoint(ScaleDefault(point.x()), ScaleDefault(point.y()));
}

int DpiTool::ScaleDefaultToImage(int value)
{
    return value * kImageScale;
}

int DpiTool::ImageScale()
{
    return kImageScale;
}
