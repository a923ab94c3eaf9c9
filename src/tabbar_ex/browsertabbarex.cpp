// SPDX-License-Identifier: MIT
#include "browsertabbarex.h"

#include "browsertabarrowex.h"
#include "browsertabbarex_p.h"
#include "browsertabbuttonex.h"
#include "browsertabbuttonex_p.h"
#include "browsertabmoveproxyex.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "tabdragorder_p.h"
#include "tabgeometry_p.h"
#include "tabworkcounter_p.h"

#include <QAction>
#include <QFrame>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>

namespace {

// Design sizes in 96-dpi pixels; each is scaled on its own before any sum.
constexpr int kBarHeight = 40;
constexpr int kButtonTop = 4;
constexpr int kRightMargin = 10;
constexpr int kArrowSize = 20;
constexpr int kArrowInset = 10;
constexpr int kShadowWidth = 12;

constexpr int kArrowIntervalMs = 20;

const BrowserTabBarBasePrivate::Metrics kMetrics = {
    224, // widest scrolling tab
    96,  // narrowest scrolling tab, and the step of showIndex()
    112, // unchecked tabs this wide or narrower hide their close button
    84,  // a home tab, for subclasses
};

int S(int value)
{
    return DpiTool::ScaleDefault(value);
}

// The part of an arrow frame that holds the arrow: inset, arrow, inset.
int ArrowPartWidth()
{
    return S(kArrowInset) + S(kArrowSize) + S(kArrowInset);
}

QFrame *MakeFrame(QWidget *parent, const QString &name)
{
    auto *frame = new QFrame(parent);
    frame->setObjectName(name);
    frame->setFrameShape(QFrame::NoFrame);
    frame->setLineWidth(0);
    return frame;
}

} // namespace

BrowserTabBarExPrivate::BrowserTabBarExPrivate()
    : BrowserTabBarBasePrivate(kMetrics)
{
}

BrowserTabBarExPrivate::~BrowserTabBarExPrivate() = default;

BrowserTabBarEx::BrowserTabBarEx(QWidget *parent)
    : BrowserTabBarBase(*new BrowserTabBarExPrivate, parent)
{
    Q_D(BrowserTabBarEx);
    d->Init();
}

BrowserTabBarEx::~BrowserTabBarEx()
{
    Q_D(BrowserTabBarEx);
    d->arrowTimer->stop();
}

void BrowserTabBarExPrivate::Init()
{
    Q_Q(BrowserTabBarEx);
    if (q->objectName().isEmpty())
        q->setObjectName(QStringLiteral("BrowserTabBarEx"));
    arrowTimer = new QTimer(q);
    arrowTimer->setObjectName(QStringLiteral("TabBarArrowTimerEx"));
    arrowTimer->setInterval(kArrowIntervalMs);
    arrowTimer->setSingleShot(false);
    InitContent();
    q->setFixedHeight(S(kBarHeight));
    ResizeButtons();
    SetMoveProxy(new BrowserTabMoveProxyEx(nullptr));
}

void BrowserTabBarExPrivate::InitContent()
{
    Q_Q(BrowserTabBarEx);
    leftArrowFrame = MakeFrame(q, QStringLiteral("TabBarLeftArrowFrameEx"));
    leftArrowFrame->lower();
    leftArrowFrame->hide();
    rightArrowFrame = MakeFrame(q, QStringLiteral("TabBarRightArrowFrameEx"));
    rightArrowFrame->lower();
    rightArrowFrame->hide();
    fixedArea = MakeFrame(q, QStringLiteral("TabBarFixedAreaEx"));
    fixedArea->raise();
    fixedArea->show();
    viewport = MakeFrame(q, QStringLiteral("TabBarViewportEx"));
    viewport->raise();
    viewport->show();
    contentStrip = MakeFrame(viewport, QStringLiteral("TabBarContentEx"));
    // The strip draws nothing that depends on its width: when a tab is added at its
    // far end, only what it gains needs painting, not every tab in view.
    contentStrip->setAttribute(Qt::WA_StaticContents);
    InitArrowFrame();
    SetContentWidth();
}

void BrowserTabBarExPrivate::InitArrowFrame()
{
    Q_Q(BrowserTabBarEx);
    leftArrow = new BrowserTabArrowEx(leftArrowFrame);
    leftArrow->setObjectName(QStringLiteral("TabButtonLeftArrowEx"));
    rightArrow = new BrowserTabArrowEx(rightArrowFrame);
    rightArrow->setObjectName(QStringLiteral("TabButtonRightArrowEx"));

    QObject::connect(leftArrow, &QPushButton::clicked, q, &BrowserTabBarEx::SlotLeftArrowClicked);
    QObject::connect(leftArrow, &BrowserTabArrowEx::SigDoubleClicked, q, &BrowserTabBarEx::SlotLeftArrowDoubleClicked);
    QObject::connect(leftArrow, &BrowserTabArrowEx::SigPressed, q, &BrowserTabBarEx::SlotLeftArrowPressed);
    QObject::connect(leftArrow, &BrowserTabArrowEx::SigReleased, q, &BrowserTabBarEx::SlotLeftArrowReleased);
    QObject::connect(rightArrow, &QPushButton::clicked, q, &BrowserTabBarEx::SlotRightArrowClicked);
    QObject::connect(rightArrow, &BrowserTabArrowEx::SigDoubleClicked, q,
                     &BrowserTabBarEx::SlotRightArrowDoubleClicked);
    QObject::connect(rightArrow, &BrowserTabArrowEx::SigPressed, q, &BrowserTabBarEx::SlotRightArrowPressed);
    QObject::connect(rightArrow, &BrowserTabArrowEx::SigReleased, q, &BrowserTabBarEx::SlotRightArrowReleased);

    leftShadow = MakeFrame(leftArrowFrame, QStringLiteral("TabButtonLeftShadowEx"));
    rightShadow = MakeFrame(rightArrowFrame, QStringLiteral("TabButtonRightShadowEx"));
    // Shadows only draw; a click on one is a click on the strip behind it.
    leftShadow->setAttribute(Qt::WA_TransparentForMouseEvents);
    rightShadow->setAttribute(Qt::WA_TransparentForMouseEvents);

    QObject::connect(arrowTimer, &QTimer::timeout, q, &BrowserTabBarEx::SlotArrowTimeout);
    UpdateMirroredStyles();
}

void BrowserTabBarExPrivate::UpdateMirroredStyles()
{
    const QList<QWidget *> sided = {leftArrow, rightArrow, leftShadow, rightShadow};
    for (QWidget *widget : sided)
        TabGeometry::SetMirroredStyle(widget);
}

