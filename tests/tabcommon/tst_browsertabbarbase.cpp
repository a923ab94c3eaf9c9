// SPDX-License-Identifier: MIT
// What both tab strips do alike, through BrowserTabBarBase, the type a host holds
// either of them by: every row runs on the classic bar and on the scrolling bar.

#include "bothbars.h"
#include "keltabtest.h"

#include "browsertabbutton.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "keltabstyle.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <memory>

using BothBars::Kind;

using Call = std::function<void(BrowserTabBarBase &)>;
Q_DECLARE_METATYPE(Call)

class TstBrowserTabBarBase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void outOfRangeCallsAreIgnored_data();
    void outOfRangeCallsAreIgnored();
    void negativeCurrentIndexIsKept_data();
    void negativeCurrentIndexIsKept();
    void insertTabPlacesAnyIndexInRange_data();
    void insertTabPlacesAnyIndexInRange();
    void lookupsOutOfRangeAnswerEmpty_data();
    void lookupsOutOfRangeAnswerEmpty();
    void moveTabKeepsTheCurrentTab_data();
    void moveTabKeepsTheCurrentTab();
    void switchUnchecksButtonsAHostChecked_data();
    void switchUnchecksButtonsAHostChecked();
    void narrowBarsOverlapNothing_data();
    void narrowBarsOverlapNothing();
    void switchingTabsRepaintsLittle_data();
    void switchingTabsRepaintsLittle();
    void mirroredStripIsTheMirrorImage_data();
    void mirroredStripIsTheMirrorImage();
    void directionChangeKeepsEveryLogicalPlace_data();
    void directionChangeKeepsEveryLogicalPlace();
    void onlyTheBarsOwnTabsWaitForTheirInnerWidgets_data();
    void onlyTheBarsOwnTabsWaitForTheirInnerWidgets();

private:
    std::unique_ptr<BrowserTabBarBase> MakeBar(Kind kind, int tabs);
};

void TstBrowserTabBarBase::initTestCase()
{
    DpiTool::SetScaleFactor(1.0);
}

std::unique_ptr<BrowserTabBarBase> TstBrowserTabBarBase::MakeBar(Kind kind, int tabs)
{
    std::unique_ptr<BrowserTabBarBase> bar(BothBars::Make(kind));
    bar->resize(900, 40);
    BothBars::Fill(*bar, tabs);
    return bar;
}

