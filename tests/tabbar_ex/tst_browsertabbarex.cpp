// SPDX-License-Identifier: MIT
// BrowserTabBarEx: structure, tab list, lookups, widths and layout, and hostile call orders.
// Pixel numbers are checked at scale factors 1.0 and 1.5.

#include "hoverevents.h"
#include "keltabtest.h"

#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "elidedlabelex.h"
#include "kelloadinglabelex.h"
#include "itabmanager.h"
#include "tabbarextestbar.h"
#include "vosimagecache.h"

#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>

#include <memory>

using namespace TabTest;

class TstBrowserTabBarEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void construction();
    void metaObjectOrder();
    void sizeGetters_data();
    void sizeGetters();
    void widthsForAvailable_data();
    void widthsForAvailable();
    void computeButtonWidthKeepCurrentWide();
    void frameGeometryWithoutOverflow_data();
    void frameGeometryWithoutOverflow();
    void frameGeometryInOverflow_data();
    void frameGeometryInOverflow();
    void fixedTabsInFixedArea_data();
    void fixedTabsInFixedArea();
    void parentFollowsCountNotIndex();
    void noFixedTabsDoesNotDivideByZero();
    void emptyBarKeepsItsFrames();
    void resizeRelayouts();
    void adjustForDpiRelayouts();
    void titleFontStaysAsMadeAcrossDpiChange_data();
    void titleFontStaysAsMadeAcrossDpiChange();

    void addTabReturnsIndex();
    void nullTabIsRefused();
    void insertTabBeforeCurrentKeepsCurrent();
    void insertTabOutOfRangeGoesToTheEnds();
    void setCurrentIndexChecksOnlyTheCurrent();
    void setCurrentIndexSameDoesNothing();
    void setCurrentIndexOutOfRange();
    void setCurrentIndexMinusOneUnchecksAll();
    void removeTabAndTheCurrentTab_data();
    void removeTabAndTheCurrentTab();
    void removeCurrentWithCloseLeft();
    void removeOnlyTabEmitsMinusOne();
    void removedButtonIsHiddenCutOffAndDeletedLater();

    void lookups();
    void lookupsOutOfRange();
    void setTabTextAndIcon();
    void setTabIconEmptyKeepsIcon();
    void loadStartAndFinished();
    void currentIconUrlAndPath();
    void updateCustomIcon();
    void tabManagerIsOnlyStored();

    void closeButtonRequestsClose();
    void doubleClickRequestsClose();
    void pressActivates();
    void iconClickReachesHook();
    void slotsIgnoreNullAndUnknownTabs();
    void separators();
    void layoutShowsSeparatorsAHostHid_data();
    void layoutShowsSeparatorsAHostHid();
    void separatorsInOverflowHideLastFixed();
    void hoverSeparators();
    void commandSlotsEmitMenuIndex();
    void checkDefaults();
    void delayTimeoutRelayouts();

    void innerWidgetsOnlyNearTheViewport();
    void innerWidgetsFollowTheScroll();
    void stateKeptWhileOutOfView();

    void removeTabInsideCurrentChanged();
    void removeSameTabInsideCurrentChanged();
    void reselectRemovedTabInsideCurrentChanged();
    void insertTabInsideCurrentChanged();
    void removeTabInsideCloseRequested();
    void deleteBarInsideCurrentChanged();
    void deleteBarWithButtonsPendingDeletion();
    void buttonOutlivesBar();

private:
    std::unique_ptr<QWidget> m_window;
    TestTabBarEx *m_bar = nullptr;
    QTemporaryDir m_dir;

    TestTabBarEx *MakeBar(int designAvailable = 1000);
    TestTabBarEx *MakeFilledBar(int scrolling, int current);
    TestTabBarEx *MakeShownBar(int scrolling);
};

TestTabBarEx *TstBrowserTabBarEx::MakeBar(int designAvailable)
{
    m_window.reset(new QWidget);
    m_bar = new TestTabBarEx(m_window.get());
    m_bar->resize(BarWidthFor(designAvailable), m_bar->ButtonBarHeight());
    m_window->resize(m_bar->size());
    return m_bar;
}

// The indexes of the tabs whose buttons are checked.
static QList<int> CheckedTabs(const TestTabBarEx &bar)
{
    QList<int> checked;
    for (int i = 0; i < bar.count(); ++i) {
        if (bar.TabButton(i)->IsChecked())
            checked << i;
    }
    return checked;
}

// Most tests start here: the home tab and @p scrolling web tabs, with the tab at
// @p current made current before the test watches anything.
TestTabBarEx *TstBrowserTabBarEx::MakeFilledBar(int scrolling, int current)
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, scrolling);
    bar->setCurrentIndex(current);
    return bar;
}

// For the tests that click: the home tab and @p scrolling web tabs in a window on
// the screen; null when the window is never exposed.
TestTabBarEx *TstBrowserTabBarEx::MakeShownBar(int scrolling)
{
    TestTabBarEx *bar = MakeBar();
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    Fill(*bar, scrolling);
    return bar;
}

void TstBrowserTabBarEx::initTestCase()
{
    OpenIconCache(m_dir);
    DpiTool::SetScaleFactor(1.0);
}

// Each test starts at scale 1.0 without a bar.
void TstBrowserTabBarEx::cleanup()
{
    DpiTool::SetScaleFactor(1.0);
    m_window.reset();
    m_bar = nullptr;
    // Buttons removed by a test are deleted later; let them go before the next test.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TstBrowserTabBarEx::cleanupTestCase()
{
    EndTestCase();
}

void TstBrowserTabBarEx::construction()
{
    TestTabBarEx *bar = MakeBar();
    QCOMPARE(bar->objectName(), QStringLiteral("BrowserTabBarEx"));
    QCOMPARE(bar->height(), 40);
    QCOMPARE(bar->minimumHeight(), 40);
    QCOMPARE(bar->maximumHeight(), 40);
    QCOMPARE(bar->count(), 0);
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(bar->GetCurrentIndex(), -1);
    QVERIFY(bar->FixedArea());
    QVERIFY(bar->Viewport());
    QVERIFY(bar->Content());
    QCOMPARE(bar->Content()->parentWidget(), bar->Viewport());
    QCOMPARE(bar->FixedArea()->parentWidget(), static_cast<QWidget *>(bar));
    QVERIFY(bar->LeftArrowFrame()->isHidden());
    QVERIFY(bar->RightArrowFrame()->isHidden());
    QCOMPARE(bar->LeftArrow()->parentWidget(), bar->LeftArrowFrame());
    QCOMPARE(bar->RightArrow()->parentWidget(), bar->RightArrowFrame());
    QCOMPARE(bar->LeftShadow()->parentWidget(), bar->LeftArrowFrame());
    QCOMPARE(bar->RightShadow()->parentWidget(), bar->RightArrowFrame());
    QVERIFY(!bar->GetTabManager());
    // A named bar keeps its name.
    QWidget parent;
    parent.setObjectName(QStringLiteral("x"));
    TestTabBarEx named(&parent);
    QCOMPARE(named.objectName(), QStringLiteral("BrowserTabBarEx"));
    named.setObjectName(QStringLiteral("HostBar"));
    named.addTab(Home());
    QCOMPARE(named.objectName(), QStringLiteral("HostBar"));
}

namespace {

// The signal and slot signatures a class declares itself, in declaration order.
QPair<QStringList, QStringList> OwnMethods(const QMetaObject *mo)
{
    QStringList signalNames;
    QStringList slotNames;
    for (int i = mo->methodOffset(); i < mo->methodCount(); ++i) {
        const QMetaMethod m = mo->method(i);
        if (m.methodType() == QMetaMethod::Signal)
            signalNames << QString::fromLatin1(m.methodSignature());
        else if (m.methodType() == QMetaMethod::Slot)
            slotNames << QString::fromLatin1(m.methodSignature());
    }
    return qMakePair(signalNames, slotNames);
}

} // namespace

void TstBrowserTabBarEx::metaObjectOrder()
{
    // The signals and slots both strips share are declared once, by their base.
    QCOMPARE(BrowserTabBarEx::staticMetaObject.superClass(), &BrowserTabBarBase::staticMetaObject);
    const auto base = OwnMethods(&BrowserTabBarBase::staticMetaObject);
    QCOMPARE(base.first,
             QStringList({"currentChanged(int)", "tabCloseRequested(int)", "SigAddNewTab()", "SigCloseOtherTab(int)",
                          "SigCloseLeftTab(int)", "SigCloseRightTab(int)", "SigRecoverRecentlyTab()"}));
    QCOMPARE(base.second,
             QStringList({"setCurrentIndex(int)", "SlotCloseCurTab()", "SlotCloseOtherTab()", "SlotCloseLeftTab()",
                          "SlotCloseRightTab()", "SlotRecoverRecentlyTab()", "SlotChangeClicked(TabDataPtr)",
                          "SlotCloseClicked(TabDataPtr)", "SlotMenuClicked(TabDataPtr)", "SlotButtonPressed()",
                          "SlotButtonMove()", "SlotButtonRelease()"}));
    const auto own = OwnMethods(&BrowserTabBarEx::staticMetaObject);
    QCOMPARE(own.first,
             QStringList({"SigRefreshTab(int)", "SigAddFav(int,QPoint)", "SigCopyLink(int)", "SigOpenInBrowser(int)"}));
    QCOMPARE(own.second,
             QStringList({"SlotRefreshTab()", "SlotAddFav()", "SlotCopyLink()", "SlotOpenInBrowser()",
                          "SlotHoverChanged(TabDataPtr,bool)", "SlotIconClicked(TabDataPtr)", "SlotDelayTimeout()",
                          "SlotLeftArrowClicked()", "SlotRightArrowClicked()", "SlotLeftArrowDoubleClicked()",
                          "SlotRightArrowDoubleClicked()", "SlotLeftArrowPressed()", "SlotRightArrowPressed()",
                          "SlotLeftArrowReleased()", "SlotRightArrowReleased()", "SlotArrowTimeout()"}));
    QCOMPARE(int(CloseActiveRightEx), 0);
    QCOMPARE(int(CloseActiveLeftEx), 1);
}

void TstBrowserTabBarEx::sizeGetters_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<QList<int>>("expected");
    // bar height, button height, top, max, min, no-close, home
    QTest::newRow("1.0") << 1.0 << QList<int>({40, 32, 4, 224, 96, 112, 84});
    QTest::newRow("1.5") << 1.5 << QList<int>({60, 48, 6, 336, 144, 168, 126});
}