void BrowserTabBarExPrivate::DirectionChanged()
{
    UpdateMirroredStyles();
    BrowserTabBarBasePrivate::DirectionChanged();
}

BrowserTabButtonEx *BrowserTabBarExPrivate::Button(int index) const
{
    return static_cast<BrowserTabButtonEx *>(ButtonAt(index));
}

// ---------------------------------------------------------------------------
// What the shared core asks of this strip

BrowserTabButtonBase *BrowserTabBarExPrivate::CreateButton(const TabDataPtr &tab, const QString &iconPath,
                                                          bool loading)
{
    Q_Q(BrowserTabBarEx);
    // The parent follows the number of tabs, not the insertion index: the first
    // FixedTabCount() buttons ever present are the fixed ones.
    QWidget *parent = buttons.size() < FixedCount() ? fixedArea : contentStrip;
    // Its inner widgets are made once a layout shows it (UpdateButtonForms()).
    auto *button = new BrowserTabButtonEx(tab, iconPath, loading, q, parent);
    // Hidden until a layout places it. Qt repaints where a widget lies when it is
    // lowered, hidden or not: it waits outside the strip, where that costs nothing.
    button->move(-button->width(), 0);
    unsized.append(button);
    QObject::connect(button, &BrowserTabButtonEx::SigHoverChanged, q, &BrowserTabBarEx::SlotHoverChanged);
    QObject::connect(button, &BrowserTabButtonEx::SigIconClicked, q, &BrowserTabBarEx::SlotIconClicked);
    return button;
}

// Lowered when it is first shown (BrowserTabButtonExPrivate::CreateForm()): lowering a
// hidden widget makes Qt create it, and a created widget costs more to move ever after,
// which thousands of tabs out of view would pay on every insertion.
void BrowserTabBarExPrivate::StackNewButton(BrowserTabButtonBase *)
{
}

void BrowserTabBarExPrivate::Relayout()
{
    ResizeButtons();
}

// Narrowing the window must not push the tab the user is on out of sight: when it was
// in view, it stays in view.
void BrowserTabBarExPrivate::Resized()
{
    const bool currentShown = overflow && IsInView(currentIndex);
    Relayout();
    if (currentShown && !IsInView(currentIndex) && !arrowTimer->isActive())
        BringIntoView(currentIndex);
}

bool BrowserTabBarExPrivate::IsInView(int index) const
{
    if (index < FixedCount() || index >= buttons.size())
        return false;
    const BrowserTabButtonBase *button = buttons.at(index);
    if (button->parentWidget() != contentStrip)
        return false;
    const int left = TabGeometry::X(button) + scrollOffset;
    return left >= 0 && left + button->width() <= viewport->width();
}

void BrowserTabBarExPrivate::BringIntoView(int index)
{
    if (!overflow || index < FixedCount() || index >= buttons.size())
        return;
    const BrowserTabButtonBase *button = buttons.at(index);
    if (button->parentWidget() != contentStrip)
        return;
    const int left = TabGeometry::X(button) + scrollOffset;
    const int right = left + button->width();
    if (left < 0)
        scrollOffset -= left;
    else if (right > viewport->width())
        scrollOffset -= right - viewport->width();
    else
        return;
    CheckAreaOffset();
    UpdateButtonForms();
}

void BrowserTabBarExPrivate::LayoutAfterRemoval()
{
    if (!closing) {
        ResizeButtons();
    } else if (!closedLast) {
        // Closing mode: the tabs right of the gap slide left by one width and keep
        // theirs, so the next close button arrives under the pointer.
        TabGeometry::SetFixedWidth(contentStrip, contentStrip->width() - buttonWidth);
        ResetDelayButtons();
    } else {
        ResizeLastButtons();
    }
}

void BrowserTabBarExPrivate::CurrentTabChanged(int previous)
{
    // The new current button raised itself (SetChecked). Stacking only matters between
    // the current tab and the others (a wide current tab, a dragged one); the rest never
    // overlap, so only the old current goes down. A dragged button floats above the
    // strip in the viewport; lowered, it would vanish behind it.
    if (BrowserTabButtonBase *old = ButtonAt(previous)) {
        if (!old->IsPressed())
            old->lower();
    }
    if (closing)
        ResizeDelayButtons();
    else
        ResizeButtons();
}

void BrowserTabBarExPrivate::LayoutAfterMove()
{
    if (closing)
        ResizeDelayButtons();
    else
        ResizeButtons();
}

int BrowserTabBarExPrivate::NextCurrentOnRemoval(int index)
{
    Q_Q(BrowserTabBarEx);
    if (q->GetCloseType() == CloseActiveLeftEx)
        return index - 1;
    return index + 1 < buttons.size() ? index + 1 : index - 1;
}

QString BrowserTabBarExPrivate::PluginIconUrl(const QString &pluginCode)
{
    Q_Q(BrowserTabBarEx);
    return q->GetPluginIconUrl(pluginCode);
}

QString BrowserTabBarExPrivate::CheckedIcon(const TabDataPtr &tab)
{
    Q_Q(BrowserTabBarEx);
    return q->GetCheckedIcon(tab);
}

void BrowserTabBarExPrivate::AdjustForDpi()
{
    Q_Q(BrowserTabBarEx);
    q->setFixedHeight(S(kBarHeight));
    // A button whose size does not change gets no resize event; its inner layout must
    // follow the new factor all the same. Its title font stays as it was made.
    for (BrowserTabButtonBase *button : qAsConst(buttons)) {
        BrowserTabButtonExPrivate *b = BrowserTabButtonExPrivate::get(static_cast<BrowserTabButtonEx *>(button));
        b->UpdateLayout();
        b->UpdateCloseButton();
    }
    ResizeButtons();
}

// ---------------------------------------------------------------------------
// Tab list

void BrowserTabBarEx::UpdateCustomIcon()
{
    Q_D(BrowserTabBarEx);
    for (int i = d->FixedCount(); i < d->buttons.size(); ++i) {
        if (d->buttons.at(i)->IsChecked())
            d->Button(i)->UpdateIcon();
    }
}

int BrowserTabBarEx::ButtonBarHeight() const
{
    return S(kBarHeight);
}

int BrowserTabBarEx::ButtonTop() const
{
    return S(kButtonTop);
}

// ---------------------------------------------------------------------------
// Layout

