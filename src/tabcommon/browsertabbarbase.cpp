// SPDX-License-Identifier: MIT
#include "browsertabbarbase.h"

#include "browsertabbarbase_p.h"
#include "tabgeometry_p.h"
#include "browsertabbuttonbase.h"
#include "browsertabbuttonbase_p.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "tablookup_p.h"
#include "tableavewatcher_p.h"
#include "tabmenuwatcher_p.h"
#include "tabaccessible_p.h"
#include "tabfocusring_p.h"
#include "tabmoveproxy.h"
#include "tabpointer_p.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace {

constexpr int kDelayIntervalMs = 200;
constexpr int kButtonHeight = 32;
constexpr int kResyncRetryMs = 25;

} // namespace

// ---------------------------------------------------------------------------
// BrowserTabBarBasePrivate

BrowserTabBarBasePrivate::BrowserTabBarBasePrivate(const Metrics &designMetrics)
    : metrics(designMetrics)
{
}

BrowserTabBarBasePrivate::~BrowserTabBarBasePrivate() = default;

void BrowserTabBarBasePrivate::InitBase()
{
    Q_Q(BrowserTabBarBase);
    delayTimer = new QTimer(q);
    delayTimer->setObjectName(QStringLiteral("TabBarDelayTimer"));
    delayTimer->setInterval(kDelayIntervalMs);
    delayTimer->setSingleShot(true);
    QObject::connect(delayTimer, &QTimer::timeout, q, [this] { EndClosingMode(); });
    leaveWatcher = new TabLeaveWatcher(q);
    QObject::connect(leaveWatcher, &TabLeaveWatcher::SigPointerLeftWindow, q, [this] { PointerMayHaveLeft(); });
}

int BrowserTabBarBasePrivate::FixedCount() const
{
    return qMax(0, const_cast<BrowserTabBarBase *>(q_func())->FixedTabCount());
}

int BrowserTabBarBasePrivate::Scaled(int designPixels) const
{
    return DpiTool::ScaleDefault(designPixels);
}

void BrowserTabBarBasePrivate::DirectionChanged()
{
    // A tab held through the change keeps its place in the strip, mirrored with the
    // rest, and follows the pointer from there. The pointer's logical x has changed
    // sign while the tab's has not: the offset between them is counted anew, or the
    // next move would throw the tab to the mirror image of where it should be.
    if (pressedButton && moveProxy)
        pressOffset.rx() -= 2 * LogicalX(moveProxy->LastGlobalPos());
    UpdateFocusRing();
}

void BrowserTabBarBasePrivate::KeepFramesAtTheEnd()
{
    Q_Q(BrowserTabBarBase);
    if (q->isRightToLeft() && framesWidth >= 0)
        TabGeometry::ShiftChildren(q, q->width() - framesWidth);
    framesWidth = q->width();
}

int BrowserTabBarBasePrivate::LogicalX(const QPoint &globalPos) const
{
    return q_func()->isRightToLeft() ? -globalPos.x() : globalPos.x();
}

bool BrowserTabBarBasePrivate::IsListedButton(const QObject *object)
{
    const auto *button = qobject_cast<const BrowserTabButtonBase *>(object);
    return button && BrowserTabButtonBasePrivate::get(button)->listed;
}

int BrowserTabBarBasePrivate::InsertButton(int index, BrowserTabButtonBase *button)
{
    Q_Q(BrowserTabBarBase);
    QObject::connect(button, &BrowserTabButtonBase::SigChangeClicked, q, &BrowserTabBarBase::SlotChangeClicked);
    QObject::connect(button, &BrowserTabButtonBase::SigCloseClicked, q, &BrowserTabBarBase::SlotCloseClicked);
    QObject::connect(button, &BrowserTabButtonBase::SigMenuClicked, q, &BrowserTabBarBase::SlotMenuClicked);
    QObject::connect(button, &BrowserTabButtonBase::SigButtonPressed, q, &BrowserTabBarBase::SlotButtonPressed);
    StackNewButton(button);
    BrowserTabButtonBasePrivate::get(button)->listed = true;
    index = qBound(0, index, buttons.size());
    buttons.insert(index, button);
    if (index <= currentIndex)
        ++currentIndex;
    ListChanged(index, buttons.size() - 1);
    return index;
}

void BrowserTabBarBasePrivate::StackNewButton(BrowserTabButtonBase *button)
{
    button->lower();
}

void BrowserTabBarBasePrivate::SetMoveProxy(TabMoveProxy *proxy)
{
    Q_Q(BrowserTabBarBase);
    moveProxy.reset(proxy);
    QObject::connect(proxy, &TabMoveProxy::SigButtonMove, q, &BrowserTabBarBase::SlotButtonMove);
    QObject::connect(proxy, &TabMoveProxy::SigButtonRelease, q, &BrowserTabBarBase::SlotButtonRelease);
    QObject::connect(proxy, &TabMoveProxy::SigCancelled, q, [this] { CancelDrag(); });
}