void TstBrowserTabBarEx::sizeGetters()
{
    QFETCH(QList<int>, expected);
    KelTest::UseRowScale();
    TestTabBarEx *bar = MakeBar();
    const QList<int> actual = {bar->ButtonBarHeight(), bar->ButtonHeight(), bar->ButtonTop(), bar->MaxButtonWidth(),
                               bar->MinButtonWidth(), bar->NoCloseButtonWidth(), bar->ButtonHomepageWidth()};
    QCOMPARE(actual, expected);
    QCOMPARE(bar->height(), expected.at(0));
}

void TstBrowserTabBarEx::widthsForAvailable_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("overflow");
    // available = 1000 design pixels (1500 at 1.5, every value scaled on its own).
    QTest::newRow("1.0, 3 tabs: 333 capped at 224") << 1.0 << 3 << 224 << false;
    QTest::newRow("1.0, 7 tabs: 142, remainder to nobody") << 1.0 << 7 << 142 << false;
    QTest::newRow("1.0, 11 tabs: 90 < 96, overflow") << 1.0 << 11 << 96 << true;
    QTest::newRow("1.0, 1 tab") << 1.0 << 1 << 224 << false;
    QTest::newRow("1.0, 10 tabs: exactly 100") << 1.0 << 10 << 100 << false;
    QTest::newRow("1.5, 3 tabs: 500 capped at 336") << 1.5 << 3 << 336 << false;
    QTest::newRow("1.5, 7 tabs: 214") << 1.5 << 7 << 214 << false;
    QTest::newRow("1.5, 11 tabs: 136 < 144, overflow") << 1.5 << 11 << 144 << true;
}

void TstBrowserTabBarEx::widthsForAvailable()
{
    QFETCH(int, tabs);
    QFETCH(int, width);
    QFETCH(bool, overflow);
    KelTest::UseRowScale();
    TestTabBarEx *bar = MakeBar(1000);
    Fill(*bar, tabs);
    bar->setCurrentIndex(1);

    QCOMPARE(bar->ButtonWidth(), width);
    QCOMPARE(bar->CurrentButtonWidth(), width);
    QCOMPARE(bar->IsOverflow(), overflow);
    QCOMPARE(bar->LeftArrowFrame()->isHidden(), !overflow);
    QCOMPARE(bar->RightArrowFrame()->isHidden(), !overflow);
    const int top = DpiTool::ScaleDefault(4);
    const int height = DpiTool::ScaleDefault(32);
    for (int i = 1; i <= tabs; ++i) {
        BrowserTabButtonEx *button = bar->TabButton(i);
        QCOMPARE(button->parentWidget(), bar->Content());
        QCOMPARE(button->size(), QSize(width, height));
        QCOMPARE(KelTest::LogicalPos(button), QPoint((i - 1) * width, top));
    }
    const int total = tabs * width;
    QCOMPARE(bar->Content()->width(), qMax(total, bar->Viewport()->width()));
    QCOMPARE(bar->Content()->height(), bar->height());
}

void TstBrowserTabBarEx::computeButtonWidthKeepCurrentWide()
{
    // No operation of the bar keeps the current tab wide: the current tab gets the
    // common width, whatever the room, down to none at all.
    TestTabBarEx *bar = MakeBar(1000);
    Fill(*bar, 5);
    bar->setCurrentIndex(2);
    m_window->show(); // a shown bar lays out on every resize
    bar->resize(BarWidthFor(500), bar->height());
    QCOMPARE(bar->ButtonWidth(), 100);
    QCOMPARE(bar->CurrentButtonWidth(), 100);
    QVERIFY(!bar->IsOverflow());
    bar->resize(BarWidthFor(479), bar->height());
    QCOMPARE(bar->ButtonWidth(), 96);
    QCOMPARE(bar->CurrentButtonWidth(), 96);
    QVERIFY(bar->IsOverflow());
    bar->resize(0, bar->height());
    QCOMPARE(bar->ButtonWidth(), 96);
    QVERIFY(bar->IsOverflow());
}

void TstBrowserTabBarEx::frameGeometryWithoutOverflow_data()
{
    KelTest::AddBothScales();
}

void TstBrowserTabBarEx::frameGeometryWithoutOverflow()
{
    KelTest::UseRowScale();
    TestTabBarEx *bar = MakeFilledBar(3, 0);
    const int W = bar->width();
    const int H = bar->height();
    const int F = DpiTool::ScaleDefault(84);
    QCOMPARE(KelTest::LogicalGeometry(bar->FixedArea()), QRect(0, 0, F, H));
    QCOMPARE(KelTest::LogicalGeometry(bar->Viewport()), QRect(F, 0, W - DpiTool::ScaleDefault(10) - F, H));
    // The strip is widened to the viewport when the tabs are narrower.
    QCOMPARE(KelTest::LogicalGeometry(bar->Content()), QRect(0, 0, bar->Viewport()->width(), H));
    QVERIFY(bar->LeftArrowFrame()->isHidden());
    QVERIFY(bar->RightArrowFrame()->isHidden());
    QCOMPARE(bar->ScrollOffset(), 0);
}

void TstBrowserTabBarEx::frameGeometryInOverflow_data()
{
    KelTest::AddBothScales();
}