void TstBrowserTabBarBase::outOfRangeCallsAreIgnored_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<Call>("call");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        const QString text = QStringLiteral("changed");
        const QString icon = QStringLiteral("file:///nowhere/icon.png");
        QTest::addRow("%ssetCurrentIndex(count)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.setCurrentIndex(b.count()); });
        QTest::addRow("%ssetCurrentIndex(count + 5)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.setCurrentIndex(b.count() + 5); });
        QTest::addRow("%ssetCurrentIndex(current)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.setCurrentIndex(b.currentIndex()); });
        QTest::addRow("%sremoveTab(count)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.removeTab(b.count()); });
        QTest::addRow("%sremoveTab(-1)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.removeTab(-1); });
        QTest::addRow("%sremoveTab(INT_MIN)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.removeTab(INT_MIN); });
        QTest::addRow("%ssetTabText(-1)", prefix) << kind << Call([text](BrowserTabBarBase &b) { b.setTabText(-1, text); });
        QTest::addRow("%ssetTabText(count)", prefix) << kind << Call([text](BrowserTabBarBase &b) { b.setTabText(b.count(), text); });
        QTest::addRow("%ssetTabIcon(-1)", prefix) << kind << Call([icon](BrowserTabBarBase &b) { b.setTabIcon(-1, icon); });
        QTest::addRow("%ssetTabIcon(count)", prefix) << kind << Call([icon](BrowserTabBarBase &b) { b.setTabIcon(b.count(), icon); });
        QTest::addRow("%sLoadStart(-1)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.LoadStart(-1); });
        QTest::addRow("%sLoadFinished(count)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.LoadFinished(b.count()); });
        QTest::addRow("%smoveTab(-1, 0)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.moveTab(-1, 0); });
        QTest::addRow("%smoveTab(0, count)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.moveTab(0, b.count()); });
        QTest::addRow("%smoveTab(1, 1)", prefix) << kind << Call([](BrowserTabBarBase &b) { b.moveTab(1, 1); });
        QTest::addRow("%sTabButton(count)", prefix) << kind << Call([](BrowserTabBarBase &b) { QVERIFY(!b.TabButton(b.count())); });
        QTest::addRow("%stabRect(-1)", prefix) << kind << Call([](BrowserTabBarBase &b) { QVERIFY(b.tabRect(-1).isNull()); });
    });
}

// Nothing changes and nothing is emitted.
void TstBrowserTabBarBase::outOfRangeCallsAreIgnored()
{
    QFETCH(Kind, bar);
    QFETCH(Call, call);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, 4);
    b->setCurrentIndex(1);
    const QStringList titles = BothBars::Titles(*b);
    QSignalSpy current(b.get(), &BrowserTabBarBase::currentChanged);
    QSignalSpy close(b.get(), &BrowserTabBarBase::tabCloseRequested);
    call(*b);
    QCOMPARE(BothBars::Titles(*b), titles);
    QCOMPARE(b->count(), 4);
    QCOMPARE(b->currentIndex(), 1);
    QVERIFY(b->TabButton(1)->IsChecked());
    QCOMPARE(current.count(), 0);
    QCOMPARE(close.count(), 0);
    for (int i = 0; i < b->count(); ++i)
        QVERIFY(!b->TabButton(i)->IsLoading());
}

void TstBrowserTabBarBase::negativeCurrentIndexIsKept_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("index");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%s-1", prefix) << kind << -1;
        QTest::addRow("%s-5", prefix) << kind << -5;
        QTest::addRow("%sINT_MIN", prefix) << kind << INT_MIN;
    });
}

// No lower bound, deliberately: the index is kept as given, no tab is current, and
// the change is told like any other.
void TstBrowserTabBarBase::negativeCurrentIndexIsKept()
{
    QFETCH(Kind, bar);
    QFETCH(int, index);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, 3);
    b->setCurrentIndex(2);
    QSignalSpy current(b.get(), &BrowserTabBarBase::currentChanged);
    b->setCurrentIndex(index);
    QCOMPARE(b->currentIndex(), index);
    QCOMPARE(b->GetCurrentIndex(), index);
    QCOMPARE(current.count(), 1);
    QCOMPARE(current.at(0).at(0).toInt(), index);
    for (int i = 0; i < b->count(); ++i)
        QVERIFY(!b->TabButton(i)->IsChecked());
    QVERIFY(!b->GetCurrentTabData());
    QVERIFY(b->CurrentIconUrl().isEmpty());
    QVERIFY(b->CurrentIconLocalPath().isEmpty());
    // The same index again changes nothing.
    b->setCurrentIndex(index);
    QCOMPARE(current.count(), 1);
    // Tabs added and removed meanwhile leave it as it is.
    BothBars::Fill(*b, 1);
    b->removeTab(0);
    QCOMPARE(b->currentIndex(), index);
    QCOMPARE(current.count(), 1);
}

void TstBrowserTabBarBase::insertTabPlacesAnyIndexInRange_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("placed");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%s-3 goes first", prefix) << kind << -3 << 0;
        QTest::addRow("%s0", prefix) << kind << 0 << 0;
        QTest::addRow("%s2", prefix) << kind << 2 << 2;
        QTest::addRow("%scount goes last", prefix) << kind << 3 << 3;
        QTest::addRow("%s100 goes last", prefix) << kind << 100 << 3;
    });
}

void TstBrowserTabBarBase::insertTabPlacesAnyIndexInRange()
{
    QFETCH(Kind, bar);
    QFETCH(int, index);
    QFETCH(int, placed);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, 3);
    b->setCurrentIndex(1);
    const TabDataPtr current = b->GetCurrentTabData();
    QSignalSpy changed(b.get(), &BrowserTabBarBase::currentChanged);
    const TabDataPtr tab = BothBars::WebTab(QStringLiteral("new"));
    QCOMPARE(b->insertTab(index, tab), placed);
    QCOMPARE(b->count(), 4);
    QCOMPARE(b->GetTabData(placed), tab);
    // The current tab stays the same tab, its index following it, without a signal.
    QCOMPARE(b->GetCurrentTabData(), current);
    QCOMPARE(b->currentIndex(), placed <= 1 ? 2 : 1);
    QCOMPARE(changed.count(), 0);
}