void BrowserTabBarExPrivate::ComputeButtonWidth(int available)
{
    Q_Q(BrowserTabBarEx);
    const int maxWidth = q->MaxButtonWidth();
    overflow = false;
    int n = buttons.size() - FixedCount();
    if (currentIndex >= FixedCount() && keepCurrentWide) {
        currentButtonWidth = maxWidth;
        --n;
        available -= maxWidth;
    }
    buttonWidth = maxWidth;
    // The remainder of the division goes to nobody: the strip ends up to n - 1 pixels short.
    if (n > 0)
        buttonWidth = qMin(available / n, maxWidth);
    if (buttonWidth < q->MinButtonWidth()) {
        buttonWidth = q->MinButtonWidth();
        overflow = true;
    }
    if (!keepCurrentWide)
        currentButtonWidth = buttonWidth;
}

void BrowserTabBarExPrivate::ResizeButtons()
{
    Q_Q(BrowserTabBarEx);
    KeepFramesAtTheEnd();
    // A full layout places the strip itself: the slide after a close has no more to do.
    if (slideAfterClose) {
        slideAfterClose = false;
        arrowTimer->stop();
    }
    if (buttons.isEmpty())
        return;

    const int fixedTotal = q->FixedTabTotalWidth();
    const int available = q->width() - S(kRightMargin) - fixedTotal;
    ComputeButtonWidth(available);
    LayOutFixedButtons(fixedTotal);

    const Range range = RangeToLayOut();
    int start = 0;
    if (range.from > FixedCount()) {
        const BrowserTabButtonBase *before = buttons.at(range.from - 1);
        start = TabGeometry::X(before) + before->width();
    }
    const int total = start + SizeScrollingButtons(range);
    if (total > available)
        overflow = true;
    // The strip is never narrower than the viewport (SetContentWidth() would widen it
    // again): set at its final width at once, since each resize repaints every tab.
    TabGeometry::SetFixedSize(contentStrip, QSize(qMax(total, ViewportWidth(fixedTotal)), q->height()));
    // Placed once the strip has its width: right to left, places count from its end.
    PlaceScrollingButtonsFrom(range, start);
    placed = {buttonWidth, currentButtonWidth, q->ButtonHeight(), q->ButtonTop(), currentIndex};
    placeFrom = buttons.size();
    placeTo = -1;

    SetContentWidth();
    ResetSeparator();
    UpdateButtonForms();
}

void BrowserTabBarExPrivate::LayOutFixedButtons(int fixedTotal)
{
    Q_Q(BrowserTabBarEx);
    const int fixedCount = FixedCount();
    // A bar without fixed tabs has nothing to divide the fixed width among.
    if (fixedCount == 0)
        return;
    const int fixedWidth = fixedTotal / fixedCount;
    const int height = q->ButtonHeight();
    const int top = q->ButtonTop();
    for (int i = 0; i < fixedCount && i < buttons.size(); ++i) {
        BrowserTabButtonBase *button = buttons.at(i);
        TabWorkCounter::CountGeometry(TabGeometry::SetFixedSize(button, QSize(fixedWidth, height)));
        TabWorkCounter::CountGeometry(TabGeometry::Move(button, QPoint(i * fixedWidth, top)));
    }
}

BrowserTabBarExPrivate::Range BrowserTabBarExPrivate::RangeToLayOut() const
{
    Q_Q(const BrowserTabBarEx);
    const int fixedCount = FixedCount();
    Range range;
    range.from = fixedCount;
    // The tabs before `from` have the widths and places this layout would give them:
    // the widths are those of the last layout, and nothing before `from` has moved.
    // With the widths unchanged, only new tabs and those whose width goes with being
    // current need sizing; the others at most move.
    const bool sameWidths = placed.buttonWidth == buttonWidth && placed.currentWidth == currentButtonWidth &&
                            placed.height == q->ButtonHeight() && placed.top == q->ButtonTop();
    range.incremental = sameWidths && IsOrdered();
    if (range.incremental) {
        range.from = qMax(range.from, placeFrom);
        range.until = placeTo;
        if (currentButtonWidth != buttonWidth && placed.current != currentIndex) {
            range.from = qMax(fixedCount, qMin(range.from, qMin(placed.current, currentIndex)));
            range.until = INT_MAX;
        }
    }
    range.from = qMin(range.from, int(buttons.size()));
    return range;
}

int BrowserTabBarExPrivate::SizeScrollingButtons(const Range &range)
{
    Q_Q(BrowserTabBarEx);
    const int height = q->ButtonHeight();
    const int count = buttons.size();
    const auto widthAt = [&](int i) { return i == currentIndex ? currentButtonWidth : buttonWidth; };
    const auto sizeAt = [&](int i) {
        TabWorkCounter::Add(TabWorkCounter::TabVisit);
        TabWorkCounter::CountGeometry(TabGeometry::SetFixedSize(buttons.at(i), QSize(widthAt(i), height)));
    };
    int total = 0;
    if (range.incremental) {
        for (BrowserTabButtonBase *button : qAsConst(unsized)) {
            const int i = button && IsListedButton(button) ? buttons.indexOf(button, range.from) : -1;
            if (i >= 0)
                sizeAt(i);
        }
        if (currentButtonWidth != buttonWidth) {
            for (int i : {placed.current, currentIndex}) {
                if (i >= range.from && i < count)
                    sizeAt(i);
            }
        }
        total = (count - range.from) * buttonWidth;
        if (currentIndex >= range.from && currentIndex < count)
            total += currentButtonWidth - buttonWidth;
    } else {
        for (int i = range.from; i < count; ++i) {
            sizeAt(i);
            total += widthAt(i);
        }
    }
    unsized.clear();
    return total;
}

void BrowserTabBarExPrivate::PlaceScrollingButtonsFrom(const Range &range, int x)
{
    Q_Q(BrowserTabBarEx);
    const int top = q->ButtonTop();
    const bool mirrored = TabGeometry::Mirrored(contentStrip);
    const int stripWidth = contentStrip->width();
    for (int i = range.from; i < buttons.size(); ++i) {
        TabWorkCounter::Add(TabWorkCounter::TabVisit);
        BrowserTabButtonBase *button = buttons.at(i);
        if (dragging && button == pressedButton) {
            x += button->width(); // floats where the pointer holds it
            continue;
        }
        bool moved = false;
        if (button->parentWidget() == contentStrip)
            moved = TabGeometry::MoveIn(button, mirrored, stripWidth, QPoint(x, top));
        else
            moved = TabGeometry::Move(button, QPoint(x, top)); // a fixed tab the host moved along
        TabWorkCounter::CountGeometry(moved);
        if (!moved && i > range.until)
            break;
        x += button->width();
    }
}

