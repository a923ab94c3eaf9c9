// SPDX-License-Identifier: MIT
// The classic tab strip: widths, placement, and closing tabs under the mouse.

#include "keltabtest.h"
#include "classicbartest.h"

#include <QRandomGenerator>

using namespace ClassicTest;

class TstBrowserTabBarLayout : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void init();
    void cleanup();

    // widths, placement and closing
    void layoutRules_data();
    void layoutRules();
    void singleTabIsFollowedByNewTabButton();
    void squeezedTabsPutNewTabButtonAtRightEnd();
    void tinyBarKeepsMaxWidth();
    void closeButtonsFollowCommonWidthWithoutResize();
    void closeMiddleByMouseKeepsWidthsUntilLeave();
    void leaveInsideTheBarStartsNoTimer();
    void closeLastByMouseFitsTheStripAtOnce();
    void closeTypeChoosesNeighbour_data();
    void closeTypeChoosesNeighbour();
    void removeOutOfRangeIsIgnored();
    void removeBeforeCurrentKeepsCurrentTab();
    void resizeFitsAgainAndEndsFrozenWidths();
    void relayoutTimerIsAChildSingleShot();
    void scaleChangeLaysOutAgain();
    void emptiedStripKeepsItsLastLayoutUntilTheScaleChanges();

private:
    std::unique_ptr<Environment> m_env;
};

void TstBrowserTabBarLayout::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabBarLayout::cleanup()
{
    FlushDeletes();
    m_env.reset();
}


// --- widths, placement and closing -----------------------------------------------

void TstBrowserTabBarLayout::layoutRules_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("barWidth");
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("fixedCount");
    QTest::addColumn<int>("fixedWidth");
    QTest::addColumn<int>("buttonWidth");
    QTest::addColumn<int>("extra");
    QTest::addColumn<int>("contentWidth");
    QTest::addColumn<int>("newTabX");

    // At 1.0 the new-tab button is 28 wide: 800 leaves 800 - 4 - 28 = 768 for the tabs.
    QTest::newRow("1 tab") << 1.0 << 800 << 1 << 0 << 0 << 164 << 0 << 162 << 166;
    QTest::newRow("4 tabs at the maximum") << 1.0 << 800 << 4 << 0 << 0 << 164 << 0 << 648 << 652;
    QTest::newRow("6 tabs share evenly") << 1.0 << 800 << 6 << 0 << 0 << 130 << 0 << 768 << 772;
    QTest::newRow("7 tabs, 5 pixels over") << 1.0 << 800 << 7 << 0 << 0 << 111 << 5 << 768 << 772;
    QTest::newRow("20 tabs, 13 fit") << 1.0 << 800 << 20 << 0 << 0 << 61 << 1 << 768 << 772;
    QTest::newRow("tiny bar") << 1.0 << 60 << 3 << 0 << 0 << 164 << 0 << 28 << 32;
    QTest::newRow("2 fixed + 3") << 1.0 << 800 << 5 << 2 << 200 << 164 << 0 << 686 << 690;
    QTest::newRow("2 fixed + 10") << 1.0 << 800 << 12 << 2 << 200 << 65 << 1 << 768 << 772;
    QTest::newRow("only fixed tabs") << 1.0 << 800 << 2 << 2 << 200 << 164 << 0 << 200 << 204;
    // At 1.5: spacing 3, margin 6, new-tab button 42, 1200 leaves 1152.
    QTest::newRow("1 tab at 1.5") << 1.5 << 1200 << 1 << 0 << 0 << 246 << 0 << 243 << 249;
    QTest::newRow("8 tabs at 1.5") << 1.5 << 1200 << 8 << 0 << 0 << 147 << 0 << 1152 << 1158;
    QTest::newRow("10 tabs at 1.5") << 1.5 << 1200 << 10 << 0 << 0 << 118 << 2 << 1152 << 1158;
    QTest::newRow("1 fixed + 3 at 1.5") << 1.5 << 1200 << 4 << 1 << 150 << 246 << 0 << 879 << 885;
    QTest::newRow("2 fixed + 12 at 1.5") << 1.5 << 1200 << 14 << 2 << 300 << 97 << 6 << 1152 << 1158;
}