void TstBrowserTabBarBase::lookupsOutOfRangeAnswerEmpty_data()
{
    BothBars::AddRowPerBar("three tabs");
}

void TstBrowserTabBarBase::lookupsOutOfRangeAnswerEmpty()
{
    QFETCH(Kind, bar);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, 3);
    QVERIFY(!b->GetTabData(-1));
    QVERIFY(!b->GetTabData(3));
    QCOMPARE(b->GetIndexByTabData(TabDataPtr()), -1);
    QCOMPARE(b->GetIndexByTabData(BothBars::WebTab(QStringLiteral("t1"))), -1);
    QCOMPARE(b->GetIndexByName(QStringLiteral("nope")), -1);
    QCOMPARE(b->GetIndexByTabId(QStringLiteral("nope")), -1);
    QCOMPARE(b->GetIndexByName(QStringLiteral("t2")), 2);
    QCOMPARE(b->GetIndexByTabId(b->GetTabData(1)->GetId()), 1);
    QCOMPARE(b->currentIndex(), -1);
    QVERIFY(!b->GetCurrentTabData());
}

void TstBrowserTabBarBase::moveTabKeepsTheCurrentTab_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<int>("current");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%scurrent to the end", prefix) << kind << 1 << 3 << QStringList({"t0", "t2", "t3", "t1"}) << 3;
        QTest::addRow("%sanother across the current", prefix) << kind << 3 << 0 << QStringList({"t3", "t0", "t1", "t2"}) << 2;
        QTest::addRow("%sanother beside it", prefix) << kind << 2 << 3 << QStringList({"t0", "t1", "t3", "t2"}) << 1;
    });
}

void TstBrowserTabBarBase::moveTabKeepsTheCurrentTab()
{
    QFETCH(Kind, bar);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QStringList, titles);
    QFETCH(int, current);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, 4);
    b->setCurrentIndex(1);
    QSignalSpy changed(b.get(), &BrowserTabBarBase::currentChanged);
    b->moveTab(from, to);
    QCOMPARE(BothBars::Titles(*b), titles);
    QCOMPARE(b->currentIndex(), current);
    QCOMPARE(b->GetCurrentTabData()->GetTitle(), QStringLiteral("t1"));
    QVERIFY(b->TabButton(current)->IsChecked());
    QCOMPARE(changed.count(), 0);
    // Buttons in list order, left to right.
    for (int i = 1; i < b->count(); ++i)
        QVERIFY(KelTest::VisualRect(b.get(), b->tabRect(i - 1)).left() < KelTest::VisualRect(b.get(), b->tabRect(i)).left());
}

void TstBrowserTabBarBase::switchUnchecksButtonsAHostChecked_data()
{
    BothBars::AddRowPerBar("four tabs");
}

void TstBrowserTabBarBase::switchUnchecksButtonsAHostChecked()
{
    // The bar unchecks only the button it checked last, unless a host checked or
    // unchecked buttons itself: then the next switch leaves the current tab alone checked.
    QFETCH(Kind, bar);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, 4);
    b->setCurrentIndex(1);
    b->TabButton(3)->SetChecked(true);
    b->TabButton(1)->SetChecked(false);
    b->setCurrentIndex(2);
    for (int i = 0; i < b->count(); ++i)
        QCOMPARE(b->TabButton(i)->IsChecked(), i == 2);
    b->setCurrentIndex(0);
    for (int i = 0; i < b->count(); ++i)
        QCOMPARE(b->TabButton(i)->IsChecked(), i == 0);
}

