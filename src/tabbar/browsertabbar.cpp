#include "browsertabbar.h"

#include "browsertabbar_p.h"
#include "browsertabbutton.h"
#include "browsertabmoveproxy.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "kelpushbuttonhover.h"
#include "tabdragorder_p.h"
#include "tablookup_p.h"

#include <QAction>
#include <QCursor>
#include <QTimer>

namespace {

constexpr int kRelayoutDelayMs = 200;
constexpr int kNewTabButtonSize = 28;

// Menu positions: the enabling pass addresses the actions by place, not by pointer.
constexpr int kMenuCloseCur = 0;
constexpr int kMenuCloseRight = 1;
constexpr int kMenuCloseOther = 2;
constexpr int kMenuCloseLeft = 3;
constexpr int kMenuRecovery = 5;

int S(int value)
{
    return DpiTool::ScaleDefault(value);
}

} // namespace

BrowserTabBar::BrowserTabBar(QWidget *parent)
    : QFrame(parent)
    , d(new BrowserTabBarPrivate)
{
    InitContent();

    d->relayoutTimer = new QTimer(this);
    d->relayoutTimer->setObjectName(QStringLiteral("BrowserTabBarRelayoutTimer"));
    d->relayoutTimer->setSingleShot(true);
    d->relayoutTimer->setInterval(kRelayoutDelayMs);
    connect(d->relayoutTimer, &QTimer::timeout, this, &BrowserTabBar::ResizeButtons);

    InitMoveProxy();

    // Tall enough for the tabs below their top margin; wide as the host makes it.
    setMinimumHeight(ButtonMarginTop() + ButtonHeight());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

BrowserTabBar::~BrowserTabBar()
{
    d->relayoutTimer->stop();
    if (d->moveProxy) {
        d->moveProxy->disconnect(this);
        delete d->moveProxy;
        d->moveProxy = nullptr;
    }
    // The buttons call back into the bar (layout queries, hover, painting): delete
    // them while the bar is still whole rather than in QWidget's destructor, where
    // a synthetic leave event could reach a button after this object is gone.
    d->buttons.clear();
    d->movingButton = nullptr;
    if (d->menuOpen && d->menuGrave) {
        // Destroyed by a command of its own menu: the right-clicked tab is still
        // being delivered its press, and the menu is still inside its command.
        // Keep both, hidden and detached, for the menu's caller to delete when the
        // menu has returned.
        d->contentWidget->hide();
        d->contentWidget->setParent(nullptr);
        d->menuGrave->append(d->contentWidget);
        if (d->menu) {
            d->menu->setParent(nullptr, d->menu->windowFlags());
            d->menuGrave->append(d->menu.data());
        }
    } else {
        delete d->contentWidget;
    }
    d->contentWidget = nullptr;
}

void BrowserTabBar::InitContent()
{
    d->contentWidget = new QFrame(this);
    d->contentWidget->show();

    d->newTabButton = new KelPushButtonHover(this);
    d->newTabButton->setObjectName(QStringLiteral("TabBarNewTabButton"));
    d->newTabButton->setFocusPolicy(Qt::NoFocus);
    d->newTabButton->setCursor(Qt::PointingHandCursor);
    d->newTabButton->setToolTip(tr("New tab"));
    // A fixed size: the layout adds the button's width into its sums, so it must not
    // change when the style sheet is applied or the button is first shown.
    d->newTabButton->setFixedSize(S(kNewTabButtonSize), S(kNewTabButtonSize));
    d->newTabButton->show();
    connect(d->newTabButton, &QPushButton::clicked, this, &BrowserTabBar::SigAddNewTab);

    SetContentWidth();
}

void BrowserTabBar::InitMoveProxy()
{
    d->moveProxy = new BrowserTabMoveProxy();
    connect(d->moveProxy, &BrowserTabMoveProxy::SigButtonMove, this, &BrowserTabBar::SlotButtonMove);
    connect(d->moveProxy, &BrowserTabMoveProxy::SigButtonRelease, this, &BrowserTabBar::SlotButtonRelease);
}

void BrowserTabBar::InitMenu()
{
    if (d->menu)
        return;
    setContextMenuPolicy(Qt::CustomContextMenu);

    auto *closeCur = new QAction(tr("Close tab"), this);
    auto *closeOther = new QAction(tr("Close other tabs"), this);
    auto *closeLeft = new QAction(tr("Close left tabs"), this);
    auto *closeRight = new QAction(tr("Close right tabs"), this);
    connect(closeCur, &QAction::triggered, this, &BrowserTabBar::SlotCloseCurTab);
    connect(closeOther, &QAction::triggered, this, &BrowserTabBar::SlotCloseOtherTab);
    connect(closeLeft, &QAction::triggered, this, &BrowserTabBar::SlotCloseLeftTab);
    connect(closeRight, &QAction::triggered, this, &BrowserTabBar::SlotCloseRightTab);

    d->menu = new KelMenu(this);
    d->menu->setObjectName(QStringLiteral("BrowserTabBarMenu"));
    d->menu->addAction(closeCur);
    d->menu->addAction(closeRight);
    d->menu->addAction(closeOther);
    d->menu->addAction(closeLeft);

    if (IsShowRecoveryItem()) {
        auto *recover = new QAction(tr("Recover recently closed tabs"), this);
        connect(recover, &QAction::triggered, this, &BrowserTabBar::SlotRecoverRecentlyTab);
        d->menu->addSeparator();
        d->menu->addAction(recover);
    }
}

BrowserTabButton *BrowserTabBar::CreateTabButton(TabDataPtr data, const QString &iconPath, bool loading)
{
    auto *button = new BrowserTabButton(data, iconPath, loading, this, d->contentWidget);
    connect(button, &BrowserTabButton::SigChangeClicked, this, &BrowserTabBar::SlotChangeClicked);
    connect(button, &BrowserTabButton::SigCloseClicked, this, &BrowserTabBar::SlotCloseClicked);
    connect(button, &BrowserTabButton::SigMenuClicked, this, &BrowserTabBar::SlotMenuClicked);
    connect(button, &BrowserTabButton::SigButtonPressed, this, &BrowserTabBar::SlotButtonPressed);
    button->lower();
    return button;
}

int BrowserTabBar::addTab(TabDataPtr data, const QString &iconPath, bool loading)
{
    if (!data)
        return -1;
    d->buttons.append(CreateTabButton(data, iconPath, loading));
    ResizeButtons();
    return d->buttons.size() - 1;
}

int BrowserTabBar::insertTab(int index, TabDataPtr data, const QString &iconPath, bool loading)
{
    if (!data)
        return -1;
    index = qBound(0, index, d->buttons.size());
    d->buttons.insert(index, CreateTabButton(data, iconPath, loading));
    if (index <= d->currentIndex)
        ++d->currentIndex;
    if (index <= d->menuIndex)
        ++d->menuIndex;
    ResizeButtons();
    return index;
}

void BrowserTabBar::removeTab(int index)
{
    if (index < 0 || index >= d->buttons.size())
        return;
    BrowserTabButton *button = d->buttons.at(index);

    if (button->IsChecked()) {
        int next;
        if (GetCloseType() == CloseActivePrev)
            next = index - 1;
        else
            next = index + 1 < d->buttons.size() ? index + 1 : index - 1;
        setCurrentIndex(next);
        // currentChanged may have been answered by removing or inserting tabs.
        index = d->buttons.indexOf(button);
        if (index < 0)
            return;
    }

    if (d->movingButton == button)
        EndDragOfRemovedTab();

    d->buttons.removeAt(index);
    // Normally the closing tab is no longer current here. A receiver of
    // currentChanged may have made it current again; then nothing that remains is
    // checked, and no tab is current.
    const bool lostCurrent = index == d->currentIndex;
    if (lostCurrent)
        d->currentIndex = -1;
    else if (index < d->currentIndex)
        --d->currentIndex;
    if (index < d->menuIndex)
        --d->menuIndex;
    else if (index == d->menuIndex)
        d->menuIndex = -1;

    // A button waiting for deletion must not reach the bar any more.
    button->disconnect(this);

    if (d->closedByMouse) {
        if (!d->closedLastTab)
            ResetButtons();       // widths kept: the next tab slides under the pointer
        else
            ResizeLastButtons();
    } else {
        ResizeButtons();
    }

    // Hidden after the re-layout, so that the tab now under the pointer gets the
    // hover at once, and hidden at all so that it does not show until deleted.
    button->hide();
    if (d->menuOpen)
        d->parkedButtons.append(button);  // deleted when the menu has returned
    else
        button->deleteLater();

    if (lostCurrent)
        Q_EMIT currentChanged(-1);
}

void BrowserTabBar::EndDragOfRemovedTab()
{
    // The tab under the drag is going away: end the drag here, since the release
    // that would normally end it no longer has a tab to put down.
    d->movingButton = nullptr;
    d->dragStarted = false;
    if (d->showNewTabButton)
        d->newTabButton->show();
    if (d->moveProxy)
        d->moveProxy->hide();
}

int BrowserTabBar::count() const
{
    return d->buttons.size();
}

int BrowserTabBar::currentIndex() const
{
    return d->currentIndex;
}

void BrowserTabBar::setCurrentIndex(int index)
{
    if (index >= d->buttons.size())
        return;
    if (index < 0)
        index = -1;
    if (index == d->currentIndex)
        return;
    d->currentIndex = index;
    // Only buttons whose state changes are restyled: the others would show exactly
    // what they show now, and restyling hundreds of them would dominate a switch.
    for (int i = 0; i < d->buttons.size(); ++i) {
        BrowserTabButton *button = d->buttons.at(i);
        if (button->IsChecked() != (i == index))
            button->SetChecked(i == index);
    }
    // The current tab's overlapping edges lie on top of its neighbours'.
    for (int i = 0; i < d->buttons.size(); ++i) {
        if (i != index)
            d->buttons.at(i)->lower();
    }
    if (index >= 0)
        d->buttons.at(index)->raise();
    Q_EMIT currentChanged(index);
}

TabDataPtr BrowserTabBar::GetTabData(int index) const
{
    return TabLookup::TabAt(d->buttons, index);
}

TabDataPtr BrowserTabBar::GetCurrentTabData() const
{
    return GetTabData(d->currentIndex);
}

int BrowserTabBar::GetIndexByTabData(TabDataPtr data) const
{
    return TabLookup::IndexOfTab(d->buttons, data);
}

int BrowserTabBar::GetIndexByName(const QString &name) const
{
    return TabLookup::IndexOfTitle(d->buttons, name);
}

int BrowserTabBar::GetIndexByTabId(const QString &id) const
{
    return TabLookup::IndexOfId(d->buttons, id);
}

QStringList BrowserTabBar::GetAllTabTitles() const
{
    return TabLookup::AllTitles(d->buttons);
}

QString BrowserTabBar::CurrentIconUrl() const
{
    if (d->currentIndex < 0 || d->currentIndex >= d->buttons.size())
        return QString();
    return d->buttons.at(d->currentIndex)->GetRequestedIconUrl();
}

QString BrowserTabBar::CurrentIconLocalPath() const
{
    if (d->currentIndex < 0 || d->currentIndex >= d->buttons.size())
        return QString();
    return d->buttons.at(d->currentIndex)->GetIconPath();
}

void BrowserTabBar::setTabText(int index, const QString &text)
{
    if (index >= 0 && index < d->buttons.size())
        d->buttons.at(index)->SetTitle(text);
}

void BrowserTabBar::setTabIcon(int index, const QString &icon)
{
    if (icon.isEmpty())
        return;
    if (index >= 0 && index < d->buttons.size())
        d->buttons.at(index)->SetIconUrl(icon);
}

void BrowserTabBar::LoadStart(int index)
{
    if (index >= 0 && index < d->buttons.size())
        d->buttons.at(index)->LoadStart();
}

void BrowserTabBar::LoadFinished(int index)
{
    if (index >= 0 && index < d->buttons.size())
        d->buttons.at(index)->LoadFinished();
}

void BrowserTabBar::SetFirstIndex(int index)
{
    d->firstIndex = index;
}

int BrowserTabBar::GetFirstIndex() const
{
    return d->firstIndex;
}

void BrowserTabBar::HideNewTabButton()
{
    d->showNewTabButton = false;
    d->newTabButton->hide();
}

void BrowserTabBar::SetTabManager(ITabManager *manager)
{
    d->tabManager = manager;
}

ITabManager *BrowserTabBar::GetTabManager() const
{
    return d->tabManager;
}

QPixmap *BrowserTabBar::GetButtonBg(int width, bool checked, bool hovered)
{
    return d->buttonBg.GetButtonBg(width, checked, hovered);
}

int BrowserTabBar::ButtonBgBuildCount() const
{
    return d->buttonBg.BuildCount();
}

int BrowserTabBar::ButtonHeight() const { return S(32); }
int BrowserTabBar::ButtonHomepageWidth() const { return S(110); }
int BrowserTabBar::ButtonMarginRight() const { return S(4); }
int BrowserTabBar::ButtonMarginTop() const { return S(4); }
int BrowserTabBar::ButtonPadding() const { return S(16); }
int BrowserTabBar::ButtonSpacing() const { return S(2); }
int BrowserTabBar::MinButtonWidth() const { return S(60); }
int BrowserTabBar::MaxButtonWidth() const { return S(164); }
int BrowserTabBar::NoCloseButtonWidth() const { return S(88); }

int BrowserTabBar::ButtonWidth() const
{
    return d->buttonWidth;
}

void BrowserTabBar::AdjustForDpi()
{
    // Backgrounds of the old height must go even when the width stays the same.
    d->buttonBg.Clear();
    d->newTabButton->setFixedSize(S(kNewTabButtonSize), S(kNewTabButtonSize));
    setMinimumHeight(ButtonMarginTop() + ButtonHeight());
    ResizeButtons();
    // Buttons whose size did not change get no resize event: lay them out here.
    for (BrowserTabButton *button : qAsConst(d->buttons)) {
        button->UpdateLayout();
        button->UpdateCloseButton();
    }
    SetContentWidth();
    update();
}

// --- policy defaults -------------------------------------------------------

bool BrowserTabBar::IsDoubleCloseTab() const
{
    return true;
}

CloseActiveType BrowserTabBar::GetCloseType()
{
    return CloseActiveNext;
}

// The four close checks read the stored menu index rather than their argument, so
// that an override may rely on either: the bar always passes that same index.
bool BrowserTabBar::CheckCloseCurItem(int index)
{
    Q_UNUSED(index)
    return true;
}

bool BrowserTabBar::CheckCloseRightItem(int index)
{
    Q_UNUSED(index)
    return d->menuIndex < d->buttons.size() - 1;
}

bool BrowserTabBar::CheckCloseOtherItem(int index)
{
    Q_UNUSED(index)
    return d->buttons.size() >= 2;
}

bool BrowserTabBar::CheckCloseLeftItem(int index)
{
    Q_UNUSED(index)
    return d->menuIndex > 0;
}

bool BrowserTabBar::CheckRecoveryItem()
{
    return false;
}

bool BrowserTabBar::IsShowRecoveryItem()
{
    return false;
}

void BrowserTabBar::TabButtonMoved()
{
}

int BrowserTabBar::FixedTabTotalWidth()
{
    return 0;
}

int BrowserTabBar::FixedTabCount()
{
    return 0;
}

QString BrowserTabBar::GetPluginIconUrl(const QString &pluginCode)
{
    Q_UNUSED(pluginCode)
    return QString();
}

int BrowserTabBar::FixedCount()
{
    return qMax(0, FixedTabCount());
}

// --- widths and placement --------------------------------------------------

void BrowserTabBar::ComputeButtonWidth(int available)
{
    const int fixedCount = FixedCount();
    const int fixedWidth = FixedTabTotalWidth();
    const int maxWidth = MaxButtonWidth();
    const int step = MinButtonWidth() - ButtonSpacing();

    int fit = (available - fixedWidth) / step;
    fit = qMin(fit, d->buttons.size() - fixedCount);

    d->buttonWidth = maxWidth;
    if (fit > 0)
        d->buttonWidth = qMin((available - fixedWidth) / fit + ButtonSpacing(), maxWidth);

    d->extraPixels = 0;
    if (d->buttonWidth == maxWidth)
        return;
    d->extraPixels = qMax(0, available - (d->buttonWidth - ButtonSpacing()) * fit - fixedWidth);
}

void BrowserTabBar::SizeButtons()
{
    // Unchecked tabs show their close button by the common width, not their own:
    // when the common width crosses that limit, tabs whose own size stays the same
    // (and so get no resize event) must look again.
    const bool closeButtons = d->buttonWidth > NoCloseButtonWidth();
    if (closeButtons != d->closeButtonsShown) {
        d->closeButtonsShown = closeButtons;
        for (BrowserTabButton *button : qAsConst(d->buttons))
            button->UpdateCloseButton();
    }

    const int fixedCount = FixedCount();
    const int height = ButtonHeight();
    const int n = d->buttons.size();
    if (fixedCount > 0) {
        const int fixedButtonWidth = (FixedTabTotalWidth() - ButtonSpacing()) / fixedCount + ButtonSpacing();
        for (int i = 0; i < fixedCount && i < n; ++i)
            d->buttons.at(i)->setFixedSize(qMax(0, fixedButtonWidth), height);
    }
    for (int i = fixedCount; i < n; ++i) {
        const int width = d->buttonWidth + ((i - fixedCount) < d->extraPixels ? 1 : 0);
        d->buttons.at(i)->setFixedSize(qMax(0, width), height);
    }
}

void BrowserTabBar::ResizeButtons()
{
    d->closedByMouse = false;
    d->closedLastTab = false;
    if (d->buttons.isEmpty())
        return;
    ComputeButtonWidth(width() - ButtonMarginRight() - d->newTabButton->width());
    SizeButtons();
    ResetButtons();
}

void BrowserTabBar::ResizeLastButtons()
{
    ComputeButtonWidth(d->contentWidget->width());
    SizeButtons();
    ResetButtons();
}

void BrowserTabBar::ResetButtons()
{
    const int n = d->buttons.size();
    if (n == 0)
        return;
    const int fixedCount = FixedCount();
    const int fixedWidth = FixedTabTotalWidth();
    const int spacing = ButtonSpacing();
    const int top = ButtonMarginTop();

    const int fixedStep = fixedCount >= 1 ? (fixedWidth - spacing) / fixedCount + spacing : 0;
    for (int i = 0; i < fixedCount && i < n; ++i)
        d->buttons.at(i)->move((fixedStep - spacing) * i, top);

    const int offset = fixedCount > 0 ? fixedWidth - spacing : 0;
    for (int i = fixedCount; i < n; ++i) {
        BrowserTabButton *button = d->buttons.at(i);
        if (button->IsPressed())
            continue;  // the held tab stays under the pointer
        const int k = i - fixedCount;
        button->move((d->buttonWidth - spacing) * k + qMin(k, d->extraPixels) + offset, top);
    }
    SetContentWidth();
}

void BrowserTabBar::SetContentWidth()
{
    const int n = d->buttons.size();
    const int fixedCount = FixedCount();
    const int newTabWidth = d->newTabButton->width();

    int width;
    if (d->dragStarted) {
        // The dragged tab may travel over the whole bar (the new-tab button is hidden).
        width = this->width();
    } else {
        width = 0;
        if (n > 0) {
            width = FixedTabTotalWidth();
            if (n > fixedCount)
                width += (d->buttonWidth - ButtonSpacing()) * (n - fixedCount) + d->extraPixels;
        }
        width = qMin(width, this->width() - ButtonMarginRight() - newTabWidth);
    }
    d->contentWidget->setFixedSize(qMax(0, width), height());

    const int y = ButtonMarginTop() + (ButtonHeight() - d->newTabButton->height()) / 2;
    int x;
    if (d->buttonWidth != MaxButtonWidth() && !d->closedByMouse)
        x = this->width() - newTabWidth;  // squeezed tabs: the button keeps to the right end
    else
        x = d->contentWidget->x() + d->contentWidget->width() + ButtonMarginRight();
    d->newTabButton->move(x, y);
}

// --- closing -----------------------------------------------------------------

void BrowserTabBar::SlotChangeClicked(TabDataPtr data)
{
    const int index = GetIndexByTabData(data);
    if (index >= 0)
        setCurrentIndex(index);
}

void BrowserTabBar::SlotCloseClicked(TabDataPtr data)
{
    const int index = GetIndexByTabData(data);
    if (index < 0)
        return;
    d->closedByMouse = true;
    d->closedLastTab = index == d->buttons.size() - 1;
    // A re-fit pending from an earlier leave would pull the tabs away under the
    // pointer that is closing them again.
    d->relayoutTimer->stop();
    Q_EMIT tabCloseRequested(index);
}

void BrowserTabBar::leaveEvent(QEvent *event)
{
    QFrame::leaveEvent(event);
    if (d->closedByMouse && !rect().contains(mapFromGlobal(QCursor::pos())))
        d->relayoutTimer->start(kRelayoutDelayMs);
}

void BrowserTabBar::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    ResizeButtons();
}

