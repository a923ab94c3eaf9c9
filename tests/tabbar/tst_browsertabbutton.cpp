// SPDX-License-Identifier: MIT
#include "hoverevents.h"
#include "keltabtest.h"

#include "kellabel.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "tabbartestutil.h"

#include <QProxyStyle>

using namespace ClassicTest;

namespace {

KelPushButton *CloseButton(BrowserTabButton *button)
{
    return button->findChild<KelPushButton *>(QStringLiteral("TabButtonCloseBtn"));
}

KelPushButton *IconButton(BrowserTabButton *button)
{
    const auto buttons = button->findChildren<KelPushButton *>();
    for (KelPushButton *b : buttons) {
        if (b->objectName() != QLatin1String("TabButtonCloseBtn"))
            return b;
    }
    return nullptr;
}

KelLabel *Title(BrowserTabButton *button)
{
    return button->findChild<KelLabel *>(QStringLiteral("TabButtonText"));
}

KelLoadingLabelEx *Loading(BrowserTabButton *button)
{
    return button->findChild<KelLoadingLabelEx *>(QStringLiteral("TabButtonLoading"));
}

QFrame *Frame(BrowserTabButton *button, const QString &name)
{
    return button->findChild<QFrame *>(name);
}

using KelTest::SendEnter;
using KelTest::SendLeave;

// Counts how often a widget is polished, to see the restyling the button does.
class CountingStyle : public QProxyStyle
{
public:
    using QProxyStyle::polish;
    void polish(QWidget *widget) override
    {
        ++polishes;
        QProxyStyle::polish(widget);
    }
    int polishes = 0;
};

// Fills a bar 400 pixels wide with tabs too narrow to show their close buttons unless
// checked or hovered.
void AddNarrowTabs(TestBar &bar)
{
    for (int i = 0; i < 8; ++i)
        bar.addTab(MakeTab(QStringLiteral("t%1").arg(i)));
}

// The pointer enters the button, presses it and leaves it: a drag has started.
void PressAndLeave(BrowserTabButton *button)
{
    SendEnter(button);
    button->SetPressed();
    SendLeave(button);
}

QString WriteIcon(const QString &dir, const QString &name)
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::red);
    const QString path = dir + QLatin1Char('/') + name;
    image.save(path);
    return path;
}

// The bar of a TestButton. A base rather than a member, so that it is made before the
// button, whose constructor takes it, and destroyed after it, as a bar outlives the
// buttons it deletes.
struct BarOfButton
{
    TestBar bar;
};

// A button on a bar of its own, placed in host as in a bar's strip, for the tests that
// need one button and no tabs on the bar. Each test makes its own on the stack: the
// button, then its bar, are gone when the test ends.
class TestButton : public BarOfButton, public BrowserTabButton
{
public:
    explicit TestButton(QWidget *host, TabDataPtr tab = MakeTab(QStringLiteral("Title")),
                        const QString &iconPath = QString(), bool loading = false)
        : BrowserTabButton(std::move(tab), iconPath, loading, &bar, host)
    {
    }
};

} // namespace

class TstBrowserTabButton : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")
private Q_SLOTS:
    void init();
    void cleanup();

    void buildsTheForm();
    void newTabKeepsEmptyToolTipAndGetsNewTabName();
    void nullRecordIsReplaced();
    void layoutPlacesChildren_data();
    void layoutPlacesChildren();
    void closeButtonFollowsBarWidth_data();
    void closeButtonFollowsBarWidth();
    void narrowTabShowsCloseWhileHovered();
    void leaveDuringDragKeepsCloseButton();
    void releaseOutsideReevaluatesCloseButton();
    void setCheckedDuringDragRestylesAtOnce();
    void styleNamesFollowCheckedThenHovered();
    void restylesChildrenEveryTime();
    void homePageShowsOnlyCentredFrame();
    void homePageNeverEmitsButtonPressed();
    void leftPressEmitsChangeThenPressed();
    void rightPressEmitsMenuUnlessPressed();
    void iconClicksAreNeverReported();
    void closeClickEmitsCloseWithoutActivating();
    void doubleClickClosesWhenBarSaysSo_data();
    void doubleClickClosesWhenBarSaysSo();
    void setTitleIgnoresEmptyAndEscapesToolTip();
    void setIconUrlLeavesRecordIconUrl();
    void iconDownloadShowsIcon();
    void staleIconAnswerIsIgnored();
    void successWithMissingFileKeepsIcon();
    void pluginTabAsksBarForIcon();
    void loadStartAndFinishedSwitchIcon();
    void paintsTheBarsBackground();
    void outlivesItsBar();
    void pressReceiverRemovingTabIsSafe();