void TstBrowserTabBarEx::frameGeometryInOverflow()
{
    KelTest::UseRowScale();
    TestTabBarEx *bar = MakeFilledBar(20, 0);
    QVERIFY(bar->IsOverflow());
    const int W = bar->width();
    const int H = bar->height();
    const int F = DpiTool::ScaleDefault(84);
    const int s10 = DpiTool::ScaleDefault(10);
    const int s12 = DpiTool::ScaleDefault(12);
    const int s20 = DpiTool::ScaleDefault(20);
    const int arrowPart = s10 + s20 + s10;
    QCOMPARE(KelTest::LogicalGeometry(bar->FixedArea()), QRect(0, 0, F, H));
    QCOMPARE(KelTest::LogicalGeometry(bar->Viewport()), QRect(arrowPart + F, 0, W - 2 * arrowPart - s12 - F, H));
    QCOMPARE(KelTest::LogicalGeometry(bar->LeftArrowFrame()), QRect(F, 0, arrowPart + s12, H));
    QCOMPARE(KelTest::LogicalGeometry(bar->RightArrowFrame()), QRect(W - arrowPart - s12, 0, arrowPart + s12, H));
    // The viewport ends exactly where the right arrow frame begins.
    QCOMPARE(KelTest::LogicalGeometry(bar->Viewport()).right() + 1, KelTest::LogicalX(bar->RightArrowFrame()));
    QVERIFY(!bar->LeftArrowFrame()->isHidden());
    QVERIFY(!bar->RightArrowFrame()->isHidden());
    QCOMPARE(KelTest::LogicalGeometry(bar->LeftArrow()), QRect(s10, s10, s20, s20));
    QCOMPARE(KelTest::LogicalGeometry(bar->LeftShadow()), QRect(arrowPart, 0, s12, H));
    QCOMPARE(KelTest::LogicalGeometry(bar->RightArrow()), QRect(s12 + s10, s10, s20, s20));
    QCOMPARE(KelTest::LogicalGeometry(bar->RightShadow()), QRect(0, 0, s12, H));
    QCOMPARE(bar->Content()->width(), 20 * bar->MinButtonWidth());
    QCOMPARE(KelTest::LogicalPos(bar->Content()), QPoint(0, 0));
}

void TstBrowserTabBarEx::fixedTabsInFixedArea_data()
{
    KelTest::AddBothScales();
}

void TstBrowserTabBarEx::fixedTabsInFixedArea()
{
    KelTest::UseRowScale();
    TestTabBarEx *bar = MakeBar(1000);
    bar->fixedCount = 2;
    bar->fixedDesignWidth = 161; // 80 each at 1.0, integer division leaves one pixel
    bar->addTab(Home());
    bar->addTab(Web(QStringLiteral("pinned")));
    bar->addTab(Web(QStringLiteral("a")));
    const int fixedWidth = DpiTool::ScaleDefault(161) / 2;
    QCOMPARE(bar->TabButton(0)->parentWidget(), bar->FixedArea());
    QCOMPARE(bar->TabButton(1)->parentWidget(), bar->FixedArea());
    QCOMPARE(bar->TabButton(2)->parentWidget(), bar->Content());
    QCOMPARE(KelTest::LogicalGeometry(bar->TabButton(0)),
             QRect(0, bar->ButtonTop(), fixedWidth, bar->ButtonHeight()));
    QCOMPARE(KelTest::LogicalGeometry(bar->TabButton(1)),
             QRect(fixedWidth, bar->ButtonTop(), fixedWidth, bar->ButtonHeight()));
    QCOMPARE(KelTest::LogicalPos(bar->TabButton(2)), QPoint(0, bar->ButtonTop()));
    QCOMPARE(bar->FixedArea()->width(), DpiTool::ScaleDefault(161));
}

void TstBrowserTabBarEx::parentFollowsCountNotIndex()
{
    TestTabBarEx *bar = MakeBar(1000);
    bar->addTab(Home());
    // Inserted at index 0, but one tab already exists: the new button scrolls.
    QCOMPARE(bar->insertTab(0, Web(QStringLiteral("first"))), 0);
    QCOMPARE(bar->TabButton(0)->parentWidget(), bar->Content());
    QCOMPARE(bar->TabButton(1)->parentWidget(), bar->FixedArea());
}

void TstBrowserTabBarEx::noFixedTabsDoesNotDivideByZero()
{
    // The base class has no fixed tabs: every tab scrolls and the fixed area is empty.
    QWidget window;
    BrowserTabBarEx bar(&window);
    bar.resize(1010, 40);
    for (int i = 0; i < 3; ++i)
        bar.addTab(Web(QStringLiteral("t%1").arg(i)));
    QCOMPARE(bar.ButtonWidth(), 224);
    auto *content = bar.findChild<QFrame *>(QStringLiteral("TabBarContentEx"));
    auto *fixed = bar.findChild<QFrame *>(QStringLiteral("TabBarFixedAreaEx"));
    QCOMPARE(fixed->width(), 0);
    const QList<BrowserTabButtonEx *> buttons = content->findChildren<BrowserTabButtonEx *>();
    QCOMPARE(buttons.size(), 3);
    bar.setCurrentIndex(0);
    bar.removeTab(0);
    QCOMPARE(bar.currentIndex(), 0);
    QCOMPARE(bar.count(), 2);
}

void TstBrowserTabBarEx::emptyBarKeepsItsFrames()
{
    // Every tab scrolls, and even one does not fit: the last layout is in overflow.
    TestTabBarEx *bar = MakeBar(90);
    bar->fixedCount = 0;
    bar->resize(BarWidthFor(90, 0), bar->height());
    m_window->show();
    bar->addTab(Web(QStringLiteral("a")));
    bar->addTab(Web(QStringLiteral("b")));
    bar->removeTab(1);
    QVERIFY(bar->IsOverflow());
    const QRect viewport = KelTest::LogicalGeometry(bar->Viewport());
    const QRect content = KelTest::LogicalGeometry(bar->Content());
    const QRect rightFrame = KelTest::LogicalGeometry(bar->RightArrowFrame());

    bar->removeTab(0);
    QCOMPARE(bar->count(), 0);
    bar->resize(bar->width() + 300, bar->height());
    QCOMPARE(bar->width(), BarWidthFor(90, 0) + 300);
    QCOMPARE(KelTest::LogicalGeometry(bar->Viewport()), viewport);
    QCOMPARE(KelTest::LogicalGeometry(bar->Content()), content);
    QCOMPARE(KelTest::LogicalGeometry(bar->RightArrowFrame()), rightFrame);
    QVERIFY(!bar->RightArrowFrame()->isHidden());
    QVERIFY(!bar->LeftArrowFrame()->isHidden());
}

void TstBrowserTabBarEx::resizeRelayouts()
{
    TestTabBarEx *bar = MakeBar(1000);
    m_window->show(); // a hidden widget gets its resize event only when shown
    Fill(*bar, 7);
    QCOMPARE(bar->ButtonWidth(), 142);
    bar->resize(BarWidthFor(700), bar->height());
    QCOMPARE(bar->ButtonWidth(), 100);
    bar->resize(BarWidthFor(600), bar->height());
    QCOMPARE(bar->ButtonWidth(), 96);
    QVERIFY(bar->IsOverflow());
    bar->resize(BarWidthFor(2000), bar->height());
    QCOMPARE(bar->ButtonWidth(), 224);
    QVERIFY(!bar->IsOverflow());
}

void TstBrowserTabBarEx::adjustForDpiRelayouts()
{
    TestTabBarEx *bar = MakeBar(1000);
    Fill(*bar, 3);
    QCOMPARE(bar->ButtonWidth(), 224);
    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(bar->height(), 60);
    // The bar keeps its width: (1094 - 15 - 126) / 3.
    QCOMPARE(bar->ButtonWidth(), 317);
    QCOMPARE(bar->TabButton(1)->height(), 48);
    QCOMPARE(bar->TabButton(0)->width(), DpiTool::ScaleDefault(84));
    DpiTool::SetScaleFactor(1.0);
    QCOMPARE(bar->height(), 40);
    QCOMPARE(bar->ButtonWidth(), 224);
}