static QString RectText(const QRect &r)
{
    return QStringLiteral("(%1,%2 %3x%4)").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

void TstBrowserTabBarBase::narrowBarsOverlapNothing_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("tabs");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sone tab", prefix) << kind << 1;
        QTest::addRow("%sfive tabs", prefix) << kind << 5;
        QTest::addRow("%sforty tabs", prefix) << kind << 40;
    });
}

// The parts of the strip a user sees and clicks (tabs, scroll arrows, the new-tab
// button) never lie on one another, however narrow the bar: from 230 pixels, below
// which not even the arrows and a minimum tab fit, down to nothing.
void TstBrowserTabBarBase::narrowBarsOverlapNothing()
{
    QFETCH(Kind, bar);
    QFETCH(int, tabs);
    QWidget window;
    window.resize(300, 60);
    BrowserTabBarBase *b = BothBars::Make(bar, &window);
    BothBars::Fill(*b, tabs);
    b->setCurrentIndex(tabs - 1);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    for (int width = 230; width >= 0; width -= 5) {
        b->resize(width, b->height());
        QCoreApplication::processEvents();
        // What shows of each part, in the bar's coordinates.
        QList<QPair<QString, QRect>> parts;
        const auto add = [&](const QString &name, QWidget *w) {
            if (!w || !w->isVisibleTo(b))
                return;
            const QRect shown = w->visibleRegion().boundingRect().translated(w->mapTo(b, QPoint(0, 0)));
            if (!shown.isEmpty())
                parts << qMakePair(name, shown);
        };
        for (int i = 0; i < b->count(); ++i)
            add(QStringLiteral("tab %1").arg(i), b->TabButton(i));
        add(QStringLiteral("left arrow"), b->findChild<QWidget *>(QStringLiteral("TabButtonLeftArrowEx")));
        add(QStringLiteral("right arrow"), b->findChild<QWidget *>(QStringLiteral("TabButtonRightArrowEx")));
        add(QStringLiteral("new-tab button"), b->findChild<QWidget *>(QStringLiteral("TabBarNewTabButton")));
        for (int i = 0; i < parts.size(); ++i) {
            QVERIFY2(b->rect().contains(parts.at(i).second),
                     qPrintable(QStringLiteral("width %1: %2 at %3 outside the bar")
                                    .arg(width)
                                    .arg(parts.at(i).first)
                                    .arg(RectText(parts.at(i).second))));
            for (int j = i + 1; j < parts.size(); ++j) {
                // The classic bar's neighbours share their two-pixel border by design.
                const QRect shared = parts.at(i).second.intersected(parts.at(j).second);
                if (bar == Kind::Classic && j == i + 1 && j < b->count() && shared.width() <= 2)
                    continue;
                QVERIFY2(shared.isEmpty(),
                         qPrintable(QStringLiteral("width %1: %2 at %3 overlaps %4 at %5")
                                        .arg(width)
                                        .arg(parts.at(i).first, RectText(parts.at(i).second))
                                        .arg(parts.at(j).first, RectText(parts.at(j).second))));
            }
        }
    }
}

void TstBrowserTabBarBase::mirroredStripIsTheMirrorImage_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("tabs");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sfour tabs", prefix) << kind << 4;
        // The scrolling bar in overflow: arrows and the shadow.
        QTest::addRow("%sthirty tabs", prefix) << kind << 30;
    });
}