int BrowserTabBarBasePrivate::MenuTabIndex()
{
    menuIndex = menuButton ? buttons.indexOf(menuButton.data()) : -1;
    return menuIndex;
}

void BrowserTabBarBasePrivate::PointerMayHaveLeft()
{
    Q_Q(BrowserTabBarBase);
    // A leave reported while the pointer is still over the bar (onto a child, or when
    // a popup took the mouse) ends nothing.
    if (closing && !delayTimer->isActive() && !TabPointer::IsOver(q)) {
        leaveWatcher->Disarm();
        delayTimer->start();
    }
}

void BrowserTabBarBasePrivate::EndClosingMode()
{
    delayTimer->stop();
    leaveWatcher->Disarm();
    closing = false;
    closedLast = false;
    // Every tab takes its width again, whatever moved it meanwhile.
    ForgetLayout();
    Relayout();
}

QAction *BrowserTabBarBasePrivate::NewTranslatedAction(const char *context, const char *source)
{
    Q_Q(BrowserTabBarBase);
    auto *action = new QAction(QCoreApplication::translate(context, source), q);
    translatedTexts.push_back({action, context, source});
    return action;
}

void BrowserTabBarBasePrivate::SetTranslatedToolTip(QWidget *widget, const char *context, const char *source)
{
    widget->setToolTip(QCoreApplication::translate(context, source));
    translatedTexts.push_back({widget, context, source});
}

void BrowserTabBarBasePrivate::Retranslate()
{
    for (const TranslatedText &text : translatedTexts) {
        const QString translated = QCoreApplication::translate(text.context, text.source);
        if (auto *action = qobject_cast<QAction *>(text.object.data()))
            action->setText(translated);
        else if (auto *widget = qobject_cast<QWidget *>(text.object.data()))
            widget->setToolTip(translated);
    }
}

