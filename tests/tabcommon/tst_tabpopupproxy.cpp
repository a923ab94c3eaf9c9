// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tabpopupproxy.h"

#include <memory>

namespace {

// Records when the left-release hook runs, to check it runs before the proxy hides.
class ProbeProxy : public TabPopupProxy
{
public:
    using TabPopupProxy::TabPopupProxy;

    int hookCalls = 0;
    bool visibleInHook = false;

protected:
    void LeftButtonReleased() override
    {
        ++hookCalls;
        visibleInHook = isVisible();
    }
};

// Shows a proxy. The offscreen platform cannot raise a window or grab the keyboard
// and says so each time a popup opens; those two messages are expected there.
void ShowProxy(QWidget *proxy)
{
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    }
    proxy->show();
}

bool SendMouse(QWidget *widget, QEvent::Type type, Qt::MouseButton button)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    QMouseEvent event(type, QPointF(0, 0), QPointF(40, 40), button, held, Qt::NoModifier);
    event.setAccepted(false);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

} // namespace

class TstTabPopupProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructedHiddenInvisiblePopup();
    void leftReleaseHidesAndEmits();
    void otherReleaseKeepsItShown_data();
    void otherReleaseKeepsItShown();
    void pressIsAcceptedAndChangesNothing_data();
    void pressIsAcceptedAndChangesNothing();
    void everyHideEmits_data();
    void everyHideEmits();
    void hidingAHiddenProxyEmitsNothing();
    void canBeShownAgainAfterRelease();
    void deletingShownProxyEmitsNothing();
};

void TstTabPopupProxy::constructedHiddenInvisiblePopup()
{
    TabPopupProxy proxy;
    QCOMPARE(proxy.parentWidget(), nullptr);
    QCOMPARE(proxy.windowType(), Qt::Popup);
    QVERIFY(proxy.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(proxy.windowOpacity(), 0.0);
    QCOMPARE(proxy.size(), QSize(1, 1));
    QCOMPARE(proxy.pos(), QPoint(0, 0));
    QVERIFY(proxy.isHidden());
    QVERIFY(!proxy.isVisible());
    QVERIFY(!proxy.hasMouseTracking());
}

void TstTabPopupProxy::leftReleaseHidesAndEmits()
{
    ProbeProxy proxy;
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);
    ShowProxy(&proxy);
    QVERIFY(proxy.isVisible());
    QCOMPARE(released.count(), 0);

    QVERIFY(SendMouse(&proxy, QEvent::MouseButtonRelease, Qt::LeftButton));
    QVERIFY(!proxy.isVisible());
    QCOMPARE(released.count(), 1);
    QCOMPARE(proxy.hookCalls, 1);
    QVERIFY(proxy.visibleInHook);
}

void TstTabPopupProxy::otherReleaseKeepsItShown_data()
{
    QTest::addColumn<int>("button");

    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("back") << int(Qt::BackButton);
}

void TstTabPopupProxy::otherReleaseKeepsItShown()
{
    QFETCH(int, button);

    ProbeProxy proxy;
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);
    ShowProxy(&proxy);
    QVERIFY(SendMouse(&proxy, QEvent::MouseButtonRelease, Qt::MouseButton(button)));
    QVERIFY(proxy.isVisible());
    QCOMPARE(released.count(), 0);
    QCOMPARE(proxy.hookCalls, 0);

    proxy.hide();
    QCOMPARE(released.count(), 1);
}

void TstTabPopupProxy::pressIsAcceptedAndChangesNothing_data()
{
    QTest::addColumn<int>("button");

    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
}

void TstTabPopupProxy::pressIsAcceptedAndChangesNothing()
{
    QFETCH(int, button);

    ProbeProxy proxy;
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);
    ShowProxy(&proxy);
    QVERIFY(SendMouse(&proxy, QEvent::MouseButtonPress, Qt::MouseButton(button)));
    QVERIFY(proxy.isVisible());
    QCOMPARE(released.count(), 0);
    QCOMPARE(proxy.hookCalls, 0);
    proxy.hide();
}

void TstTabPopupProxy::everyHideEmits_data()
{
    QTest::addColumn<int>("how");

    QTest::newRow("hide") << 0;
    QTest::newRow("setVisible(false)") << 1;
    QTest::newRow("close") << 2;
}

void TstTabPopupProxy::everyHideEmits()
{
    QFETCH(int, how);

    TabPopupProxy proxy;
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);
    ShowProxy(&proxy);
    switch (how) {
    case 0:
        proxy.hide();
        break;
    case 1:
        proxy.setVisible(false);
        break;
    default:
        proxy.close();
        break;
    }
    QVERIFY(!proxy.isVisible());
    QCOMPARE(released.count(), 1);
}

void TstTabPopupProxy::hidingAHiddenProxyEmitsNothing()
{
    TabPopupProxy proxy;
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);
    proxy.hide();
    QCOMPARE(released.count(), 0);

    ShowProxy(&proxy);
    proxy.hide();
    proxy.hide();
    QCOMPARE(released.count(), 1);
}

void TstTabPopupProxy::canBeShownAgainAfterRelease()
{
    TabPopupProxy proxy;
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);
    for (int hold = 1; hold <= 3; ++hold) {
        ShowProxy(&proxy);
        QVERIFY(proxy.isVisible());
        QVERIFY(SendMouse(&proxy, QEvent::MouseButtonRelease, Qt::LeftButton));
        QVERIFY(!proxy.isVisible());
        QCOMPARE(released.count(), hold);
    }
    QCOMPARE(proxy.size(), QSize(1, 1));
}

void TstTabPopupProxy::deletingShownProxyEmitsNothing()
{
    // The owner deletes its proxy while being destroyed itself; it must not hear of it.
    auto proxy = std::make_unique<TabPopupProxy>();
    QSignalSpy released(proxy.get(), &TabPopupProxy::SigButtonRelease);
    QSignalSpy destroyed(proxy.get(), &QObject::destroyed);
    ShowProxy(proxy.get());
    QVERIFY(proxy->isVisible());
    proxy.reset();
    QCOMPARE(released.count(), 0);
    // The destroyed() signal is not swallowed with it.
    QCOMPARE(destroyed.count(), 1);
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
}

KELTAB_TEST_MAIN(TstTabPopupProxy)
#include "tst_tabpopupproxy.moc"