void TstBrowserTabBarEx::titleFontStaysAsMadeAcrossDpiChange_data()
{
    QTest::addColumn<double>("madeAt");
    QTest::addColumn<double>("changedTo");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("afterApplyFont");
    QTest::newRow("1.0 then 1.5") << 1.0 << 1.5 << 12 << 18;
    QTest::newRow("1.5 then 1.0") << 1.5 << 1.0 << 18 << 12;
    QTest::newRow("1.0 then 2.0") << 1.0 << 2.0 << 12 << 24;
}

// The title's font is the one the button was made with; a DPI change lays the tab out
// anew but does not scale the font again. Only ApplyFont() takes the new factor.
void TstBrowserTabBarEx::titleFontStaysAsMadeAcrossDpiChange()
{
    QFETCH(double, madeAt);
    QFETCH(double, changedTo);
    QFETCH(int, pixelSize);
    QFETCH(int, afterApplyFont);
    DpiTool::SetScaleFactor(madeAt);
    TestTabBarEx *bar = MakeBar(1000);
    Fill(*bar, 3);
    const auto titleOf = [bar](int i) {
        return bar->TabButton(i)->findChild<QWidget *>(QStringLiteral("TabButtonTextEx"));
    };
    QVERIFY(titleOf(1));
    QCOMPARE(titleOf(1)->font().pixelSize(), qRound(12 * madeAt));
    DpiTool::SetScaleFactor(changedTo);
    bar->AdjustForDpi();
    for (int i = 1; i <= 3; ++i)
        QCOMPARE(titleOf(i)->font().pixelSize(), pixelSize);
    bar->TabButton(2)->ApplyFont();
    QCOMPARE(titleOf(2)->font().pixelSize(), afterApplyFont);
    QCOMPARE(titleOf(1)->font().pixelSize(), pixelSize);
}

void TstBrowserTabBarEx::addTabReturnsIndex()
{
    TestTabBarEx *bar = MakeBar();
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    QCOMPARE(bar->addTab(Home()), 0);
    QCOMPARE(bar->addTab(Web(QStringLiteral("a"))), 1);
    QCOMPARE(bar->addTab(Web(QStringLiteral("b"))), 2);
    QCOMPARE(bar->count(), 3);
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "a", "b"}));
}

void TstBrowserTabBarEx::nullTabIsRefused()
{
    TestTabBarEx *bar = MakeBar();
    QTest::ignoreMessage(QtWarningMsg, "BrowserTabBarEx::insertTab: a null tab record is ignored");
    QCOMPARE(bar->addTab(TabDataPtr()), -1);
    QTest::ignoreMessage(QtWarningMsg, "BrowserTabBarEx::insertTab: a null tab record is ignored");
    QCOMPARE(bar->insertTab(0, TabDataPtr()), -1);
    QCOMPARE(bar->count(), 0);
}

void TstBrowserTabBarEx::insertTabBeforeCurrentKeepsCurrent()
{
    TestTabBarEx *bar = MakeBar();
    bar->fixedCount = 0;
    bar->addTab(Web(QStringLiteral("a")));
    bar->addTab(Web(QStringLiteral("b")));
    bar->setCurrentIndex(0);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    QCOMPARE(bar->insertTab(0, Web(QStringLiteral("new"))), 0);
    QCOMPARE(bar->currentIndex(), 1);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->GetCurrentTabData()->GetTitle(), QStringLiteral("a"));
    QVERIFY(bar->TabButton(1)->IsChecked());
    QVERIFY(!bar->TabButton(0)->IsChecked());
    // After the current tab: unchanged.
    QCOMPARE(bar->insertTab(2, Web(QStringLiteral("after"))), 2);
    QCOMPARE(bar->currentIndex(), 1);
    QCOMPARE(changed.count(), 0);
}

void TstBrowserTabBarEx::insertTabOutOfRangeGoesToTheEnds()
{
    TestTabBarEx *bar = MakeBar();
    bar->addTab(Home());
    bar->addTab(Web(QStringLiteral("a")));
    bar->setCurrentIndex(1);
    QCOMPARE(bar->insertTab(100, Web(QStringLiteral("end"))), 2);
    QCOMPARE(bar->insertTab(-7, Web(QStringLiteral("start"))), 0);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"start", "Home", "a", "end"}));
    QCOMPARE(bar->currentIndex(), 2);
}

void TstBrowserTabBarEx::setCurrentIndexChecksOnlyTheCurrent()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 4);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->setCurrentIndex(2);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 2);
    QCOMPARE(CheckedTabs(*bar), QList<int>{2});
    QCOMPARE(bar->TabButton(2)->objectName(), QStringLiteral("TabButtonFrontEx"));
    // The current tab lies above its siblings.
    QCOMPARE(bar->Content()->children().last(), static_cast<QObject *>(bar->TabButton(2)));
    bar->setCurrentIndex(3);
    QCOMPARE(bar->Content()->children().last(), static_cast<QObject *>(bar->TabButton(3)));
    QCOMPARE(bar->TabButton(2)->objectName(), QStringLiteral("TabButtonBackEx"));
    QVERIFY(!bar->TabButton(2)->IsChecked());
}

void TstBrowserTabBarEx::setCurrentIndexSameDoesNothing()
{
    TestTabBarEx *bar = MakeFilledBar(3, 1);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->setCurrentIndex(1);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->currentIndex(), 1);
}

void TstBrowserTabBarEx::setCurrentIndexOutOfRange()
{
    TestTabBarEx *bar = MakeFilledBar(3, 1);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->setCurrentIndex(4);
    bar->setCurrentIndex(400);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->currentIndex(), 1);
    // No lower bound, deliberately: a negative index is taken as it is and leaves no
    // tab current.
    bar->setCurrentIndex(-5);
    QCOMPARE(bar->currentIndex(), -5);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), -5);
    QVERIFY(CheckedTabs(*bar).isEmpty());
    QVERIFY(!bar->GetCurrentTabData());
}

void TstBrowserTabBarEx::setCurrentIndexMinusOneUnchecksAll()
{
    TestTabBarEx *bar = MakeFilledBar(3, 2);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->setCurrentIndex(-1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), -1);
    QVERIFY(CheckedTabs(*bar).isEmpty());
    QVERIFY(!bar->GetCurrentTabData());
}

void TstBrowserTabBarEx::removeTabAndTheCurrentTab_data()
{
    QTest::addColumn<int>("scrolling");
    QTest::addColumn<int>("current");
    QTest::addColumn<QList<int>>("removed");
    QTest::addColumn<QList<int>>("heard");        // currentChanged, in order
    QTest::addColumn<int>("currentAfter");
    QTest::addColumn<int>("currentWasAt");        // where the current tab was before
    QTest::addColumn<int>("countAfter");
    // The neighbour is reported with its index before the list shrinks.
    QTest::newRow("current: the right neighbour takes over") << 4 << 2 << QList<int>{2} << QList<int>{3} << 2 << 3 << 4;
    QTest::newRow("current at the right end: the left one") << 3 << 3 << QList<int>{3} << QList<int>{2} << 2 << 2 << 3;
    QTest::newRow("left of the current") << 4 << 3 << QList<int>{1} << QList<int>{} << 2 << 3 << 4;
    QTest::newRow("right of the current") << 4 << 1 << QList<int>{3} << QList<int>{} << 1 << 1 << 4;
    QTest::newRow("out of range") << 2 << 1 << QList<int>{-1, 3, 100} << QList<int>{} << 1 << 1 << 3;
}

