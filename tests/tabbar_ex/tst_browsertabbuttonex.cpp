// SPDX-License-Identifier: MIT
// BrowserTabButtonEx: its form, style names, icon choice and download, close button
// rule, mouse input and the guarded bar.

#include "hoverevents.h"
#include "keltabtest.h"

#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "elidedlabelex.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "tabbarextestbar.h"
#include "vosimagecache.h"

#include <QPushButton>
#include <QTemporaryDir>

#include <memory>

using namespace TabTest;

class TstBrowserTabButtonEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void form();
    void presetNameIsKept();
    void emptyTitleShowsNewTabNameWithEmptyToolTip();
    void titleAndToolTip();
    void homeTab();
    void styleNamesFollowState();
    void checkedRaises();
    void pressedKeepsLookUntilReleased();
    void separatorNames();
    void layoutGeometry_data();
    void layoutGeometry();
    void closeButtonRule_data();
    void closeButtonRule();
    void iconGlobalPos_data();
    void iconGlobalPos();
    void fontFollowsScale_data();
    void fontFollowsScale();
    void loadingIndicator();
    void defaultAndWebIcons();
    void failedDownloadClearsIcon();
    void successWithMissingFileKeepsIcon();
    void onlyLastIconRequestApplies();
    void pluginAsksBarForIcon();
    void webPopupFetchesItsIcon();
    void hoverSignals();
    void pressSignals();
    void rightPressDuringDragEmitsNothing();
    void doubleClickCloses();
    void closeButtonEmitsClose();
    void nullRecord();
    void deadBar();

private:
    std::unique_ptr<QWidget> m_window;
    TestTabBarEx *m_bar = nullptr;
    QTemporaryDir m_dir;

    BrowserTabButtonEx *MakeButton(TabDataPtr tab, const QString &iconPath = QString(), bool loading = false);
    template <typename T>
    static T *Child(QWidget *button, const char *name)
    {
        return button->findChild<T *>(QString::fromLatin1(name));
    }
    static QPushButton *IconButton(QWidget *button)
    {
        // The icon button changes its name with the icon it shows.
        for (QPushButton *b : button->findChildren<QPushButton *>()) {
            if (b->objectName().startsWith(QLatin1String("TabButtonIcon")))
                return b;
        }
        return nullptr;
    }
    static QFrame *Content(QWidget *button)
    {
        for (QFrame *f : button->findChildren<QFrame *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (f->objectName().startsWith(QLatin1String("TabButtonContentEx")))
                return f;
        }
        return nullptr;
    }
};

void TstBrowserTabButtonEx::initTestCase()
{
    OpenIconCache(m_dir);
}

void TstBrowserTabButtonEx::init()
{
    DpiTool::SetScaleFactor(1.0);
    m_window.reset(new QWidget);
    m_window->resize(800, 60);
    m_bar = new TestTabBarEx(m_window.get());
    m_window->show();
}

void TstBrowserTabButtonEx::cleanup()
{
    m_window.reset();
    m_bar = nullptr;
}

void TstBrowserTabButtonEx::cleanupTestCase()
{
    EndTestCase();
}

BrowserTabButtonEx *TstBrowserTabButtonEx::MakeButton(TabDataPtr tab, const QString &iconPath, bool loading)
{
    return new BrowserTabButtonEx(tab, iconPath, loading, m_bar, m_window.get());
}