// Right to left the strip is drawn as its left-to-right picture in a mirror: shapes,
// separators, arrows and shadows. Only the icons, pictures that keep their
// orientation, are left out; the titles are blank (a mirrored text is no text).
void TstBrowserTabBarBase::mirroredStripIsTheMirrorImage()
{
    QFETCH(Kind, bar);
    QFETCH(int, tabs);
    QWidget window;
    window.setLayoutDirection(Qt::LeftToRight);
    KelTabStyle::ApplyDefaultStyleSheet(&window);
    BrowserTabBarBase *b = BothBars::Make(bar, &window);
    b->setGeometry(0, 0, 900, b->height());
    window.resize(b->size());
    for (int i = 0; i < tabs; ++i)
        b->addTab(KelTest::WebTab(QStringLiteral(" ")));
    b->setCurrentIndex(2);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const auto iconRects = [b] {
        QRegion region;
        const QList<QWidget *> widgets = b->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            if (widget->isVisibleTo(b) && widget->objectName().contains(QLatin1String("Icon")))
                region += QRect(widget->mapTo(b, QPoint(0, 0)), widget->size());
        }
        return region;
    };
    const QImage ltr = b->grab().toImage();
    const QRegion ltrIcons = iconRects();
    QVERIFY(!ltrIcons.isEmpty());

    b->setLayoutDirection(Qt::RightToLeft);
    QVERIFY(b->isRightToLeft());
    const QImage rtl = b->grab().toImage();
    QRegion skipped = ltrIcons;
    for (const QRect &rect : iconRects())
        skipped += KelTest::VisualRect(b, rect);
    QCOMPARE(rtl.size(), ltr.size());

    int different = 0;
    QString first;
    for (int y = 0; y < ltr.height(); ++y) {
        for (int x = 0; x < ltr.width(); ++x) {
            if (skipped.contains(QPoint(x, y)))
                continue;
            const QColor a = ltr.pixelColor(x, y);
            const QColor m = rtl.pixelColor(ltr.width() - 1 - x, y);
            // Qt antialiases a rounded corner on the left a little differently from the
            // same corner on the right (up to 13 levels here); a separator, an arrow or
            // a shadow in the wrong place differs by 25 and more.
            const int tolerance = 16;
            if (qAbs(a.red() - m.red()) > tolerance || qAbs(a.green() - m.green()) > tolerance
                || qAbs(a.blue() - m.blue()) > tolerance) {
                if (different++ == 0)
                    first = QStringLiteral("(%1, %2): %3 mirrored as %4").arg(x).arg(y).arg(a.name(), m.name());
            }
        }
    }
    QVERIFY2(different == 0, qPrintable(QStringLiteral("%1 pixels differ, first %2").arg(different).arg(first)));

    // And back: the same picture as before.
    b->setLayoutDirection(Qt::LeftToRight);
    QCOMPARE(b->grab().toImage(), ltr);
}

void TstBrowserTabBarBase::directionChangeKeepsEveryLogicalPlace_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("tabs");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        // Nothing to lay out: the frames and the new-tab button turn round all the same.
        QTest::addRow("%sno tabs", prefix) << kind << 0;
        QTest::addRow("%sfive tabs", prefix) << kind << 5;
        QTest::addRow("%sthirty tabs", prefix) << kind << 30;
    });
}

// Turned round at run time, every widget of the strip keeps its place counted from
// the strip's start, as if the bar had been made in the new direction.
void TstBrowserTabBarBase::directionChangeKeepsEveryLogicalPlace()
{
    QFETCH(Kind, bar);
    QFETCH(int, tabs);
    std::unique_ptr<BrowserTabBarBase> b = MakeBar(bar, tabs);
    const auto places = [&b] {
        QHash<QWidget *, QRect> geometry;
        const QList<QWidget *> widgets = b->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            if (!widget->isWindow())
                geometry.insert(widget, KelTest::LogicalGeometry(widget));
        }
        return geometry;
    };
    const Qt::LayoutDirection other = b->isRightToLeft() ? Qt::LeftToRight : Qt::RightToLeft;
    const QHash<QWidget *, QRect> before = places();
    QVERIFY(before.size() >= 2); // at the least the frames
    b->setLayoutDirection(other);
    QCOMPARE(b->layoutDirection(), other);
    const QHash<QWidget *, QRect> after = places();
    QCOMPARE(after.size(), before.size());
    for (auto it = before.cbegin(); it != before.cend(); ++it)
        QVERIFY2(after.value(it.key()) == it.value(), qPrintable(it.key()->objectName()));
}

void TstBrowserTabBarBase::onlyTheBarsOwnTabsWaitForTheirInnerWidgets_data()
{
    BothBars::AddRowPerBar("60 tabs");
}