void BrowserTabBarExPrivate::ListChanged(int from, int to)
{
    placeFrom = qMin(placeFrom, from);
    placeTo = qMax(placeTo, to);
}

void BrowserTabBarExPrivate::ForgetLayout()
{
    placed = Placed();
    placeFrom = 0;
    placeTo = INT_MAX;
}

bool BrowserTabBarExPrivate::IsOrdered() const
{
    if (dragging)
        return false;
    const int fixed = qMin(FixedCount(), buttons.size());
    for (int i = 0; i < fixed; ++i) {
        if (buttons.at(i)->parentWidget() != fixedArea)
            return false;
    }
    // No tab further on lies in the fixed area (a host may insert before the fixed tabs).
    int inFixedArea = 0;
    for (const QObject *child : fixedArea->children()) {
        if (IsListedButton(child))
            ++inFixedArea;
    }
    return inFixedArea == fixed;
}

void BrowserTabBarExPrivate::ResetButtons()
{
    if (!buttons.isEmpty())
        PlaceScrollingButtons();
    SetContentWidth();
    ResetSeparator();
    UpdateButtonForms();
}

// The scrolling tabs side by side from the strip's start, each at its present width.
// A tab under a drag floats in the viewport where the pointer holds it; its slot stays
// empty as a gap.
void BrowserTabBarExPrivate::PlaceScrollingButtons()
{
    // The widths may not be the ones ResizeButtons() gives (closing mode, a drag).
    placeFrom = 0;
    placeTo = INT_MAX;
    PlaceScrollingButtonsFrom(Range{FixedCount()}, 0);
}

// ---------------------------------------------------------------------------
// Closing mode: after a close button the tabs keep their widths under the pointer
// until it leaves the bar.

void BrowserTabBarExPrivate::ResetDelayButtons()
{
    if (!buttons.isEmpty())
        PlaceScrollingButtons();
    // The strip may have become shorter than the scrolled view: the arrows say so.
    if (overflow)
        UpdateArrowState();
    ResetSeparator();
    UpdateButtonForms();
}

// The rightmost tab went: nothing can slide into its place, so the strip itself moves
// right by one tab, bringing the new last tab's close button under the pointer.
void BrowserTabBarExPrivate::ResizeLastButtons()
{
    if (buttons.isEmpty())
        return;
    if (scrollOffset + buttonWidth > 0) {
        // Less than a tab is scrolled off: snap to the start and fit the tabs into what
        // is left of the strip, which may end the overflow.
        TabGeometry::Move(contentStrip, QPoint(0, 0));
        TabGeometry::SetFixedWidth(contentStrip, contentStrip->width() + scrollOffset);
        scrollOffset = 0;
        ResizeDelayArea();
        return;
    }
    TabGeometry::SetFixedWidth(contentStrip, contentStrip->width() - buttonWidth);
    // Nothing moves when the rightmost tab went. But while closing mode lasts the host
    // may remove any tab: the others close up all the same.
    ResetDelayButtons();
    animationStart = scrollOffset;
    animationTarget = scrollOffset + buttonWidth;
    // Four ticks of 20 ms: quick enough to be under the pointer before the next click.
    animationStep = buttonWidth / 4;
    slideAfterClose = true;
    arrowTimer->start();
}

void BrowserTabBarExPrivate::ResizeDelayArea()
{
    Q_Q(BrowserTabBarEx);
    if (buttons.isEmpty())
        return;
    if (overflow) {
        // Without arrows the tabs would also have the arrow part of the left frame.
        ComputeButtonWidth(contentStrip->width() + ArrowPartWidth());
        if (!overflow) {
            const int fixedTotal = q->FixedTabTotalWidth();
            framesWidth = q->width();
            TabGeometry::SetFixedSize(viewport, QSize(q->width() - S(kRightMargin) - fixedTotal, q->height()));
            TabGeometry::Move(viewport, QPoint(fixedTotal, 0));
            TabGeometry::SetFixedWidth(contentStrip, contentStrip->width() + ArrowPartWidth());
            TabGeometry::Move(contentStrip, QPoint(0, 0));
            leftArrowFrame->hide();
            rightArrowFrame->hide();
            scrollOffset = 0;
            ResizeDelayButtons();
            return;
        }
    }
    ComputeButtonWidth(contentStrip->width());
    ResizeDelayButtons();
}

// Widths for the present strip, which keeps its width: the pixels that the division
// leaves over go one each to the tabs from the left.
void BrowserTabBarExPrivate::ResizeDelayButtons()
{
    Q_Q(BrowserTabBarEx);
    if (buttons.isEmpty())
        return;
    const int fixedCount = FixedCount();
    const int count = buttons.size();
    const int stripWidth = contentStrip->width();
    extraPixels = 0;
    if (buttonWidth != q->MaxButtonWidth()) {
        const int n = count - fixedCount;
        if (currentIndex < fixedCount)
            extraPixels = qMax(stripWidth - n * buttonWidth, 0);
        else
            extraPixels = qMax(stripWidth - (n - 1) * buttonWidth - currentButtonWidth, 0);
    }
    const int height = q->ButtonHeight();
    // Widths of their own: the next ResizeButtons() sizes every tab again.
    ForgetLayout();
    int seen = 0;
    for (int i = fixedCount; i < count; ++i) {
        BrowserTabButtonBase *button = buttons.at(i);
        if (i == currentIndex) {
            seen = 1;
            TabWorkCounter::CountGeometry(TabGeometry::SetFixedSize(button, QSize(currentButtonWidth, height)));
            continue;
        }
        // Compared by list index, fixed tabs included: with fixed tabs one pixel fewer
        // than extraPixels is handed out. Kept so, the look users know.
        const int extra = (i - seen) < extraPixels ? 1 : 0;
        TabWorkCounter::CountGeometry(TabGeometry::SetFixedSize(button, QSize(buttonWidth + extra, height)));
    }
    ResetDelayButtons();
}