void TstBrowserTabBarEx::removeTabAndTheCurrentTab()
{
    QFETCH(int, scrolling);
    QFETCH(int, current);
    QFETCH(QList<int>, removed);
    QFETCH(QList<int>, heard);
    QFETCH(int, currentAfter);
    QFETCH(int, currentWasAt);
    QFETCH(int, countAfter);

    TestTabBarEx *bar = MakeFilledBar(scrolling, current);
    const TabDataPtr expectedCurrent = bar->GetTabData(currentWasAt);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    for (int index : qAsConst(removed))
        bar->removeTab(index);
    QList<int> indexes;
    for (const QList<QVariant> &arguments : qAsConst(changed))
        indexes << arguments.at(0).toInt();
    QCOMPARE(indexes, heard);
    QCOMPARE(bar->count(), countAfter);
    QCOMPARE(bar->currentIndex(), currentAfter);
    QVERIFY(bar->GetCurrentTabData() == expectedCurrent);
    QCOMPARE(CheckedTabs(*bar), QList<int>{currentAfter});
    // The remaining scrolling tabs close up from x = 0.
    QCOMPARE(KelTest::LogicalX(bar->TabButton(1)), 0);
    for (int i = 2; i < bar->count(); ++i)
        QCOMPARE(KelTest::LogicalX(bar->TabButton(i)), KelTest::LogicalX(bar->TabButton(i - 1)) + bar->TabButton(i - 1)->width());
}

void TstBrowserTabBarEx::removeCurrentWithCloseLeft()
{
    TestTabBarEx *bar = MakeBar();
    bar->closeType = CloseActiveLeftEx;
    Fill(*bar, 3);
    bar->setCurrentIndex(2);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->removeTab(2);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 1);
    QCOMPARE(bar->currentIndex(), 1);
    // The first tab has no left neighbour: nothing becomes current.
    bar->setCurrentIndex(0);
    changed.clear();
    bar->removeTab(0);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), -1);
    QCOMPARE(bar->currentIndex(), -1);
}

void TstBrowserTabBarEx::removeOnlyTabEmitsMinusOne()
{
    TestTabBarEx *bar = MakeBar();
    bar->addTab(Home());
    bar->setCurrentIndex(0);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->removeTab(0);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), -1);
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(bar->count(), 0);
}

// A removed button is hidden at once, deaf to its own signals from then on, and
// deleted later.
void TstBrowserTabBarEx::removedButtonIsHiddenCutOffAndDeletedLater()
{
    TestTabBarEx *bar = MakeBar();
    m_window->show();
    Fill(*bar, 3);
    QPointer<BrowserTabButtonEx> removed = bar->TabButton(2);
    bar->removeTab(2);
    QVERIFY(removed);
    QVERIFY(removed->isHidden());
    QSignalSpy closeRequested(bar, &BrowserTabBarEx::tabCloseRequested);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    Q_EMIT removed->SigCloseClicked(removed->GetTabData());
    Q_EMIT removed->SigChangeClicked(removed->GetTabData());
    QCOMPARE(closeRequested.count(), 0);
    QCOMPARE(changed.count(), 0);
    QTRY_VERIFY(!removed);
}

void TstBrowserTabBarEx::lookups()
{
    TestTabBarEx *bar = MakeBar();
    bar->addTab(Home());
    TabDataPtr a = MakeTab(TabData::TabTypeWeb, QStringLiteral("Alpha"), QStringLiteral("{id-a}"));
    TabDataPtr b = MakeTab(TabData::TabTypeWeb, QStringLiteral("Beta"), QStringLiteral("{id-b}"));
    TabDataPtr b2 = MakeTab(TabData::TabTypeWeb, QStringLiteral("Beta"), QStringLiteral("{id-b2}"));
    bar->addTab(a);
    bar->addTab(b);
    bar->addTab(b2);
    QVERIFY(bar->GetTabData(1) == a);
    QCOMPARE(bar->GetIndexByTabData(b), 2);
    // Record equality, not pointer identity.
    TabDataPtr copy(new TabData(*b2));
    QCOMPARE(bar->GetIndexByTabData(copy), 3);
    QCOMPARE(bar->GetIndexByTabData(MakeTab(TabData::TabTypePlugin, QStringLiteral("x"))), -1);
    QCOMPARE(bar->GetIndexByName(QStringLiteral("Beta")), 2); // the first match
    QCOMPARE(bar->GetIndexByName(QStringLiteral("beta")), -1); // case-sensitive
    QCOMPARE(bar->GetIndexByTabId(QStringLiteral("{id-b2}")), 3);
    QCOMPARE(bar->GetIndexByTabId(QStringLiteral("{ID-B2}")), -1);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Alpha", "Beta", "Beta"}));
    QVERIFY(!bar->GetCurrentTabData());
    bar->setCurrentIndex(2);
    QVERIFY(bar->GetCurrentTabData() == b);
}

void TstBrowserTabBarEx::lookupsOutOfRange()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 1);
    QVERIFY(!bar->GetTabData(-1));
    QVERIFY(!bar->GetTabData(2));
    QCOMPARE(bar->GetIndexByTabData(TabDataPtr()), -1);
    QCOMPARE(bar->GetIndexByName(QString()), -1);
    QCOMPARE(bar->GetIndexByTabId(QString()), -1);
    QVERIFY(!bar->TabButton(-1));
    QVERIFY(!bar->TabButton(2));
}

void TstBrowserTabBarEx::setTabTextAndIcon()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 2);
    bar->setTabText(1, QStringLiteral("Renamed"));
    QCOMPARE(bar->GetTabData(1)->GetTitle(), QStringLiteral("Renamed"));
    bar->setTabText(1, QString());
    QCOMPARE(bar->GetTabData(1)->GetTitle(), QStringLiteral("Renamed"));
    bar->setTabText(-1, QStringLiteral("x"));
    bar->setTabText(3, QStringLiteral("x"));
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Renamed", "Tab 2"}));

    const QString icon = MakeIconFile(m_dir, QStringLiteral("red.png"), Qt::red);
    bar->setTabIcon(2, icon);
    QCOMPARE(bar->GetTabData(2)->GetIconUrl(), icon);
    QTRY_COMPARE(bar->TabButton(2)->GetIconPath(), icon);
    bar->setTabIcon(-1, icon);
    bar->setTabIcon(3, icon);
}

void TstBrowserTabBarEx::setTabIconEmptyKeepsIcon()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 1);
    const QString icon = MakeIconFile(m_dir, QStringLiteral("green.png"), Qt::green);
    bar->setTabIcon(1, icon);
    QTRY_COMPARE(bar->TabButton(1)->GetIconPath(), icon);
    bar->setTabIcon(1, QString());
    QCOMPARE(bar->TabButton(1)->GetRequestedIconUrl(), icon);
    QCOMPARE(bar->GetTabData(1)->GetIconUrl(), icon);
    QTest::qWait(20);
    QCOMPARE(bar->TabButton(1)->GetIconPath(), icon);
}

void TstBrowserTabBarEx::loadStartAndFinished()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 1);
    bar->LoadStart(1);
    QVERIFY(bar->TabButton(1)->IsLoading());
    bar->LoadFinished(1);
    QVERIFY(!bar->TabButton(1)->IsLoading());
    bar->LoadStart(-1);
    bar->LoadStart(2);
    bar->LoadFinished(-1);
    bar->LoadFinished(2);
}

void TstBrowserTabBarEx::currentIconUrlAndPath()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 2);
    QCOMPARE(bar->CurrentIconUrl(), QString());
    QCOMPARE(bar->CurrentIconLocalPath(), QString());
    const QString icon = MakeIconFile(m_dir, QStringLiteral("blue.png"), Qt::blue);
    bar->setTabIcon(2, icon);
    bar->setCurrentIndex(2);
    QCOMPARE(bar->CurrentIconUrl(), icon);
    QTRY_COMPARE(bar->CurrentIconLocalPath(), icon);
    bar->setCurrentIndex(1);
    QCOMPARE(bar->CurrentIconUrl(), QString());
}