private:
    std::unique_ptr<Environment> m_env;
    // Buttons live in a window, as in a bar: a parentless button would be a window itself.
    std::unique_ptr<QWidget> m_host;
};

void TstBrowserTabButton::init()
{
    m_env = std::make_unique<Environment>();
    m_host = std::make_unique<QWidget>();
    m_host->resize(400, 100);
    // Shown, so that size changes reach the buttons as resize events at once.
    m_host->show();
}

void TstBrowserTabButton::cleanup()
{
    m_host.reset();
    m_env.reset();
}

void TstBrowserTabButton::buildsTheForm()
{
    TestButton button(m_host.get());
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonBack"));
    QCOMPARE(button.windowTitle(), QStringLiteral("BrowserTabButtonBase"));
    QCOMPARE(button.focusPolicy(), Qt::NoFocus);
    QCOMPARE(button.contextMenuPolicy(), Qt::NoContextMenu);
    QCOMPARE(button.lineWidth(), 0);
    QCOMPARE(button.size(), QSize(176, 32));
    // A web tab has no home-page frame, and no loading animation before its first load.
    QVERIFY(!Frame(&button, QStringLiteral("TabButtonHomePage")));
    QVERIFY(!Loading(&button));
    QVERIFY(Frame(&button, QStringLiteral("TabButtonContent")));
    QCOMPARE(IconButton(&button)->size(), QSize(16, 16));
    QCOMPARE(CloseButton(&button)->size(), QSize(12, 12));
    QCOMPARE(CloseButton(&button)->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(Title(&button)->text(), QStringLiteral("Title"));
    QCOMPARE(Title(&button)->textFormat(), Qt::PlainText);
    QCOMPARE(IconButton(&button)->objectName(), QStringLiteral("TabButtonIconDefault"));
    QVERIFY(IconButton(&button)->testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(!button.IsChecked());
    QVERIFY(!button.IsPressed());
    QVERIFY(!button.IsHovered());
    QCOMPARE(button.toolTip(), QStringLiteral("Title"));
}

void TstBrowserTabButton::newTabKeepsEmptyToolTipAndGetsNewTabName()
{
    TabDataPtr tab = MakeTab(QString(), TabData::TabTypeNewTab);
    TestButton button(m_host.get(), tab);
    QCOMPARE(tab->GetTitle(), TabData::GetNewTabName());
    QCOMPARE(Title(&button)->text(), TabData::GetNewTabName());
    QVERIFY(button.toolTip().isEmpty());
}

void TstBrowserTabButton::nullRecordIsReplaced()
{
    TestButton button(m_host.get(), TabDataPtr());
    QVERIFY(button.GetTabData());
    QSignalSpy change(&button, &BrowserTabButton::SigChangeClicked);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(change.count(), 1);
}

void TstBrowserTabButton::layoutPlacesChildren_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("1.0") << 1.0 << 164 << 32;
    QTest::newRow("1.5") << 1.5 << 246 << 48;
}

void TstBrowserTabButton::layoutPlacesChildren()
{
    QFETCH(int, width);
    QFETCH(int, height);
    KelTest::UseRowScale();
    TestButton button(m_host.get());
    button.SetChecked(true);
    button.setFixedSize(width, height);
    QFrame *content = Frame(&button, QStringLiteral("TabButtonContent"));
    const int contentW = width - 2 * S(12);
    QCOMPARE(KelTest::LogicalGeometry(content), QRect(S(12), 0, contentW, height));
    QCOMPARE(KelTest::LogicalPos(IconButton(&button)), QPoint(0, (height - S(16)) / 2));
    // The loading animation, made at the first load, takes the icon's place.
    button.LoadStart();
    QCOMPARE(Loading(&button)->size(), QSize(16, 16));
    QCOMPARE(KelTest::LogicalPos(Loading(&button)), QPoint(0, (height - S(16)) / 2));
    button.LoadFinished();
    QCOMPARE(KelTest::LogicalPos(CloseButton(&button)), QPoint(contentW - S(12), (height - S(12)) / 2));
    // Form sizes stay unscaled.
    QCOMPARE(CloseButton(&button)->size(), QSize(12, 12));
    QCOMPARE(IconButton(&button)->size(), QSize(16, 16));
    // Checked: the close button shows, and the title leaves room for it.
    QVERIFY(!CloseButton(&button)->isHidden());
    QCOMPARE(KelTest::LogicalGeometry(Title(&button)),
             QRect(S(2) + S(16), (height - S(16)) / 2, contentW - S(2) - S(16) - S(12), S(16)));
    // Unchecked on a bar without width yet: no close button, the title takes its room.
    button.SetChecked(false);
    QVERIFY(CloseButton(&button)->isHidden());
    QCOMPARE(Title(&button)->width(), contentW - S(2) - S(16));
}

void TstBrowserTabButton::closeButtonFollowsBarWidth_data()
{
    QTest::addColumn<int>("available");
    QTest::addColumn<int>("buttonWidth");
    QTest::addColumn<bool>("visible");
    // Three tabs: available / 3 + 2.
    QTest::newRow("at NoCloseButtonWidth") << 258 << 88 << false;
    QTest::newRow("one pixel wider") << 261 << 89 << true;
}

void TstBrowserTabButton::closeButtonFollowsBarWidth()
{
    QFETCH(int, available);
    QFETCH(int, buttonWidth);
    QFETCH(bool, visible);
    TestBar bar;
    for (int i = 0; i < 3; ++i)
        bar.addTab(MakeTab(QStringLiteral("t%1").arg(i)));
    // The width left for tabs beside the new-tab button and its margin; a hidden bar
    // lays out on a DPI change, not on a resize.
    bar.resize(available + 4 + 28, 40);
    bar.AdjustForDpi();
    QCOMPARE(bar.ButtonWidth(), buttonWidth);
    BrowserTabButton *button = ButtonAt(&bar, 1);
    button->UpdateCloseButton();
    QCOMPARE(!CloseButton(button)->isHidden(), visible);
    // The button's own width does not matter: the bar's common width does.
    button->setFixedSize(300, 32);
    button->UpdateCloseButton();
    QCOMPARE(!CloseButton(button)->isHidden(), visible);
    // A checked button always shows it.
    bar.setCurrentIndex(1);
    button->setFixedSize(40, 32);
    QVERIFY(!CloseButton(button)->isHidden());
}

void TstBrowserTabButton::narrowTabShowsCloseWhileHovered()
{
    TestBar bar;
    bar.resize(400, 36);
    AddNarrowTabs(bar);
    bar.setCurrentIndex(0);
    QVERIFY(bar.ButtonWidth() <= bar.NoCloseButtonWidth());
    BrowserTabButton *button = ButtonAt(&bar, 2);
    QVERIFY(CloseButton(button)->isHidden());
    SendEnter(button);
    QVERIFY(button->IsHovered());
    QVERIFY(!CloseButton(button)->isHidden());
    SendLeave(button);
    QVERIFY(!button->IsHovered());
    QVERIFY(CloseButton(button)->isHidden());
}

void TstBrowserTabButton::leaveDuringDragKeepsCloseButton()
{
    TestBar bar;
    bar.resize(400, 36);
    AddNarrowTabs(bar);
    BrowserTabButton *button = ButtonAt(&bar, 2);
    PressAndLeave(button);
    QVERIFY(!CloseButton(button)->isHidden());
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBack"));
}

void TstBrowserTabButton::releaseOutsideReevaluatesCloseButton()
{
    TestBar bar;
    bar.resize(400, 36);
    bar.move(100, 100);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    AddNarrowTabs(bar);
    BrowserTabButton *button = ButtonAt(&bar, 2);
    PressAndLeave(button);
    QVERIFY(!CloseButton(button)->isHidden());

    // Released over the button: nothing to re-evaluate yet.
    QCursor::setPos(button->mapToGlobal(button->rect().center()));
    button->SetReleased();
    button->UpdateAfterRelease();
    QVERIFY(!CloseButton(button)->isHidden());

    // Released elsewhere: the narrow tab drops its close button.
    QCursor::setPos(bar.mapToGlobal(QPoint(0, 300)));
    button->UpdateAfterRelease();
    QVERIFY(CloseButton(button)->isHidden());
}

void TstBrowserTabButton::setCheckedDuringDragRestylesAtOnce()
{
    TestButton button(m_host.get());
    button.SetPressed();
    button.SetChecked(true);
    QVERIFY(button.IsChecked());
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonFront"));
    button.SetChecked(false);
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonBack"));
}

void TstBrowserTabButton::styleNamesFollowCheckedThenHovered()
{
    TestButton button(m_host.get());
    SendEnter(&button);
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonBackHover"));
    button.SetChecked(true);
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonFront"));
    SendLeave(&button);
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonFront"));
    SendEnter(&button);
    button.SetChecked(false);
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonBackHover"));
    SendLeave(&button);
    QCOMPARE(button.objectName(), QStringLiteral("TabButtonBack"));
}

void TstBrowserTabButton::restylesChildrenEveryTime()
{
    TestButton button(m_host.get());
    CountingStyle titleStyle;
    CountingStyle buttonStyle;
    Title(&button)->setStyle(&titleStyle);
    button.setStyle(&buttonStyle);
    titleStyle.polishes = 0;
    buttonStyle.polishes = 0;
    button.SetChecked(false);
    button.SetChecked(false);
    // The title is re-polished on each call, even when the name stays; the button is not.
    QCOMPARE(titleStyle.polishes, 2);
    QCOMPARE(buttonStyle.polishes, 0);
    Title(&button)->setStyle(nullptr);
    button.setStyle(nullptr);
}

void TstBrowserTabButton::homePageShowsOnlyCentredFrame()
{
    TestButton button(m_host.get(), MakeTab(QStringLiteral("Home"), TabData::TabTypeHomePage));
    button.setFixedSize(150, 32);
    QFrame *home = Frame(&button, QStringLiteral("TabButtonHomePage"));
    QVERIFY(!home->isHidden());
    QVERIFY(Frame(&button, QStringLiteral("TabButtonContent"))->isHidden());
    QCOMPARE(KelTest::LogicalPos(home), QPoint((150 - 54) / 2, 0));
    button.SetChecked(true);
    QVERIFY(CloseButton(&button)->isHidden());
}

void TstBrowserTabButton::homePageNeverEmitsButtonPressed()
{
    TestButton button(m_host.get(), MakeTab(QStringLiteral("Home"), TabData::TabTypeHomePage));
    QSignalSpy change(&button, &BrowserTabButton::SigChangeClicked);
    QSignalSpy pressed(&button, &BrowserTabButton::SigButtonPressed);
    QTest::mousePress(&button, Qt::LeftButton);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(change.count(), 1);
    QCOMPARE(pressed.count(), 0);
}

void TstBrowserTabButton::leftPressEmitsChangeThenPressed()
{
    TabDataPtr tab = MakeTab(QStringLiteral("Title"));
    TestButton button(m_host.get(), tab);
    QStringList order;
    connect(&button, &BrowserTabButton::SigChangeClicked, this, [&order] { order << QStringLiteral("change"); });
    connect(&button, &BrowserTabButton::SigButtonPressed, this, [&order] { order << QStringLiteral("pressed"); });
    QSignalSpy change(&button, &BrowserTabButton::SigChangeClicked);
    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(order, QStringList({QStringLiteral("change"), QStringLiteral("pressed")}));
    QCOMPARE(change.first().first().value<TabDataPtr>(), tab);
    QTest::mouseRelease(&button, Qt::LeftButton);
}

void TstBrowserTabButton::rightPressEmitsMenuUnlessPressed()
{
    TestButton button(m_host.get());
    QSignalSpy menu(&button, &BrowserTabButton::SigMenuClicked);
    QSignalSpy change(&button, &BrowserTabButton::SigChangeClicked);
    QTest::mousePress(&button, Qt::RightButton);
    QTest::mouseRelease(&button, Qt::RightButton);
    QCOMPARE(menu.count(), 1);
    QCOMPARE(change.count(), 0);
    button.SetPressed();
    QTest::mousePress(&button, Qt::RightButton);
    QTest::mouseRelease(&button, Qt::RightButton);
    QCOMPARE(menu.count(), 1);
}

void TstBrowserTabButton::iconClicksAreNeverReported()
{
    TestButton button(m_host.get());
    button.setFixedSize(164, 32);
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host.get()));
    KelPushButton *icon = IconButton(&button);
    QSignalSpy iconClicked(icon, &QPushButton::clicked);
    QSignalSpy change(&button, &BrowserTabButton::SigChangeClicked);
    const QPoint onIcon = icon->mapTo(m_host.get(), icon->rect().center());
    // The pointer over the icon finds the tab, not the icon.
    QVERIFY(m_host->childAt(onIcon) != icon);
    QTest::mouseClick(m_host->windowHandle(), Qt::LeftButton, {}, onIcon);
    QCOMPARE(iconClicked.count(), 0);
    // It is a click on the tab.
    QCOMPARE(change.count(), 1);
}

