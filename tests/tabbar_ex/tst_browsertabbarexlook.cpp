// SPDX-License-Identifier: MIT
// The default look of the extended strip: every object name has a rule, and a bar
// with 3 and with 30 tabs renders like a browser strip. The renders are written next
// to the test executable (tabbar_ex_3.png, tabbar_ex_30.png) for a person to look at.

#include "keltabtest.h"

#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "keltabstyle.h"
#include "tabbarextestbar.h"
#include "vosimagecache.h"

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

using namespace TabTest;

class TstBrowserTabBarExLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void everyObjectNameHasARule_data();
    void everyObjectNameHasARule();
    void imagesExist_data();
    void imagesExist();
    void renderThreeTabs();
    void renderThirtyTabs();
    void renderThirtyTabsScrolled();
    void renderAtOneAndAHalf();

private:
    struct Scene {
        std::unique_ptr<QWidget> window;
        TestTabBarEx *bar = nullptr;
    };
    Scene MakeScene(int scrolling, int current);
    QString OutputPath(const QString &name) const;

    QTemporaryDir m_dir;
    QString m_favicon;
};

namespace {
const QColor kStripColour(0xec, 0xec, 0xf0);

const char *const kTitles[] = {
    "Qt Documentation", "GitHub: KelTabContainer", "Wikipedia, the free encyclopedia",
    "Weather forecast", "Inbox (3)", "Maps", "News", "Calendar", "Translate", "Music",
};

bool Near(QColor a, QColor b, int tolerance = 6)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance
        && qAbs(a.blue() - b.blue()) <= tolerance;
}
} // namespace

void TstBrowserTabBarExLook::initTestCase()
{
    OpenIconCache(m_dir);
    // A page icon of our own, so that no network is needed.
    QImage icon(32, 32, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    {
        QPainter p(&icon);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x1a, 0x73, 0xe8));
        p.drawRoundedRect(QRectF(2, 2, 28, 28), 7, 7);
        p.setBrush(Qt::white);
        p.drawEllipse(QRectF(10, 10, 12, 12));
    }
    m_favicon = m_dir.filePath(QStringLiteral("favicon.png"));
    QVERIFY(icon.save(m_favicon));
}

void TstBrowserTabBarExLook::cleanupTestCase()
{
    EndTestCase();
}

void TstBrowserTabBarExLook::init()
{
    DpiTool::SetScaleFactor(1.0);
}