void BrowserTabBarBasePrivate::MoveEntry(int from, int to)
{
    buttons.move(from, to);
    ListChanged(qMin(from, to), qMax(from, to));
    // The current tab stays the same tab; a negative index set by the host stays as it is.
    if (IsValidIndex(currentIndex)) {
        if (currentIndex == from)
            currentIndex = to;
        else if (from < currentIndex && currentIndex <= to)
            --currentIndex;
        else if (to <= currentIndex && currentIndex < from)
            ++currentIndex;
    }
    if (QAccessible::isActive()) {
        QAccessibleEvent event(q_func(), QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

void BrowserTabBarBasePrivate::AbandonDrag()
{
    DragAbandoned();
    pressedButton = nullptr;
    dragging = false;
    dragStartIndex = -1;
    // The popup would go on holding the mouse for a tab that is gone; its release
    // finds no pressed button and ends nothing else.
    if (moveProxy)
        moveProxy->hide();
}

void BrowserTabBarBasePrivate::CancelDrag()
{
    Q_Q(BrowserTabBarBase);
    BrowserTabButtonBase *button = pressedButton;
    if (!button)
        return;
    const int index = buttons.indexOf(button);
    const int back = qBound(0, dragStartIndex, buttons.size() - 1);
    if (index >= 0 && index != back) {
        MoveEntry(index, back);
        LayoutAfterMove();
        // A strip that reports every movement reports this one too, so that a host
        // following the order sees it restored.
        if (!movesReportedOnRelease)
            q->TabButtonMoved();
    }
    // The release that follows (the proxy hides itself) drops the tab into its old slot.
}

void BrowserTabBarBasePrivate::ResyncPointer(int attempts)
{
    Q_Q(BrowserTabBarBase);
    if (TabPointer::Resync(q) || attempts <= 0)
        return;
    // Until the button is up or the popup gone; a second at most, for a button held on.
    QTimer::singleShot(kResyncRetryMs, q, [this, attempts] { ResyncPointer(attempts - 1); });
}

void BrowserTabBarBasePrivate::RunMenu(BrowserTabButtonBase *button, QPoint globalPos)
{
    Q_Q(BrowserTabBarBase);
    const QPointer<BrowserTabBarBase> self(q);
    const QPointer<KelMenu> menuGuard = menu;
    const auto grave = std::make_shared<QList<QPointer<QWidget>>>();
    menuGrave = grave;
    menuRunning = true;
    while (button) {
        const int index = buttons.indexOf(button);
        if (index < 0)
            break;
        menuButton = button;
        menuIndex = index;
        menuPressSerial = BrowserTabButtonBasePrivate::pressSerial;
        PrepareMenu(button->GetTabData());
        menuGuard->setAttribute(Qt::WA_NoMouseReplay, false);
        // A window of its own, the menu does not inherit the bar's direction. Right to
        // left its entries are mirrored and it opens leftwards from the point: Qt turns
        // it so only when the point is where the pointer is, which a press position
        // or a keyboard's menu is not always.
        menuGuard->setLayoutDirection(q->layoutDirection());
        QPoint menuPos = globalPos;
        if (q->isRightToLeft())
            menuPos.rx() -= menuGuard->sizeHint().width();
        menuGuard->exec(menuPos);
        if (!self)
            break;
        // A right click on another tab while this menu ran asks for that tab's menu.
        button = pendingMenuButton;
        globalPos = pendingMenuPos;
        pendingMenuButton = nullptr;
    }
    if (!self) {
        // A command deleted the bar from inside the menu's event loop. Deleting later
        // is safe from here on: the deletions wait for the event loop that delivered
        // the right click, which runs after the press has been handled.
        for (const QPointer<QWidget> &widget : qAsConst(*grave)) {
            if (widget)
                widget->deleteLater();
        }
        return;
    }
    menuRunning = false;
    menuGrave.reset();
    const QList<QPointer<BrowserTabButtonBase>> parked = parkedButtons;
    parkedButtons.clear();
    for (const QPointer<BrowserTabButtonBase> &parkedButton : parked) {
        if (parkedButton)
            parkedButton->deleteLater();
    }
    // A command may have changed the tabs, or the pointer may have left the bar.
    ForgetLayout();
    Relayout();
    ResyncPointer();
}

int BrowserTabBarBasePrivate::FocusIndex() const
{
    const int index = focusButton ? buttons.indexOf(focusButton.data()) : -1;
    if (index >= 0)
        return index;
    if (IsValidIndex(currentIndex))
        return currentIndex;
    return buttons.isEmpty() ? -1 : 0;
}

void BrowserTabBarBasePrivate::SetFocusIndex(int index)
{
    Q_Q(BrowserTabBarBase);
    BrowserTabButtonBase *previous = focusButton;
    BrowserTabButtonBase *button = buttons.isEmpty() ? nullptr : buttons.at(qBound(0, index, buttons.size() - 1));
    focusButton = button;
    if (previous && previous != button)
        previous->setProperty("keyboardFocus", false);
    UpdateFocusRing();
    if (!button || !q->hasFocus())
        return;
    ShowTab(buttons.indexOf(button));
    NotifyTab(button, QAccessible::Focus);
}

void BrowserTabBarBasePrivate::UpdateFocusRing()
{
    Q_Q(BrowserTabBarBase);
    BrowserTabButtonBase *button = focusButton;
    const bool shown = button && q->hasFocus() && focusVisible;
    if (button)
        button->setProperty("keyboardFocus", shown);
    if (!shown) {
        if (focusRing)
            focusRing->Follow(nullptr);
        return;
    }
    if (!focusRing)
        focusRing = new TabFocusRing(button);
    focusRing->Follow(button);
}

void BrowserTabBarBasePrivate::NotifyTab(BrowserTabButtonBase *button, int type)
{
    if (!button || !QAccessible::isActive())
        return;
    QAccessibleEvent event(button, static_cast<QAccessible::Event>(type));
    QAccessible::updateAccessibility(&event);
}

bool BrowserTabBarBasePrivate::ClosesOnDoubleClick() const
{
    Q_Q(const BrowserTabBarBase);
    return q->IsDoubleCloseTab();
}

BrowserTabButtonBase *BrowserTabBarBasePrivate::MakeButton(const TabDataPtr &tab, const QString &iconPath,
                                                          bool loading)
{
    const QScopedValueRollback<bool> making(makingButton, true);
    return CreateButton(tab, iconPath, loading);
}

bool BrowserTabBarBasePrivate::IsTabKey(const QKeyEvent *event) const
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Delete:
    case Qt::Key_Menu:
        return mods == Qt::NoModifier;
    case Qt::Key_W:
        return mods == Qt::ControlModifier;
    case Qt::Key_F10:
        return mods == Qt::ShiftModifier;
    default:
        return false;
    }
}

bool BrowserTabBarBasePrivate::HandleKey(QKeyEvent *event)
{
    Q_Q(BrowserTabBarBase);
    if (!IsTabKey(event) || buttons.isEmpty())
        return false;
    const int index = FocusIndex();
    focusVisible = true;
    UpdateFocusRing();
    // Left and right follow the screen: in a right-to-left layout the first tab is on the right.
    const int forward = q->layoutDirection() == Qt::RightToLeft ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        SetFocusIndex(index - forward);
        break;
    case Qt::Key_Right:
        SetFocusIndex(index + forward);
        break;
    case Qt::Key_Home:
        SetFocusIndex(0);
        break;
    case Qt::Key_End:
        SetFocusIndex(buttons.size() - 1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        // The path of a click on the tab.
        q->SlotChangeClicked(buttons.at(index)->GetTabData());
        break;
    case Qt::Key_Delete:
    case Qt::Key_W:
        // As the menu's "Close tab" asks: the host decides, the widths do not freeze
        // (no pointer stands over the tabs).
        if (q->CheckCloseCurItem(index))
            Q_EMIT q->tabCloseRequested(index);
        break;
    case Qt::Key_Menu:
    case Qt::Key_F10:
        if (menu && !menuRunning) {
            BrowserTabButtonBase *button = buttons.at(index);
            ShowTab(index);
            // Under the tab's start, where a menu opened from it would drop down.
            RunMenu(button, KeyboardMenuPos(button));
        }
        break;
    default:
        return false;
    }
    event->accept();
    return true;
}

QPoint BrowserTabBarBasePrivate::KeyboardMenuPos(const BrowserTabButtonBase *button) const
{
    // Under the tab, opening away from the strip's start.
    return button->mapToGlobal(QPoint(q_func()->isRightToLeft() ? button->width() : 0, button->height()));
}

bool BrowserTabBarBasePrivate::OpenMenuNext(QWidget *widget, const QPoint &globalPos)
{
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        auto *button = qobject_cast<BrowserTabButtonBase *>(w);
        if (!button)
            continue;
        if (!buttons.contains(button))
            return false;
        pendingMenuButton = button;
        pendingMenuPos = globalPos;
        return true;
    }
    return false;
}

