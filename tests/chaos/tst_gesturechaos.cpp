// SPDX-License-Identifier: MIT
// The gesture side under a seeded random run: strokes over the whole int range,
// direction lists of any shape handed to the handler, right-button strokes on a
// watched widget, the switches and the map changed while another program holds the
// settings database or after the file was damaged. After every step: the handler
// ran at most one action, the recogniser spoke only in directions, no unexpected Qt
// warning; at the end, after the singletons were released and read back, the last
// values set are the ones stored (nothing silently reverted).
//
// KELTAB_CHAOS_SEED and KELTAB_CHAOS_STEPS (chaosseed.h) choose the seed and the
// length, as for the tab bars.

#include "chaosseed.h"
#include "gesturetestsupport.h"

#include <KelTabContainer/browsergesturehandler.h>
#include <KelTabContainer/dpitool.h>
#include <KelTabContainer/kelmousegesture.h>
#include <KelTabContainer/mousestrokerecognizer.h>
#include <KelTabContainer/vossettingmanager.h>

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QWidget>

#include <limits>
#include <memory>

using GestureTest::RecordingDelegate;
using GestureTest::Sandbox;

namespace {

// While another program holds the database every read and write of the store waits
// for it (a bounded wait of a few hundred milliseconds): the lock comes seldom and
// goes after a few steps, as a backup tool's would.
constexpr int kLockOneIn = 40;
constexpr int kLockedSteps = 3;

QStringList g_warnings;

// The warnings the settings store gives on purpose for a locked or damaged file.
bool Expected(const QString &message)
{
    return message.startsWith(QLatin1String("VosSettingManager: the settings database"))
        && (message.contains(QLatin1String("is locked by another program"))
            || message.contains(QLatin1String("is still locked")) || message.contains(QLatin1String("is damaged")));
}

void Handler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !Expected(message))
        g_warnings << message;
}

} // namespace

class TstGestureChaos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void randomRun();

private:
    int Random(int bound) { return int(m_random.bounded(quint32(qMax(1, bound)))); }
    int AnyInt();
    QStringList AnyCodes();
    bool Lock();
    void Unlock();

    QRandomGenerator m_random;
    std::unique_ptr<QProcess> m_holder;
    int m_lockedFor = 0;
    QtMessageHandler m_previous = nullptr;
};

void TstGestureChaos::initTestCase()
{
    DpiTool::SetScaleFactor(1.0);
    m_previous = qInstallMessageHandler(&Handler);
}

void TstGestureChaos::cleanupTestCase()
{
    Unlock();
    qInstallMessageHandler(m_previous);
}

int TstGestureChaos::AnyInt()
{
    switch (Random(4)) {
    case 0:
        return std::numeric_limits<int>::min() + Random(3);
    case 1:
        return std::numeric_limits<int>::max() - Random(3);
    case 2:
        return Random(2000) - 1000;
    default:
        return int(m_random.generate());
    }
}

namespace {

// The delegate call a finished gesture of @p shape makes under @p map, or "" for none.
QString HostCall(const QString &shape, const QMap<EMouseGestureDirection, EBrowserAction> &map)
{
    static const QMap<QString, EMouseGestureDirection> shapes{
        {"L", MouseGestureLeft},       {"R", MouseGestureRight},     {"U", MouseGestureUp},
        {"D", MouseGestureDown},       {"DR", MouseGestureDownRight}, {"RU", MouseGestureRightUp},
        {"RD", MouseGestureRightDown}, {"LU", MouseGestureLeftUp},    {"UL", MouseGestureUpLeft},
        {"UR", MouseGestureUpRight},   {"RL", MouseGestureRightLeft}};
    static const QMap<EBrowserAction, QString> calls{
        {BrowserActionBack, "ActionBack"},
        {BrowserActionForward, "ActionForward"},
        {BrowserActionCloseTab, "ActionCloseTab"},
        {BrowserActionNewTab, "ActionNewTab"},
        {BrowserActionReload, "ActionRefresh"},
        {BrowserActionCloseAll, "ActionCloseAllTabs"},
        {BrowserActionPreviousTab, "ActionPreviousTab"},
        {BrowserActionNextTab, "ActionNextTab"},
        {BrowserActionRecoverClosedTab, "ActionRecoverClosedTab"}};
    const auto direction = shapes.constFind(shape);
    if (direction == shapes.constEnd() || !map.contains(direction.value()))
        return QString();
    return calls.value(map.value(direction.value()));
}

} // namespace