// A strip of thousands of tabs shows a dozen: only buttons in or near the viewport hold
// their inner widgets and are shown (a hidden widget costs Qt nothing to move or to
// paint around). A button gets them once it is within one minimum tab width of the
// visible part and gives them up once it is a whole viewport away, so that scrolling to
// and fro near the edge does not make and destroy them again and again.
void BrowserTabBarExPrivate::UpdateButtonForms()
{
    Q_Q(BrowserTabBarEx);
    const int visibleLeft = -scrollOffset;
    const int visibleRight = visibleLeft + viewport->width();
    const int createMargin = q->MinButtonWidth();
    const int fixedCount = qMin(FixedCount(), buttons.size());

    if (!IsOrdered()) {
        // A drag, or tabs inserted before the fixed ones: every tab is looked at.
        awake.clear();
        for (BrowserTabButtonBase *button : qAsConst(buttons)) {
            const int left = TabGeometry::X(button);
            UpdateButtonForm(button, left, left + button->width());
        }
        return;
    }

    for (int i = 0; i < fixedCount; ++i)
        BrowserTabButtonExPrivate::get(static_cast<BrowserTabButtonEx *>(buttons.at(i)))->CreateForm();
    // Those awake so far that are now far away, or no longer tabs of this strip.
    const QVector<QPointer<BrowserTabButtonBase>> before = std::exchange(awake, {});
    for (BrowserTabButtonBase *button : before) {
        if (!button || !IsListedButton(button) || button->parentWidget() != contentStrip)
            continue;
        const int left = TabGeometry::X(button);
        UpdateButtonForm(button, left, left + button->width());
    }
    // The scrolling tabs lie side by side in list order: the first one that reaches
    // into the margin before the view is found by bisection, and the rest follow it
    // up to the margin after the view.
    const auto endOf = [this](int i) { return TabGeometry::X(buttons.at(i)) + buttons.at(i)->width(); };
    int low = fixedCount;
    int high = buttons.size();
    while (low < high) {
        const int mid = low + (high - low) / 2;
        if (endOf(mid) > visibleLeft - createMargin)
            high = mid;
        else
            low = mid + 1;
    }
    for (int i = low; i < buttons.size(); ++i) {
        BrowserTabButtonBase *button = buttons.at(i);
        const int left = TabGeometry::X(button);
        if (left >= visibleRight + createMargin)
            break;
        UpdateButtonForm(button, left, left + button->width());
    }
}

void BrowserTabBarExPrivate::UpdateButtonForm(BrowserTabButtonBase *button, int left, int right)
{
    Q_Q(BrowserTabBarEx);
    TabWorkCounter::Add(TabWorkCounter::TabVisit);
    BrowserTabButtonExPrivate *b = BrowserTabButtonExPrivate::get(static_cast<BrowserTabButtonEx *>(button));
    // Fixed tabs and a dragged one always keep theirs.
    if (button->parentWidget() != contentStrip || button->IsPressed()) {
        b->CreateForm();
        return;
    }
    const int visibleLeft = -scrollOffset;
    const int visibleRight = visibleLeft + viewport->width();
    const int createMargin = q->MinButtonWidth();
    const int releaseMargin = qMax(viewport->width(), createMargin);
    if (right > visibleLeft - createMargin && left < visibleRight + createMargin)
        b->CreateForm();
    else if (right <= visibleLeft - releaseMargin || left >= visibleRight + releaseMargin)
        b->ReleaseForm();
    if (b->form && !awake.contains(button))
        awake.append(button);
}

int BrowserTabBarExPrivate::ViewportWidth(int fixedTotal) const
{
    Q_Q(const BrowserTabBarEx);
    if (!overflow)
        return q->width() - S(kRightMargin) - fixedTotal;
    // Room for an arrow on either side, the left one's shadow falling on the tabs.
    return q->width() - 2 * ArrowPartWidth() - S(kShadowWidth) - fixedTotal;
}

void BrowserTabBarExPrivate::SetContentWidth()
{
    Q_Q(BrowserTabBarEx);
    const int h = q->height();
    const int w = q->width();
    const int fixedTotal = q->FixedTabTotalWidth();
    framesWidth = w;

    TabGeometry::SetFixedSize(fixedArea, QSize(fixedTotal, h));
    TabGeometry::Move(fixedArea, QPoint(0, 0));

    if (!overflow) {
        TabGeometry::SetFixedSize(viewport, QSize(ViewportWidth(fixedTotal), h));
        TabGeometry::Move(viewport, QPoint(fixedTotal, 0));
        if (contentStrip->width() < viewport->width())
            TabGeometry::SetFixedWidth(contentStrip, viewport->width());
        TabGeometry::Move(contentStrip, QPoint(0, 0));
        leftArrowFrame->hide();
        rightArrowFrame->hide();
        scrollOffset = 0;
        return;
    }

    const int arrowPart = ArrowPartWidth();
    const int shadow = S(kShadowWidth);
    const int frameWidth = arrowPart + shadow;
    // Too narrow for both arrows side by side: rather than lay them on one another,
    // the strip keeps its layout and shows no arrows until the bar widens again.
    const bool arrowsFit = w - fixedTotal >= 2 * arrowPart + shadow;
    // The viewport ends exactly where the right arrow frame begins; the left arrow
    // frame reaches a shadow's width into it, so that its shadow falls on the tabs.
    TabGeometry::SetFixedSize(viewport, QSize(ViewportWidth(fixedTotal), h));
    TabGeometry::Move(viewport, QPoint(arrowPart + fixedTotal, 0));
    if (contentStrip->width() < viewport->width())
        TabGeometry::SetFixedWidth(contentStrip, viewport->width());

    TabGeometry::SetFixedSize(leftArrowFrame, QSize(frameWidth, h));
    TabGeometry::Move(leftArrowFrame, QPoint(fixedTotal, 0));
    leftArrowFrame->setVisible(arrowsFit);
    TabGeometry::SetFixedSize(rightArrowFrame, QSize(frameWidth, h));
    TabGeometry::Move(rightArrowFrame, QPoint(w - frameWidth, 0));
    rightArrowFrame->setVisible(arrowsFit);

    const QSize arrowSize(S(kArrowSize), S(kArrowSize));
    TabGeometry::SetFixedSize(leftArrow, arrowSize);
    TabGeometry::Move(leftArrow, QPoint(S(kArrowInset), S(kArrowInset)));
    TabGeometry::SetFixedSize(leftShadow, QSize(shadow, h));
    TabGeometry::Move(leftShadow, QPoint(arrowPart, 0));
    TabGeometry::SetFixedSize(rightArrow, arrowSize);
    TabGeometry::Move(rightArrow, QPoint(shadow + S(kArrowInset), S(kArrowInset)));
    TabGeometry::SetFixedSize(rightShadow, QSize(shadow, h));
    TabGeometry::Move(rightShadow, QPoint(0, 0));

    CheckAreaOffset();
}