// ---------------------------------------------------------------------------
// BrowserTabBarBase

BrowserTabBarBase::BrowserTabBarBase(BrowserTabBarBasePrivate &dd, QWidget *parent)
    : QFrame(parent)
    , IDpiAdapter()
    , d_ptr(&dd)
{
    Q_D(BrowserTabBarBase);
    d->q_ptr = this;
    d->InitBase();
    // Reached by Tab, never by a click: a click on a tab must not take the focus
    // from the page.
    setFocusPolicy(Qt::TabFocus);
    TabAccessible::InstallFactory();
}

BrowserTabBarBase::~BrowserTabBarBase()
{
    Q_D(BrowserTabBarBase);
    d->delayTimer->stop();
    if (d->moveProxy) {
        disconnect(d->moveProxy.get(), nullptr, this, nullptr);
        if (d->endingDrag) {
            // Deleted from inside TabButtonMoved(): the popup is still in its own hide,
            // which reported the end of the drag. It goes once that is over.
            d->moveProxy.release()->deleteLater();
        } else {
            d->moveProxy.reset();
        }
    }
    // Buttons, also those removed and waiting for deletion, are torn down by QWidget
    // after this destructor: by then this object is no longer a bar and must not be
    // asked for icons, sizes or policy, nor hear their signals.
    const QList<BrowserTabButtonBase *> all = findChildren<BrowserTabButtonBase *>();
    for (BrowserTabButtonBase *button : all) {
        disconnect(button, nullptr, this, nullptr);
        BrowserTabButtonBasePrivate *b = BrowserTabButtonBasePrivate::get(button);
        b->listed = false;
        // From now on the button asks its bar nothing.
        b->bar = nullptr;
    }
    d->buttons.clear();
    d->pressedButton = nullptr;
    if (d->menuRunning && d->menuGrave) {
        // Destroyed by a command of its own menu: the right-clicked tab is still being
        // delivered its press, and the menu is still inside its command. Keep every
        // widget of the bar, hidden and detached, for the menu's caller to delete once
        // the menu has returned.
        const QObjectList children = this->children();
        for (QObject *child : children) {
            if (!child->isWidgetType())
                continue;
            auto *widget = static_cast<QWidget *>(child);
            if (widget == d->menu)
                continue;
            widget->hide();
            widget->setParent(nullptr);
            d->menuGrave->append(widget);
        }
        if (d->menu) {
            d->menu->setParent(nullptr, d->menu->windowFlags());
            d->menuGrave->append(d->menu);
        }
    }
}