void TstBrowserTabButtonEx::form()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QVERIFY(button->isVisible());
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    QCOMPARE(button->contextMenuPolicy(), Qt::NoContextMenu);
    QCOMPARE(button->lineWidth(), 0);
    QCOMPARE(button->windowTitle(), QStringLiteral("BrowserTabButtonBase"));
    QCOMPARE(button->cursor().shape(), Qt::ArrowCursor);

    QFrame *content = Content(button);
    QVERIFY(content);
    QCOMPARE(content->objectName(), QStringLiteral("TabButtonContentExWithSep"));
    QCOMPARE(content->frameShape(), QFrame::NoFrame);
    auto *loading = Child<KelLoadingLabelEx>(button, "TabButtonLoadingEx");
    auto *title = Child<ElidedLabelEx>(button, "TabButtonTextEx");
    auto *close = Child<KelPushButton>(button, "TabButtonCloseBtnEx");
    QPushButton *icon = IconButton(button);
    QVERIFY(loading && title && close && icon);
    for (QWidget *child : {static_cast<QWidget *>(loading), static_cast<QWidget *>(title),
                           static_cast<QWidget *>(close), static_cast<QWidget *>(icon)})
        QCOMPARE(child->parentWidget(), static_cast<QWidget *>(content));
    // Created in the order loading, title, close, icon: the icon lies above the loading label.
    const QObjectList order = content->children();
    QVERIFY(order.indexOf(icon) > order.indexOf(loading));
    QCOMPARE(title->textFormat(), Qt::PlainText);
    QCOMPARE(title->margin(), 0);
    QCOMPARE(close->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(close->ButtonType(), 0);
    QCOMPARE(close->Business(), 0);
    QCOMPARE(icon->objectName(), QStringLiteral("TabButtonIconDefaultEx"));
    QVERIFY(icon->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(icon->focusPolicy(), Qt::NoFocus);
    QVERIFY(loading->isHidden());
    QVERIFY(!loading->Image().isNull());
    QVERIFY(button->GetTabData());
}

void TstBrowserTabButtonEx::presetNameIsKept()
{
    // The form names the button only when it has no name yet: a subclass could name it first.
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
    KelTest::SendEnter(button);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackExHover"));
}

void TstBrowserTabButtonEx::emptyTitleShowsNewTabNameWithEmptyToolTip()
{
    TabDataPtr tab = Web(QString());
    BrowserTabButtonEx *button = MakeButton(tab);
    QCOMPARE(tab->GetTitle(), TabData::GetNewTabName());
    QCOMPARE(button->toolTip(), QString());
    QCOMPARE(Child<ElidedLabelEx>(button, "TabButtonTextEx")->FullText(), TabData::GetNewTabName());
}

void TstBrowserTabButtonEx::titleAndToolTip()
{
    TabDataPtr tab = Web(QStringLiteral("<b>A&B</b>"));
    BrowserTabButtonEx *button = MakeButton(tab);
    QCOMPARE(button->toolTip(), QStringLiteral("&lt;b&gt;A&amp;B&lt;/b&gt;"));
    auto *title = Child<ElidedLabelEx>(button, "TabButtonTextEx");
    QCOMPARE(title->FullText(), QStringLiteral("<b>A&B</b>"));
    QCOMPARE(title->toolTip(), QString());
    button->SetTitle(QStringLiteral("Next"));
    QCOMPARE(tab->GetTitle(), QStringLiteral("Next"));
    QCOMPARE(button->toolTip(), QStringLiteral("Next"));
    QCOMPARE(title->FullText(), QStringLiteral("Next"));
    button->SetTitle(QString());
    QCOMPARE(tab->GetTitle(), QStringLiteral("Next"));
    QCOMPARE(title->FullText(), QStringLiteral("Next"));
}

void TstBrowserTabButtonEx::homeTab()
{
    BrowserTabButtonEx *button = MakeButton(Home(), QString(), true);
    button->resize(300, 32);
    QSignalSpy pressed(button, &BrowserTabButtonEx::SigButtonPressed);
    QSignalSpy change(button, &BrowserTabButtonEx::SigChangeClicked);
    QPushButton *icon = IconButton(button);
    auto *close = Child<KelPushButton>(button, "TabButtonCloseBtnEx");
    auto *loading = Child<KelLoadingLabelEx>(button, "TabButtonLoadingEx");
    QCOMPARE(icon->objectName(), QStringLiteral("TabButtonIconHomeEx"));
    QVERIFY(icon->testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(close->isHidden());
    QVERIFY(loading->isHidden());
    QVERIFY(!icon->isHidden());

    button->SetChecked(true);
    QVERIFY(close->isHidden());
    button->LoadStart();
    QVERIFY(loading->isHidden());
    QVERIFY(!icon->isHidden());
    QVERIFY(!loading->IsAnimating());
    button->LoadFinished();

    QTest::mousePress(button, Qt::LeftButton, {}, QPoint(30, 16));
    QCOMPARE(change.count(), 1);
    QCOMPARE(pressed.count(), 0); // a home tab cannot be dragged
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(30, 16));
    // Its close button is not wired either.
    QSignalSpy closeClicked(button, &BrowserTabButtonEx::SigCloseClicked);
    close->click();
    QCOMPARE(closeClicked.count(), 0);
}

void TstBrowserTabButtonEx::styleNamesFollowState()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QEvent enter(QEvent::Enter);
    QEvent leave(QEvent::Leave);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
    QCoreApplication::sendEvent(button, &enter);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackExHover"));
    QVERIFY(button->IsHovered());
    button->SetChecked(true);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonFrontEx"));
    button->SetChecked(false);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackExHover"));
    QCoreApplication::sendEvent(button, &leave);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
    QVERIFY(!button->IsHovered());
    button->SetPressed();
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonPressedEx"));
    QVERIFY(button->IsPressed());
    button->SetReleased();
    QVERIFY(!button->IsPressed());
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
}