QStringList TstGestureChaos::AnyCodes()
{
    static const QStringList vocabulary{"L", "R", "U", "D", "", "X", "LR", "u", "DD", QStringLiteral("\u00e9")};
    QStringList codes;
    const int length = Random(10) == 0 ? 200 : Random(5);
    for (int i = 0; i < length; ++i)
        codes << vocabulary.at(Random(Random(3) == 0 ? vocabulary.size() : 4));
    return codes;
}

// Another program takes the settings database, as a second instance of the host would.
bool TstGestureChaos::Lock()
{
    if (m_holder)
        return true;
    m_holder.reset(new QProcess);
    m_holder->start(QStringLiteral(KELTAB_SETTINGS_LOCK_HOLDER), {VosSettingManager::Instance()->DatabasePath()});
    if (!m_holder->waitForReadyRead(10000) || !m_holder->readLine().startsWith("locked")) {
        m_holder.reset();
        return false;
    }
    return true;
}

void TstGestureChaos::Unlock()
{
    if (!m_holder)
        return;
    m_holder->write("\n");
    m_holder->closeWriteChannel();
    m_holder->waitForFinished(10000);
    m_holder.reset();
}

void TstGestureChaos::randomRun()
{
    const quint32 seed = KelTest::ChaosSeed();
    const int steps = KelTest::ChaosSteps(2000, 800);
    m_random.seed(seed);
    qInfo("gesture chaos: seed %u, %d steps", seed, steps);

    auto sandbox = std::make_unique<Sandbox>();
    const QString database = sandbox->Path(QStringLiteral("settings.sqlite"));
    RecordingDelegate delegate;
    BrowserGestureHandler handler;
    handler.SetGestureHandlerDelegate(&delegate);
    QWidget page;
    page.resize(400, 300);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    MouseStrokeRecognizer recognizer;
    recognizer.Attach(&page);
    recognizer.SetGestureHandler(&handler);

    // What the store must give back at the end.
    bool enable = true;
    bool tip = true;
    QMap<EMouseGestureDirection, EBrowserAction> stored;
    const QStringList directions{"L", "R", "U", "D"};

    for (int step = 0; step < steps; ++step) {
        const int callsBefore = delegate.calls.size();
        QString what;
        switch (Random(10)) {
        case 0: {
            what = QStringLiteral("moving");
            handler.HandleGestureMoving(AnyCodes());
            break;
        }
        case 1: {
            what = QStringLiteral("event");
            const QStringList codes = AnyCodes();
            // The one action the map in force binds to the shape, and only when the host
            // performs it (Page Up/Down are keys the handler sends itself).
            const QString expected = HostCall(codes.join(QString()), KelMouseGesture::Instance()->GetGestureMap());
            handler.HandleGestureEvent(codes);
            const QStringList ran = delegate.calls.mid(callsBefore);
            QVERIFY2(ran == (expected.isEmpty() ? QStringList() : QStringList{expected}),
                     qPrintable(QStringLiteral("seed %1 step %2: \"%3\" ran [%4], expected [%5]")
                                    .arg(seed).arg(step).arg(codes.join(QString()), ran.join(QLatin1Char(',')), expected)));
            break;
        }
        case 2:
        case 3: {
            what = QStringLiteral("recognise");
            QVector<QPoint> points;
            const int n = Random(12);
            for (int i = 0; i < n; ++i)
                points << QPoint(AnyInt(), AnyInt());
            const QStringList codes = MouseStrokeRecognizer::RecognizeStroke(points, Random(3) ? AnyInt() : Random(40));
            for (const QString &code : codes)
                QVERIFY2(directions.contains(code), qPrintable(QStringLiteral("seed %1 step %2: code \"%3\"").arg(seed).arg(step).arg(code)));
            QVERIFY(codes.size() <= qMax(0, points.size() - 1));
            break;
        }
        case 4: {
            what = QStringLiteral("stroke");
            QPoint at(Random(page.width()), Random(page.height()));
            QTest::mousePress(&page, Qt::RightButton, {}, at);
            for (int i = Random(6); i > 0; --i) {
                at = QPoint(Random(page.width() * 3) - page.width(), Random(page.height() * 3) - page.height());
                QMouseEvent move(QEvent::MouseMove, at, page.mapToGlobal(at), Qt::NoButton, Qt::RightButton, Qt::NoModifier);
                QApplication::sendEvent(&page, &move);
            }
            QTest::mouseRelease(&page, Random(8) ? Qt::RightButton : Qt::LeftButton, {}, at);
            break;
        }
        case 5: {
            what = QStringLiteral("switches");
            enable = Random(2);
            tip = Random(2);
            KelMouseGesture::Instance()->SetEnableGesture(enable);
            KelMouseGesture::Instance()->SetEnableGestureTip(tip);
            break;
        }
        case 6: {
            what = QStringLiteral("map");
            QMap<EMouseGestureDirection, EBrowserAction> map;
            for (int i = Random(4); i > 0; --i)
                map.insert(EMouseGestureDirection(Random(14) - 1), EBrowserAction(Random(16) - 1));
            KelMouseGesture::Instance()->SetGestureMap(map);
            stored = map;
            Q_EMIT KelMouseGesture::Instance()->SigMouseGestureUpdate();
            break;
        }
        case 7: {
            if (m_holder || Random(kLockOneIn / 10) != 0)
                break;
            what = QStringLiteral("lock");
            QVERIFY(Lock());
            m_lockedFor = 0;
            break;
        }
        case 8: {
            // The file damaged while the host was not running: set aside, defaults in force.
            if (Random(8) != 0)
                break;
            what = QStringLiteral("damage");
            Unlock();
            KelMouseGesture::ReleaseInstance();
            VosSettingManager::ReleaseInstance();
            QFile file(database);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            QByteArray junk(1 + Random(5000), '\0');
            for (char &c : junk)
                c = char(Random(256));
            file.write(junk);
            file.close();
            VosSettingManager::Instance()->SetDatabasePath(database);
            KelMouseGesture::Instance()->ReadEnableGesture();
            KelMouseGesture::Instance()->ReadEnableGestureTip();
            enable = true;
            tip = true;
            stored.clear();
            QCOMPARE(KelMouseGesture::Instance()->GetEnableGesture(), true);
            QCOMPARE(KelMouseGesture::Instance()->GetGestureMap(), KelMouseGesture::Instance()->GetDefaultGestureMap());
            break;
        }
        default: {
            what = QStringLiteral("events");
            QCoreApplication::processEvents();
            break;
        }
        }
        if (m_holder && ++m_lockedFor > kLockedSteps)
            Unlock();
        QVERIFY2(delegate.calls.size() <= callsBefore + 1,
                 qPrintable(QStringLiteral("seed %1 step %2 (%3): %4 actions").arg(seed).arg(step).arg(what).arg(delegate.calls.size() - callsBefore)));
        QVERIFY2(g_warnings.isEmpty(),
                 qPrintable(QStringLiteral("seed %1 step %2 (%3): %4").arg(seed).arg(step).arg(what).arg(g_warnings.join(QLatin1String(" | ")))));
    }

    // Nothing set during the run was lost: the store, read again from the file, has it.
    Unlock();
    KelMouseGesture::ReleaseInstance();
    VosSettingManager::ReleaseInstance();
    VosSettingManager::Instance()->SetDatabasePath(database);
    KelMouseGesture::Instance()->ReadEnableGesture();
    KelMouseGesture::Instance()->ReadEnableGestureTip();
    QCOMPARE(KelMouseGesture::Instance()->GetEnableGesture(), enable);
    QCOMPARE(KelMouseGesture::Instance()->GetEnableGestureTip(), tip);
    const QMap<EMouseGestureDirection, EBrowserAction> map = KelMouseGesture::Instance()->GetGestureMap();
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        QCOMPARE(map.value(it.key()), it.value());
    recognizer.Attach(nullptr);
    sandbox.reset();
}

QTEST_MAIN(TstGestureChaos)
#include "tst_gesturechaos.moc"