// Only the current tab, the one before it and, in overflow, the last fixed tab hide
// their separators: the others are told to show theirs only when they hid them.
void BrowserTabBarExPrivate::ResetSeparator()
{
    const int count = buttons.size();
    const int current = currentIndex;
    const int fixedCount = FixedCount();
    // In overflow the last fixed tab borders the left arrow, not a tab.
    const int lastFixed = (overflow && fixedCount > 0 && count >= fixedCount) ? fixedCount - 1 : -1;
    BrowserTabButtonEx *const hide[] = {Button(current), current > 0 ? Button(current - 1) : nullptr,
                                        Button(lastFixed)};
    const QVector<QPointer<BrowserTabButtonEx>> hidden = std::exchange(separatorsHidden, {});
    for (BrowserTabButtonEx *button : hidden) {
        if (button && IsListedButton(button) && std::find(std::begin(hide), std::end(hide), button) == std::end(hide))
            SetSeparator(button, true);
    }
    for (BrowserTabButtonEx *button : hide) {
        if (button)
            SetSeparator(button, false);
    }
}

void BrowserTabBarExPrivate::SetPressedSeparator()
{
    for (int i = FixedCount(); i < buttons.size(); ++i) {
        BrowserTabButtonEx *button = Button(i);
        if (!button->IsPressed()) {
            SetSeparator(button, true);
            continue;
        }
        SetSeparator(button, false);
        if (i >= 1)
            SetSeparator(Button(i - 1), false);
    }
}

void BrowserTabBarExPrivate::SetSeparator(BrowserTabButtonEx *button, bool visible)
{
    TabWorkCounter::Add(TabWorkCounter::TabVisit);
    button->SetSeparatorVisible(visible);
}

void BrowserTabBarExPrivate::SeparatorHidden(BrowserTabButtonEx *button)
{
    if (!separatorsHidden.contains(button))
        separatorsHidden.append(button);
}

// ---------------------------------------------------------------------------
// Dragging

bool BrowserTabBarExPrivate::BeginPress(BrowserTabButtonBase *button, const QPoint &globalPos)
{
    // Only scrolling tabs move. A fixed tab lies in the fixed area's coordinates (so
    // does a tab made while the fixed area was not yet full): it would float off into
    // the viewport and land in the strip.
    const int index = buttons.indexOf(button);
    if (index < FixedCount() || button->parentWidget() != contentStrip)
        return false;
    pressOffset = QPoint(TabGeometry::X(button) - LogicalX(globalPos) + scrollOffset, button->y());
    return true;
}

void BrowserTabBarExPrivate::DragTo(const QPoint &globalPos)
{
    BrowserTabButtonBase *button = pressedButton;
    if (!dragging) {
        dragging = true;
        // Above the strip and clipped by the viewport, the tab floats over the others
        // while they close up around its slot.
        button->setParent(viewport);
        button->show();
        button->raise();
    }
    if (!button->IsPressed())
        button->SetPressed();

    const int viewportWidth = viewport->width();
    const int maxX = viewportWidth - button->width();
    const int x = qMax(0, qMin(LogicalX(globalPos) + pressOffset.x(), maxX));
    const QPoint pos(x, pressOffset.y());
    if (pos != TabGeometry::Pos(button)) {
        TabGeometry::Move(button, pos);
        SortButtons();
    }

    if (!overflow)
        return;
    // Held against an edge, the strip scrolls under the tab; each tick sorts again.
    if (x == 0) {
        if (!arrowTimer->isActive()) {
            animationTarget = 0;
            animationStep = ScrollStep() / 5;
            StartArrowTimer();
        }
    } else if (x == maxX) {
        if (!arrowTimer->isActive() && CanScrollTowardsEnd()) {
            animationTarget = viewportWidth - contentStrip->width();
            animationStep = ScrollStep() / 5;
            StartArrowTimer();
        }
    } else {
        arrowTimer->stop();
    }
}

void BrowserTabBarExPrivate::EndPress(BrowserTabButtonBase *button)
{
    arrowTimer->stop();
    dragging = false;
    // A press without motion never left the strip.
    if (button->parentWidget() != contentStrip)
        button->setParent(contentStrip);
    button->show();
    ResetButtons();
    button->SetReleased();
    // Dropped while the strip scrolled under it, the tab may lie half under an arrow.
    BringIntoView(buttons.indexOf(button));
}

void BrowserTabBarExPrivate::ShowTab(int index)
{
    Q_Q(BrowserTabBarEx);
    q->showIndex(index);
}

QList<QWidget *> BrowserTabBarExPrivate::AccessibleControls() const
{
    return {leftArrow, rightArrow};
}

void BrowserTabBarExPrivate::DragAbandoned()
{
    if (dragging)
        arrowTimer->stop(); // the edge scroll of the drag
}

void BrowserTabBarExPrivate::SortButtons()
{
    const int fixedCount = FixedCount();
    int dragged = -1;
    for (int i = buttons.size() - 1; i >= fixedCount; --i) {
        if (buttons.at(i)->IsPressed()) {
            dragged = i;
            break;
        }
    }
    if (dragged < 0)
        return;
    BrowserTabButtonBase *button = buttons.at(dragged);
    // Edges in the strip's coordinates: the button floats in the viewport.
    const int left = TabGeometry::X(button) - scrollOffset;
    const int right = left + button->width();
    const auto span = [this](int j) {
        const BrowserTabButtonBase *other = buttons.at(j);
        return qMakePair(TabGeometry::X(other), other->width());
    };
    const int target = TabDragOrder::Target(buttons.size(), dragged, qMax(0, firstIndex), left, right,
                                            contentStrip->width(), span);
    if (target < 0)
        return;
    // The press made the dragged tab current, so the index follows it; should the host
    // have chosen another tab meanwhile, the index follows that one. No currentChanged:
    // the current tab stays the same tab.
    MoveEntry(dragged, target);
    ResetSortButtons();
}

// The other tabs close up around the gap of the dragged one.
void BrowserTabBarExPrivate::ResetSortButtons()
{
    PlaceScrollingButtons();
    SetPressedSeparator();
    if (overflow)
        CheckAreaOffset();
    UpdateButtonForms();
}

// ---------------------------------------------------------------------------
// Scrolling

int BrowserTabBarExPrivate::MinOffset() const
{
    return viewport->width() - contentStrip->width();
}

int BrowserTabBarExPrivate::ScrollStep() const
{
    return q_func()->MinButtonWidth();
}

// While closing mode keeps the widths, the strip can be shorter than the scrolled
// view: the offset then lies beyond the end. An arrow is live only where the strip can
// still move in its direction, so neither arrow ever scrolls the wrong way.
bool BrowserTabBarExPrivate::CanScrollTowardsStart() const
{
    return scrollOffset < 0;
}