void TstBrowserTabButtonEx::checkedRaises()
{
    BrowserTabButtonEx *first = MakeButton(Web(QStringLiteral("a")));
    BrowserTabButtonEx *second = MakeButton(Web(QStringLiteral("b")));
    QCOMPARE(m_window->children().last(), static_cast<QObject *>(second));
    first->SetChecked(true);
    QCOMPARE(m_window->children().last(), static_cast<QObject *>(first));
    first->SetPressed();
    second->lower();
    first->lower();
    first->SetReleased();
    QCOMPARE(m_window->children().last(), static_cast<QObject *>(first));
}

void TstBrowserTabButtonEx::pressedKeepsLookUntilReleased()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    button->SetPressed();
    button->SetChecked(true);
    QVERIFY(button->IsChecked());
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonPressedEx"));
    // No hover look while dragged either.
    KelTest::SendEnter(button);
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonPressedEx"));
    button->SetReleased();
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonFrontEx"));
}

void TstBrowserTabButtonEx::separatorNames()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QFrame *content = Content(button);
    button->SetSeparatorVisible(false);
    QCOMPARE(content->objectName(), QStringLiteral("TabButtonContentExNoSep"));
    QVERIFY(!button->IsSeparatorVisible());
    button->SetSeparatorVisible(true);
    QCOMPARE(content->objectName(), QStringLiteral("TabButtonContentExWithSep"));
    QVERIFY(button->IsSeparatorVisible());
    KelTest::SendEnter(button);
    button->SetSeparatorVisible(true);
    QCOMPARE(content->objectName(), QStringLiteral("TabButtonContentExNoSep"));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(button, &leave);
    button->SetChecked(true);
    button->SetSeparatorVisible(true);
    QCOMPARE(content->objectName(), QStringLiteral("TabButtonContentExNoSep"));
}

void TstBrowserTabButtonEx::layoutGeometry_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("width");
    QTest::addColumn<QRect>("content");
    QTest::addColumn<QRect>("close");
    QTest::addColumn<QRect>("title");
    QTest::addColumn<int>("icon");
    // content: (12, 8) (w - 12) x 16; close at content width - 16 - 12; title after icon and gap.
    QTest::newRow("1.0") << 1.0 << 200 << QRect(12, 8, 188, 16) << QRect(160, 0, 16, 16)
                         << QRect(24, 0, 188 - 8 - 16 - 12 - 16, 16) << 16;
    QTest::newRow("1.5") << 1.5 << 300 << QRect(18, 12, 282, 24) << QRect(240, 0, 24, 24)
                         << QRect(36, 0, 282 - 12 - 24 - 18 - 24, 24) << 24;
}

