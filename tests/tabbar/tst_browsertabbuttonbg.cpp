// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "browsertabbuttonbg.h"
#include "tabbartestutil.h"

#include <QPixmap>

using namespace ClassicTest;

class TstBrowserTabButtonBg : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void startsEmptyAndWidthZeroIsNull();
    void negativeWidthIsNullWithoutWarning();
    void sameWidthBuildsOnce();
    void newWidthRebuildsAllThree();
    void pickByCheckedThenHovered_data();
    void pickByCheckedThenHovered();
    void pixmapSizeFollowsScale_data();
    void pixmapSizeFollowsScale();
    void capsKeepTheirShapeAtAnyWidth();
    void frontIsOpaqueInsideAndRoundedAtTheTop();
    void singleRebuildsKeepWidthAndBuildOne();
    void clearForgetsEverything();
    void barPaintingBuildsOncePerWidth();

private:
    std::unique_ptr<Environment> m_env;
};

void TstBrowserTabButtonBg::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabButtonBg::cleanup()
{
    m_env.reset();
}

void TstBrowserTabButtonBg::startsEmptyAndWidthZeroIsNull()
{
    BrowserTabButtonBg cache;
    QCOMPARE(cache.Width(), 0);
    QCOMPARE(cache.BuildCount(), 0);
    QVERIFY(!cache.GetButtonBg(0, true, false));
    QVERIFY(!cache.GetButtonBg(0, false, true));
    QVERIFY(!cache.GetButtonBg(0, false, false));
    QCOMPARE(cache.BuildCount(), 0);
}

void TstBrowserTabButtonBg::negativeWidthIsNullWithoutWarning()
{
    BrowserTabButtonBg cache;
    QVERIFY(!cache.GetButtonBg(-5, true, false));
    QCOMPARE(cache.Width(), -5);
    QCOMPARE(cache.BuildCount(), 0);
    QVERIFY(cache.GetButtonBg(40, true, false));
}

void TstBrowserTabButtonBg::sameWidthBuildsOnce()
{
    BrowserTabButtonBg cache;
    QPixmap *front = cache.GetButtonBg(120, true, false);
    QVERIFY(front);
    QCOMPARE(cache.BuildCount(), 3);
    QCOMPARE(cache.GetButtonBg(120, true, true), front);
    QVERIFY(cache.GetButtonBg(120, false, false));
    QVERIFY(cache.GetButtonBg(120, false, true));
    QCOMPARE(cache.BuildCount(), 3);
    QCOMPARE(cache.Width(), 120);
}

void TstBrowserTabButtonBg::newWidthRebuildsAllThree()
{
    BrowserTabButtonBg cache;
    cache.GetButtonBg(120, false, false);
    QCOMPARE(cache.BuildCount(), 3);
    QPixmap *front = cache.GetButtonBg(121, true, false);
    QCOMPARE(cache.BuildCount(), 6);
    QCOMPARE(front->width(), 121);
    QCOMPARE(cache.GetButtonBg(121, false, false)->width(), 121);
    QCOMPARE(cache.GetButtonBg(121, false, true)->width(), 121);
    // Back to the first width: one width is kept, so it is built again.
    cache.GetButtonBg(120, false, false);
    QCOMPARE(cache.BuildCount(), 9);
}

void TstBrowserTabButtonBg::pickByCheckedThenHovered_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<QString>("expected");
    QTest::newRow("checked") << true << false << "front";
    QTest::newRow("checked and hovered") << true << true << "front";
    QTest::newRow("hovered") << false << true << "backHover";
    QTest::newRow("plain") << false << false << "back";
}

void TstBrowserTabButtonBg::pickByCheckedThenHovered()
{
    QFETCH(bool, checked);
    QFETCH(bool, hovered);
    QFETCH(QString, expected);
    BrowserTabButtonBg cache;
    const QHash<QString, QPixmap *> byName = {
        {QStringLiteral("front"), cache.GetButtonBg(100, true, false)},
        {QStringLiteral("back"), cache.GetButtonBg(100, false, false)},
        {QStringLiteral("backHover"), cache.GetButtonBg(100, false, true)},
    };
    QCOMPARE(QSet<QPixmap *>({byName.value("front"), byName.value("back"), byName.value("backHover")}).size(), 3);
    QCOMPARE(cache.GetButtonBg(100, checked, hovered), byName.value(expected));
}

