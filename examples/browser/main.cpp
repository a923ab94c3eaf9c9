// SPDX-License-Identifier: MIT
// The demo browser: a host application of KelTabContainer.
//
// With a display it opens the browser window. Without one (no DISPLAY or
// WAYLAND_DISPLAY, or QT_QPA_PLATFORM=offscreen), or with --tour, it runs a scripted
// tour offscreen and writes screenshots and logs into a folder. With --a11y-dump it
// prints the accessible tree of its window, as a screen reader reads it, and exits.

#include "accessibletree.h"
#include "browserwindow.h"
#include "demolanguage.h"
#include "headlesstour.h"
#include "signallog.h"

#include <KelTabContainer/browsermainnotify.h>
#include <KelTabContainer/imonitorsystem.h>
#include <KelTabContainer/kelmousegesture.h>
#include <KelTabContainer/keltabstyle.h>
#include <KelTabContainer/vosimagecache.h>
#include <KelTabContainer/vossettingmanager.h>
#include <KelTabContainer/vosshortcutmanager.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QUrl>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

bool HasArgument(int argc, char *argv[], const char *name)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], name) == 0)
            return true;
    }
    return false;
}

bool HasDisplay()
{
    if (qEnvironmentVariable("QT_QPA_PLATFORM") == QLatin1String("offscreen"))
        return false;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// In the tour, every warning is kept for warnings.log as well as printed.
void TourMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    Q_UNUSED(context)
    // The offscreen platform says so whenever a window asks for what it cannot do
    // (raise itself, size hints for a window manager): not the program's business.
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg)
        HeadlessTour::RecordWarning(message);
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    if (type == QtFatalMsg)
        std::abort();
}

void PrepareHeadless()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Without a desktop session there is no runtime folder; Qt would make one under
    // /tmp and warn about it. A private one of our own says the same without noise.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        static QTemporaryDir runtime(QDir::tempPath() + QStringLiteral("/keltab-runtime-XXXXXX"));
        if (runtime.isValid()) {
            QFile::setPermissions(runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        }
    }
}

// The tour keeps its settings, usage events and icon cache in its own folder, so
// that it neither reads nor changes the user's.
void IsolateProfile(const QDir &out)
{
    const QString profile = out.filePath(QStringLiteral("profile"));
    VosSettingManager::Instance()->SetDatabasePath(profile + QStringLiteral("/settings.sqlite"));
    IMonitorSystem::SetLogFilePath(profile + QStringLiteral("/usage-events.jsonl"));
    VosImageCache::Instance()->SetCacheDirectory(profile + QStringLiteral("/icons"));
}

void ReleaseSingletons()
{
    VosShortcutManager::ReleaseInstance();
    KelMouseGesture::ReleaseInstance();
    BrowserMainNotify::ReleaseInstance();
    VosImageCache::ReleaseInstance();
    VosSettingManager::ReleaseInstance();
}