void BrowserTabBarBase::InitMenu()
{
    Q_D(BrowserTabBarBase);
    if (d->menu)
        return;
    setContextMenuPolicy(Qt::CustomContextMenu);
    d->menu = new KelMenu(this);
    d->menu->setObjectName(QStringLiteral("BrowserTabBarMenu"));
    d->BuildMenu(d->menu);
    auto *watcher = new TabMenuWatcher(d->menu);
    connect(watcher, &TabMenuWatcher::SigRightPressElsewhere, this,
            [d](QWidget *widget, const QPoint &globalPos, bool *taken) {
                *taken = d->OpenMenuNext(widget, globalPos);
            });
    if (IsShowRecoveryItem()) {
        QAction *recover = d->NewTranslatedAction("BrowserTabBarBase", QT_TRANSLATE_NOOP("BrowserTabBarBase", "Recover recently closed tabs"));
        connect(recover, &QAction::triggered, this, &BrowserTabBarBase::SlotRecoverRecentlyTab);
        d->menu->addSeparator();
        d->menu->addAction(recover);
    }
}

int BrowserTabBarBase::addTab(TabDataPtr tab, const QString &iconPath, bool loading)
{
    Q_D(BrowserTabBarBase);
    return insertTab(d->buttons.size(), std::move(tab), iconPath, loading);
}

int BrowserTabBarBase::insertTab(int index, TabDataPtr tab, const QString &iconPath, bool loading)
{
    Q_D(BrowserTabBarBase);
    if (!tab) {
        qWarning("%s::insertTab: a null tab record is ignored", metaObject()->className());
        return -1;
    }
    index = d->InsertButton(index, d->MakeButton(tab, iconPath, loading));
    d->Relayout();
    BrowserTabBarBasePrivate::NotifyTab(d->buttons.at(index), QAccessible::ObjectCreated);
    d->ResyncPointer();
    return index;
}

void BrowserTabBarBase::removeTab(int index)
{
    Q_D(BrowserTabBarBase);
    if (!d->IsValidIndex(index))
        return;
    BrowserTabButtonBase *button = d->buttons.at(index);

    if (button->IsChecked()) {
        const int next = d->NextCurrentOnRemoval(index);
        // Receivers of currentChanged may change the tab list, or delete the bar.
        const QPointer<BrowserTabBarBase> self(this);
        setCurrentIndex(next);
        if (!self)
            return;
        index = d->buttons.indexOf(button);
        if (index < 0)
            return; // already removed from inside currentChanged
    }

    if (d->pressedButton == button)
        d->AbandonDrag();

    const bool hadFocus = d->focusButton == button;
    d->buttons.removeAt(index);
    d->ListChanged(index, d->buttons.size() - 1);
    if (d->checkedButton == button)
        d->checkedButton = nullptr; // what waits for deletion keeps its look
    BrowserTabButtonBasePrivate::get(button)->listed = false;
    // A button waiting for deletion must not reach the bar any more.
    disconnect(button, nullptr, this, nullptr);
    // Told while the button still exists, so that a client can still ask about it.
    BrowserTabBarBasePrivate::NotifyTab(button, QAccessible::ObjectDestroyed);

    bool lostCurrent = false;
    if (index < d->currentIndex) {
        --d->currentIndex;
    } else if (index == d->currentIndex) {
        // Only when a receiver of currentChanged made the removed tab current again:
        // then nothing that remains is checked, and no tab is current.
        d->currentIndex = -1;
        lostCurrent = true;
    }

    d->LayoutAfterRemoval();
    // Hidden after the relayout, so that the tab that slid under the pointer is found
    // under it, and hidden at all so that it does not show until deleted.
    button->hide();
    if (d->menuRunning)
        d->parkedButtons.append(button); // deleted when the menu has returned
    else
        button->deleteLater();
    d->ResyncPointer();
    // The keyboard focus goes to the tab that took the removed one's place.
    if (hadFocus)
        d->SetFocusIndex(qMin(index, d->buttons.size() - 1));

    if (lostCurrent)
        Q_EMIT currentChanged(-1);
}

void BrowserTabBarBase::moveTab(int from, int to)
{
    Q_D(BrowserTabBarBase);
    if (!d->IsValidIndex(from) || !d->IsValidIndex(to) || from == to)
        return;
    d->MoveEntry(from, to);
    d->LayoutAfterMove();
    d->ResyncPointer();
}