void TstBrowserTabButtonBg::pixmapSizeFollowsScale_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("height");
    QTest::newRow("1.0") << 1.0 << 32;
    QTest::newRow("1.5") << 1.5 << 48;
}

void TstBrowserTabButtonBg::pixmapSizeFollowsScale()
{
    QFETCH(int, height);
    KelTest::UseRowScale();
    BrowserTabButtonBg cache;
    const QPixmap *pixmap = cache.GetButtonBg(150, true, false);
    QCOMPARE(pixmap->size(), QSize(150, height));
}

void TstBrowserTabButtonBg::capsKeepTheirShapeAtAnyWidth()
{
    BrowserTabButtonBg narrow;
    BrowserTabButtonBg wide;
    const QImage a = narrow.GetButtonBg(80, true, false)->toImage();
    const QImage b = wide.GetButtonBg(300, true, false)->toImage();
    const int cap = S(16);
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < cap; ++x) {
            QCOMPARE(a.pixel(x, y), b.pixel(x, y));
            QCOMPARE(a.pixel(a.width() - 1 - x, y), b.pixel(b.width() - 1 - x, y));
        }
    }
    // The middle repeats one column: every column of it is the same.
    for (int y = 0; y < b.height(); ++y)
        QCOMPARE(b.pixel(cap + 10, y), b.pixel(b.width() - cap - 10, y));
}

void TstBrowserTabButtonBg::frontIsOpaqueInsideAndRoundedAtTheTop()
{
    BrowserTabButtonBg cache;
    const QImage front = cache.GetButtonBg(200, true, false)->toImage();
    QCOMPARE(front.pixelColor(100, 20).alpha(), 255);
    QCOMPARE(front.pixelColor(100, 20).name(), QStringLiteral("#ffffff"));
    // Rounded top corners: the corner itself is clear.
    QCOMPARE(front.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(front.pixelColor(199, 0).alpha(), 0);
    const QImage back = cache.GetButtonBg(200, false, false)->toImage();
    QCOMPARE(back.pixelColor(100, 20).alpha(), 0);
    const QImage hover = cache.GetButtonBg(200, false, true)->toImage();
    QVERIFY(hover.pixelColor(100, 20).alpha() > 0);
}

void TstBrowserTabButtonBg::singleRebuildsKeepWidthAndBuildOne()
{
    BrowserTabButtonBg cache;
    cache.GetButtonBg(90, false, false);
    cache.RebuildFront();
    QCOMPARE(cache.BuildCount(), 4);
    cache.RebuildBack();
    cache.RebuildBackHover();
    QCOMPARE(cache.BuildCount(), 6);
    QCOMPARE(cache.Width(), 90);
    QCOMPARE(cache.GetButtonBg(90, true, false)->width(), 90);
    QCOMPARE(cache.BuildCount(), 6);
}

void TstBrowserTabButtonBg::clearForgetsEverything()
{
    BrowserTabButtonBg cache;
    cache.GetButtonBg(90, false, false);
    cache.Clear();
    QCOMPARE(cache.Width(), 0);
    QVERIFY(!cache.GetButtonBg(0, true, false));
    cache.GetButtonBg(90, false, false);
    QCOMPARE(cache.BuildCount(), 6);
}

void TstBrowserTabButtonBg::barPaintingBuildsOncePerWidth()
{
    TestBar bar;
    bar.resize(800, 36);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    for (int i = 0; i < 3; ++i)
        bar.addTab(MakeTab(QStringLiteral("tab %1").arg(i)));
    bar.setCurrentIndex(1);
    QCOMPARE(bar.ButtonWidth(), 164);
    const int before = bar.ButtonBgBuildCount();
    bar.grab();
    bar.grab();
    // Three tabs of one width: one set of backgrounds, however often they paint.
    QCOMPARE(bar.ButtonBgBuildCount() - before, 3);

    // Six tabs share 130 pixels each (768 / 6 + 2, no remainder): one more set.
    for (int i = 3; i < 6; ++i)
        bar.addTab(MakeTab(QStringLiteral("tab %1").arg(i)));
    QCOMPARE(bar.ButtonWidth(), 130);
    bar.grab();
    bar.grab();
    QCOMPARE(bar.ButtonBgBuildCount() - before, 6);
}

KELTAB_TEST_MAIN(TstBrowserTabButtonBg)
#include "tst_browsertabbuttonbg.moc"