void TstBrowserTabButtonEx::layoutGeometry()
{
    QFETCH(int, width);
    QFETCH(QRect, content);
    QFETCH(QRect, close);
    QFETCH(QRect, title);
    QFETCH(int, icon);
    KelTest::UseRowScale();
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    button->resize(width, DpiTool::ScaleDefault(32));
    QCOMPARE(KelTest::LogicalGeometry(Content(button)), content);
    QCOMPARE(KelTest::LogicalGeometry(Child<KelPushButton>(button, "TabButtonCloseBtnEx")), close);
    QCOMPARE(KelTest::LogicalGeometry(Child<ElidedLabelEx>(button, "TabButtonTextEx")), title);
    QCOMPARE(KelTest::LogicalGeometry(IconButton(button)), QRect(0, 0, icon, icon));
    QCOMPARE(IconButton(button)->iconSize(), QSize(icon, icon));
    QCOMPARE(KelTest::LogicalGeometry(Child<KelLoadingLabelEx>(button, "TabButtonLoadingEx")), QRect(0, 0, icon, icon));
    // Without the close button the title takes its place.
    button->resize(DpiTool::ScaleDefault(112), DpiTool::ScaleDefault(32));
    const int contentWidth = DpiTool::ScaleDefault(112) - DpiTool::ScaleDefault(12);
    QCOMPARE(Child<ElidedLabelEx>(button, "TabButtonTextEx")->width(),
             contentWidth - DpiTool::ScaleDefault(8) - DpiTool::ScaleDefault(16) - DpiTool::ScaleDefault(12));
}

void TstBrowserTabButtonEx::closeButtonRule_data()
{
    KelTest::AddScaleColumn();
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
}

void TstBrowserTabButtonEx::closeButtonRule()
{
    KelTest::UseRowScale();
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    auto *close = Child<KelPushButton>(button, "TabButtonCloseBtnEx");
    const int limit = m_bar->NoCloseButtonWidth();
    QCOMPARE(limit, DpiTool::ScaleDefault(112));
    button->resize(limit, 32);
    QVERIFY(close->isHidden());
    button->resize(limit + 1, 32);
    QVERIFY(!close->isHidden());
    button->resize(limit, 32);
    QVERIFY(close->isHidden());
    button->SetChecked(true);
    QVERIFY(!close->isHidden());
    button->resize(40, 32);
    QVERIFY(!close->isHidden());
    button->SetChecked(false);
    QVERIFY(close->isHidden());
}

void TstBrowserTabButtonEx::iconGlobalPos_data()
{
    closeButtonRule_data();
}

void TstBrowserTabButtonEx::iconGlobalPos()
{
    KelTest::UseRowScale();
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    button->move(100, 5);
    // The icon's top-left corner on the screen, wherever the direction puts it.
    QCOMPARE(button->GetIconGlobalPos(), IconButton(button)->mapToGlobal(QPoint(0, 0)));
    QCOMPARE(KelTest::LogicalPos(Content(button)) + KelTest::LogicalPos(IconButton(button)),
             QPoint(DpiTool::ScaleDefault(12), DpiTool::ScaleDefault(8)));
}

void TstBrowserTabButtonEx::fontFollowsScale_data()
{
    closeButtonRule_data();
}

void TstBrowserTabButtonEx::fontFollowsScale()
{
    KelTest::UseRowScale();
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    auto *title = Child<ElidedLabelEx>(button, "TabButtonTextEx");
    QCOMPARE(title->font().pixelSize(), DpiTool::ScaleDefault(12));
    QCOMPARE(title->font().family(), QStringLiteral("Microsoft YaHei"));
}