bool BrowserTabBarExPrivate::CanScrollTowardsEnd() const
{
    return scrollOffset > MinOffset();
}

void BrowserTabBarExPrivate::UpdateArrowState()
{
    const bool towardsStart = CanScrollTowardsStart();
    const bool towardsEnd = CanScrollTowardsEnd();
    leftArrow->setEnabled(towardsStart);
    leftShadow->setVisible(towardsStart);
    rightArrow->setEnabled(towardsEnd);
    rightShadow->setVisible(towardsEnd);
}

void BrowserTabBarExPrivate::CheckAreaOffset()
{
    scrollOffset = qMin(qMax(scrollOffset, MinOffset()), 0);
    TabGeometry::Move(contentStrip, QPoint(scrollOffset, 0));
    UpdateArrowState();
}

void BrowserTabBarExPrivate::StartArrowTimer()
{
    animationTarget = qMin(qMax(animationTarget, MinOffset()), 0);
    if (animationTarget == scrollOffset)
        return;
    animationStart = scrollOffset;
    slideAfterClose = false;
    arrowTimer->start();
}

void BrowserTabBarExPrivate::ScrollByArrow(Towards end, ArrowUse use)
{
    if (end == Towards::Start ? !CanScrollTowardsStart() : !CanScrollTowardsEnd())
        return;
    const int step = ScrollStep();
    switch (use) {
    case ArrowUse::Click:
        if (arrowTimer->isActive())
            return;
        // Offsets grow as the strip shows more of what lies towards its start.
        animationTarget = scrollOffset + (end == Towards::Start ? step : -step);
        animationStep = step / 10;
        break;
    case ArrowUse::DoubleClick:
    case ArrowUse::Press:
        arrowTimer->stop();
        animationTarget = end == Towards::Start ? 0 : MinOffset();
        animationStep = step / (use == ArrowUse::DoubleClick ? 2 : 5);
        break;
    }
    StartArrowTimer();
}

void BrowserTabBarEx::SlotArrowTimeout()
{
    Q_D(BrowserTabBarEx);
    // The strip may have changed since the scroll began (tabs removed, the bar
    // widened): never run past what is now the end. Except for the slide after closing
    // the rightmost tab, which covers exactly one width even when earlier closes left
    // the strip short of the view. A step below 1 would never arrive.
    if (!d->slideAfterClose)
        d->animationTarget = qMin(qMax(d->animationTarget, d->MinOffset()), 0);
    const int step = qMax(1, d->animationStep);
    bool done;
    if (d->animationStart <= d->animationTarget) {
        d->scrollOffset += step;
        done = d->scrollOffset >= d->animationTarget;
    } else {
        d->scrollOffset -= step;
        done = d->scrollOffset <= d->animationTarget;
    }
    if (done) {
        d->scrollOffset = d->animationTarget;
        d->arrowTimer->stop();
    }
    TabGeometry::Move(d->contentStrip, QPoint(d->scrollOffset, 0));
    d->UpdateArrowState();
    d->UpdateButtonForms();
    if (d->pressedButton)
        d->SortButtons();
}

void BrowserTabBarEx::SlotLeftArrowClicked()
{
    Q_D(BrowserTabBarEx);
    d->ScrollByArrow(BrowserTabBarExPrivate::Towards::Start, BrowserTabBarExPrivate::ArrowUse::Click);
}

void BrowserTabBarEx::SlotRightArrowClicked()
{
    Q_D(BrowserTabBarEx);
    d->ScrollByArrow(BrowserTabBarExPrivate::Towards::End, BrowserTabBarExPrivate::ArrowUse::Click);
}

void BrowserTabBarEx::SlotLeftArrowDoubleClicked()
{
    Q_D(BrowserTabBarEx);
    d->ScrollByArrow(BrowserTabBarExPrivate::Towards::Start, BrowserTabBarExPrivate::ArrowUse::DoubleClick);
}

void BrowserTabBarEx::SlotRightArrowDoubleClicked()
{
    Q_D(BrowserTabBarEx);
    d->ScrollByArrow(BrowserTabBarExPrivate::Towards::End, BrowserTabBarExPrivate::ArrowUse::DoubleClick);
}

void BrowserTabBarEx::SlotLeftArrowPressed()
{
    Q_D(BrowserTabBarEx);
    d->ScrollByArrow(BrowserTabBarExPrivate::Towards::Start, BrowserTabBarExPrivate::ArrowUse::Press);
}

void BrowserTabBarEx::SlotRightArrowPressed()
{
    Q_D(BrowserTabBarEx);
    d->ScrollByArrow(BrowserTabBarExPrivate::Towards::End, BrowserTabBarExPrivate::ArrowUse::Press);
}

void BrowserTabBarEx::SlotLeftArrowReleased()
{
    Q_D(BrowserTabBarEx);
    d->arrowTimer->stop();
}

void BrowserTabBarEx::SlotRightArrowReleased()
{
    Q_D(BrowserTabBarEx);
    d->arrowTimer->stop();
}

void BrowserTabBarEx::wheelEvent(QWheelEvent *event)
{
    Q_D(BrowserTabBarEx);
    if (!d->overflow) {
        // Left to the parent. Said outright: Qt 6 delivers a wheel event sent by the
        // program still accepted, where Qt 5 cleared it before delivery.
        event->ignore();
        return;
    }
    // The dominant axis, as the classic single delta had it: a horizontal swipe on a
    // touchpad scrolls the strip as well as a wheel does.
    const QPoint angle = event->angleDelta();
    const bool sideways = qAbs(angle.x()) > qAbs(angle.y());
    int delta = sideways ? angle.x() : angle.y();
    // A swipe to the left heads for the start only where the strip starts on the left.
    if (sideways && isRightToLeft())
        delta = -delta;
    if (delta > 0)
        SlotLeftArrowClicked();
    else
        SlotRightArrowClicked();
    // Consumed: a scrolling parent must not scroll as well.
    event->accept();
}

void BrowserTabBarEx::showIndex(int index)
{
    Q_D(BrowserTabBarEx);
    const int fixedCount = d->FixedCount();
    if (index < fixedCount || index >= d->buttons.size())
        return;
    const int step = d->ScrollStep();
    const int k = index - fixedCount;
    const int x = d->scrollOffset + k * step;
    const int viewportWidth = d->viewport->width();
    // Every scrolling tab counts as MinButtonWidth() wide here, whatever its real width.
    if (x >= 0 && x + step <= viewportWidth)
        return;
    d->arrowTimer->stop();
    if (x >= 0)
        d->animationTarget = viewportWidth - k * step - step; // flush with the right edge
    else
        d->animationTarget = -k * step; // flush with the left edge
    d->animationStep = step / 2;
    d->StartArrowTimer();
}

