// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "browsergesturehandler.h"
#include "dpitool.h"
#include "gesturetestsupport.h"
#include "gesturetoast.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QPointer>
#include <QTranslator>

using GestureMap = QMap<EMouseGestureDirection, EBrowserAction>;
using namespace GestureTest;

namespace {

GestureToast *FindToast()
{
    GestureToast *found = nullptr;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *toast = qobject_cast<GestureToast *>(widget)) {
            if (found)
                return nullptr; // more than one toast is a failure of its own
            found = toast;
        }
    }
    return found;
}

bool ToastVisible()
{
    GestureToast *toast = FindToast();
    return toast && toast->isVisible();
}

class KeyRecorder : public QWidget
{
public:
    KeyRecorder() { setFocusPolicy(Qt::StrongFocus); }
    QList<QPair<QEvent::Type, int>> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys.append(qMakePair(event->type(), event->key())); }
    void keyReleaseEvent(QKeyEvent *event) override { keys.append(qMakePair(event->type(), event->key())); }
};

class MarkingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return QString::fromUtf8(context) + QStringLiteral(":") + QString::fromUtf8(sourceText);
    }
};

const QString kEvent = QStringLiteral("Start_SystemSetting_GestureFunction");
const QString kPlugin = QStringLiteral("kel_webpage");

} // namespace

class TstBrowserGestureHandler : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Recorders> m_recorders;

    BrowserGestureHandler *Handler() { return m_recorders->Handler(); }