// --- context menu --------------------------------------------------------------

void BrowserTabBar::SlotMenuClicked(TabDataPtr data)
{
    // Before InitMenu there is no menu; while it is open, a second one cannot open.
    if (!d->menu || d->menuOpen)
        return;
    if (!data || d->buttons.isEmpty())
        return;
    const int index = GetIndexByTabData(data);
    if (index < 0)
        return;
    d->menuIndex = index;
    CheckMenuEnable();

    QPointer<BrowserTabBar> self(this);
    QPointer<KelMenu> menu = d->menu;
    const auto grave = std::make_shared<QList<QPointer<QWidget>>>();
    d->menuGrave = grave;
    d->menuOpen = true;
    menu->exec(QCursor::pos());
    // Deleting later is safe from here on: the deletions wait for the event loop
    // that delivered the right-click, which runs after the press has been handled.
    if (!self) {
        // A command deleted the bar from inside the menu's event loop.
        for (const QPointer<QWidget> &widget : qAsConst(*grave)) {
            if (widget)
                widget->deleteLater();
        }
        return;
    }
    d->menuOpen = false;
    d->menuGrave.reset();
    for (const QPointer<BrowserTabButton> &button : qAsConst(d->parkedButtons)) {
        if (button)
            button->deleteLater();
    }
    d->parkedButtons.clear();
    // A command may have changed the tabs, or the pointer may have left the bar.
    ResizeButtons();
}

