// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "dpitool.h"

#include <QScreen>

class TstDpiTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void scaleInt_data();
    void scaleInt();
    void scalePoint_data();
    void scalePoint();
    void scaleToImageIgnoresFactor_data();
    void scaleToImageIgnoresFactor();
    void fixedFactorIsReported();
    void nonPositiveFactorFollowsScreen_data();
    void nonPositiveFactorFollowsScreen();
    void use96DpiAttributeMeansDesignFactor();
};

void TstDpiTool::initTestCase()
{
    // The suite's main() sets AA_Use96Dpi, which makes the screen factor 1.0.
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_Use96Dpi));
    QVERIFY(QGuiApplication::primaryScreen());
}

void TstDpiTool::cleanup()
{
    DpiTool::SetScaleFactor(0.0);
}

void TstDpiTool::scaleInt_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("expected");

    QTest::newRow("1.0 zero") << 1.0 << 0 << 0;
    QTest::newRow("1.0 nine") << 1.0 << 9 << 9;
    QTest::newRow("1.0 negative") << 1.0 << -9 << -9;
    QTest::newRow("1.0 large") << 1.0 << 16777215 / 4 << 16777215 / 4;

    QTest::newRow("1.5 zero") << 1.5 << 0 << 0;
    QTest::newRow("1.5 one half up") << 1.5 << 1 << 2;
    QTest::newRow("1.5 two exact") << 1.5 << 2 << 3;
    QTest::newRow("1.5 three half up") << 1.5 << 3 << 5;
    QTest::newRow("1.5 nine half up") << 1.5 << 9 << 14;
    QTest::newRow("1.5 sixteen") << 1.5 << 16 << 24;
    QTest::newRow("1.5 minus one half away") << 1.5 << -1 << -2;
    QTest::newRow("1.5 minus nine half away") << 1.5 << -9 << -14;
    QTest::newRow("1.5 minus sixteen") << 1.5 << -16 << -24;

    QTest::newRow("2.0 zero") << 2.0 << 0 << 0;
    QTest::newRow("2.0 nine") << 2.0 << 9 << 18;
    QTest::newRow("2.0 ninety-six") << 2.0 << 96 << 192;
    QTest::newRow("2.0 negative") << 2.0 << -7 << -14;

    QTest::newRow("1.25 two half up") << 1.25 << 2 << 3;
    QTest::newRow("1.25 minus two half away") << 1.25 << -2 << -3;
    QTest::newRow("1.25 three below half") << 1.25 << 3 << 4;
}

void TstDpiTool::scaleInt()
{
    QFETCH(double, factor);
    QFETCH(int, value);
    QFETCH(int, expected);

    DpiTool::SetScaleFactor(factor);
    QCOMPARE(DpiTool::ScaleDefault(value), expected);
}

void TstDpiTool::scalePoint_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QPoint>("expected");

    QTest::newRow("1.0") << 1.0 << QPoint(9, -9) << QPoint(9, -9);
    QTest::newRow("1.5 halves away from zero") << 1.5 << QPoint(9, -9) << QPoint(14, -14);
    QTest::newRow("1.5 mixed") << 1.5 << QPoint(3, 4) << QPoint(5, 6);
    QTest::newRow("1.5 origin") << 1.5 << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("2.0") << 2.0 << QPoint(-7, 16) << QPoint(-14, 32);
}

void TstDpiTool::scalePoint()
{
    QFETCH(double, factor);
    QFETCH(QPoint, point);
    QFETCH(QPoint, expected);

    DpiTool::SetScaleFactor(factor);
    QCOMPARE(DpiTool::ScaleDefault(point), expected);
    // Each coordinate is rounded on its own, exactly like the integer overload.
    QCOMPARE(DpiTool::ScaleDefault(point).x(), DpiTool::ScaleDefault(point.x()));
    QCOMPARE(DpiTool::ScaleDefault(point).y(), DpiTool::ScaleDefault(point.y()));
}

void TstDpiTool::scaleToImageIgnoresFactor_data()
{
    QTest::addColumn<double>("factor");

    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2.0") << 2.0;
}

void TstDpiTool::scaleToImageIgnoresFactor()
{
    QFETCH(double, factor);

    DpiTool::SetScaleFactor(factor);
    QCOMPARE(DpiTool::ImageScale(), 2);
    QCOMPARE(DpiTool::ScaleDefaultToImage(0), 0);
    QCOMPARE(DpiTool::ScaleDefaultToImage(9), 18);
    QCOMPARE(DpiTool::ScaleDefaultToImage(16), 32);
    QCOMPARE(DpiTool::ScaleDefaultToImage(-3), -6);
}

void TstDpiTool::fixedFactorIsReported()
{
    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(DpiTool::ScaleFactor(), 1.5);
    DpiTool::SetScaleFactor(2.0);
    QCOMPARE(DpiTool::ScaleFactor(), 2.0);
    QCOMPARE(DpiTool::ScaleDefault(10), 20);
}

void TstDpiTool::nonPositiveFactorFollowsScreen_data()
{
    QTest::addColumn<double>("reset");

    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -1.5;
}

void TstDpiTool::nonPositiveFactorFollowsScreen()
{
    QFETCH(double, reset);

    DpiTool::SetScaleFactor(2.0);
    QCOMPARE(DpiTool::ScaleDefault(9), 18);

    DpiTool::SetScaleFactor(reset);
    QCOMPARE(DpiTool::ScaleFactor(), 1.0);
    QCOMPARE(DpiTool::ScaleDefault(9), 9);
    QCOMPARE(DpiTool::ScaleDefault(QPoint(9, -9)), QPoint(9, -9));
}

void TstDpiTool::use96DpiAttributeMeansDesignFactor()
{
    // The offscreen screen reports 100 dpi; without the attribute the factor follows
    // it, with the attribute Qt's widgets assume 96 dpi and so must our sizes.
    const double screenDpi = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    if (qFuzzyCompare(screenDpi, 96.0))
        QSKIP("the screen already has 96 dpi; the attribute cannot make a difference");

    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
    const double followed = DpiTool::ScaleFactor();
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);

    QCOMPARE(followed, screenDpi / 96.0);
    QCOMPARE(DpiTool::ScaleFactor(), 1.0);
}

KELTAB_TEST_MAIN(TstDpiTool)
#include "tst_dpitool.moc"