private Q_SLOTS:
    void init()
    {
        DpiTool::SetScaleFactor(1.0);
        m_recorders.reset(new Recorders);
    }

    void cleanup()
    {
        m_recorders->handler.reset();
        QVERIFY(!FindToast());
        m_recorders.reset();
        DpiTool::SetScaleFactor(0);
    }

    void rightUpShowsNewTabThenOpensOne()
    {
        Handler()->HandleGestureMoving({QStringLiteral("R")});
        QVERIFY(ToastVisible());
        QCOMPARE(FindToast()->Text(), QStringLiteral("Forward"));
        Handler()->HandleGestureMoving({QStringLiteral("R"), QStringLiteral("U")});
        QCOMPARE(FindToast()->Text(), QStringLiteral("New tab"));
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QVERIFY(m_recorders->monitor.events.isEmpty());

        Handler()->HandleGestureEvent({QStringLiteral("R"), QStringLiteral("U")});
        QVERIFY(!ToastVisible());
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionNewTab")});
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QCOMPARE(m_recorders->monitor.events.at(0).event, kEvent);
        QCOMPARE(m_recorders->monitor.events.at(0).pluginCode, kPlugin);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters, QStringList{QStringLiteral("New tab")});
    }

    void usageReportCarriesTheTranslatedText()
    {
        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        Handler()->HandleGestureEvent({QStringLiteral("RU")});
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters, QStringList{QStringLiteral("KelMouseGesture:New tab")});
    }

    void dispatch_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("text");
        QTest::newRow("L") << QStringList{"L"} << QStringLiteral("ActionBack") << QStringLiteral("Back");
        QTest::newRow("R") << QStringList{"R"} << QStringLiteral("ActionForward") << QStringLiteral("Forward");
        QTest::newRow("DR") << QStringList{"D", "R"} << QStringLiteral("ActionCloseTab") << QStringLiteral("Close tab");
        QTest::newRow("RU") << QStringList{"R", "U"} << QStringLiteral("ActionNewTab") << QStringLiteral("New tab");
        QTest::newRow("RU joined") << QStringList{"RU"} << QStringLiteral("ActionNewTab") << QStringLiteral("New tab");
        QTest::newRow("RD") << QStringList{"R", "D"} << QStringLiteral("ActionRefresh") << QStringLiteral("Reload");
        QTest::newRow("LU") << QStringList{"L", "U"} << QStringLiteral("ActionCloseAllTabs") << QStringLiteral("Close all");
        QTest::newRow("UL") << QStringList{"U", "L"} << QStringLiteral("ActionPreviousTab") << QStringLiteral("Previous tab");
        QTest::newRow("UR") << QStringList{"U", "R"} << QStringLiteral("ActionNextTab") << QStringLiteral("Next tab");
        QTest::newRow("RL") << QStringList{"R", "L"} << QStringLiteral("ActionRecoverClosedTab") << QStringLiteral("Recover recently closed tab");
    }

    void dispatch()
    {
        QFETCH(QStringList, codes);
        QFETCH(QString, call);
        QFETCH(QString, text);
        Handler()->HandleGestureMoving(codes);
        QCOMPARE(FindToast()->Text(), text);
        Handler()->HandleGestureEvent(codes);
        QCOMPARE(m_recorders->delegate.calls, QStringList{call});
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters, QStringList{text});
    }

    void userMapDecidesTheAction()
    {
        GestureMap map;
        map[MouseGestureLeft] = BrowserActionNextTab;
        KelMouseGesture::Instance()->SetGestureMap(map);
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QCOMPARE(FindToast()->Text(), QStringLiteral("Next tab"));
        Handler()->HandleGestureEvent({QStringLiteral("L")});
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionNextTab")});
    }

    void mapIsReadOnEveryUpdate()
    {
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QCOMPARE(FindToast()->Text(), QStringLiteral("Back"));
        KelMouseGesture::Instance()->SetGestureMap(GestureMap{{MouseGestureLeft, BrowserActionReload}});
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QCOMPARE(FindToast()->Text(), QStringLiteral("Reload"));
    }

    void unknownShapes_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::newRow("LR") << QStringList{"L", "R"};
        QTest::newRow("empty list") << QStringList();
        QTest::newRow("empty code") << QStringList{""};
        QTest::newRow("DL") << QStringList{"D", "L"};
        QTest::newRow("RUR") << QStringList{"R", "U", "R"};
        QTest::newRow("lower-case l") << QStringList{"l"};
        QTest::newRow("blank") << QStringList{"R", " ", "U"};
    }

    void unknownShapes()
    {
        QFETCH(QStringList, codes);
        Handler()->HandleGestureMoving(codes);
        QVERIFY(ToastVisible());
        QCOMPARE(FindToast()->Text(), QStringLiteral("Invalid action"));
        Handler()->HandleGestureEvent(codes);
        QVERIFY(!ToastVisible());
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QVERIFY(m_recorders->monitor.events.isEmpty());
    }

    void invalidActionShowsItsTextAndIsReported()
    {
        GestureMap map = KelMouseGesture::Instance()->GetDefaultGestureMap();
        map[MouseGestureRightDown] = BrowserActionInvalid;
        KelMouseGesture::Instance()->SetGestureMap(map);

        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        // Created under the translator: the toast text must be the settings class's
        // translation, not the handler's own.
        KelMouseGesture::ReleaseInstance();
        Handler()->HandleGestureMoving({QStringLiteral("R"), QStringLiteral("D")});
        const QString shown = FindToast()->Text();
        Handler()->HandleGestureEvent({QStringLiteral("R"), QStringLiteral("D")});
        QCoreApplication::removeTranslator(&translator);

        QCOMPARE(shown, QStringLiteral("KelMouseGesture:Invalid action"));
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters,
                 QStringList{QStringLiteral("KelMouseGesture:Invalid action")});
    }

    void unknownShapeTextComesFromTheHandler()
    {
        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        Handler()->HandleGestureMoving({QStringLiteral("X")});
        const QString shown = FindToast()->Text();
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(shown, QStringLiteral("BrowserGestureHandler:Invalid action"));
    }

    void storedUnknownActionDoesNothingButIsReported()
    {
        KelMouseGesture::Instance()->SetGestureMap(GestureMap{{MouseGestureUp, EBrowserAction(99)}});
        Handler()->HandleGestureMoving({QStringLiteral("U")});
        QCOMPARE(FindToast()->Text(), QStringLiteral("Invalid action"));
        Handler()->HandleGestureEvent({QStringLiteral("U")});
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters, QStringList{QStringLiteral("Invalid action")});
    }

    void pageKeysAreInjected_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("text");
        QTest::newRow("U: Page Up") << QStringLiteral("U") << int(Qt::Key_PageUp) << QStringLiteral("PageUp");
        QTest::newRow("D: Page Down") << QStringLiteral("D") << int(Qt::Key_PageDown) << QStringLiteral("PageDown");
    }

    void pageKeysAreInjected()
    {
        QFETCH(QString, code);
        QFETCH(int, key);
        QFETCH(QString, text);

        KeyRecorder page;
        page.show();
        QApplication::setActiveWindow(&page);
        page.setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(&page));

        Handler()->HandleGestureEvent({code});
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        const QList<QPair<QEvent::Type, int>> expected{{QEvent::KeyPress, key}, {QEvent::KeyRelease, key}};
        QTRY_COMPARE(page.keys.size(), 2);
        QCOMPARE(page.keys, expected);
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters, QStringList{text});
    }

    void toastIsCentredOnTheArea_data()
    {
        QTest::addColumn<double>("factor");
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QPoint>("position");
        QTest::addColumn<QSize>("size");
        QTest::newRow("800 x 600 at 1.0") << 1.0 << QRect(100, 100, 800, 600) << QPoint(400, 355) << QSize(200, 90);
        // 465 / 2 truncates to 232.
        QTest::newRow("800 x 600 at 1.5") << 1.5 << QRect(100, 100, 800, 600) << QPoint(350, 332) << QSize(300, 135);
        QTest::newRow("odd remainder") << 1.0 << QRect(0, 0, 301, 101) << QPoint(50, 5) << QSize(200, 90);
        // Narrower than the toast: -99 / 2 truncates toward zero, to -49.
        QTest::newRow("narrower than the toast") << 1.0 << QRect(0, 0, 101, 51) << QPoint(-49, -19) << QSize(200, 90);
        QTest::newRow("negative origin") << 1.0 << QRect(-1000, -500, 400, 300) << QPoint(-900, -395) << QSize(200, 90);
    }

    void toastIsCentredOnTheArea()
    {
        QFETCH(double, factor);
        QFETCH(QRect, area);
        QFETCH(QPoint, position);
        QFETCH(QSize, size);
        DpiTool::SetScaleFactor(factor);
        m_recorders->delegate.area = area;
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        GestureToast *toast = FindToast();
        QVERIFY(toast);
        QCOMPARE(toast->size(), size);
        QCOMPARE(toast->pos(), position);
    }

    void everyUpdateRecomputesThePosition()
    {
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QCOMPARE(FindToast()->pos(), QPoint(400, 355));
        m_recorders->delegate.area = QRect(0, 0, 400, 190);
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QCOMPARE(FindToast()->pos(), QPoint(100, 50));
        QCOMPARE(m_recorders->delegate.areaRequests, 2);
    }

    void oneToastIsReused()
    {
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QPointer<GestureToast> first = FindToast();
        Handler()->HandleGestureEvent({QStringLiteral("X")});
        Handler()->HandleGestureMoving({QStringLiteral("R")});
        QCOMPARE(FindToast(), first.data());
        QVERIFY(first->isVisible());
        m_recorders->handler.reset();
        QVERIFY(!first);
    }

    void tipsOffShowNothingButStillAct()
    {
        KelMouseGesture::Instance()->SetEnableGestureTip(false);
        Handler()->HandleGestureMoving({QStringLiteral("R"), QStringLiteral("U")});
        Handler()->HandleGestureMoving({QStringLiteral("X")});
        QVERIFY(!FindToast());
        QCOMPARE(m_recorders->delegate.areaRequests, 0);
        Handler()->HandleGestureEvent({QStringLiteral("R"), QStringLiteral("U")});
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionNewTab")});
        QCOMPARE(m_recorders->monitor.events.size(), 1);
    }

    void gestureUpdateSignalSwitchesTheTip()
    {
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        Handler()->HandleGestureEvent({QStringLiteral("L")});
        QVERIFY(!ToastVisible());

        KelMouseGesture::Instance()->SetEnableGestureTip(false);
        // Without the signal the handler keeps what it read.
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QVERIFY(ToastVisible());
        Handler()->HandleGestureEvent({QStringLiteral("L")});

        emit KelMouseGesture::Instance()->SigMouseGestureUpdate();
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QVERIFY(!ToastVisible());

        KelMouseGesture::Instance()->SetEnableGestureTip(true);
        emit KelMouseGesture::Instance()->SigMouseGestureUpdate();
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QVERIFY(ToastVisible());
    }

    void tipSwitchIsReadAtConstruction()
    {
        KelMouseGesture::Instance()->SetEnableGestureTip(false);
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QVERIFY(!FindToast());
    }

    void gesturesSwitchIsNotTheHandlersBusiness()
    {
        KelMouseGesture::Instance()->SetEnableGesture(false);
        Handler()->HandleGestureMoving({QStringLiteral("L")});
        QVERIFY(ToastVisible());
        Handler()->HandleGestureEvent({QStringLiteral("L")});
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionBack")});
    }

    // Without a delegate the handler used to drop every gesture: no page keys and
    // no usage report, although neither needs the host.
    void withoutDelegatePageKeysAndReportsStillHappen()
    {
        KeyRecorder page;
        page.show();
        QApplication::setActiveWindow(&page);
        page.setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(&page));

        Handler()->SetGestureHandlerDelegate(nullptr);
        Handler()->HandleGestureMoving({QStringLiteral("R"), QStringLiteral("U")});
        QVERIFY(!FindToast());
        Handler()->HandleGestureEvent({QStringLiteral("R"), QStringLiteral("U")});
        Handler()->HandleGestureEvent({QStringLiteral("D")});
        Handler()->HandleGestureEvent({QStringLiteral("L"), QStringLiteral("R")});
        const QList<QPair<QEvent::Type, int>> expected{{QEvent::KeyPress, Qt::Key_PageDown},
                                                       {QEvent::KeyRelease, Qt::Key_PageDown}};
        QTRY_COMPARE(page.keys.size(), 2);
        QCOMPARE(page.keys, expected);
        QCOMPARE(m_recorders->monitor.events.size(), 2);
        QCOMPARE(m_recorders->monitor.events.at(0).parameters, QStringList{QStringLiteral("New tab")});
        QCOMPARE(m_recorders->monitor.events.at(1).parameters, QStringList{QStringLiteral("PageDown")});
        QVERIFY(m_recorders->delegate.calls.isEmpty());

        // And a delegate set later is used.
        Handler()->SetGestureHandlerDelegate(&m_recorders->delegate);
        Handler()->HandleGestureEvent({QStringLiteral("R"), QStringLiteral("U")});
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionNewTab")});
    }

    void endWithoutMovingHidesNothingAndStillActs()
    {
        Handler()->HandleGestureEvent({QStringLiteral("L")});
        QVERIFY(!FindToast());
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionBack")});
    }

    void defaultMonitorWritesTheUsageLog()
    {
        IMonitorSystem::SetMonitorSystem(nullptr);
        Handler()->HandleGestureEvent({QStringLiteral("R"), QStringLiteral("U")});
        QFile log(IMonitorSystem::LogFilePath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = log.readAll().trimmed().split('\n');
        QCOMPARE(lines.size(), 1);
        const QJsonObject record = QJsonDocument::fromJson(lines.at(0)).object();
        QCOMPARE(record.value(QStringLiteral("event")).toString(), kEvent);
        QCOMPARE(record.value(QStringLiteral("plugin")).toString(), kPlugin);
        QCOMPARE(record.value(QStringLiteral("parameters")).toArray(), QJsonArray{QStringLiteral("New tab")});
    }
};

KELTAB_TEST_MAIN(TstBrowserGestureHandler)
#include "tst_browsergesturehandler.moc"