void TstBrowserTabBarEx::updateCustomIcon()
{
    TestTabBarEx *bar = MakeShownBar(2);
    QVERIFY(bar);
    bar->setCurrentIndex(2);
    BrowserTabButtonEx *button = bar->TabButton(2);
    // The pointer over the current tab lets it show the bar's checked icon.
    KelTest::SendEnter(button);
    auto *icon = button->findChild<QPushButton *>(QStringLiteral("TabButtonIconDefaultEx"));
    QVERIFY(icon);
    bar->checkedIcon = MakeIconFile(m_dir, QStringLiteral("checked.png"), Qt::cyan);
    bar->UpdateCustomIcon();
    QCOMPARE(icon->objectName(), QStringLiteral("TabButtonIconCustomEx"));
    bar->checkedIcon.clear();
    bar->UpdateCustomIcon();
    QCOMPARE(icon->objectName(), QStringLiteral("TabButtonIconDefaultEx"));
}

void TstBrowserTabBarEx::tabManagerIsOnlyStored()
{
    struct Manager : ITabManager {
        int calls = 0;
        TabContainer *GetTabContainer(TabDataPtr) override { ++calls; return nullptr; }
        int OpenTab(TabDataPtr, bool) override { ++calls; return -1; }
        bool CloseTab(TabDataPtr) override { ++calls; return false; }
        TabContainer *GetCurrentTabContainer() override { ++calls; return nullptr; }
    } manager;
    TestTabBarEx *bar = MakeBar();
    bar->SetTabManager(&manager);
    QCOMPARE(bar->GetTabManager(), static_cast<ITabManager *>(&manager));
    Fill(*bar, 2);
    bar->setCurrentIndex(1);
    bar->removeTab(1);
    QCOMPARE(manager.calls, 0);
    bar->SetTabManager(nullptr);
    QVERIFY(!bar->GetTabManager());
}

void TstBrowserTabBarEx::closeButtonRequestsClose()
{
    TestTabBarEx *bar = MakeShownBar(3);
    QVERIFY(bar);
    bar->setCurrentIndex(2);
    QSignalSpy closeRequested(bar, &BrowserTabBarEx::tabCloseRequested);
    auto *close = bar->TabButton(2)->findChild<QPushButton *>(QStringLiteral("TabButtonCloseBtnEx"));
    QVERIFY(close->isVisible());
    QTest::mouseClick(close, Qt::LeftButton);
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.at(0).at(0).toInt(), 2);
    // Only a request: the host decides.
    QCOMPARE(bar->count(), 4);
}

void TstBrowserTabBarEx::doubleClickRequestsClose()
{
    TestTabBarEx *bar = MakeShownBar(3);
    QVERIFY(bar);
    QSignalSpy closeRequested(bar, &BrowserTabBarEx::tabCloseRequested);
    QTest::mouseDClick(bar->TabButton(3), Qt::LeftButton, {}, QPoint(40, 10));
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.at(0).at(0).toInt(), 3);
    bar->doubleClose = false;
    QTest::mouseDClick(bar->TabButton(3), Qt::LeftButton, {}, QPoint(40, 10));
    QCOMPARE(closeRequested.count(), 1);
}

void TstBrowserTabBarEx::pressActivates()
{
    TestTabBarEx *bar = MakeShownBar(3);
    QVERIFY(bar);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    // The press also begins a drag, whose popup takes the mouse; the offscreen platform
    // says it cannot raise it nor grab the keyboard for it.
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    QTest::mousePress(bar->TabButton(2), Qt::LeftButton, {}, QPoint(40, 10));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 2);
    QVERIFY(QApplication::activePopupWidget());
    // The release reaches the popup, which hides itself.
    QApplication::activePopupWidget()->hide();
    QVERIFY(!QApplication::activePopupWidget());
    // The home tab activates too.
    QTest::mousePress(bar->TabButton(0), Qt::LeftButton, {}, QPoint(20, 10));
    QCOMPARE(bar->currentIndex(), 0);
    QTest::mouseRelease(bar->TabButton(0), Qt::LeftButton, {}, QPoint(20, 10));
    // Right and middle presses select nothing.
    QTest::mousePress(bar->TabButton(3), Qt::RightButton, {}, QPoint(40, 10));
    QTest::mousePress(bar->TabButton(3), Qt::MiddleButton, {}, QPoint(40, 10));
    QCOMPARE(bar->currentIndex(), 0);
}

void TstBrowserTabBarEx::iconClickReachesHook()
{
    TestTabBarEx *bar = MakeShownBar(2);
    QVERIFY(bar);
    bar->checkedIcon = MakeIconFile(m_dir, QStringLiteral("hook.png"), Qt::magenta);
    bar->setCurrentIndex(1);
    BrowserTabButtonEx *button = bar->TabButton(1);
    KelTest::SendEnter(button);
    auto *icon = button->findChild<QPushButton *>(QStringLiteral("TabButtonIconCustomEx"));
    QVERIFY(icon);
    QVERIFY(!icon->testAttribute(Qt::WA_TransparentForMouseEvents));
    QTest::mouseClick(icon, Qt::LeftButton);
    QCOMPARE(bar->iconClicks.size(), 1);
    QVERIFY(bar->iconClicks.at(0).first == bar->GetTabData(1));
    QCOMPARE(bar->iconClicks.at(0).second, button->GetIconGlobalPos());
    // A call that does not come from a button, or carries no tab, is ignored.
    bar->SlotIconClicked(bar->GetTabData(1));
    bar->SlotIconClicked(TabDataPtr());
    QCOMPARE(bar->iconClicks.size(), 1);
}

void TstBrowserTabBarEx::slotsIgnoreNullAndUnknownTabs()
{
    TestTabBarEx *bar = MakeFilledBar(2, 1);
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    QSignalSpy closeRequested(bar, &BrowserTabBarEx::tabCloseRequested);
    const TabDataPtr unknown = MakeTab(TabData::TabTypePlugin, QStringLiteral("nobody"));
    bar->SlotChangeClicked(TabDataPtr());
    bar->SlotChangeClicked(unknown);
    bar->SlotCloseClicked(TabDataPtr());
    bar->SlotCloseClicked(unknown);
    bar->SlotHoverChanged(TabDataPtr(), true);
    bar->SlotHoverChanged(unknown, true);
    bar->SlotMenuClicked(TabDataPtr());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(closeRequested.count(), 0);
    bar->SlotChangeClicked(bar->GetTabData(2));
    QCOMPARE(bar->currentIndex(), 2);
    bar->SlotCloseClicked(bar->GetTabData(0));
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.at(0).at(0).toInt(), 0);
}

void TstBrowserTabBarEx::separators()
{
    TestTabBarEx *bar = MakeFilledBar(5, 3);
    // The current tab and its left neighbour hide theirs; every other tab shows its own.
    const QList<bool> expected = {true, true, false, false, true, true};
    for (int i = 0; i < bar->count(); ++i)
        QCOMPARE(bar->TabButton(i)->IsSeparatorVisible(), expected.at(i));
    bar->setCurrentIndex(0);
    for (int i = 0; i < bar->count(); ++i)
        QCOMPARE(bar->TabButton(i)->IsSeparatorVisible(), i != 0);
    auto *content = bar->TabButton(1)->findChild<QFrame *>(QStringLiteral("TabButtonContentExWithSep"));
    QVERIFY(content);
}

void TstBrowserTabBarEx::layoutShowsSeparatorsAHostHid_data()
{
    QTest::addColumn<QString>("layout");
    QTest::newRow("tab added") << QStringLiteral("add");
    QTest::newRow("tab removed") << QStringLiteral("remove");
    QTest::newRow("bar narrower") << QStringLiteral("resize");
}