void TstBrowserTabButtonEx::loadingIndicator()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")), QString(), true);
    auto *loading = Child<KelLoadingLabelEx>(button, "TabButtonLoadingEx");
    QPushButton *icon = IconButton(button);
    QVERIFY(button->IsLoading());
    QVERIFY(loading->IsAnimating());
    QCOMPARE(loading->Interval(), 25);
    QVERIFY(!loading->isHidden());
    QVERIFY(icon->isHidden());
    button->LoadFinished();
    QVERIFY(!button->IsLoading());
    QVERIFY(!loading->IsAnimating());
    QVERIFY(loading->isHidden());
    QVERIFY(!icon->isHidden());
    button->LoadStart();
    QVERIFY(loading->IsAnimating());
    QVERIFY(!loading->isHidden());
    QVERIFY(icon->isHidden());
}

void TstBrowserTabButtonEx::defaultAndWebIcons()
{
    const QString path = MakeIconFile(m_dir, QStringLiteral("web.png"), Qt::red);
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")), path);
    // A web tab with an icon file fetches it through the cache.
    QCOMPARE(button->GetRequestedIconUrl(), path);
    QCOMPARE(button->GetTabData()->GetIconUrl(), path);
    QPushButton *icon = IconButton(button);
    // Until the answer, the file given is shown.
    QCOMPARE(icon->objectName(), QStringLiteral("TabButtonIconWebEx"));
    QVERIFY(!icon->icon().isNull());
    QTRY_COMPARE(button->GetIconPath(), path);
    QCOMPARE(icon->objectName(), QStringLiteral("TabButtonIconWebEx"));
    QCOMPARE(icon->styleSheet(), QString());

    // Any other kind of tab shows the default icon, whatever the file.
    BrowserTabButtonEx *other = MakeButton(MakeTab(TabData::TabTypeNewTab, QStringLiteral("New")), path);
    QCOMPARE(other->GetRequestedIconUrl(), QString());
    QCOMPARE(IconButton(other)->objectName(), QStringLiteral("TabButtonIconWebEx"));
    BrowserTabButtonEx *plain = MakeButton(MakeTab(TabData::TabTypeOther, QStringLiteral("Other")));
    QCOMPARE(IconButton(plain)->objectName(), QStringLiteral("TabButtonIconDefaultEx"));
    QVERIFY(IconButton(plain)->icon().isNull());
}

void TstBrowserTabButtonEx::failedDownloadClearsIcon()
{
    const QString path = MakeIconFile(m_dir, QStringLiteral("before.png"), Qt::red);
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")), path);
    QTRY_COMPARE(button->GetIconPath(), path);
    button->SetIconUrl(QStringLiteral("bogus-scheme://nowhere/icon.png"));
    QTRY_COMPARE(button->GetIconPath(), QString());
    QCOMPARE(IconButton(button)->objectName(), QStringLiteral("TabButtonIconDefaultEx"));
    QVERIFY(IconButton(button)->icon().isNull());
}

void TstBrowserTabButtonEx::successWithMissingFileKeepsIcon()
{
    const QString path = MakeIconFile(m_dir, QStringLiteral("kept.png"), Qt::red);
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")), path);
    QTRY_COMPARE(button->GetIconPath(), path);
    button->SlotRequestImageFinished(true, button->GetRequestedIconUrl(), m_dir.filePath(QStringLiteral("missing.png")));
    QCOMPARE(button->GetIconPath(), path);
    // An answer for another address is ignored.
    button->SlotRequestImageFinished(false, QStringLiteral("other"), QString());
    QCOMPARE(button->GetIconPath(), path);
}