void TstBrowserTabBarLayout::layoutRules()
{
    QFETCH(int, barWidth);
    QFETCH(int, tabs);
    QFETCH(int, fixedCount);
    QFETCH(int, fixedWidth);
    QFETCH(int, buttonWidth);
    QFETCH(int, extra);
    QFETCH(int, contentWidth);
    QFETCH(int, newTabX);
    KelTest::UseRowScale();
    auto bar = MakeBar(barWidth, tabs, fixedCount, fixedWidth);
    QCOMPARE(bar->height(), S(4) + S(32));

    QCOMPARE(bar->ButtonWidth(), buttonWidth);
    const auto buttons = Buttons(bar.get());
    QList<int> expectedWidths;
    for (int i = 0; i < tabs; ++i) {
        if (i < fixedCount)
            expectedWidths << (fixedWidth - S(2)) / fixedCount + S(2);
        else
            expectedWidths << buttonWidth + ((i - fixedCount) < extra ? 1 : 0);
        QCOMPARE(buttons.at(i)->height(), S(32));
        QCOMPARE(buttons.at(i)->y(), S(4));
    }
    QCOMPARE(Widths(bar.get()), expectedWidths);
    QCOMPARE(Xs(bar.get()), ExpectedXs(tabs, fixedCount, fixedWidth, buttonWidth, extra));
    // Neighbours overlap by the spacing (the one-pixel remainder aside).
    for (int i = fixedCount + 1; i < tabs; ++i)
        QVERIFY(KelTest::LogicalX(buttons.at(i)) - (KelTest::LogicalX(buttons.at(i - 1)) + buttons.at(i - 1)->width()) >= -S(2));

    QFrame *content = Content(bar.get());
    QCOMPARE(KelTest::LogicalPos(content), QPoint(0, 0));
    QCOMPARE(content->size(), QSize(contentWidth, bar->height()));
    KelPushButtonHover *newTab = NewTabButton(bar.get());
    QCOMPARE(newTab->size(), QSize(S(28), S(28)));
    QCOMPARE(KelTest::LogicalPos(newTab), QPoint(newTabX, S(4) + (S(32) - S(28)) / 2));
}

void TstBrowserTabBarLayout::singleTabIsFollowedByNewTabButton()
{
    auto bar = MakeBar(800, 1);
    QCOMPARE(ButtonAt(bar.get(), 0)->width(), 164);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), KelTest::LogicalX(Content(bar.get())) + 164 - 2 + 4);
}

void TstBrowserTabBarLayout::squeezedTabsPutNewTabButtonAtRightEnd()
{
    auto bar = MakeBar(800, 4);
    QCOMPARE(bar->ButtonWidth(), 164);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 4 * 162 + 4);
    bar->addTab(MakeTab(QStringLiteral("fifth")));
    QVERIFY(bar->ButtonWidth() < 164);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 800 - NewTabButton(bar.get())->width());
}

void TstBrowserTabBarLayout::tinyBarKeepsMaxWidth()
{
    auto bar = MakeBar(80, 3);
    QCOMPARE(bar->ButtonWidth(), bar->MaxButtonWidth());
    QCOMPARE(Widths(bar.get()), QList<int>({164, 164, 164}));
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
    // 30 pixels for tabs beside the new-tab button and its margin.
    bar->resize(30 + 4 + 28, bar->height());
    QCOMPARE(bar->ButtonWidth(), 164);
}

void TstBrowserTabBarLayout::closeButtonsFollowCommonWidthWithoutResize()
{
    // 292 leaves 260 for three tabs: 88 wide, two of them one pixel more (89, 89, 88).
    auto bar = MakeBar(292, 3);
    QCOMPARE(bar->ButtonWidth(), 88);
    QCOMPARE(Widths(bar.get()), QList<int>({89, 89, 88}));
    for (BrowserTabButton *button : Buttons(bar.get()))
        QVERIFY(CloseButtonOf(button)->isHidden());
    // 293: 89 each. The first two keep their size, yet the common width now shows
    // close buttons on every tab.
    bar->resize(293, bar->height());
    QCOMPARE(Widths(bar.get()), QList<int>({89, 89, 89}));
    for (BrowserTabButton *button : Buttons(bar.get()))
        QVERIFY(!CloseButtonOf(button)->isHidden());
    bar->resize(292, bar->height());
    for (BrowserTabButton *button : Buttons(bar.get()))
        QVERIFY(CloseButtonOf(button)->isHidden());
}

