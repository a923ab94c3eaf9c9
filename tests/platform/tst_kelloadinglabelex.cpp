// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "kelloadinglabelex.h"

#include <QTimer>

namespace {

const QString kLoadingImage = QStringLiteral(":/images/tab_bar/tab_button_loading.png");

QList<QTimer *> ActiveTimers(const QObject &object)
{
    QList<QTimer *> active;
    const QList<QTimer *> timers = object.findChildren<QTimer *>();
    for (QTimer *timer : timers) {
        if (timer->isActive())
            active.append(timer);
    }
    return active;
}

} // namespace

class TstKelLoadingLabelEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noTimerRunsWhileStopped();
    void startSetsInterval_data();
    void startSetsInterval();
    void advancesAngleStepPerTick();
    void angleWrapsAtFullTurn();
    void stopResetsAngleAndTimer();
    void restartWithAnotherInterval();
    void hiddenLabelStillTurns();
    void setImage_data();
    void setImage();
    void paintsAtEveryAngle();
};

void TstKelLoadingLabelEx::noTimerRunsWhileStopped()
{
    KelLoadingLabelEx label;
    QVERIFY(!label.IsAnimating());
    QVERIFY(ActiveTimers(label).isEmpty());
    QCOMPARE(label.Angle(), 0);

    label.StartAnimation(25);
    QCOMPARE(ActiveTimers(label).size(), 1);
    label.StopAnimation();
    QVERIFY(!label.IsAnimating());
    QVERIFY(ActiveTimers(label).isEmpty());

    // Stopping a stopped label starts nothing either.
    label.StopAnimation();
    QVERIFY(ActiveTimers(label).isEmpty());
}

void TstKelLoadingLabelEx::startSetsInterval_data()
{
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("expected");

    QTest::newRow("25 ms") << 25 << 25;
    QTest::newRow("40 ms") << 40 << 40;
    QTest::newRow("1 ms") << 1 << 1;
    QTest::newRow("zero taken as 1 ms") << 0 << 1;
    QTest::newRow("negative taken as 1 ms") << -10 << 1;
}

void TstKelLoadingLabelEx::startSetsInterval()
{
    QFETCH(int, requested);
    QFETCH(int, expected);

    KelLoadingLabelEx label;
    label.StartAnimation(requested);
    QVERIFY(label.IsAnimating());
    QCOMPARE(label.Interval(), expected);
    const QList<QTimer *> timers = ActiveTimers(label);
    QCOMPARE(timers.size(), 1);
    QCOMPARE(timers.first()->interval(), expected);
}

void TstKelLoadingLabelEx::advancesAngleStepPerTick()
{
    KelLoadingLabelEx label;
    label.StartAnimation(25);
    const QList<QTimer *> timers = ActiveTimers(label);
    QCOMPARE(timers.size(), 1);
    QSignalSpy ticks(timers.first(), &QTimer::timeout);

    QTRY_VERIFY(ticks.count() >= 1);
    QCOMPARE(label.Angle(), (ticks.count() * KelLoadingLabelEx::AngleStep()) % 360);
    QTRY_VERIFY(ticks.count() >= 3);
    QCOMPARE(label.Angle(), (ticks.count() * KelLoadingLabelEx::AngleStep()) % 360);
    QVERIFY(KelLoadingLabelEx::AngleStep() > 0);
    QVERIFY(KelLoadingLabelEx::AngleStep() < 360);
}

void TstKelLoadingLabelEx::angleWrapsAtFullTurn()
{
    KelLoadingLabelEx label;
    label.StartAnimation(1);
    QSignalSpy ticks(ActiveTimers(label).first(), &QTimer::timeout);
    const int ticksPerTurn = 360 / KelLoadingLabelEx::AngleStep();
    QTRY_VERIFY(ticks.count() > ticksPerTurn);
    label.StopAnimation();
    QVERIFY(label.Angle() == 0);

    label.StartAnimation(1);
    QSignalSpy more(ActiveTimers(label).first(), &QTimer::timeout);
    QTRY_VERIFY(more.count() > ticksPerTurn + 2);
    const int angle = label.Angle();
    QVERIFY(angle >= 0);
    QVERIFY(angle < 360);
    QCOMPARE(angle, (more.count() * KelLoadingLabelEx::AngleStep()) % 360);
}

void TstKelLoadingLabelEx::stopResetsAngleAndTimer()
{
    KelLoadingLabelEx label;
    label.StartAnimation(5);
    QTRY_VERIFY(label.Angle() != 0);
    label.StopAnimation();
    QCOMPARE(label.Angle(), 0);
    QVERIFY(!label.IsAnimating());

    // No tick arrives after the stop.
    QTest::qWait(30);
    QCOMPARE(label.Angle(), 0);
}

void TstKelLoadingLabelEx::restartWithAnotherInterval()
{
    KelLoadingLabelEx label;
    label.StartAnimation(25);
    QTRY_VERIFY(label.Angle() != 0);

    label.StartAnimation(40);
    QCOMPARE(label.Interval(), 40);
    QCOMPARE(ActiveTimers(label).size(), 1);
    QVERIFY(label.IsAnimating());

    label.StopAnimation();
    label.StartAnimation(10);
    QCOMPARE(label.Interval(), 10);
    QCOMPARE(label.Angle(), 0);
    QTRY_VERIFY(label.Angle() != 0);
}

void TstKelLoadingLabelEx::hiddenLabelStillTurns()
{
    // Hidden, it skips repainting but keeps its angle, so it shows the right one when shown.
    QWidget host;
    auto *label = new KelLoadingLabelEx(&host);
    label->hide();
    label->StartAnimation(5);
    QTRY_VERIFY(label->Angle() != 0);
}

void TstKelLoadingLabelEx::setImage_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("loaded");

    QTest::newRow("library resource") << kLoadingImage << true;
    QTest::newRow("missing resource") << QStringLiteral(":/images/tab_bar/none.png") << false;
    QTest::newRow("empty path") << QString() << false;
}

void TstKelLoadingLabelEx::setImage()
{
    QFETCH(QString, path);
    QFETCH(bool, loaded);

    KelLoadingLabelEx label;
    QVERIFY(label.Image().isNull());
    label.SetImage(path);
    QCOMPARE(!label.Image().isNull(), loaded);
}

void TstKelLoadingLabelEx::paintsAtEveryAngle()
{
    QWidget host;
    host.resize(40, 40);
    host.setStyleSheet(QStringLiteral("background: white;"));
    auto *label = new KelLoadingLabelEx(&host);
    label->setGeometry(4, 4, 32, 32);
    label->SetImage(kLoadingImage);
    QVERIFY(!label->Image().isNull());
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));

    const QImage upright = label->grab().toImage();
    label->StartAnimation(5);
    QTRY_VERIFY(label->Angle() != 0);
    // No tick can arrive during grab(): the picture is taken at a known, non-zero angle.
    const QImage turned = label->grab().toImage();
    QCOMPARE(turned.size(), upright.size());
    // The image is an open arc, unlike itself at any angle but 0.
    QVERIFY(turned != upright);

    label->StopAnimation();
    QCOMPARE(label->grab().toImage(), upright);
}

KELTAB_TEST_MAIN(TstKelLoadingLabelEx)
#include "tst_kelloadinglabelex.moc"