void BrowserTabBar::CheckMenuEnable()
{
    const QList<QAction *> actions = d->menu->actions();
    const auto setEnabled = [&actions](int position, bool enabled) {
        if (position < actions.size())
            actions.at(position)->setEnabled(enabled);
    };
    const int index = d->menuIndex;
    setEnabled(kMenuCloseCur, CheckCloseCurItem(index));
    setEnabled(kMenuCloseRight, CheckCloseRightItem(index));
    setEnabled(kMenuCloseOther, CheckCloseOtherItem(index));
    setEnabled(kMenuCloseLeft, CheckCloseLeftItem(index));
    if (IsShowRecoveryItem())
        setEnabled(kMenuRecovery, CheckRecoveryItem());
}

void BrowserTabBar::SlotCloseCurTab()
{
    Q_EMIT tabCloseRequested(d->menuIndex);
}

void BrowserTabBar::SlotCloseOtherTab()
{
    Q_EMIT SigCloseOtherTab(d->menuIndex);
}

void BrowserTabBar::SlotCloseLeftTab()
{
    Q_EMIT SigCloseLeftTab(d->menuIndex);
}

void BrowserTabBar::SlotCloseRightTab()
{
    Q_EMIT SigCloseRightTab(d->menuIndex);
}

void BrowserTabBar::SlotRecoverRecentlyTab()
{
    Q_EMIT SigRecoverRecentlyTab();
}