// Opens the given addresses (the demo's own pages when none is given) in a window
// laid out offscreen, and prints its accessible tree.
int DumpAccessibleTree(BrowserWindow::BarKind kind, QStringList addresses)
{
    QTemporaryDir profile(QDir::tempPath() + QStringLiteral("/keltab-a11y-XXXXXX"));
    if (!profile.isValid()) {
        std::fprintf(stderr, "Cannot create a folder under %s\n", qUtf8Printable(QDir::tempPath()));
        return 2;
    }
    IsolateProfile(QDir(profile.path()));
    if (addresses.isEmpty()) {
        addresses = QStringList{QStringLiteral("qrc:/browser/pages/guide.html"),
                                QStringLiteral("qrc:/browser/pages/signals.html")};
    }
    {
        BrowserWindow window(kind, nullptr);
        for (const QString &address : qAsConst(addresses))
            window.OpenUrl(QUrl::fromUserInput(address, QDir::currentPath()).toString(), true);
        window.resize(HeadlessTour::WindowSize());
        window.show();
        // The pages give their tabs their titles once loaded.
        QEventLoop settle;
        QTimer::singleShot(300, &settle, &QEventLoop::quit);
        settle.exec();
        QTextStream(stdout) << AccessibleTreeText(&window);
    }
    // The settings go with the profile folder: let them be written while it exists.
    ReleaseSingletons();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // The platform is chosen before the application exists.
    const bool dump = HasArgument(argc, argv, "--a11y-dump");
    const bool tour = !dump && (HasArgument(argc, argv, "--tour") || !HasDisplay());
    if (dump) {
        PrepareHeadless();
        // The same rectangles on every machine, as in the tour.
        QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    }
    if (tour) {
        PrepareHeadless();
        qInstallMessageHandler(TourMessageHandler);
        // Screenshots at 96 dpi whatever the machine, so that every run looks alike.
        QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("KelTabBrowser"));
    QApplication::setOrganizationName(QStringLiteral("KelTab"));
    QApplication::setApplicationVersion(QStringLiteral("0.1"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The demo browser of KelTabContainer."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption classicOption(QStringLiteral("classic"), QStringLiteral("Use the classic tab bar."));
    const QCommandLineOption tourOption(QStringLiteral("tour"),
                                        QStringLiteral("Run the scripted tour offscreen, even with a display."));
    const QCommandLineOption logOption(QStringLiteral("log-signals"),
                                       QStringLiteral("Print every signal of the tab bar as it comes."));
    const QCommandLineOption outOption(QStringLiteral("out"), QStringLiteral("Write the tour into <dir>."),
                                       QStringLiteral("dir"));
    const QCommandLineOption dumpOption(QStringLiteral("a11y-dump"),
                                        QStringLiteral("Print the window's accessible tree and exit."));
    const QCommandLineOption langOption(QStringLiteral("lang"),
                                        QStringLiteral("Show the texts in <language> (de, zh_CN, he; by default the "
                                                       "system's, English in the tour) and lay the window out in its "
                                                       "direction."),
                                        QStringLiteral("language"));
    parser.addPositionalArgument(QStringLiteral("address"), QStringLiteral("Addresses to open in tabs."),
                                 QStringLiteral("[address...]"));
    parser.addOption(classicOption);
    parser.addOption(tourOption);
    parser.addOption(logOption);
    parser.addOption(outOption);
    parser.addOption(dumpOption);
    parser.addOption(langOption);
    parser.process(app);

    DemoLanguage language;
    const QLocale locale = parser.isSet(langOption) ? QLocale(parser.value(langOption)) : QLocale::system();
    if ((parser.isSet(langOption) || !tour) && !language.Load(locale))
        std::fprintf(stderr, "No translation for %s: the texts stay English.\n", qUtf8Printable(locale.name()));

    // The library's look first, then the window lays its own over it.
    KelTabStyle::ApplyDefaultStyleSheet();

    const BrowserWindow::BarKind kind = parser.isSet(classicOption) ? BrowserWindow::BarKind::Classic : BrowserWindow::BarKind::Scrolling;

    int rc = 0;
    SignalLog signalLog;
    if (dump) {
        rc = DumpAccessibleTree(kind, parser.positionalArguments());
    } else if (!tour) {
        signalLog.SetEcho(parser.isSet(logOption));
        BrowserWindow window(kind, parser.isSet(logOption) ? &signalLog : nullptr);
        const QStringList addresses = parser.positionalArguments();
        for (const QString &address : addresses)
            window.OpenUrl(QUrl::fromUserInput(address, QDir::currentPath()).toString(), true);
        window.resize(HeadlessTour::WindowSize());
        window.show();
        rc = app.exec();
    } else {
        QDir out;
        if (parser.isSet(outOption)) {
            out.setPath(QDir::current().absoluteFilePath(parser.value(outOption)));
            if (!out.mkpath(QStringLiteral("."))) {
                std::fprintf(stderr, "Cannot create %s\n", qUtf8Printable(out.absolutePath()));
                return 2;
            }
        } else {
            QTemporaryDir made(QDir::tempPath() + QStringLiteral("/keltab-tour-XXXXXX"));
            made.setAutoRemove(false);
            if (!made.isValid()) {
                std::fprintf(stderr, "Cannot create a folder under %s\n", qUtf8Printable(QDir::tempPath()));
                return 2;
            }
            out.setPath(made.path());
        }
        IsolateProfile(out);
        std::printf("No display: running the scripted tour offscreen.\n");
        std::fflush(stdout);
        {
            // The tour always starts with the scrolling bar and switches to the classic one.
            signalLog.AddNote(HeadlessTour::WindowOpensHeading());
            BrowserWindow window(BrowserWindow::BarKind::Scrolling, &signalLog);
            HeadlessTour run(&window, &signalLog, out.absolutePath());
            QTimer::singleShot(0, &run, [&run] { QApplication::exit(run.Run()); });
            rc = app.exec();
        }
        std::printf("Tour written to %s\n", qUtf8Printable(out.absolutePath()));
    }
    ReleaseSingletons();
    return rc;
}