// ---------------------------------------------------------------------------
// Slots answering the buttons

void BrowserTabBarEx::SlotHoverChanged(TabDataPtr tab, bool hovered)
{
    Q_D(BrowserTabBarEx);
    if (!tab)
        return;
    const int i = GetIndexByTabData(tab);
    if (i >= 0) {
        BrowserTabButtonEx *button = d->Button(i);
        if (i + 1 < d->buttons.size() && d->buttons.at(i + 1)->IsChecked())
            d->SetSeparator(button, false);
        else
            d->SetSeparator(button, !hovered);
        if (i > 0)
            d->SetSeparator(d->Button(i - 1), !hovered);
    }
    const int fixedCount = d->FixedCount();
    if (d->overflow && fixedCount > 0 && d->buttons.size() >= fixedCount)
        d->SetSeparator(d->Button(fixedCount - 1), false);
}

void BrowserTabBarEx::SlotIconClicked(TabDataPtr tab)
{
    if (!tab)
        return;
    auto *button = qobject_cast<BrowserTabButtonEx *>(sender());
    if (!button)
        return;
    TabIconClicked(tab, button->GetIconGlobalPos());
}

void BrowserTabBarEx::SlotDelayTimeout()
{
    Q_D(BrowserTabBarEx);
    d->EndClosingMode();
}

// ---------------------------------------------------------------------------
// The menu

void BrowserTabBarExPrivate::BuildMenu(KelMenu *menu)
{
    Q_Q(BrowserTabBarEx);
    const auto makeAction = [this, q](const char *source, void (BrowserTabBarEx::*slot)()) {
        QAction *action = NewTranslatedAction("BrowserTabBarEx", source);
        QObject::connect(action, &QAction::triggered, q, slot);
        return action;
    };
    refreshAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Refresh tab"), &BrowserTabBarEx::SlotRefreshTab);
    addFavAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Add Fav"), &BrowserTabBarEx::SlotAddFav);
    copyLinkAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Copy link"), &BrowserTabBarEx::SlotCopyLink);
    openInBrowserAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Open in Browser"), &BrowserTabBarEx::SlotOpenInBrowser);
    closeCurAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Close tab"), &BrowserTabBarEx::SlotCloseCurTab);
    closeOtherAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Close other tabs"), &BrowserTabBarEx::SlotCloseOtherTab);
    closeRightAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Close right tabs"), &BrowserTabBarEx::SlotCloseRightTab);
    closeLeftAction = makeAction(QT_TRANSLATE_NOOP("BrowserTabBarEx", "Close left tabs"), &BrowserTabBarEx::SlotCloseLeftTab);

    menu->addAction(refreshAction);
    menu->addAction(addFavAction);
    menu->addAction(copyLinkAction);
    menu->addAction(openInBrowserAction);
    upperSeparator = menu->addSeparator();
    menu->addAction(closeCurAction);
    menu->addAction(closeOtherAction);
    menu->addAction(closeRightAction);
    menu->addAction(closeLeftAction);
}

void BrowserTabBarExPrivate::PrepareMenu(const TabDataPtr &tab)
{
    CheckMenuVisible(tab);
    CheckMenuEnable();
}

void BrowserTabBarExPrivate::CheckMenuVisible(const TabDataPtr &tab)
{
    if (!menu || !tab)
        return;
    bool refresh = false;
    bool addFav = false;
    bool links = false;
    if (tab->IsWeb() || tab->IsWebPopup()) {
        refresh = addFav = links = true;
    } else if (tab->IsPlugin()) {
        refresh = addFav = true;
    } else if (tab->IsHomePage()) {
        refresh = true;
    }
    refreshAction->setVisible(refresh);
    addFavAction->setVisible(addFav);
    copyLinkAction->setVisible(links);
    openInBrowserAction->setVisible(links);
    // Without an entry above it the separator would open the menu.
    upperSeparator->setVisible(refresh);
}

void BrowserTabBarExPrivate::CheckMenuEnable()
{
    Q_Q(BrowserTabBarEx);
    if (!menu)
        return;
    closeCurAction->setEnabled(q->CheckCloseCurItem(menuIndex));
    closeRightAction->setEnabled(q->CheckCloseRightItem(menuIndex));
    closeOtherAction->setEnabled(q->CheckCloseOtherItem(menuIndex));
    closeLeftAction->setEnabled(q->CheckCloseLeftItem(menuIndex));
    // The recovery entry, when the bar has one, is the menu's last.
    if (q->IsShowRecoveryItem() && !menu->actions().isEmpty())
        menu->actions().constLast()->setEnabled(q->CheckRecoveryItem());
}

void BrowserTabBarEx::SlotRefreshTab()
{
    Q_D(BrowserTabBarEx);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigRefreshTab(index);
}

void BrowserTabBarEx::SlotAddFav()
{
    Q_D(BrowserTabBarEx);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigAddFav(index, d->Button(index)->GetIconGlobalPos());
}

void BrowserTabBarEx::SlotCopyLink()
{
    Q_D(BrowserTabBarEx);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigCopyLink(index);
}

void BrowserTabBarEx::SlotOpenInBrowser()
{
    Q_D(BrowserTabBarEx);
    const int index = d->MenuTabIndex();
    if (index >= 0)
        Q_EMIT SigOpenInBrowser(index);
}

// ---------------------------------------------------------------------------
// Policy defaults

QString BrowserTabBarEx::GetPluginIconUrl(const QString &pluginCode) const
{
    Q_UNUSED(pluginCode)
    return QString();
}

CloseActiveTypeEx BrowserTabBarEx::GetCloseType() const
{
    return CloseActiveRightEx;
}

QString BrowserTabBarEx::GetHoverIcon(QSharedPointer<TabData> tab)
{
    Q_UNUSED(tab)
    return QString();
}

QString BrowserTabBarEx::GetCheckedIcon(QSharedPointer<TabData> tab)
{
    Q_UNUSED(tab)
    return QString();
}

QString BrowserTabBarEx::GetPressedIcon(QSharedPointer<TabData> tab)
{
    Q_UNUSED(tab)
    return QString();
}

void BrowserTabBarEx::TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos)
{
    Q_UNUSED(tab)
    Q_UNUSED(globalPos)
}