// --- dragging ------------------------------------------------------------------

void BrowserTabBar::SlotButtonPressed()
{
    auto *button = qobject_cast<BrowserTabButton *>(sender());
    // Only a tab of this bar that is still in the list: a receiver of the press may
    // already have removed it.
    if (!button || !d->buttons.contains(button))
        return;
    if (d->movingButton && d->movingButton != button)
        d->movingButton->SetReleased();
    d->movingButton = button;
    button->SetPressed();

    const QPoint cursor = QCursor::pos();
    d->pressOffset = QPoint(button->x() - cursor.x(), button->y());
    d->moveProxy->SetStartPoint(cursor);
    d->moveProxy->show();
}

void BrowserTabBar::SlotButtonMove()
{
    BrowserTabButton *button = d->movingButton;
    if (!button)
        return;
    // Tabs before the first movable index stay in place.
    if (d->buttons.indexOf(button) < qMax(0, d->firstIndex))
        return;

    if (!d->dragStarted) {
        d->dragStarted = true;
        d->newTabButton->hide();
        SetContentWidth();
    }

    int x = QCursor::pos().x() + d->pressOffset.x();
    x = qMax(x, 0);
    x = qMin(x, width() - button->width());
    button->move(x, d->pressOffset.y());

    SortButtons();
    TabButtonMoved();
}

