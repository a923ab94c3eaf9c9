// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tabcontainer.h"
#include "tabmask.h"

#include <QLabel>
#include <QPointer>
#include <QWidget>

namespace {

// A page as a host writes one: it provides its widget and nothing else.
class Page : public TabContainer
{
public:
    explicit Page(QWidget *widget = nullptr) : m_widget(widget) {}
    QWidget *GetWidget() override { return m_widget; }
    void OnActivated() override { ++activated; }
    void OnDeactivated() override { ++deactivated; }
    int activated = 0;
    int deactivated = 0;

private:
    QWidget *m_widget;
};

TabDataPtr MakeTab(const QString &title, TabData::TabType type = TabData::TabTypeWeb)
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(type);
    tab->SetTitle(title);
    tab->SetData(title);
    tab->SetUrl(QStringLiteral("https://example.org/") + title);
    return tab;
}

} // namespace

class TstTabContainer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshPageDefaults();
    void doNothingDefaultsStayHarmless();
    void setTabDataTwiceCopiesIntoTheFirstRecord();
    void setTabDataNullClearsTheRecord();
    void setTabDataOnFreshPageTakesThePointer();
    void titleComesFromTheRecord();
    void closeableAndDescription();
    void reloadInTab();
    void setFocusWithoutWidgetDoesNothing();
    void setFocusGivesFocusToTheWidget();
    void showTabMaskWithoutWidgetDoesNothing();
    void showTabMaskCreatesAMaskOverThePage();
    void secondShowTabMaskReusesAndResizesTheMask();
    void maskFollowsPageResizes();
    void maskDeletedWithThePageWidget();
    void copiesShareRecordAndMask();
};

void TstTabContainer::freshPageDefaults()
{
    Page page;
    QVERIFY(page.IsCloseable());
    QVERIFY(page.CloseDisableDesc().isEmpty());
    QVERIFY(!page.GetReloadInTab());
    QVERIFY(page.GetTitle().isEmpty());
    QCOMPARE(page.GetPageName(), QStringLiteral("default"));
    QCOMPARE(page.TryToClose(true), false);
    QCOMPARE(page.TryToClose(false), false);
    QVERIFY(!page.GetWebKernal());
    QVERIFY(!page.GetTabData());
    QVERIFY(!page.GetTabMask());
}

void TstTabContainer::doNothingDefaultsStayHarmless()
{
    Page page;
    page.OpenUrl(QStringLiteral("https://example.org/"));
    page.ReloadUrl(QStringLiteral("https://example.org/"));
    page.Reload(TabDataPtr());
    page.ActionForward();
    page.ActionBack();
    page.ActionRefresh();
    page.ActionRefreshNoCache();
    page.ActionStop();
    page.ExitFullscreen();
    page.ZoomIn();
    page.ZoomOut();
    page.ZoomDefault();
    page.AttachWebView(nullptr);
    QVERIFY(page.GetOpenUrl().isEmpty());
    QVERIFY(page.GetOpenRouter().isEmpty());
    QVERIFY(page.GetHelpData().isEmpty());
    QVERIFY(!page.GetRefreshEnabled());
    QVERIFY(!page.GetForwardEnabled());
    QVERIFY(!page.GetBackEnabled());
    QVERIFY(!page.GetIsLoading());
    QVERIFY(!page.ShowDevTools());
    QVERIFY(!page.ShowFindDlg());
    QVERIFY(!page.GetTabData());
}

void TstTabContainer::setTabDataTwiceCopiesIntoTheFirstRecord()
{
    Page page;
    TabDataPtr a = MakeTab(QStringLiteral("a"));
    TabDataPtr b = MakeTab(QStringLiteral("b"), TabData::TabTypeWebPopup);
    b->SetIconUrl(QStringLiteral("b.png"));
    page.SetTabData(a);
    page.SetTabData(b);
    QCOMPARE(page.GetTabData().data(), a.data());
    QCOMPARE(a->GetId(), b->GetId());
    QCOMPARE(a->GetTabType(), TabData::TabTypeWebPopup);
    QCOMPARE(a->GetTitle(), QStringLiteral("b"));
    QCOMPARE(a->GetIconUrl(), QStringLiteral("b.png"));
    QCOMPARE(a->GetData(), QStringLiteral("b"));
    QCOMPARE(a->GetVarExtend(), b->GetVarExtend());
    // b itself is untouched and still a separate object.
    QVERIFY(a.data() != b.data());
}

void TstTabContainer::setTabDataNullClearsTheRecord()
{
    Page page;
    TabDataPtr a = MakeTab(QStringLiteral("a"));
    page.SetTabData(a);
    page.SetTabData(TabDataPtr());
    QVERIFY(!page.GetTabData());
    QCOMPARE(a->GetTitle(), QStringLiteral("a"));
}

void TstTabContainer::setTabDataOnFreshPageTakesThePointer()
{
    Page page;
    page.SetTabData(TabDataPtr());
    QVERIFY(!page.GetTabData());
    TabDataPtr a = MakeTab(QStringLiteral("a"));
    page.SetTabData(a);
    QCOMPARE(page.GetTabData().data(), a.data());
}

void TstTabContainer::titleComesFromTheRecord()
{
    Page page;
    TabDataPtr a = MakeTab(QStringLiteral("Docs"));
    page.SetTabData(a);
    QCOMPARE(page.GetTitle(), QStringLiteral("Docs"));
    a->SetTitle(QStringLiteral("Renamed"));
    QCOMPARE(page.GetTitle(), QStringLiteral("Renamed"));
}