void TstBrowserTabBarEx::layoutShowsSeparatorsAHostHid()
{
    QFETCH(QString, layout);
    TestTabBarEx *bar = MakeShownBar(5); // shown, so that a resize lays it out at once
    QVERIFY(bar);
    bar->setCurrentIndex(3);
    // A host hides a separator the bar shows and shows one the bar hides (the current
    // tab's left neighbour's); tab 4 is the one a removal would take.
    bar->TabButton(1)->SetSeparatorVisible(false);
    bar->TabButton(2)->SetSeparatorVisible(true);
    QVERIFY(!bar->TabButton(1)->IsSeparatorVisible());
    QVERIFY(bar->TabButton(2)->IsSeparatorVisible());
    if (layout == QLatin1String("add"))
        Fill(*bar, 1);
    else if (layout == QLatin1String("remove"))
        bar->removeTab(4);
    else
        bar->resize(bar->width() - 10, bar->height());
    // Every layout puts the separators back by the bar's rules, whoever changed them.
    QVERIFY(bar->TabButton(1)->IsSeparatorVisible());
    QVERIFY(!bar->TabButton(2)->IsSeparatorVisible());
    QVERIFY(!bar->TabButton(3)->IsSeparatorVisible());
}

void TstBrowserTabBarEx::separatorsInOverflowHideLastFixed()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 3);
    QVERIFY(bar->TabButton(0)->IsSeparatorVisible());
    Fill(*bar, 12);
    QVERIFY(bar->IsOverflow());
    // In overflow the home tab borders the left arrow, not a tab.
    QVERIFY(!bar->TabButton(0)->IsSeparatorVisible());
    QVERIFY(bar->TabButton(1)->IsSeparatorVisible());
}

void TstBrowserTabBarEx::hoverSeparators()
{
    TestTabBarEx *bar = MakeFilledBar(5, 4);
    // Hovering tab 2 hides the separators on both of its sides.
    bar->SlotHoverChanged(bar->GetTabData(2), true);
    QVERIFY(!bar->TabButton(2)->IsSeparatorVisible());
    QVERIFY(!bar->TabButton(1)->IsSeparatorVisible());
    QVERIFY(bar->TabButton(0)->IsSeparatorVisible());
    bar->SlotHoverChanged(bar->GetTabData(2), false);
    QVERIFY(bar->TabButton(2)->IsSeparatorVisible());
    QVERIFY(bar->TabButton(1)->IsSeparatorVisible());
    // Next to the current tab the separator stays hidden.
    bar->SlotHoverChanged(bar->GetTabData(3), false);
    QVERIFY(!bar->TabButton(3)->IsSeparatorVisible());
    QVERIFY(bar->TabButton(2)->IsSeparatorVisible());
    // In overflow, hovering the first scrolling tab leaves the home tab's hidden.
    Fill(*bar, 10);
    QVERIFY(bar->IsOverflow());
    bar->SlotHoverChanged(bar->GetTabData(1), false);
    QVERIFY(!bar->TabButton(0)->IsSeparatorVisible());
}

void TstBrowserTabBarEx::commandSlotsEmitMenuIndex()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 2);
    // No menu has been opened: the commands have no tab to act on.
    QSignalSpy refresh(bar, &BrowserTabBarEx::SigRefreshTab);
    QSignalSpy fav(bar, &BrowserTabBarEx::SigAddFav);
    QSignalSpy copy(bar, &BrowserTabBarEx::SigCopyLink);
    QSignalSpy open(bar, &BrowserTabBarEx::SigOpenInBrowser);
    QSignalSpy closeCur(bar, &BrowserTabBarEx::tabCloseRequested);
    QSignalSpy other(bar, &BrowserTabBarEx::SigCloseOtherTab);
    QSignalSpy left(bar, &BrowserTabBarEx::SigCloseLeftTab);
    QSignalSpy right(bar, &BrowserTabBarEx::SigCloseRightTab);
    QSignalSpy recover(bar, &BrowserTabBarEx::SigRecoverRecentlyTab);
    QSignalSpy addNew(bar, &BrowserTabBarEx::SigAddNewTab);
    bar->SlotRefreshTab();
    bar->SlotAddFav();
    bar->SlotCopyLink();
    bar->SlotOpenInBrowser();
    bar->SlotCloseCurTab();
    bar->SlotCloseOtherTab();
    bar->SlotCloseLeftTab();
    bar->SlotCloseRightTab();
    bar->SlotRecoverRecentlyTab();
    for (QSignalSpy *spy : {&refresh, &fav, &copy, &open, &closeCur, &other, &left, &right})
        QCOMPARE(spy->count(), 0);
    QCOMPARE(recover.count(), 1);
    QCOMPARE(addNew.count(), 0);
}

void TstBrowserTabBarEx::checkDefaults()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 2);
    QVERIFY(bar->CheckCloseCurItem(0));
    QVERIFY(bar->CheckCloseOtherItem(0));
    QVERIFY(!bar->CheckRecoveryItem());
    QVERIFY(!bar->IsShowRecoveryItem());
    // The menu's tab is -1 until a menu opens.
    QVERIFY(bar->CheckCloseRightItem(0));
    QVERIFY(!bar->CheckCloseLeftItem(0));
    while (bar->count() > 1)
        bar->removeTab(1);
    QVERIFY(!bar->CheckCloseOtherItem(0));
    BrowserTabBarEx plain;
    QCOMPARE(plain.count(), 0);
}

void TstBrowserTabBarEx::delayTimeoutRelayouts()
{
    TestTabBarEx *bar = MakeBar();
    Fill(*bar, 3);
    bar->TabButton(2)->setFixedSize(10, 10);
    bar->SlotDelayTimeout();
    QCOMPARE(bar->TabButton(2)->size(), QSize(224, 32));
}

static bool HasInnerWidgets(BrowserTabButtonEx *button)
{
    return button->findChild<QWidget *>(QStringLiteral("TabButtonTextEx")) != nullptr;
}

void TstBrowserTabBarEx::innerWidgetsOnlyNearTheViewport()
{
    TestTabBarEx *bar = MakeBar(1000);
    m_window->show();
    Fill(*bar, 40);
    QVERIFY(bar->IsOverflow());
    const int viewport = bar->Viewport()->width();
    // Every button exists, lies in the strip and carries its record and look.
    QCOMPARE(bar->count(), 41);
    for (int i = 1; i < bar->count(); ++i) {
        BrowserTabButtonEx *button = bar->TabButton(i);
        QCOMPARE(button->parentWidget(), bar->Content());
        QCOMPARE(KelTest::LogicalPos(button), QPoint((i - 1) * 96, 4));
        QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
        const bool near = KelTest::LogicalX(button) < viewport + 96;
        QCOMPARE(HasInnerWidgets(button), near);
    }
    QVERIFY(HasInnerWidgets(bar->TabButton(0))); // the fixed tab
    QVERIFY(!HasInnerWidgets(bar->TabButton(40)));
}