void TstBrowserTabButton::closeClickEmitsCloseWithoutActivating()
{
    TabDataPtr tab = MakeTab(QStringLiteral("Title"));
    TestButton button(m_host.get(), tab);
    button.SetChecked(true);
    QSignalSpy close(&button, &BrowserTabButton::SigCloseClicked);
    QSignalSpy change(&button, &BrowserTabButton::SigChangeClicked);
    QTest::mouseClick(CloseButton(&button), Qt::LeftButton);
    QCOMPARE(close.count(), 1);
    QCOMPARE(close.first().first().value<TabDataPtr>(), tab);
    QCOMPARE(change.count(), 0);
}

void TstBrowserTabButton::doubleClickClosesWhenBarSaysSo_data()
{
    QTest::addColumn<bool>("doubleClose");
    QTest::newRow("closes") << true;
    QTest::newRow("does not") << false;
}

void TstBrowserTabButton::doubleClickClosesWhenBarSaysSo()
{
    QFETCH(bool, doubleClose);
    TestButton button(m_host.get());
    // Asked at the double click, not when the button is made.
    button.bar.doubleClose = doubleClose;
    QSignalSpy close(&button, &BrowserTabButton::SigCloseClicked);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QCOMPARE(close.count(), doubleClose ? 1 : 0);
}