void TstBrowserTabBarLayout::closeMiddleByMouseKeepsWidthsUntilLeave()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    // 768 / 10: 78 wide, the first 8 one pixel more.
    QCOMPARE(bar->ButtonWidth(), 78);
    QHash<TabDataPtr, int> widthOf;
    for (int i = 0; i < bar->count(); ++i)
        widthOf.insert(bar->GetTabData(i), ButtonAt(bar.get(), i)->width());
    const TabDataPtr closed = bar->GetTabData(3);

    QCursor::setPos(ButtonAt(bar.get(), 3)->mapToGlobal(QPoint(40, 16)));
    QSignalSpy closeRequested(bar.get(), &BrowserTabBar::tabCloseRequested);
    ClickClose(bar.get(), 3);
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.first().first().toInt(), 3);
    QCOMPARE(bar->count(), 9);
    QCOMPARE(bar->GetIndexByTabData(closed), -1);

    // Frozen: every tab keeps its width, the later ones slide left under the pointer.
    QCOMPARE(bar->ButtonWidth(), 78);
    for (int i = 0; i < bar->count(); ++i)
        QCOMPARE(ButtonAt(bar.get(), i)->width(), widthOf.value(bar->GetTabData(i)));
    QCOMPARE(Xs(bar.get()), ExpectedXs(9, 0, 0, 78, 8));
    QCOMPARE(Content(bar.get())->width(), 76 * 9 + 8);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 76 * 9 + 8 + 4);

    // The pointer leaves: 200 ms later the tabs fit the bar again.
    QTimer *timer = RelayoutTimer(bar.get());
    LeaveBar(bar.get());
    QVERIFY(timer->isActive());
    QCOMPARE(bar->ButtonWidth(), 78);
    QTRY_COMPARE(bar->ButtonWidth(), 87);
    QCOMPARE(Widths(bar.get()), QList<int>({88, 88, 88, 87, 87, 87, 87, 87, 87}));
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 800 - 28);
}

void TstBrowserTabBarLayout::leaveInsideTheBarStartsNoTimer()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    QTimer *timer = RelayoutTimer(bar.get());
    // Without a close by mouse, leaving starts nothing.
    LeaveBar(bar.get());
    QVERIFY(!timer->isActive());
    ClickClose(bar.get(), 2);
    // Leaving a tab for the bar's empty part is no leaving of the bar.
    QCursor::setPos(bar->mapToGlobal(QPoint(10, 10)));
    SendEvent(bar.get(), QEvent::Leave);
    QVERIFY(!timer->isActive());
    QCOMPARE(bar->ButtonWidth(), 78);
}

void TstBrowserTabBarLayout::closeLastByMouseFitsTheStripAtOnce()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    QCOMPARE(Content(bar.get())->width(), 692);
    // The last tab: the rest fit the strip as it is now (692), not the bar (768).
    ClickClose(bar.get(), 8);
    QCOMPARE(bar->count(), 8);
    QCOMPARE(bar->ButtonWidth(), 88);
    QCOMPARE(Widths(bar.get()), QList<int>({89, 89, 89, 89, 88, 88, 88, 88}));
    QCOMPARE(Xs(bar.get()), ExpectedXs(8, 0, 0, 88, 4));
    QCOMPARE(Content(bar.get())->width(), 692);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 696);
    QVERIFY(!RelayoutTimer(bar.get())->isActive());
}

void TstBrowserTabBarLayout::closeTypeChoosesNeighbour_data()
{
    QTest::addColumn<int>("closeType");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("reported");
    QTest::addColumn<int>("finalCurrent");
    QTest::addColumn<QString>("finalTitle");
    QTest::newRow("prev, first") << 1 << 0 << -1 << -1 << QString();
    QTest::newRow("prev, middle") << 1 << 1 << 0 << 0 << "t0";
    QTest::newRow("prev, last") << 1 << 2 << 1 << 1 << "t1";
    QTest::newRow("next, first") << 0 << 0 << 1 << 0 << "t1";
    QTest::newRow("next, middle") << 0 << 1 << 2 << 1 << "t2";
    QTest::newRow("next, last") << 0 << 2 << 1 << 1 << "t1";
    QTest::newRow("other value, middle") << 7 << 1 << 2 << 1 << "t2";
}