void BrowserTabBar::SortButtons()
{
    const int n = d->buttons.size();
    if (n == 0)
        return;
    int held = -1;
    for (int i = n - 1; i >= 0; --i) {
        if (d->buttons.at(i)->IsPressed()) {
            held = i;
            break;
        }
    }
    const int firstIndex = qMax(0, d->firstIndex);
    if (held < firstIndex)
        return;

    BrowserTabButton *button = d->buttons.at(held);
    const int left = button->x();
    const int right = left + button->width();
    const auto span = [this](int j) {
        const BrowserTabButton *b = d->buttons.at(j);
        return qMakePair(b->x(), b->width());
    };
    const int target = TabDragOrder::Target(n, held, firstIndex, left, right, d->contentWidget->width(), span);
    if (target < 0 || target >= n || target == held)
        return;

    // The dragged tab is the current one (the press made it current); follow the
    // current tab by identity in case a host kept another one current.
    BrowserTabButton *current =
        d->currentIndex >= 0 && d->currentIndex < n ? d->buttons.at(d->currentIndex) : nullptr;
    d->buttons.move(held, target);
    d->currentIndex = current ? d->buttons.indexOf(current) : -1;
    ResetButtons();
}

void BrowserTabBar::SlotButtonRelease()
{
    BrowserTabButton *button = d->movingButton;
    if (!button)
        return;
    d->dragStarted = false;
    button->SetReleased();
    if (d->showNewTabButton)
        d->newTabButton->show();
    ResetButtons();
    button->UpdateAfterRelease();
    d->movingButton = nullptr;
}