void TstBrowserTabBarEx::innerWidgetsFollowTheScroll()
{
    TestTabBarEx *bar = MakeBar(1000);
    m_window->show();
    Fill(*bar, 40);
    QVERIFY(QMetaObject::invokeMethod(bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(bar->ScrollOffset(), bar->Viewport()->width() - bar->Content()->width());
    QVERIFY(HasInnerWidgets(bar->TabButton(40)));
    QVERIFY(HasInnerWidgets(bar->TabButton(35)));
    // Released later, not at once: one of them might be delivering an event.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!HasInnerWidgets(bar->TabButton(1)));
    QVERIFY(HasInnerWidgets(bar->TabButton(0)));
}

void TstBrowserTabBarEx::stateKeptWhileOutOfView()
{
    TestTabBarEx *bar = MakeBar(1000);
    m_window->show();
    Fill(*bar, 40);
    const QString icon = MakeIconFile(m_dir, QStringLiteral("far.png"), Qt::darkGreen);
    BrowserTabButtonEx *far = bar->TabButton(38);
    BrowserTabButtonEx *loading = bar->TabButton(39);
    QVERIFY(!HasInnerWidgets(far));
    bar->setTabText(38, QStringLiteral("Renamed far away"));
    bar->setTabIcon(38, icon);
    QTRY_COMPARE(far->GetIconPath(), icon);
    bar->LoadStart(39);
    bar->setCurrentIndex(38);
    QVERIFY(far->IsChecked());
    QVERIFY(!HasInnerWidgets(far));

    bar->showIndex(39);
    QTRY_VERIFY(HasInnerWidgets(loading));
    QTRY_COMPARE(bar->ScrollOffset(), bar->Viewport()->width() - 39 * 96);
    QVERIFY(HasInnerWidgets(far));
    auto *title = far->findChild<ElidedLabelEx *>(QStringLiteral("TabButtonTextEx"));
    QCOMPARE(title->FullText(), QStringLiteral("Renamed far away"));
    QVERIFY(far->findChild<QPushButton *>(QStringLiteral("TabButtonIconWebEx")));
    QVERIFY(!far->findChild<QPushButton *>(QStringLiteral("TabButtonCloseBtnEx"))->isHidden());
    QVERIFY(far->findChild<QFrame *>(QStringLiteral("TabButtonContentExNoSep")));
    auto *indicator = loading->findChild<KelLoadingLabelEx *>(QStringLiteral("TabButtonLoadingEx"));
    QVERIFY(indicator->IsAnimating());
    QVERIFY(indicator->isVisible());
    QVERIFY(loading->findChild<QPushButton *>(QStringLiteral("TabButtonIconDefaultEx"))->isHidden());
    // Its neighbour shows the separator it was given while out of view.
    QVERIFY(bar->TabButton(36)->findChild<QFrame *>(QStringLiteral("TabButtonContentExWithSep")));
    QVERIFY(bar->TabButton(37)->findChild<QFrame *>(QStringLiteral("TabButtonContentExNoSep")));

    // Going out of view again stops the indicator with its widgets.
    QPointer<KelLoadingLabelEx> guard(indicator);
    QVERIFY(QMetaObject::invokeMethod(bar, "SlotLeftArrowDoubleClicked"));
    QTRY_COMPARE(bar->ScrollOffset(), 0);
    // The widgets go later; until then the indicator stands still.
    if (guard)
        QVERIFY(!guard->IsAnimating());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!guard);
    QVERIFY(loading->IsLoading());
}

void TstBrowserTabBarEx::removeTabInsideCurrentChanged()
{
    TestTabBarEx *bar = MakeFilledBar(5, 2);
    TabDataPtr removedByHost = bar->GetTabData(4);
    TabDataPtr removed = bar->GetTabData(2);
    TabDataPtr next = bar->GetTabData(3);
    OnNextCurrentChanged(bar, [bar] {
        bar->removeTab(4);
    });
    bar->removeTab(2);
    QCOMPARE(bar->count(), 4);
    QCOMPARE(bar->GetIndexByTabData(removed), -1);
    QCOMPARE(bar->GetIndexByTabData(removedByHost), -1);
    QCOMPARE(bar->currentIndex(), 2);
    QVERIFY(bar->GetCurrentTabData() == next);
    QCOMPARE(CheckedTabs(*bar), QList<int>{2});
}

void TstBrowserTabBarEx::removeSameTabInsideCurrentChanged()
{
    TestTabBarEx *bar = MakeFilledBar(3, 1);
    TabDataPtr target = bar->GetTabData(1);
    OnNextCurrentChanged(bar, [bar, target] {
        bar->removeTab(bar->GetIndexByTabData(target));
    });
    bar->removeTab(1);
    QCOMPARE(bar->count(), 3);
    QCOMPARE(bar->GetIndexByTabData(target), -1);
    QCOMPARE(bar->currentIndex(), 1);
    QVERIFY(bar->TabButton(1)->IsChecked());
}

void TstBrowserTabBarEx::reselectRemovedTabInsideCurrentChanged()
{
    TestTabBarEx *bar = MakeFilledBar(3, 1);
    OnNextCurrentChanged(bar, [bar] {
        bar->setCurrentIndex(1); // back to the tab being removed
    });
    QSignalSpy changed(bar, &BrowserTabBarEx::currentChanged);
    bar->removeTab(1);
    QCOMPARE(bar->count(), 3);
    // The current tab is gone: no tab is current, and the host hears so.
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(changed.last().at(0).toInt(), -1);
    QVERIFY(CheckedTabs(*bar).isEmpty());
}

void TstBrowserTabBarEx::insertTabInsideCurrentChanged()
{
    TestTabBarEx *bar = MakeFilledBar(3, 2);
    TabDataPtr removed = bar->GetTabData(2);
    TabDataPtr next = bar->GetTabData(3);
    OnNextCurrentChanged(bar, [bar] {
        bar->insertTab(1, Web(QStringLiteral("inserted")));
    });
    bar->removeTab(2);
    QCOMPARE(bar->count(), 4);
    QCOMPARE(bar->GetIndexByTabData(removed), -1);
    QVERIFY(bar->GetCurrentTabData() == next);
    QCOMPARE(bar->currentIndex(), 3);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "inserted", "Tab 1", "Tab 3"}));
}

void TstBrowserTabBarEx::removeTabInsideCloseRequested()
{
    TestTabBarEx *bar = MakeShownBar(3);
    QVERIFY(bar);
    bar->setCurrentIndex(2);
    connect(bar, &BrowserTabBarEx::tabCloseRequested, this, [bar](int index) { bar->removeTab(index); });
    auto *close = bar->TabButton(2)->findChild<QPushButton *>(QStringLiteral("TabButtonCloseBtnEx"));
    QTest::mouseClick(close, Qt::LeftButton);
    QCOMPARE(bar->count(), 3);
    QCOMPARE(bar->currentIndex(), 2);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 3"}));
    // Closing by double click from inside the request too.
    QTest::mouseDClick(bar->TabButton(1), Qt::LeftButton, {}, QPoint(30, 10));
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Tab 3"}));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TstBrowserTabBarEx::deleteBarInsideCurrentChanged()
{
    TestTabBarEx *bar = MakeFilledBar(3, 2);
    QPointer<TestTabBarEx> guard(bar);
    connect(bar, &BrowserTabBarEx::currentChanged, this, [this](int) { m_window.reset(); });
    bar->removeTab(2);
    QVERIFY(!guard);
    m_bar = nullptr;
}

void TstBrowserTabBarEx::deleteBarWithButtonsPendingDeletion()
{
    TestTabBarEx *bar = MakeBar();
    m_window->show();
    Fill(*bar, 4);
    bar->setCurrentIndex(1);
    QPointer<BrowserTabButtonEx> removed = bar->TabButton(1);
    bar->removeTab(1);
    bar->removeTab(1);
    QVERIFY(removed);
    m_window.reset();
    QVERIFY(!removed);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TstBrowserTabBarEx::buttonOutlivesBar()
{
    // A button made with a bar but living elsewhere must not call into the bar once
    // it is gone.
    QWidget holder;
    auto bar = std::make_unique<TestTabBarEx>();
    auto *button = new BrowserTabButtonEx(Web(QStringLiteral("orphan")), QString(), false, bar.get(), &holder);
    bar.reset();
    button->SetChecked(true);
    button->UpdateIcon();
    button->LoadStart();
    button->LoadFinished();
    button->resize(150, 32);
    QTest::mouseDClick(button, Qt::LeftButton);
    KelTest::SendEnter(button);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(button, &leave);
    button->ReloadIcon();
    QVERIFY(button->IsChecked());
}

KELTAB_TEST_MAIN(TstBrowserTabBarEx)
#include "tst_browsertabbarex.moc"