void TstBrowserTabButton::setTitleIgnoresEmptyAndEscapesToolTip()
{
    TabDataPtr tab = MakeTab(QStringLiteral("Old"));
    TestButton button(m_host.get(), tab);
    button.SetTitle(QString());
    QCOMPARE(tab->GetTitle(), QStringLiteral("Old"));
    button.SetTitle(QStringLiteral("<b>A & B</b>"));
    QCOMPARE(tab->GetTitle(), QStringLiteral("<b>A & B</b>"));
    QCOMPARE(Title(&button)->text(), QStringLiteral("<b>A & B</b>"));
    QCOMPARE(button.toolTip(), QStringLiteral("&lt;b&gt;A &amp; B&lt;/b&gt;"));
}

void TstBrowserTabButton::setIconUrlLeavesRecordIconUrl()
{
    TabDataPtr tab = MakeTab(QStringLiteral("Title"));
    tab->SetIconUrl(QStringLiteral("unsupported://icons/old.ico"));
    TestButton button(m_host.get(), tab);
    button.SetIconUrl(QStringLiteral("unsupported://icons/new.ico"));
    QCOMPARE(button.GetRequestedIconUrl(), QStringLiteral("unsupported://icons/new.ico"));
    QCOMPARE(tab->GetIconUrl(), QStringLiteral("unsupported://icons/old.ico"));
}