void TstTabContainer::closeableAndDescription()
{
    Page page;
    page.SetCloseable(false);
    page.SetCloseDisableDesc(QStringLiteral("A download is still running"));
    QVERIFY(!page.IsCloseable());
    QCOMPARE(page.CloseDisableDesc(), QStringLiteral("A download is still running"));
    page.SetCloseable(true);
    QVERIFY(page.IsCloseable());
}

void TstTabContainer::reloadInTab()
{
    Page page;
    page.SetReloadInTab(true);
    QVERIFY(page.GetReloadInTab());
    page.SetReloadInTab(false);
    QVERIFY(!page.GetReloadInTab());
}

void TstTabContainer::setFocusWithoutWidgetDoesNothing()
{
    Page page(nullptr);
    QWidget *before = QApplication::focusWidget();
    page.SetFocus();
    QCOMPARE(QApplication::focusWidget(), before);
}

void TstTabContainer::setFocusGivesFocusToTheWidget()
{
    QWidget window;
    auto *first = new QWidget(&window);
    first->setFocusPolicy(Qt::StrongFocus);
    auto *pageWidget = new QWidget(&window);
    pageWidget->setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    QTRY_VERIFY(first->hasFocus());

    Page page(pageWidget);
    page.SetFocus();
    QTRY_VERIFY(pageWidget->hasFocus());
}

void TstTabContainer::showTabMaskWithoutWidgetDoesNothing()
{
    Page page(nullptr);
    page.ShowTabMask(nullptr, true, true, Qt::AlignCenter);
    QVERIFY(!page.GetTabMask());
}

void TstTabContainer::showTabMaskCreatesAMaskOverThePage()
{
    QWidget pageWidget;
    pageWidget.resize(640, 480);
    auto *sibling = new QWidget(&pageWidget);
    sibling->show();
    Page page(&pageWidget);
    auto *message = new QLabel(QStringLiteral("Loading"));
    page.ShowTabMask(message, true, false, Qt::AlignCenter);

    TabMask *mask = page.GetTabMask();
    QVERIFY(mask);
    QCOMPARE(mask->parentWidget(), &pageWidget);
    QCOMPARE(mask->geometry(), QRect(0, 0, 640, 480));
    QVERIFY(!mask->isHidden());
    QCOMPARE(pageWidget.children().last(), mask); // raised above its siblings
    QCOMPARE(mask->MaskWidget(), message);
    QCOMPARE(message->parentWidget(), mask);
    QVERIFY(mask->IsBlockingInput());
    QVERIFY(!mask->IsDimmed());
}

void TstTabContainer::secondShowTabMaskReusesAndResizesTheMask()
{
    QWidget pageWidget;
    pageWidget.resize(300, 200);
    Page page(&pageWidget);
    page.ShowTabMask(new QLabel, false, false, Qt::AlignCenter);
    TabMask *first = page.GetTabMask();
    first->resize(10, 10);
    pageWidget.removeEventFilter(first); // only ShowTabMask itself may resize it now
    first->hide();
    pageWidget.resize(500, 400);

    page.ShowTabMask(new QLabel, false, true, Qt::AlignTop | Qt::AlignLeft);
    QCOMPARE(page.GetTabMask(), first);
    QCOMPARE(pageWidget.findChildren<TabMask *>().size(), 1);
    QCOMPARE(first->geometry(), QRect(0, 0, 500, 400));
    QVERIFY(!first->isHidden());
    QVERIFY(first->IsDimmed());
}

void TstTabContainer::maskFollowsPageResizes()
{
    QWidget pageWidget;
    pageWidget.resize(300, 200);
    Page page(&pageWidget);
    page.ShowTabMask(nullptr, false, false, Qt::AlignCenter);
    // A hidden page gets its resize event when it is shown; the mask follows then.
    pageWidget.resize(640, 480);
    pageWidget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&pageWidget));
    QCOMPARE(page.GetTabMask()->size(), QSize(640, 480));
    pageWidget.resize(800, 600);
    QTRY_COMPARE(page.GetTabMask()->size(), QSize(800, 600));
}

void TstTabContainer::maskDeletedWithThePageWidget()
{
    auto *pageWidget = new QWidget;
    Page page(pageWidget);
    page.ShowTabMask(nullptr, false, false, Qt::AlignCenter);
    QVERIFY(page.GetTabMask());
    delete pageWidget;
    QVERIFY(!page.GetTabMask());
}

void TstTabContainer::copiesShareRecordAndMask()
{
    QWidget pageWidget;
    pageWidget.resize(100, 100);
    Page page(&pageWidget);
    TabDataPtr tab = MakeTab(QStringLiteral("shared"));
    page.SetTabData(tab);
    page.SetCloseable(false);
    page.SetCloseDisableDesc(QStringLiteral("busy"));
    page.SetReloadInTab(true);
    page.ShowTabMask(nullptr, false, false, Qt::AlignCenter);

    Page copy(page);
    QCOMPARE(copy.GetTabData().data(), tab.data());
    QCOMPARE(copy.GetTabMask(), page.GetTabMask());
    QVERIFY(!copy.IsCloseable());
    QCOMPARE(copy.CloseDisableDesc(), QStringLiteral("busy"));
    QVERIFY(copy.GetReloadInTab());

    Page assigned;
    assigned = page;
    QCOMPARE(assigned.GetTabData().data(), tab.data());
    QCOMPARE(assigned.GetTabMask(), page.GetTabMask());
    // A mask shown through the copy is the same mask: no second one is made.
    copy.ShowTabMask(nullptr, true, false, Qt::AlignCenter);
    QCOMPARE(pageWidget.findChildren<TabMask *>().size(), 1);
}

KELTAB_TEST_MAIN(TstTabContainer)
#include "tst_tabcontainer.moc"