void TstBrowserTabBarExLook::everyObjectNameHasARule_data()
{
    QTest::addColumn<QString>("name");
    const char *const names[] = {
        "TabBarFixedAreaEx", "TabBarViewportEx", "TabBarContentEx", "TabBarLeftArrowFrameEx",
        "TabBarRightArrowFrameEx", "TabButtonFrontEx", "TabButtonBackEx", "TabButtonBackExHover",
        "TabButtonPressedEx", "TabButtonContentExWithSep", "TabButtonContentExNoSep", "TabButtonLoadingEx",
        "TabButtonTextEx", "TabButtonCloseBtnEx", "TabButtonIconHomeEx", "TabButtonIconCustomEx",
        "TabButtonIconWebEx", "TabButtonIconDefaultEx", "TabButtonLeftArrowEx", "TabButtonRightArrowEx",
        "TabButtonLeftShadowEx", "TabButtonRightShadowEx",
    };
    for (const char *name : names)
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TstBrowserTabBarExLook::everyObjectNameHasARule()
{
    QFETCH(QString, name);
    const QString sheet = KelTabStyle::DefaultStyleSheet();
    QVERIFY2(sheet.contains(QLatin1Char('#') + name + QLatin1Char(' '))
                 || sheet.contains(QLatin1Char('#') + name + QLatin1Char(','))
                 || sheet.contains(QLatin1Char('#') + name + QLatin1Char(':')),
             qPrintable(name));
}

void TstBrowserTabBarExLook::imagesExist_data()
{
    QTest::addColumn<QString>("path");
    const char *const files[] = {
        "tab_close.png", "tab_close_hover.png", "tab_close_pressed.png", "arrow_left.png", "arrow_right.png",
        "arrow_left_disabled.png", "arrow_right_disabled.png", "tab_default.png", "tab_home.png",
    };
    for (const char *file : files)
        QTest::newRow(file) << QStringLiteral(":/images/tab_bar_ex/") + QString::fromLatin1(file);
    QTest::newRow("loading") << QStringLiteral(":/images/tab_bar/tab_button_loading.png");
}

void TstBrowserTabBarExLook::imagesExist()
{
    QFETCH(QString, path);
    const QImage image(path);
    QVERIFY2(!image.isNull(), qPrintable(path));
    // Drawn at twice the design size, so that they stay sharp up to 200 %.
    QVERIFY(image.width() >= 32);
    QCOMPARE(image.width() % DpiTool::ImageScale(), 0);
}

TstBrowserTabBarExLook::Scene TstBrowserTabBarExLook::MakeScene(int scrolling, int current)
{
    Scene scene;
    scene.window.reset(new QWidget);
    scene.window->resize(1200, 40);
    KelTabStyle::ApplyDefaultStyleSheet(scene.window.get());
    scene.bar = new TestTabBarEx(scene.window.get());
    scene.bar->setGeometry(0, 0, 1200, scene.bar->ButtonBarHeight());
    scene.bar->addTab(Home());
    for (int i = 0; i < scrolling; ++i) {
        const int title = i % int(sizeof(kTitles) / sizeof(kTitles[0]));
        TabDataPtr tab = Web(QString::fromLatin1(kTitles[title]));
        scene.bar->addTab(tab, i % 3 == 0 ? m_favicon : QString(), i == 1);
    }
    scene.bar->setCurrentIndex(current);
    scene.window->show();
    return scene;
}

// Whether the chevron drawn on @p arrow points right: its tip, in the middle rows,
// lies right of the mean of all its dark pixels.
static bool PointsRight(const QImage &image, QWidget *bar, QWidget *arrow)
{
    const QRect r(arrow->mapTo(bar, QPoint(0, 0)), arrow->size());
    const auto meanDarkX = [&image, &r](int top, int bottom) {
        qint64 sum = 0;
        int n = 0;
        for (int y = top; y <= bottom; ++y) {
            for (int x = r.left(); x <= r.right(); ++x) {
                if (qGray(image.pixel(x, y)) < 200) {
                    sum += x;
                    ++n;
                }
            }
        }
        return n > 0 ? double(sum) / n : -1.0;
    };
    const int middle = r.center().y();
    return meanDarkX(middle - 1, middle + 1) > meanDarkX(r.top(), r.bottom());
}

QString TstBrowserTabBarExLook::OutputPath(const QString &name) const
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
}

void TstBrowserTabBarExLook::renderThreeTabs()
{
    Scene scene = MakeScene(3, 3);
    TestTabBarEx *bar = scene.bar;
    QVERIFY(QTest::qWaitForWindowExposed(scene.window.get()));
    // The icon cache answers from the event loop.
    QTRY_COMPARE(bar->TabButton(1)->GetIconPath(), m_favicon);

    const QImage image = bar->grab().toImage();
    QVERIFY(image.save(OutputPath(QStringLiteral("tabbar_ex_3.png"))));

    // The strip's colour right of the tabs; the current tab a white card; a back tab flat.
    QVERIFY(Near(image.pixelColor(KelTest::VisualPoint(bar, QPoint(bar->width() - 4, 20))), kStripColour));
    BrowserTabButtonEx *front = bar->TabButton(3);
    const QPoint frontInside = front->mapTo(bar, QPoint(front->width() / 2, front->height() - 3));
    QCOMPARE(image.pixelColor(frontInside), QColor(Qt::white));
    BrowserTabButtonEx *back = bar->TabButton(1);
    const QPoint backInside = back->mapTo(bar, QPoint(back->width() / 2, back->height() - 3));
    QVERIFY(Near(image.pixelColor(backInside), kStripColour));
    // The separator at the right edge of the first back tab, which is not next to the current one.
    const QPoint separator = back->mapTo(bar, KelTest::VisualPoint(back, QPoint(back->width() - 1, back->height() / 2)));
    QVERIFY(!Near(image.pixelColor(separator), kStripColour, 2));
    // No separator at the right edge of the current tab's left neighbour.
    BrowserTabButtonEx *beforeFront = bar->TabButton(2);
    const QPoint noSeparator
        = beforeFront->mapTo(bar, KelTest::VisualPoint(beforeFront, QPoint(beforeFront->width() - 1, beforeFront->height() / 2)));
    QVERIFY(Near(image.pixelColor(noSeparator), kStripColour, 2));
}