void TstBrowserTabButton::iconDownloadShowsIcon()
{
    const QString file = WriteIcon(m_env->Path(), QStringLiteral("icon.png"));
    TestButton button(m_host.get());
    button.SetIconUrl(file);
    QTRY_COMPARE(button.GetIconPath(), file);
    QCOMPARE(IconButton(&button)->objectName(), QStringLiteral("TabButtonIconCustom"));
    QVERIFY(!IconButton(&button)->icon().isNull());

    // A refused address (like a failed download) falls back to the default icon.
    button.SetIconUrl(QStringLiteral("unsupported://icons/none.ico"));
    QTRY_VERIFY(button.GetIconPath().isEmpty());
    QCOMPARE(IconButton(&button)->objectName(), QStringLiteral("TabButtonIconDefault"));
}

void TstBrowserTabButton::staleIconAnswerIsIgnored()
{
    const QString file = WriteIcon(m_env->Path(), QStringLiteral("icon.png"));
    // A web tab asks for its icon file at once ...
    TestButton button(m_host.get(), MakeTab(QStringLiteral("Title")), file);
    QCOMPARE(button.GetRequestedIconUrl(), file);
    // ... and navigates before the answer comes: only the last request counts.
    button.SetIconUrl(QStringLiteral("unsupported://icons/none.ico"));
    QTRY_VERIFY(button.GetIconPath().isEmpty());
    QTest::qWait(20);
    QVERIFY(button.GetIconPath().isEmpty());
}