// A tab the bar makes gets its icon, title and close button once it comes into view,
// so a tab past the strip's end is a single widget; a button a host makes, also for
// the same bar, has them from the start, since the host may reach for them at once.
void TstBrowserTabBarBase::onlyTheBarsOwnTabsWaitForTheirInnerWidgets()
{
    QFETCH(Kind, bar);
    std::unique_ptr<BrowserTabBarBase> strip = MakeBar(bar, 60);
    strip->setCurrentIndex(0);
    QVERIFY(!strip->TabButton(0)->findChildren<QWidget *>().isEmpty());
    BrowserTabButtonBase *far = strip->TabButton(strip->count() - 1);
    QVERIFY(far);
    // Wholly outside the strip, at its end whichever way the strip runs.
    QVERIFY(!strip->rect().intersects(QRect(far->mapTo(strip.get(), QPoint()), far->size())));
    QCOMPARE(far->findChildren<QWidget *>().size(), 0);

    std::unique_ptr<BrowserTabButtonBase> hosts;
    if (bar == Kind::Classic)
        hosts.reset(new BrowserTabButton(KelTest::WebTab(QStringLiteral("host")), QString(), false,
                                         static_cast<BrowserTabBar *>(strip.get())));
    else
        hosts.reset(new BrowserTabButtonEx(KelTest::WebTab(QStringLiteral("host")), QString(), false,
                                           static_cast<BrowserTabBarEx *>(strip.get())));
    QVERIFY(!hosts->findChildren<QWidget *>().isEmpty());
    QCOMPARE(strip->count(), 60);
}

KELTAB_TEST_MAIN(TstBrowserTabBarBase)
#include "tst_browsertabbarbase.moc"

void TstBrowserTabBarBase::switchingTabsRepaintsLittle_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("tabs");
    // Ten times the tabs, the same repaints.
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        for (int tabs : {20, 200})
            QTest::addRow("%s%d tabs", prefix, tabs) << kind << tabs;
    });
}

// A switch repaints the two tabs and at most their neighbours (whose edges they
// overlap or whose separators they hide), not the whole strip, and restyles nothing.
void TstBrowserTabBarBase::switchingTabsRepaintsLittle()
{
    QFETCH(Kind, bar);
    QFETCH(int, tabs);
    class PaintCounter : public QObject
    {
    public:
        QSet<QObject *> painted;
        int restyled = 0;
        bool eventFilter(QObject *object, QEvent *event) override
        {
            if (qobject_cast<BrowserTabButtonBase *>(object)) {
                if (event->type() == QEvent::Paint)
                    painted.insert(object);
                if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
                    ++restyled;
            }
            return false;
        }
    } counter;
    QWidget window;
    // Every tab switched to lies in sight: a switch to a tab out of sight scrolls, and
    // repaints all.
    window.resize(2600, 60);
    std::unique_ptr<BrowserTabBarBase> strip(BothBars::Make(bar, &window));
    strip->setGeometry(0, 0, 2600, 40);
    BothBars::Fill(*strip, tabs);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    for (const auto &[from, to] : {std::pair<int, int>{3, 9}, {9, 4}, {4, 0}, {0, 19}, {19, 18}}) {
        strip->setCurrentIndex(from);
        // Until the strip has painted everything it had to (a loaded machine may be
        // late with it): 50 ms without a paint.
        qApp->installEventFilter(&counter);
        for (int settle = 0; settle < 40; ++settle) {
            counter.painted.clear();
            QTest::qWait(50);
            if (counter.painted.isEmpty())
                break;
        }
        counter.painted.clear();
        counter.restyled = 0;
        strip->setCurrentIndex(to);
        QTest::qWait(50);
        qApp->removeEventFilter(&counter);
        QStringList unexpected;
        for (int i = 0; i < strip->count(); ++i) {
            const bool near = qAbs(i - from) <= 1 || qAbs(i - to) <= 1;
            if (!near && counter.painted.contains(strip->TabButton(i)))
                unexpected << QString::number(i);
        }
        QVERIFY2(unexpected.isEmpty(), qPrintable(QStringLiteral("%1 -> %2 repainted tabs %3").arg(from).arg(to).arg(unexpected.join(QLatin1Char(',')))));
        QVERIFY(counter.painted.contains(strip->TabButton(to)));
        QCOMPARE(counter.restyled, 0);
    }
}