void BrowserTabBarBase::setCurrentIndex(int index)
{
    Q_D(BrowserTabBarBase);
    // No lower bound, deliberately: a negative index leaves no tab current.
    if (index >= d->buttons.size() || index == d->currentIndex)
        return;
    const int previous = d->currentIndex;
    d->currentIndex = index;
    // Only the bar checks buttons, one at a time: the one it checked last is the only
    // one to uncheck, wherever the list has moved it since. Asking every button would
    // make a switch cost as much as the strip is long.
    BrowserTabButtonBase *current = d->ButtonAt(index);
    if (d->checkedKnown) {
        if (d->checkedButton && d->checkedButton != current)
            BrowserTabButtonBasePrivate::get(d->checkedButton)->SetChecked(false);
    } else {
        for (BrowserTabButtonBase *button : qAsConst(d->buttons)) {
            if (button != current && button->IsChecked())
                BrowserTabButtonBasePrivate::get(button)->SetChecked(false);
        }
        d->checkedKnown = true;
    }
    if (current && !current->IsChecked())
        BrowserTabButtonBasePrivate::get(current)->SetChecked(true);
    d->checkedButton = current;
    d->CurrentTabChanged(previous);
    if (QAccessible::isActive()) {
        if (BrowserTabButtonBase *old = d->ButtonAt(previous)) {
            QAccessible::State changed;
            changed.selected = true;
            QAccessibleStateChangeEvent event(old, changed);
            QAccessible::updateAccessibility(&event);
        }
    }
    if (BrowserTabButtonBase *button = d->ButtonAt(index)) {
        BrowserTabBarBasePrivate::NotifyTab(button, QAccessible::Selection);
        // The keyboard focus follows the tab made current, as it does in a browser.
        d->SetFocusIndex(index);
    }
    Q_EMIT currentChanged(index);
}

int BrowserTabBarBase::count() const
{
    Q_D(const BrowserTabBarBase);
    return d->buttons.size();
}

int BrowserTabBarBase::currentIndex() const
{
    Q_D(const BrowserTabBarBase);
    return d->currentIndex;
}

int BrowserTabBarBase::GetCurrentIndex() const
{
    return currentIndex();
}

TabDataPtr BrowserTabBarBase::GetTabData(int index) const
{
    Q_D(const BrowserTabBarBase);
    return TabLookup::TabAt(d->buttons, index);
}

TabDataPtr BrowserTabBarBase::GetCurrentTabData() const
{
    return GetTabData(currentIndex());
}

int BrowserTabBarBase::GetIndexByTabData(TabDataPtr tab) const
{
    Q_D(const BrowserTabBarBase);
    return TabLookup::IndexOfTab(d->buttons, tab);
}

int BrowserTabBarBase::GetIndexByName(const QString &name) const
{
    Q_D(const BrowserTabBarBase);
    return TabLookup::IndexOfTitle(d->buttons, name);
}

int BrowserTabBarBase::GetIndexByTabId(const QString &tabId) const
{
    Q_D(const BrowserTabBarBase);
    return TabLookup::IndexOfId(d->buttons, tabId);
}

QStringList BrowserTabBarBase::GetAllTabTitles() const
{
    Q_D(const BrowserTabBarBase);
    return TabLookup::AllTitles(d->buttons);
}

void BrowserTabBarBase::setTabText(int index, const QString &text)
{
    if (BrowserTabButtonBase *button = TabButton(index))
        button->SetTitle(text);
}

void BrowserTabBarBase::setTabIcon(int index, const QString &iconUrl)
{
    if (iconUrl.isEmpty())
        return;
    if (BrowserTabButtonBase *button = TabButton(index))
        button->SetIconUrl(iconUrl);
}

void BrowserTabBarBase::LoadStart(int index)
{
    if (BrowserTabButtonBase *button = TabButton(index))
        button->LoadStart();
}

void BrowserTabBarBase::LoadFinished(int index)
{
    if (BrowserTabButtonBase *button = TabButton(index))
        button->LoadFinished();
}

QString BrowserTabBarBase::CurrentIconUrl() const
{
    const BrowserTabButtonBase *button = TabButton(currentIndex());
    return button ? button->GetRequestedIconUrl() : QString();
}

QString BrowserTabBarBase::CurrentIconLocalPath() const
{
    const BrowserTabButtonBase *button = TabButton(currentIndex());
    return button ? button->GetIconPath() : QString();
}

void BrowserTabBarBase::SetFirstIndex(int index)
{
    Q_D(BrowserTabBarBase);
    d->firstIndex = index;
}

int BrowserTabBarBase::GetFirstIndex() const
{
    Q_D(const BrowserTabBarBase);
    return d->firstIndex;
}

void BrowserTabBarBase::SetTabManager(ITabManager *manager)
{
    Q_D(BrowserTabBarBase);
    d->tabManager = manager;
}

ITabManager *BrowserTabBarBase::GetTabManager() const
{
    Q_D(const BrowserTabBarBase);
    return d->tabManager;
}

BrowserTabButtonBase *BrowserTabBarBase::TabButton(int index) const
{
    Q_D(const BrowserTabBarBase);
    return d->ButtonAt(index);
}

QRect BrowserTabBarBase::tabRect(int index) const
{
    const BrowserTabButtonBase *button = TabButton(index);
    if (!button)
        return QRect();
    return QRect(button->mapTo(this, QPoint(0, 0)), button->size());
}

int BrowserTabBarBase::ButtonWidth() const
{
    Q_D(const BrowserTabBarBase);
    return d->buttonWidth;
}

