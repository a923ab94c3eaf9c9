// SPDX-License-Identifier: MIT
#include "browsertabbar.h"

#include "browsertabbar_p.h"
#include "browsertabbutton.h"
#include "browsertabbutton_p.h"
#include "browsertabmoveproxy.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "kelpushbuttonhover.h"
#include "tabdragorder_p.h"
#include "tabgeometry_p.h"
#include "tabworkcounter_p.h"

#include <QAction>
#include <QFrame>
#include <QTransform>
#include <QVector>

namespace {

constexpr int kNewTabButtonSize = 28;
constexpr int kMarginRight = 4;
constexpr int kMarginTop = 4;
constexpr int kPadding = 16;
constexpr int kSpacing = 2;

const BrowserTabBarBasePrivate::Metrics kMetrics = {
    164, // widest movable tab
    60,  // narrowest movable tab
    88,  // unchecked tabs this wide or narrower show their close button only while hovered
    110, // a home tab, for subclasses
};

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

BrowserTabBarPrivate::BrowserTabBarPrivate()
    : BrowserTabBarBasePrivate(kMetrics)
{
    movesReportedOnRelease = false;
}

BrowserTabBarPrivate::~BrowserTabBarPrivate() = default;

BrowserTabBar::BrowserTabBar(QWidget *parent)
    : BrowserTabBarBase(*new BrowserTabBarPrivate, parent)
{
    Q_D(BrowserTabBar);
    d->Init();
}

BrowserTabBar::~BrowserTabBar() = default;

void BrowserTabBarPrivate::Init()
{
    Q_Q(BrowserTabBar);
    InitContent();
    SetMoveProxy(new BrowserTabMoveProxy(nullptr));
    // Tall enough for the tabs below their top margin; wide as the host makes it.
    q->setMinimumHeight(q->ButtonMarginTop() + q->ButtonHeight());
    q->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void BrowserTabBarPrivate::InitContent()
{
    Q_Q(BrowserTabBar);
    contentWidget = new QFrame(q);
    contentWidget->show();

    newTabButton = new KelPushButtonHover(q);
    newTabButton->setObjectName(QStringLiteral("TabBarNewTabButton"));
    newTabButton->setFocusPolicy(Qt::NoFocus);
    newTabButton->setCursor(Qt::PointingHandCursor);
    SetTranslatedToolTip(newTabButton, "BrowserTabBar", QT_TRANSLATE_NOOP("BrowserTabBar", "New tab"));
    // A fixed size: the layout adds the button's width into its sums, so it must not
    // change when the style sheet is applied or the button is first shown.
    newTabButton->setFixedSize(S(kNewTabButtonSize), S(kNewTabButtonSize));
    newTabButton->show();
    // The bar never opens a tab itself.
    QObject::connect(newTabButton, &QPushButton::clicked, q, &BrowserTabBarBase::SigAddNewTab);

    SetContentWidth();
}

BrowserTabButton *BrowserTabBarPrivate::Button(int index) const
{
    return static_cast<BrowserTabButton *>(ButtonAt(index));
}

// ---------------------------------------------------------------------------
// What the shared core asks of this strip

BrowserTabButtonBase *BrowserTabBarPrivate::CreateButton(const TabDataPtr &tab, const QString &iconPath, bool loading)
{
    Q_Q(BrowserTabBar);
    // Without its inner widgets: the layout that follows makes them if the tab is in view.
    return new BrowserTabButton(tab, iconPath, loading, q, contentWidget);
}

void BrowserTabBarPrivate::Relayout()
{
    ResizeButtons();
}

void BrowserTabBarPrivate::LayoutAfterRemoval()
{
    if (!closing)
        ResizeButtons();
    else if (!closedLast)
        ResetButtons(); // widths kept: the next tab slides under the pointer
    else
        ResizeLastButtons();
}

void BrowserTabBarPrivate::CurrentTabChanged(int previous)
{
    // The current tab's overlapping edges lie on top of its neighbours'; of the others,
    // each tab lies on its right neighbour. Restacking a widget repaints it, so after
    // an ordinary switch only the previous tab moves back into its place.
    if (RestackAfterSwitch(previous))
        return;
    for (int i = 0; i < buttons.size(); ++i) {
        if (i != currentIndex)
            buttons.at(i)->lower();
    }
    if (BrowserTabButtonBase *current = ButtonAt(currentIndex))
        current->raise();
}

bool BrowserTabBarPrivate::RestackAfterSwitch(int previous)
{
    BrowserTabButtonBase *old = ButtonAt(previous);
    BrowserTabButtonBase *current = ButtonAt(currentIndex);
    // The stack an ordinary switch leaves, bottom to top: the other tabs from the last
    // to the first, the previous tab (raised when it became current), then the current
    // one (raised by SetChecked). Anything else (a tab inserted, a drag) restacks all.
    // The expected order is walked without being built: a switch among thousands of
    // tabs should not allocate for them.
    int other = buttons.size() - 1;
    int stage = 0; // 0: the other tabs, 1: the previous tab, 2: the current tab, 3: none left
    const auto nextExpected = [&]() -> const QObject * {
        if (stage == 0) {
            while (other >= 0 && (other == previous || other == currentIndex))
                --other;
            if (other >= 0)
                return buttons.at(other--);
            stage = 1;
        }
        if (stage == 1) {
            stage = 2;
            if (old)
                return old;
        }
        if (stage == 2) {
            stage = 3;
            if (current)
                return current;
        }
        return nullptr;
    };
    const QObject *expected = nextExpected();
    for (const QObject *child : contentWidget->children()) {
        // Buttons of removed tabs wait hidden for their deletion: not part of the order.
        if (!IsListedButton(child))
            continue;
        if (!expected || child != expected)
            return false;
        expected = nextExpected();
    }
    if (expected)
        return false;
    if (!old)
        return true;
    // Under the nearest tab to its left; with none, it stays on top of the others.
    for (int left = previous - 1; left >= 0; --left) {
        if (left != currentIndex) {
            old->stackUnder(buttons.at(left));
            break;
        }
    }
    return true;
}

void BrowserTabBarPrivate::LayoutAfterMove()
{
    ResetButtons();
}

int BrowserTabBarPrivate::NextCurrentOnRemoval(int index)
{
    Q_Q(BrowserTabBar);
    if (q->GetCloseType() == CloseActivePrev)
        return index - 1;
    return index + 1 < buttons.size() ? index + 1 : index - 1;
}

QString BrowserTabBarPrivate::PluginIconUrl(const QString &pluginCode)
{
    Q_Q(BrowserTabBar);
    return q->GetPluginIconUrl(pluginCode);
}

void BrowserTabBarPrivate::AdjustForDpi()
{
    Q_Q(BrowserTabBar);
    // Backgrounds of the old height must go even when the width stays the same.
    buttonBg.Clear();
    for (Backgrounds &kept : backgrounds)
        kept = Backgrounds();
    newTabButton->setFixedSize(S(kNewTabButtonSize), S(kNewTabButtonSize));
    q->setMinimumHeight(q->ButtonMarginTop() + q->ButtonHeight());
    ResizeButtons();
    // Buttons whose size did not change get no resize event: lay them out here.
    for (int i = 0; i < buttons.size(); ++i) {
        Button(i)->UpdateLayout();
        Button(i)->UpdateCloseButton();
    }
    // ResizeButtons places nothing in an empty strip; the new-tab button has a new
    // size all the same, and goes after the strip.
    if (buttons.isEmpty())
        SetContentWidth();
    q->update();
}

// ---------------------------------------------------------------------------
// Public operations of this strip

void BrowserTabBar::HideNewTabButton()
{
    Q_D(BrowserTabBar);
    d->showNewTabButton = false;
    d->newTabButton->hide();
}

QPixmap *BrowserTabBar::GetButtonBg(int width, bool checked, bool hovered)
{
    Q_D(BrowserTabBar);
    return d->ButtonBg(width, checked, hovered);
}

int BrowserTabBar::ButtonBgBuildCount() const
{
    Q_D(const BrowserTabBar);
    return d->buttonBg.BuildCount();
}

QPixmap *BrowserTabBarPrivate::ButtonBg(int width, bool checked, bool hovered, bool mirrored)
{
    if (width <= 0)
        return buttonBg.GetButtonBg(width, checked, hovered);
    Backgrounds *kept = nullptr;
    for (Backgrounds &candidate : backgrounds) {
        if (candidate.width == width && candidate.mirrored == mirrored) {
            kept = &candidate;
            break;
        }
        // Else the set that served least recently (an empty one first).
        if (!kept || candidate.used < kept->used)
            kept = &candidate;
    }
    if (kept->width != width || kept->mirrored != mirrored) {
        const auto copy = [mirrored](const QPixmap *pixmap) {
            if (!pixmap)
                return QPixmap();
            return mirrored ? pixmap->transformed(QTransform::fromScale(-1, 1)) : *pixmap;
        };
        kept->width = width;
        kept->mirrored = mirrored;
        kept->front = copy(buttonBg.GetButtonBg(width, true, false));
        kept->back = copy(buttonBg.GetButtonBg(width, false, false));
        kept->backHover = copy(buttonBg.GetButtonBg(width, false, true));
    }
    kept->used = ++backgroundClock;
    QPixmap *pixmap = checked ? &kept->front : (hovered ? &kept->backHover : &kept->back);
    return pixmap->isNull() ? nullptr : pixmap;
}

int BrowserTabBar::ButtonMarginRight() const
{
    return S(kMarginRight);
}

int BrowserTabBar::ButtonMarginTop() const
{
    return S(kMarginTop);
}

int BrowserTabBar::ButtonPadding() const
{
    return S(kPadding);
}

int BrowserTabBar::ButtonSpacing() const
{
    return S(kSpacing);
}

// ---------------------------------------------------------------------------
// Widths and placement

void BrowserTabBarPrivate::ComputeButtonWidth(int available)
{
    Q_Q(BrowserTabBar);
    const int fixedCount = FixedCount();
    const int fixedWidth = q->FixedTabTotalWidth();
    const int maxWidth = q->MaxButtonWidth();
    const int spacing = q->ButtonSpacing();
    const int step = q->MinButtonWidth() - spacing;

    int fit = (available - fixedWidth) / step;
    fit = qMin(fit, buttons.size() - fixedCount);

    buttonWidth = maxWidth;
    if (fit > 0)
        buttonWidth = qMin((available - fixedWidth) / fit + spacing, maxWidth);

    extraPixels = 0;
    if (buttonWidth == maxWidth)
        return;
    extraPixels = qMax(0, available - (buttonWidth - spacing) * fit - fixedWidth);
}

void BrowserTabBarPrivate::SizeButtons()
{
    Q_Q(BrowserTabBar);
    // Unchecked tabs show their close button by the common width, not their own: when
    // the common width crosses that limit, tabs whose own size stays the same (and so
    // get no resize event) must look again.
    const bool closeButtons = buttonWidth > q->NoCloseButtonWidth();
    if (closeButtons != closeButtonsShown) {
        closeButtonsShown = closeButtons;
        for (int i = 0; i < buttons.size(); ++i)
            Button(i)->UpdateCloseButton();
    }

    const int fixedCount = FixedCount();
    const int height = q->ButtonHeight();
    const int spacing = q->ButtonSpacing();
    const int n = buttons.size();
    // ResetButtons() places every tab but the held one next: right to left, a tab that
    // kept its place while its width changed would move twice.
    const auto sizeTo = [&](int i, int width) {
        BrowserTabButtonBase *button = buttons.at(i);
        const auto places = button->IsPressed() ? TabGeometry::Places::Keep : TabGeometry::Places::Leave;
        TabWorkCounter::CountGeometry(TabGeometry::SetFixedSize(button, QSize(width, height), places));
    };
    int fixedButtonWidth = 0;
    if (fixedCount > 0) {
        fixedButtonWidth = (q->FixedTabTotalWidth() - spacing) / fixedCount + spacing;
        for (int i = 0; i < fixedCount && i < n; ++i)
            sizeTo(i, fixedButtonWidth);
    }
    for (int i = fixedCount; i < n; ++i)
        sizeTo(i, buttonWidth + ((i - fixedCount) < extraPixels ? 1 : 0));

    // Backgrounds kept for widths no tab has any more only hold memory.
    for (Backgrounds &kept : backgrounds) {
        const bool inUse = (kept.width == fixedButtonWidth && fixedCount > 0 && n > 0)
                           || (kept.width == buttonWidth && n > fixedCount)
                           || (kept.width == buttonWidth + 1 && extraPixels > 0 && n > fixedCount);
        if (kept.width > 0 && !inUse)
            kept = Backgrounds();
    }
}

void BrowserTabBarPrivate::ResizeButtons()
{
    Q_Q(BrowserTabBar);
    KeepFramesAtTheEnd();
    closing = false;
    closedLast = false;
    if (buttons.isEmpty())
        return;
    ComputeButtonWidth(q->width() - q->ButtonMarginRight() - newTabButton->width());
    SizeButtons();
    ResetButtons();
}

void BrowserTabBarPrivate::ResizeLastButtons()
{
    ComputeButtonWidth(contentWidget->width());
    SizeButtons();
    ResetButtons();
}

void BrowserTabBarPrivate::ResetButtons()
{
    Q_Q(BrowserTabBar);
    const int n = buttons.size();
    if (n == 0)
        return;
    const int fixedCount = FixedCount();
    const int fixedWidth = q->FixedTabTotalWidth();
    const int spacing = q->ButtonSpacing();
    const int top = q->ButtonMarginTop();

    // The content widget takes its width first: right to left, places count from its
    // right edge, and each tab then moves once, straight to its place. Only the held
    // tab is not placed: it keeps its place under the pointer.
    QVector<QPair<BrowserTabButtonBase *, QPoint>> held;
    for (BrowserTabButtonBase *button : qAsConst(buttons)) {
        if (button->IsPressed())
            held.append({button, TabGeometry::Pos(button)});
    }
    SetContentWidth(TabGeometry::Places::Leave);
    for (const auto &[button, pos] : qAsConst(held))
        TabGeometry::Move(button, pos);

    const int fixedStep = fixedCount >= 1 ? (fixedWidth - spacing) / fixedCount + spacing : 0;
    for (int i = 0; i < fixedCount && i < n; ++i)
        TabWorkCounter::CountGeometry(TabGeometry::Move(buttons.at(i), QPoint((fixedStep - spacing) * i, top)));

    const int offset = fixedCount > 0 ? fixedWidth - spacing : 0;
    for (int i = fixedCount; i < n; ++i) {
        BrowserTabButtonBase *button = buttons.at(i);
        if (button->IsPressed())
            continue;
        const int k = i - fixedCount;
        const int x = (buttonWidth - spacing) * k + qMin(k, extraPixels) + offset;
        TabWorkCounter::CountGeometry(TabGeometry::Move(button, QPoint(x, top)));
    }
    UpdateButtonForms();
}

void BrowserTabBarPrivate::SetContentWidth(TabGeometry::Places places)
{
    Q_Q(BrowserTabBar);
    const int n = buttons.size();
    const int fixedCount = FixedCount();
    const int newTabWidth = newTabButton->width();

    int width;
    if (dragging) {
        // The dragged tab may travel over the whole bar (the new-tab button is hidden).
        width = q->width();
    } else {
        width = 0;
        if (n > 0) {
            width = q->FixedTabTotalWidth();
            if (n > fixedCount)
                width += (buttonWidth - q->ButtonSpacing()) * (n - fixedCount) + extraPixels;
        }
        width = qMin(width, q->width() - q->ButtonMarginRight() - newTabWidth);
    }
    TabGeometry::SetFixedSize(contentWidget, QSize(width, q->height()), places);
    TabGeometry::Move(contentWidget, QPoint(0, 0));
    framesWidth = q->width();

    const int y = q->ButtonMarginTop() + (q->ButtonHeight() - newTabButton->height()) / 2;
    // An empty strip squeezes nothing, whatever width its last tabs had.
    const bool squeezed = n > 0 && buttonWidth != q->MaxButtonWidth() && !closing;
    int x;
    if (squeezed)
        x = q->width() - newTabWidth; // the button keeps to the right end
    else
        x = TabGeometry::X(contentWidget) + contentWidget->width() + q->ButtonMarginRight();
    TabGeometry::Move(newTabButton, QPoint(x, y));
}

void BrowserTabBarPrivate::UpdateButtonForms()
{
    // Tabs past the strip's end are cut off by it: they need no inner widgets until
    // they come into view. A tab just pushed out keeps them while it lies within two
    // tabs of the end, so that a strip resized back and forth by a few pixels does not
    // make and drop the same widgets each time.
    const int visibleWidth = contentWidget->width();
    const int keepWidth = visibleWidth + 2 * buttonWidth;
    for (int i = 0; i < buttons.size(); ++i) {
        BrowserTabButton *button = Button(i);
        const int x = TabGeometry::X(button);
        const int right = x + button->width();
        if (x < visibleWidth && right > 0)
            BrowserTabButtonPrivate::get(button)->ShowForm(true);
        else if (x >= keepWidth || right <= 0)
            BrowserTabButtonPrivate::get(button)->ShowForm(false);
    }
}

// ---------------------------------------------------------------------------
// Dragging

bool BrowserTabBarPrivate::BeginPress(BrowserTabButtonBase *button, const QPoint &globalPos)
{
    button->SetPressed();
    pressOffset = QPoint(TabGeometry::X(button) - LogicalX(globalPos), button->y());
    return true;
}

void BrowserTabBarPrivate::DragTo(const QPoint &globalPos)
{
    Q_Q(BrowserTabBar);
    BrowserTabButtonBase *button = pressedButton;
    // Tabs before the first movable index stay in place.
    if (buttons.indexOf(button) < qMax(0, firstIndex))
        return;

    if (!dragging) {
        dragging = true;
        newTabButton->hide();
        SetContentWidth();
        UpdateButtonForms();
    }

    int x = LogicalX(globalPos) + pressOffset.x();
    x = qMax(x, 0);
    x = qMin(x, q->width() - button->width());
    TabGeometry::Move(button, QPoint(x, pressOffset.y()));

    SortButtons();
    // Dragged to the start, the tab passes beneath the fixed tabs, which stay in sight.
    const int fixedCount = qMin(FixedCount(), int(buttons.size()));
    for (int i = 0; i < fixedCount; ++i)
        buttons.at(i)->raise();
    q->TabButtonMoved();
}

void BrowserTabBarPrivate::EndPress(BrowserTabButtonBase *button)
{
    dragging = false;
    button->SetReleased();
    if (showNewTabButton)
        newTabButton->show();
    ResetButtons();
    static_cast<BrowserTabButton *>(button)->UpdateAfterRelease();
}

QList<QWidget *> BrowserTabBarPrivate::AccessibleControls() const
{
    return {newTabButton};
}

// Each tab's last ButtonSpacing() pixels lie under its right neighbour; the content
// widget ends that much before the last tab does.
int BrowserTabBarPrivate::TabOverlap() const
{
    Q_Q(const BrowserTabBar);
    return q->ButtonSpacing();
}

void BrowserTabBarPrivate::DragAbandoned()
{
    // The tab under the drag is going away: the release that would normally end the
    // drag no longer has a tab to put down.
    dragging = false;
    if (showNewTabButton)
        newTabButton->show();
}

void BrowserTabBarPrivate::SortButtons()
{
    const int n = buttons.size();
    if (n == 0)
        return;
    int held = -1;
    for (int i = n - 1; i >= 0; --i) {
        if (buttons.at(i)->IsPressed()) {
            held = i;
            break;
        }
    }
    const int first = qMax(0, firstIndex);
    if (held < first)
        return;

    BrowserTabButtonBase *button = buttons.at(held);
    const int left = TabGeometry::X(button);
    const int right = left + button->width();
    const auto span = [this](int j) {
        const BrowserTabButtonBase *b = buttons.at(j);
        return qMakePair(TabGeometry::X(b), b->width());
    };
    const int target = TabDragOrder::Target(n, held, first, left, right, contentWidget->width(), span);
    if (target < 0 || target >= n || target == held)
        return;
    // The dragged tab is the current one (the press made it current); the current tab
    // is followed by identity in case a host kept another one current.
    MoveEntry(held, target);
    ResetButtons();
}

// ---------------------------------------------------------------------------
// The menu

void BrowserTabBarPrivate::BuildMenu(KelMenu *menu)
{
    Q_Q(BrowserTabBar);
    QAction *closeCur = NewTranslatedAction("BrowserTabBar", QT_TRANSLATE_NOOP("BrowserTabBar", "Close tab"));
    QAction *closeOther = NewTranslatedAction("BrowserTabBar", QT_TRANSLATE_NOOP("BrowserTabBar", "Close other tabs"));
    QAction *closeLeft = NewTranslatedAction("BrowserTabBar", QT_TRANSLATE_NOOP("BrowserTabBar", "Close left tabs"));
    QAction *closeRight = NewTranslatedAction("BrowserTabBar", QT_TRANSLATE_NOOP("BrowserTabBar", "Close right tabs"));
    QObject::connect(closeCur, &QAction::triggered, q, &BrowserTabBar::SlotCloseCurTab);
    QObject::connect(closeOther, &QAction::triggered, q, &BrowserTabBar::SlotCloseOtherTab);
    QObject::connect(closeLeft, &QAction::triggered, q, &BrowserTabBar::SlotCloseLeftTab);
    QObject::connect(closeRight, &QAction::triggered, q, &BrowserTabBar::SlotCloseRightTab);
    // The order of the entries differs from the order of their making, deliberately.
    menu->addAction(closeCur);
    menu->addAction(closeRight);
    menu->addAction(closeOther);
    menu->addAction(closeLeft);
}

void BrowserTabBarPrivate::PrepareMenu(const TabDataPtr &)
{
    Q_Q(BrowserTabBar);
    const QList<QAction *> actions = menu->actions();
    const auto setEnabled = [&actions](int position, bool enabled) {
        if (position < actions.size())
            actions.at(position)->setEnabled(enabled);
    };
    setEnabled(kMenuCloseCur, q->CheckCloseCurItem(menuIndex));
    setEnabled(kMenuCloseRight, q->CheckCloseRightItem(menuIndex));
    setEnabled(kMenuCloseOther, q->CheckCloseOtherItem(menuIndex));
    setEnabled(kMenuCloseLeft, q->CheckCloseLeftItem(menuIndex));
    if (q->IsShowRecoveryItem())
        setEnabled(kMenuRecovery, q->CheckRecoveryItem());
}

// ---------------------------------------------------------------------------
// Policy defaults

CloseActiveType BrowserTabBar::GetCloseType()
{
    return CloseActiveNext;
}

QString BrowserTabBar::GetPluginIconUrl(const QString &pluginCode)
{
    Q_UNUSED(pluginCode)
    return QString();
}