void TstBrowserTabBarLayout::closeTypeChoosesNeighbour()
{
    QFETCH(int, closeType);
    QFETCH(int, current);
    QFETCH(int, reported);
    QFETCH(int, finalCurrent);
    QFETCH(QString, finalTitle);
    auto bar = MakeBar(800, 3);
    bar->closeType = static_cast<CloseActiveType>(closeType);
    bar->setCurrentIndex(current);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->removeTab(current);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toInt(), reported);
    QCOMPARE(bar->currentIndex(), finalCurrent);
    QCOMPARE(bar->GetCurrentTabData() ? bar->GetCurrentTabData()->GetTitle() : QString(), finalTitle);
    QVERIFY(OnlyCheckedIs(bar.get(), finalCurrent));
}

void TstBrowserTabBarLayout::removeOutOfRangeIsIgnored()
{
    auto bar = MakeBar(800, 2);
    bar->removeTab(-1);
    bar->removeTab(2);
    QCOMPARE(bar->count(), 2);
}

void TstBrowserTabBarLayout::removeBeforeCurrentKeepsCurrentTab()
{
    auto bar = MakeBar(800, 4);
    bar->setCurrentIndex(2);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->removeTab(0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->currentIndex(), 1);
    QCOMPARE(bar->GetCurrentTabData()->GetTitle(), QStringLiteral("t2"));
    bar->removeTab(3 - 1);
    QCOMPARE(bar->currentIndex(), 1);
    QVERIFY(OnlyCheckedIs(bar.get(), 1));
}

void TstBrowserTabBarLayout::resizeFitsAgainAndEndsFrozenWidths()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    QCOMPARE(bar->ButtonWidth(), 78);
    bar->resize(801, bar->height());
    // 769 / 9 = 85, remainder 4.
    QCOMPARE(bar->ButtonWidth(), 87);
    QCOMPARE(Xs(bar.get()), ExpectedXs(9, 0, 0, 87, 4));
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 801 - 28);
}

void TstBrowserTabBarLayout::relayoutTimerIsAChildSingleShot()
{
    auto bar = MakeBar(800, 1);
    QTimer *timer = RelayoutTimer(bar.get());
    QVERIFY(timer);
    QCOMPARE(timer->parent(), bar.get());
    QVERIFY(timer->isSingleShot());
    QCOMPARE(timer->interval(), 200);
    QVERIFY(!timer->isActive());
}

void TstBrowserTabBarLayout::scaleChangeLaysOutAgain()
{
    auto bar = MakeBar(1200, 1);
    bar->setCurrentIndex(0);
    bar->grab();
    QCOMPARE(bar->ButtonWidth(), 164);
    const int before = bar->ButtonBgBuildCount();
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(bar->ButtonWidth(), 246);
    QCOMPARE(ButtonAt(bar.get(), 0)->size(), QSize(246, 48));
    QCOMPARE(NewTabButton(bar.get())->size(), QSize(42, 42));
    QCOMPARE(bar->minimumHeight(), 54);
    bar->grab();
    // New backgrounds for the new height.
    QCOMPARE(bar->ButtonBgBuildCount() - before, 3);
    QCOMPARE(bar->GetButtonBg(246, true, false)->height(), 48);
}

// An emptied strip lays nothing out: the new-tab button stays where the last layout
// put it, through a resize too, until a change of scale gives it a new size and with
// it a new place, after the empty strip. A bar made without tabs has it there too.
void TstBrowserTabBarLayout::emptiedStripKeepsItsLastLayoutUntilTheScaleChanges()
{
    auto bar = MakeBar(800, 0);
    QCOMPARE(Content(bar.get())->width(), 0);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 4);
    for (int i = 0; i < 6; ++i)
        bar->addTab(MakeTab(QStringLiteral("t%1").arg(i)));
    QVERIFY(bar->ButtonWidth() < 164);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 800 - 28);
    while (bar->count() > 1)
        bar->removeTab(0);
    QCOMPARE(bar->ButtonWidth(), 164);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 164 - 2 + 4);

    bar->removeTab(0);
    QCOMPARE(bar->count(), 0);
    bar->resize(1000, bar->height());
    QCOMPARE(Content(bar.get())->width(), 164 - 2);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 164 - 2 + 4);

    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(Content(bar.get())->width(), 0);
    QCOMPARE(NewTabButton(bar.get())->size(), QSize(42, 42));
    QCOMPARE(KelTest::LogicalPos(NewTabButton(bar.get())), QPoint(6, 6 + (48 - 42) / 2));
}

KELTAB_TEST_MAIN(TstBrowserTabBarLayout)
#include "tst_browsertabbarlayout.moc"