int BrowserTabBarBase::ButtonHeight() const
{
    return DpiTool::ScaleDefault(kButtonHeight);
}

int BrowserTabBarBase::MaxButtonWidth() const
{
    Q_D(const BrowserTabBarBase);
    return d->Scaled(d->metrics.maxButtonWidth);
}

int BrowserTabBarBase::MinButtonWidth() const
{
    Q_D(const BrowserTabBarBase);
    return d->Scaled(d->metrics.minButtonWidth);
}

int BrowserTabBarBase::NoCloseButtonWidth() const
{
    Q_D(const BrowserTabBarBase);
    return d->Scaled(d->metrics.noCloseButtonWidth);
}

int BrowserTabBarBase::ButtonHomepageWidth() const
{
    Q_D(const BrowserTabBarBase);
    return d->Scaled(d->metrics.homepageWidth);
}

void BrowserTabBarBase::AdjustForDpi()
{
    Q_D(BrowserTabBarBase);
    d->AdjustForDpi();
}

// ---------------------------------------------------------------------------
// Slots answering the buttons

void BrowserTabBarBase::SlotChangeClicked(TabDataPtr tab)
{
    const int index = GetIndexByTabData(tab);
    if (index >= 0)
        setCurrentIndex(index);
}

void BrowserTabBarBase::SlotCloseClicked(TabDataPtr tab)
{
    Q_D(BrowserTabBarBase);
    const int index = GetIndexByTabData(tab);
    if (index < 0)
        return;
    // Set before the request: the host usually removes the tab from inside it.
    d->closing = true;
    d->closedLast = index == d->buttons.size() - 1;
    // An end pending from an earlier exit would pull the tabs away under the pointer
    // that is closing them again.
    d->delayTimer->stop();
    d->leaveWatcher->Arm();
    Q_EMIT tabCloseRequested(index);
}

void BrowserTabBarBase::SlotMenuClicked(TabDataPtr tab)
{
    Q_D(BrowserTabBarBase);
    if (!tab || !d->menu)
        return;
    const int index = GetIndexByTabData(tab);
    if (index < 0)
        return;
    BrowserTabButtonBase *button = d->buttons.at(index);
    // A request that follows a right press on the tab comes from the user: the menu opens
    // where the click was. One from code opens where the pointer is, or, where the
    // platform cannot tell that, under the tab as from the keyboard.
    const bool rightClicked = BrowserTabButtonBasePrivate::get(button)->rightPressSerial > d->menuPressSerial;
    QPoint globalPos;
    if (rightClicked)
        globalPos = button->LastPressGlobalPos();
    else if (!TabPointer::GlobalPos(&globalPos))
        globalPos = d->KeyboardMenuPos(button);
    if (d->menuRunning) {
        // A tab right-clicked while the menu ran (the window system hands the click over
        // once the menu has let go of the mouse): its menu comes next. A request from
        // code, a command's for instance, does not enter the running menu again.
        // A press replayed once the menu closed for this very tab is already answered.
        if (rightClicked && button != d->menuButton) {
            d->pendingMenuButton = button;
            d->pendingMenuPos = globalPos;
            d->menu->hide();
        }
        return;
    }
    d->RunMenu(button, globalPos);
}

void BrowserTabBarBase::SlotButtonPressed()
{
    Q_D(BrowserTabBarBase);
    auto *button = qobject_cast<BrowserTabButtonBase *>(sender());
    // Only a tab of this bar that is still in the list: a receiver of the press may
    // already have removed it. While a press is under way the popup holds the mouse:
    // a second press can only come from code, and would strand the first tab.
    if (!button || !d->buttons.contains(button) || d->pressedButton || !d->moveProxy)
        return;
    const QPoint globalPos = button->LastPressGlobalPos();
    if (!d->BeginPress(button, globalPos))
        return;
    d->pressedButton = button;
    d->dragging = false;
    d->dragStartIndex = d->buttons.indexOf(button);
    d->moveProxy->SetStartPoint(globalPos);
    d->moveProxy->ShowFor(this);
}

void BrowserTabBarBase::SlotButtonMove()
{
    Q_D(BrowserTabBarBase);
    if (!d->pressedButton || !d->moveProxy)
        return;
    d->DragTo(d->moveProxy->LastGlobalPos());
}

void BrowserTabBarBase::SlotButtonRelease()
{
    Q_D(BrowserTabBarBase);
    BrowserTabButtonBase *button = d->pressedButton;
    if (!button)
        return;
    d->EndPress(button);
    d->pressedButton = nullptr;
    d->dragging = false;
    d->dragStartIndex = -1;
    if (d->movesReportedOnRelease) {
        // The host may delete the bar from inside.
        const QPointer<BrowserTabBarBase> self(this);
        d->endingDrag = true;
        TabButtonMoved();
        if (!self)
            return;
        d->endingDrag = false;
    }
    // The popup that held the mouse is gone: whatever lies under the pointer now is hovered.
    d->ResyncPointer();
}