void TstBrowserTabButton::successWithMissingFileKeepsIcon()
{
    const QString file = WriteIcon(m_env->Path(), QStringLiteral("icon.png"));
    TestButton button(m_host.get(), MakeTab(QStringLiteral("Title")), file);
    QTRY_COMPARE(button.GetIconPath(), file);
    button.SetIconUrl(QStringLiteral("unsupported://icons/a.ico"));
    QVERIFY(QMetaObject::invokeMethod(&button, "SlotRequestImageFinished", Q_ARG(bool, true),
                                      Q_ARG(QString, QStringLiteral("unsupported://icons/a.ico")),
                                      Q_ARG(QString, m_env->Path() + QStringLiteral("/missing.png"))));
    QCOMPARE(button.GetIconPath(), file);
}

void TstBrowserTabButton::pluginTabAsksBarForIcon()
{
    TestBar bar;
    bar.pluginIcon = QStringLiteral(":/images/tab_bar_classic/home.png");
    BrowserTabButton button(MakeTab(QStringLiteral("Notes"), TabData::TabTypePlugin, QStringLiteral("notes")),
                            QString(), false, &bar, m_host.get());
    QCOMPARE(button.GetRequestedIconUrl(), bar.pluginIcon);
    QTRY_VERIFY(!button.GetIconPath().isEmpty());
    QCOMPARE(IconButton(&button)->objectName(), QStringLiteral("TabButtonIconCustom"));
}

void TstBrowserTabButton::loadStartAndFinishedSwitchIcon()
{
    TestButton button(m_host.get(), MakeTab(QStringLiteral("Title")), QString(), true);
    QVERIFY(button.IsLoading());
    QVERIFY(Loading(&button)->IsAnimating());
    QVERIFY(!Loading(&button)->isHidden());
    QVERIFY(IconButton(&button)->isHidden());
    QCOMPARE(Loading(&button)->Interval(), 25);
    QCOMPARE(Loading(&button)->size(), QSize(16, 16));
    button.LoadFinished();
    QVERIFY(!button.IsLoading());
    QVERIFY(!Loading(&button)->IsAnimating());
    QVERIFY(Loading(&button)->isHidden());
    QVERIFY(!IconButton(&button)->isHidden());
    button.LoadStart();
    QVERIFY(Loading(&button)->IsAnimating());
    QVERIFY(IconButton(&button)->isHidden());
    QVERIFY(!Loading(&button)->isHidden());
}

void TstBrowserTabButton::paintsTheBarsBackground()
{
    TestButton button(m_host.get());
    button.setFixedSize(164, 32);
    button.SetChecked(true);
    const int before = button.bar.ButtonBgBuildCount();
    const QImage image = button.grab().toImage();
    QCOMPARE(button.bar.ButtonBgBuildCount() - before, 3);
    QCOMPARE(image.pixelColor(82, 28).name(), QStringLiteral("#ffffff"));
}

void TstBrowserTabButton::outlivesItsBar()
{
    auto *bar = new TestBar;
    BrowserTabButton button(MakeTab(QStringLiteral("Title")), QString(), false, bar, m_host.get());
    delete bar;
    button.UpdateCloseButton();
    QVERIFY(CloseButton(&button)->isHidden());
    QSignalSpy close(&button, &BrowserTabButton::SigCloseClicked);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QCOMPARE(close.count(), 0);
    button.grab();
    button.SetChecked(true);
    QVERIFY(!CloseButton(&button)->isHidden());
}

void TstBrowserTabButton::pressReceiverRemovingTabIsSafe()
{
    TestBar bar;
    bar.show();
    bar.addTab(MakeTab(QStringLiteral("a")));
    bar.addTab(MakeTab(QStringLiteral("b")));
    BrowserTabButton *button = ButtonAt(&bar, 1);
    // The host removes the tab as soon as it becomes current.
    connect(&bar, &BrowserTabBar::currentChanged, this, [&bar](int index) {
        if (index == 1)
            bar.removeTab(1);
    });
    QTest::mousePress(button, Qt::LeftButton);
    QCOMPARE(bar.count(), 1);
    // The removed tab's press must not start a drag on the bar.
    QVERIFY(!button->IsPressed());
    QVERIFY(!QApplication::activePopupWidget());
    FlushDeletes();
    QCOMPARE(bar.count(), 1);
}

KELTAB_TEST_MAIN(TstBrowserTabButton)
#include "tst_browsertabbutton.moc"
