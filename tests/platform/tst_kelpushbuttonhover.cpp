// SPDX-License-Identifier: MIT
#include "hoverevents.h"
#include "keltabtest.h"

#include "kelpushbuttonhover.h"

namespace {

const QColor kIdle(0, 0, 255);
const QColor kHovered(255, 0, 0);

using KelTest::SendEnter;
using KelTest::SendLeave;

} // namespace

class TstKelPushButtonHover : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsNotHovered();
    void enterAndLeaveToggleHovered();
    void noSignalWhenUnchanged();
    void hideClearsHover();
    void hideWhenNotHoveredEmitsNothing();
    void styleSheetFollowsHoveredProperty();
    void pointerMovesInAndOut();

private:
    QWidget *m_host = nullptr;
    KelPushButtonHover *m_button = nullptr;
};

void TstKelPushButtonHover::init()
{
    m_host = new QWidget;
    m_host->resize(120, 60);
    m_button = new KelPushButtonHover(m_host);
    m_button->setGeometry(10, 10, 40, 30);
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host));
}

void TstKelPushButtonHover::cleanup()
{
    delete m_host;
    m_host = nullptr;
    m_button = nullptr;
}

void TstKelPushButtonHover::startsNotHovered()
{
    QVERIFY(!m_button->IsHovered());
    QCOMPARE(m_button->property("hovered").toBool(), false);
}

void TstKelPushButtonHover::enterAndLeaveToggleHovered()
{
    QSignalSpy spy(m_button, &KelPushButtonHover::SigHoverChanged);

    SendEnter(m_button);
    QVERIFY(m_button->IsHovered());
    QCOMPARE(m_button->property("hovered").toBool(), true);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);

    SendLeave(m_button);
    QVERIFY(!m_button->IsHovered());
    QCOMPARE(m_button->property("hovered").toBool(), false);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
}

void TstKelPushButtonHover::noSignalWhenUnchanged()
{
    QSignalSpy spy(m_button, &KelPushButtonHover::SigHoverChanged);

    SendLeave(m_button);
    QCOMPARE(spy.count(), 0);

    SendEnter(m_button);
    SendEnter(m_button);
    QCOMPARE(spy.count(), 1);

    SendLeave(m_button);
    SendLeave(m_button);
    QCOMPARE(spy.count(), 2);
}

void TstKelPushButtonHover::hideClearsHover()
{
    SendEnter(m_button);
    QVERIFY(m_button->IsHovered());
    QSignalSpy spy(m_button, &KelPushButtonHover::SigHoverChanged);

    m_button->hide();
    QVERIFY(!m_button->IsHovered());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), false);

    // Shown again, it does not come back hovered.
    m_button->show();
    QVERIFY(!m_button->IsHovered());
    QCOMPARE(spy.count(), 1);
}

void TstKelPushButtonHover::hideWhenNotHoveredEmitsNothing()
{
    QSignalSpy spy(m_button, &KelPushButtonHover::SigHoverChanged);
    m_button->hide();
    QCOMPARE(spy.count(), 0);
}

void TstKelPushButtonHover::styleSheetFollowsHoveredProperty()
{
    m_host->setStyleSheet(QStringLiteral(
        "KelPushButtonHover { background: rgb(0, 0, 255); border: none; }"
        "KelPushButtonHover[hovered=\"true\"] { background: rgb(255, 0, 0); }"));
    const QPoint centre = m_button->rect().center();
    QCOMPARE(m_button->grab().toImage().pixelColor(centre), kIdle);

    SendEnter(m_button);
    QCOMPARE(m_button->grab().toImage().pixelColor(centre), kHovered);

    SendLeave(m_button);
    QCOMPARE(m_button->grab().toImage().pixelColor(centre), kIdle);
}

void TstKelPushButtonHover::pointerMovesInAndOut()
{
    // Enter and leave as the window system produces them from pointer motion.
    QSignalSpy spy(m_button, &KelPushButtonHover::SigHoverChanged);
    QTest::mouseMove(m_host, QPoint(100, 50));
    QTest::mouseMove(m_host, m_button->geometry().center());
    QTRY_VERIFY(m_button->IsHovered());
    QTest::mouseMove(m_host, QPoint(100, 50));
    QTRY_VERIFY(!m_button->IsHovered());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
}

KELTAB_TEST_MAIN(TstKelPushButtonHover)
#include "tst_kelpushbuttonhover.moc"