void TstBrowserTabButtonEx::onlyLastIconRequestApplies()
{
    const QString first = MakeIconFile(m_dir, QStringLiteral("first.png"), Qt::red);
    const QString second = MakeIconFile(m_dir, QStringLiteral("second.png"), Qt::green);
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")), first);
    QTRY_COMPARE(button->GetIconPath(), first);

    // The answers come in order; record what the button holds after each one. The
    // context object ends the connection with this scope, whatever the outcome.
    const QString bogus = QStringLiteral("bogus-scheme://first");
    QStringList seen;
    QObject context;
    connect(VosImageCache::Instance(), &VosImageCache::SigRequestImageFinished, &context,
            [&seen, button, bogus, second](bool, const QString &url, const QString &) {
                if (url == bogus || url == second)
                    seen << url + QLatin1Char('>') + button->GetIconPath();
            });
    button->SetIconUrl(bogus);
    button->SetIconUrl(second);
    QTRY_COMPARE(seen.size(), 2);
    // The failure for the first address did not clear the icon.
    QCOMPARE(seen, QStringList({bogus + QLatin1Char('>') + first, second + QLatin1Char('>') + second}));
    QCOMPARE(button->GetIconPath(), second);
}

void TstBrowserTabButtonEx::pluginAsksBarForIcon()
{
    m_bar->pluginIconUrl = MakeIconFile(m_dir, QStringLiteral("plugin.png"), Qt::blue);
    TabDataPtr tab = MakeTab(TabData::TabTypePlugin, QStringLiteral("Notes"));
    BrowserTabButtonEx *button = MakeButton(tab);
    QCOMPARE(m_bar->pluginIconRequests, QStringList({"Notes"}));
    QCOMPARE(button->GetRequestedIconUrl(), m_bar->pluginIconUrl);
    QTRY_COMPARE(button->GetIconPath(), m_bar->pluginIconUrl);
    QCOMPARE(IconButton(button)->objectName(), QStringLiteral("TabButtonIconWebEx"));
    button->ReloadIcon();
    QCOMPARE(m_bar->pluginIconRequests.size(), 2);
}

void TstBrowserTabButtonEx::webPopupFetchesItsIcon()
{
    const QString path = MakeIconFile(m_dir, QStringLiteral("popup.png"), Qt::yellow);
    BrowserTabButtonEx *button = MakeButton(MakeTab(TabData::TabTypeWebPopup, QStringLiteral("Popup")), path);
    QCOMPARE(button->GetRequestedIconUrl(), path);
    BrowserTabButtonEx *noIcon = MakeButton(MakeTab(TabData::TabTypeWebPopup, QStringLiteral("Popup")));
    QCOMPARE(noIcon->GetRequestedIconUrl(), QString());
}

void TstBrowserTabButtonEx::hoverSignals()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QSignalSpy hover(button, &BrowserTabButtonEx::SigHoverChanged);
    QEvent enter(QEvent::Enter);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(button, &enter);
    QCoreApplication::sendEvent(button, &leave);
    QCOMPARE(hover.count(), 2);
    QVERIFY(hover.at(0).at(0).value<TabDataPtr>() == button->GetTabData());
    QCOMPARE(hover.at(0).at(1).toBool(), true);
    QCOMPARE(hover.at(1).at(1).toBool(), false);
    // The current tab reports no hover.
    button->SetChecked(true);
    QCoreApplication::sendEvent(button, &enter);
    QVERIFY(button->IsHovered());
    QCoreApplication::sendEvent(button, &leave);
    QCOMPARE(hover.count(), 2);
}

void TstBrowserTabButtonEx::pressSignals()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    button->resize(200, 32);
    QStringList order;
    connect(button, &BrowserTabButtonEx::SigChangeClicked, this, [&order](TabDataPtr) { order << "change"; });
    connect(button, &BrowserTabButtonEx::SigButtonPressed, this, [&order] { order << "pressed"; });
    connect(button, &BrowserTabButtonEx::SigMenuClicked, this, [&order](TabDataPtr) { order << "menu"; });
    QTest::mousePress(button, Qt::LeftButton, {}, QPoint(40, 16));
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(40, 16));
    QCOMPARE(order, QStringList({"change", "pressed"}));
    order.clear();
    QTest::mousePress(button, Qt::RightButton, {}, QPoint(40, 16));
    QTest::mouseRelease(button, Qt::RightButton, {}, QPoint(40, 16));
    QCOMPARE(order, QStringList({"menu"}));
    order.clear();
    QTest::mousePress(button, Qt::MiddleButton, {}, QPoint(40, 16));
    QTest::mouseRelease(button, Qt::MiddleButton, {}, QPoint(40, 16));
    QCOMPARE(order, QStringList());
}