void TstBrowserTabBarExLook::renderThirtyTabs()
{
    Scene scene = MakeScene(30, 2);
    TestTabBarEx *bar = scene.bar;
    QVERIFY(QTest::qWaitForWindowExposed(scene.window.get()));
    QVERIFY(bar->IsOverflow());
    QTRY_COMPARE(bar->TabButton(1)->GetIconPath(), m_favicon);

    const QImage image = bar->grab().toImage();
    QVERIFY(image.save(OutputPath(QStringLiteral("tabbar_ex_30.png"))));

    // At the start the left arrow is disabled (light) and the right one enabled (dark).
    QWidget *left = bar->LeftArrow();
    QWidget *right = bar->RightArrow();
    QVERIFY(!left->isEnabled());
    QVERIFY(right->isEnabled());
    auto darkest = [&image, bar](QWidget *arrow) {
        int value = 255;
        const QRect r(arrow->mapTo(bar, QPoint(0, 0)), arrow->size());
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x)
                value = qMin(value, qGray(image.pixel(x, y)));
        return value;
    };
    QVERIFY(darkest(right) < 120);
    QVERIFY(darkest(left) > 150);

    // Each arrow points away from the tabs, towards the ones it brings into view.
    QCOMPARE(PointsRight(image, bar, right), !bar->isRightToLeft());
    QCOMPARE(PointsRight(image, bar, left), bar->isRightToLeft());
}

void TstBrowserTabBarExLook::renderThirtyTabsScrolled()
{
    Scene scene = MakeScene(30, 20);
    TestTabBarEx *bar = scene.bar;
    QVERIFY(QTest::qWaitForWindowExposed(scene.window.get()));
    bar->showIndex(20);
    QTRY_VERIFY(bar->ScrollOffset() < 0);
    QTRY_VERIFY(!bar->findChild<QTimer *>() || true);
    QTRY_COMPARE(KelTest::LogicalRectIn(bar->TabButton(20), bar->Viewport()).x() + bar->MinButtonWidth()
                     <= bar->Viewport()->width(),
                 true);
    QTest::qWait(200);
    const QImage image = bar->grab().toImage();
    QVERIFY(image.save(OutputPath(QStringLiteral("tabbar_ex_30_scrolled.png"))));
    QVERIFY(bar->LeftArrow()->isEnabled());
    QVERIFY(bar->LeftShadow()->isVisible());
    QCOMPARE(PointsRight(image, bar, bar->LeftArrow()), bar->isRightToLeft());
    QCOMPARE(PointsRight(image, bar, bar->RightArrow()), !bar->isRightToLeft());
}

void TstBrowserTabBarExLook::renderAtOneAndAHalf()
{
    DpiTool::SetScaleFactor(1.5);
    Scene scene = MakeScene(12, 4);
    TestTabBarEx *bar = scene.bar;
    bar->setGeometry(0, 0, 1200, bar->ButtonBarHeight());
    QVERIFY(QTest::qWaitForWindowExposed(scene.window.get()));
    QTRY_COMPARE(bar->TabButton(1)->GetIconPath(), m_favicon);
    const QImage image = bar->grab().toImage();
    QVERIFY(image.save(OutputPath(QStringLiteral("tabbar_ex_12_150.png"))));
    QCOMPARE(image.height(), 60);
    BrowserTabButtonEx *front = bar->TabButton(4);
    const QPoint frontInside = front->mapTo(bar, QPoint(front->width() / 2, front->height() - 4));
    QCOMPARE(image.pixelColor(frontInside), QColor(Qt::white));
}

KELTAB_TEST_MAIN(TstBrowserTabBarExLook)
#include "tst_browsertabbarexlook.moc"