// ---------------------------------------------------------------------------
// Tab commands (from the context menu)

void BrowserTabBarBase::SlotCloseCurTab()
{
    Q_D(BrowserTabBarBase);
    // Unlike a close button, the menu does not freeze the widths.
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT tabCloseRequested(index);
}

void BrowserTabBarBase::SlotCloseOtherTab()
{
    Q_D(BrowserTabBarBase);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigCloseOtherTab(index);
}

void BrowserTabBarBase::SlotCloseLeftTab()
{
    Q_D(BrowserTabBarBase);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigCloseLeftTab(index);
}

void BrowserTabBarBase::SlotCloseRightTab()
{
    Q_D(BrowserTabBarBase);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigCloseRightTab(index);
}

void BrowserTabBarBase::SlotRecoverRecentlyTab()
{
    Q_EMIT SigRecoverRecentlyTab();
}

// ---------------------------------------------------------------------------
// Events

bool BrowserTabBarBase::event(QEvent *event)
{
    Q_D(BrowserTabBarBase);
    // The bar's keys come before the shortcut table while the bar has the focus, and
    // only then: without the focus no key reaches it.
    if (event->type() == QEvent::ShortcutOverride && d->IsTabKey(static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::LanguageChange)
        d->Retranslate();
    // Qt has passed the new direction down to every child before it tells the bar.
    if (event->type() == QEvent::LayoutDirectionChange) {
        TabGeometry::MirrorDescendants(this);
        for (BrowserTabButtonBase *button : qAsConst(d->buttons))
            BrowserTabButtonBasePrivate::get(button)->DirectionChanged();
        d->DirectionChanged();
        update(); // the tabs' pictures and texts are drawn the other way round
    }
    return QFrame::event(event);
}

void BrowserTabBarBase::keyPressEvent(QKeyEvent *event)
{
    Q_D(BrowserTabBarBase);
    if (!d->HandleKey(event))
        QFrame::keyPressEvent(event);
}

void BrowserTabBarBase::focusInEvent(QFocusEvent *event)
{
    Q_D(BrowserTabBarBase);
    QFrame::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    d->focusVisible = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    d->SetFocusIndex(d->FocusIndex());
}

void BrowserTabBarBase::focusOutEvent(QFocusEvent *event)
{
    Q_D(BrowserTabBarBase);
    QFrame::focusOutEvent(event);
    d->focusVisible = false;
    d->UpdateFocusRing();
}

void BrowserTabBarBase::leaveEvent(QEvent *event)
{
    Q_D(BrowserTabBarBase);
    QFrame::leaveEvent(event);
    d->PointerMayHaveLeft();
}

void BrowserTabBarBase::resizeEvent(QResizeEvent *event)
{
    Q_D(BrowserTabBarBase);
    QFrame::resizeEvent(event);
    // Right to left the frames keep their places from the right edge, even where the
    // layout below has nothing to do (no tabs).
    d->KeepFramesAtTheEnd();
    // Also in closing mode: a new size is laid out at once, the mode stays on.
    d->Resized();
}

// ---------------------------------------------------------------------------
// Policy defaults

bool BrowserTabBarBase::IsDoubleCloseTab() const
{
    return true;
}

bool BrowserTabBarBase::CheckCloseCurItem(int index)
{
    Q_UNUSED(index)
    return true;
}

// The base versions read the menu's tab rather than the argument; the bar always
// passes the menu's tab, so the two agree and an override may rely on either.
bool BrowserTabBarBase::CheckCloseRightItem(int index)
{
    Q_UNUSED(index)
    Q_D(const BrowserTabBarBase);
    return d->menuIndex < d->buttons.size() - 1;
}

bool BrowserTabBarBase::CheckCloseOtherItem(int index)
{
    Q_UNUSED(index)
    Q_D(const BrowserTabBarBase);
    return d->buttons.size() >= 2;
}

bool BrowserTabBarBase::CheckCloseLeftItem(int index)
{
    Q_UNUSED(index)
    Q_D(const BrowserTabBarBase);
    return d->menuIndex > 0;
}

bool BrowserTabBarBase::CheckRecoveryItem()
{
    return false;
}

bool BrowserTabBarBase::IsShowRecoveryItem()
{
    return false;
}

void BrowserTabBarBase::TabButtonMoved()
{
}

int BrowserTabBarBase::FixedTabTotalWidth()
{
    return 0;
}

int BrowserTabBarBase::FixedTabCount()
{
    return 0;
}