void TstBrowserTabButtonEx::rightPressDuringDragEmitsNothing()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QSignalSpy menu(button, &BrowserTabButtonEx::SigMenuClicked);
    button->SetPressed();
    QTest::mousePress(button, Qt::RightButton, {}, QPoint(40, 16));
    QCOMPARE(menu.count(), 0);
    button->SetReleased();
    QTest::mouseRelease(button, Qt::RightButton, {}, QPoint(40, 16));
    QTest::mousePress(button, Qt::RightButton, {}, QPoint(40, 16));
    QCOMPARE(menu.count(), 1);
}

void TstBrowserTabButtonEx::doubleClickCloses()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    QSignalSpy close(button, &BrowserTabButtonEx::SigCloseClicked);
    QTest::mouseDClick(button, Qt::LeftButton, {}, QPoint(40, 16));
    QCOMPARE(close.count(), 1);
    QTest::mouseDClick(button, Qt::RightButton, {}, QPoint(40, 16));
    QCOMPARE(close.count(), 2);
    m_bar->doubleClose = false;
    QTest::mouseDClick(button, Qt::LeftButton, {}, QPoint(40, 16));
    QCOMPARE(close.count(), 2);
}

void TstBrowserTabButtonEx::closeButtonEmitsClose()
{
    BrowserTabButtonEx *button = MakeButton(Web(QStringLiteral("Page")));
    button->SetChecked(true);
    QSignalSpy close(button, &BrowserTabButtonEx::SigCloseClicked);
    QTest::mouseClick(Child<KelPushButton>(button, "TabButtonCloseBtnEx"), Qt::LeftButton);
    QCOMPARE(close.count(), 1);
    QVERIFY(close.at(0).at(0).value<TabDataPtr>() == button->GetTabData());
}

void TstBrowserTabButtonEx::nullRecord()
{
    // A button without a record would be a trap for every operation: it makes its own.
    BrowserTabButtonEx *button = MakeButton(TabDataPtr());
    QVERIFY(button->GetTabData());
    QCOMPARE(button->GetTabData()->GetTitle(), TabData::GetNewTabName());
    button->SetTitle(QStringLiteral("x"));
    QCOMPARE(button->GetTabData()->GetTitle(), QStringLiteral("x"));
    button->SetChecked(true);
    button->resize(150, 32);
    button->SetIconUrl(QStringLiteral("bogus-scheme://x"));
    QSignalSpy change(button, &BrowserTabButtonEx::SigChangeClicked);
    QTest::mousePress(button, Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(change.count(), 1);
    QTRY_COMPARE(button->GetRequestedIconUrl(), QStringLiteral("bogus-scheme://x"));
}

void TstBrowserTabButtonEx::deadBar()
{
    auto bar = std::make_unique<TestTabBarEx>();
    auto *button = new BrowserTabButtonEx(Web(QStringLiteral("Page")), QString(), false, bar.get(), m_window.get());
    QSignalSpy close(button, &BrowserTabButtonEx::SigCloseClicked);
    bar.reset();
    button->resize(300, 32);
    // Without a bar the close button keeps the design rule.
    QVERIFY(!Child<KelPushButton>(button, "TabButtonCloseBtnEx")->isHidden());
    QTest::mouseDClick(button, Qt::LeftButton, {}, QPoint(40, 16));
    QCOMPARE(close.count(), 0); // double-click closing is the bar's policy
    button->LoadStart();
    QVERIFY(button->IsLoading());
    button->LoadFinished();
    button->SetChecked(true);
    KelTest::SendEnter(button);
    button->UpdateIcon();
}

KELTAB_TEST_MAIN(TstBrowserTabButtonEx)
#include "tst_browsertabbuttonex.moc"
