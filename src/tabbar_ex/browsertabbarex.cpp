#include "browsertabbarex.h"

#include "browsertabarrowex.h"
#include "browsertabbarex_p.h"
#include "browsertabbuttonex.h"
#include "browsertabmoveproxyex.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "tabbarexgeometry_p.h"
#include "tabdragorder_p.h"
#include "tablookup_p.h"

#include <QAction>
#include <QCursor>
#include <QFrame>
#include <QWheelEvent>

namespace {

// Design sizes in 96-dpi pixels; each is scaled on its own before any sum.
constexpr int kBarHeight = 40;
constexpr int kButtonHeight = 32;
constexpr int kButtonTop = 4;
constexpr int kMaxButtonWidth = 224;
constexpr int kMinButtonWidth = 96;
constexpr int kNoCloseButtonWidth = 112;
constexpr int kHomepageButtonWidth = 84;
constexpr int kRightMargin = 10;
constexpr int kArrowSize = 20;
constexpr int kArrowInset = 10;
constexpr int kShadowWidth = 12;

constexpr int kArrowIntervalMs = 20;
constexpr int kDelayIntervalMs = 200;

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

BrowserTabBarExPrivate::BrowserTabBarExPrivate(BrowserTabBarEx *owner)
    : q(owner)
{
    arrowTimer.setInterval(kArrowIntervalMs);
    arrowTimer.setSingleShot(false);
    delayTimer.setInterval(kDelayIntervalMs);
    delayTimer.setSingleShot(true);
}

BrowserTabBarExPrivate::~BrowserTabBarExPrivate() = default;

BrowserTabBarEx::BrowserTabBarEx(QWidget *parent)
    : QFrame(parent)
    , IDpiAdapter()
    , d(new BrowserTabBarExPrivate(this))
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("BrowserTabBarEx"));
    InitContent();
    setFixedHeight(S(kBarHeight));
    ResizeButtons();
    InitMoveProxy();
}

BrowserTabBarEx::~BrowserTabBarEx()
{
    d->arrowTimer.stop();
    d->delayTimer.stop();
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
    // after this destructor: by then this object is no longer a BrowserTabBarEx and
    // must not be asked for icons or policy, nor hear their signals.
    const QList<BrowserTabButtonEx *> buttons = findChildren<BrowserTabButtonEx *>();
    for (BrowserTabButtonEx *button : buttons) {
        disconnect(button, nullptr, this, nullptr);
        button->DetachFromBar();
    }
}

void BrowserTabBarEx::InitContent()
{
    d->leftArrowFrame = MakeFrame(this, QStringLiteral("TabBarLeftArrowFrameEx"));
    d->leftArrowFrame->lower();
    d->leftArrowFrame->hide();
    d->rightArrowFrame = MakeFrame(this, QStringLiteral("TabBarRightArrowFrameEx"));
    d->rightArrowFrame->lower();
    d->rightArrowFrame->hide();
    d->fixedArea = MakeFrame(this, QStringLiteral("TabBarFixedAreaEx"));
    d->fixedArea->raise();
    d->fixedArea->show();
    d->viewport = MakeFrame(this, QStringLiteral("TabBarViewportEx"));
    d->viewport->raise();
    d->viewport->show();
    d->contentStrip = MakeFrame(d->viewport, QStringLiteral("TabBarContentEx"));
    InitArrowFrame();
    SetContentWidth();
}

void BrowserTabBarEx::InitArrowFrame()
{
    d->leftArrow = new BrowserTabArrowEx(d->leftArrowFrame);
    d->leftArrow->setObjectName(QStringLiteral("TabButtonLeftArrowEx"));
    d->rightArrow = new BrowserTabArrowEx(d->rightArrowFrame);
    d->rightArrow->setObjectName(QStringLiteral("TabButtonRightArrowEx"));

    connect(d->leftArrow, &QPushButton::clicked, this, &BrowserTabBarEx::SlotLeftArrowClicked);
    connect(d->leftArrow, &BrowserTabArrowEx::SigDoubleClicked, this, &BrowserTabBarEx::SlotLeftArrowDoubleClicked);
    connect(d->leftArrow, &BrowserTabArrowEx::SigPressed, this, &BrowserTabBarEx::SlotLeftArrowPressed);
    connect(d->leftArrow, &BrowserTabArrowEx::SigReleased, this, &BrowserTabBarEx::SlotLeftArrowReleased);
    connect(d->rightArrow, &QPushButton::clicked, this, &BrowserTabBarEx::SlotRightArrowClicked);
    connect(d->rightArrow, &BrowserTabArrowEx::SigDoubleClicked, this, &BrowserTabBarEx::SlotRightArrowDoubleClicked);
    connect(d->rightArrow, &BrowserTabArrowEx::SigPressed, this, &BrowserTabBarEx::SlotRightArrowPressed);
    connect(d->rightArrow, &BrowserTabArrowEx::SigReleased, this, &BrowserTabBarEx::SlotRightArrowReleased);

    d->leftShadow = MakeFrame(d->leftArrowFrame, QStringLiteral("TabButtonLeftShadowEx"));
    d->rightShadow = MakeFrame(d->rightArrowFrame, QStringLiteral("TabButtonRightShadowEx"));
    // Shadows only draw; a click on one is a click on the strip behind it.
    d->leftShadow->setAttribute(Qt::WA_TransparentForMouseEvents);
    d->rightShadow->setAttribute(Qt::WA_TransparentForMouseEvents);

    connect(&d->arrowTimer, &QTimer::timeout, this, &BrowserTabBarEx::SlotArrowTimeout);
    connect(&d->delayTimer, &QTimer::timeout, this, &BrowserTabBarEx::SlotDelayTimeout);
}

void BrowserTabBarEx::InitMoveProxy()
{
    d->moveProxy.reset(new BrowserTabMoveProxyEx(nullptr));
    connect(d->moveProxy.get(), &BrowserTabMoveProxyEx::SigButtonMove, this, &BrowserTabBarEx::SlotButtonMove);
    connect(d->moveProxy.get(), &BrowserTabMoveProxyEx::SigButtonRelease, this, &BrowserTabBarEx::SlotButtonRelease);
}

void BrowserTabBarEx::InitMenu()
{
    if (d->menu)
        return;
    setContextMenuPolicy(Qt::CustomContextMenu);

    const auto makeAction = [this](const QString &text, void (BrowserTabBarEx::*slot)()) {
        auto *action = new QAction(text, this);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    d->refreshAction = makeAction(tr("Refresh tab"), &BrowserTabBarEx::SlotRefreshTab);
    d->addFavAction = makeAction(tr("Add Fav"), &BrowserTabBarEx::SlotAddFav);
    d->copyLinkAction = makeAction(tr("Copy link"), &BrowserTabBarEx::SlotCopyLink);
    d->openInBrowserAction = makeAction(tr("Open in Browser"), &BrowserTabBarEx::SlotOpenInBrowser);
    d->closeCurAction = makeAction(tr("Close tab"), &BrowserTabBarEx::SlotCloseCurTab);
    d->closeOtherAction = makeAction(tr("Close other tabs"), &BrowserTabBarEx::SlotCloseOtherTab);
    d->closeRightAction = makeAction(tr("Close right tabs"), &BrowserTabBarEx::SlotCloseRightTab);
    d->closeLeftAction = makeAction(tr("Close left tabs"), &BrowserTabBarEx::SlotCloseLeftTab);

    d->menu = new KelMenu(this);
    d->menu->setObjectName(QStringLiteral("BrowserTabBarMenu"));
    d->menu->addAction(d->refreshAction);
    d->menu->addAction(d->addFavAction);
    d->menu->addAction(d->copyLinkAction);
    d->menu->addAction(d->openInBrowserAction);
    d->upperSeparator = d->menu->addSeparator();
    d->menu->addAction(d->closeCurAction);
    d->menu->addAction(d->closeOtherAction);
    d->menu->addAction(d->closeRightAction);
    d->menu->addAction(d->closeLeftAction);

    if (IsShowRecoveryItem()) {
        d->recoveryAction = makeAction(tr("Recover recently closed tabs"), &BrowserTabBarEx::SlotRecoverRecentlyTab);
        d->recoverySeparator = d->menu->addSeparator();
        d->menu->addAction(d->recoveryAction);
    }
}

// ---------------------------------------------------------------------------
// Tab list

BrowserTabButtonEx *BrowserTabBarEx::CreateTabButton(TabDataPtr tab, const QString &iconPath, bool loading)
{
    // The parent follows the number of tabs, not the insertion index: the first
    // FixedTabCount() buttons ever present are the fixed ones.
    QWidget *parent = d->buttons.size() < qMax(0, FixedTabCount()) ? d->fixedArea : d->contentStrip;
    // Its inner widgets are made once a layout shows it (UpdateButtonForms()).
    auto *button = new BrowserTabButtonEx(tab, iconPath, loading, this, parent,
                                          BrowserTabButtonEx::FormMode::Deferred);
    connect(button, &BrowserTabButtonEx::SigHoverChanged, this, &BrowserTabBarEx::SlotHoverChanged);
    connect(button, &BrowserTabButtonEx::SigChangeClicked, this, &BrowserTabBarEx::SlotChangeClicked);
    connect(button, &BrowserTabButtonEx::SigCloseClicked, this, &BrowserTabBarEx::SlotCloseClicked);
    connect(button, &BrowserTabButtonEx::SigIconClicked, this, &BrowserTabBarEx::SlotIconClicked);
    connect(button, &BrowserTabButtonEx::SigMenuClicked, this, &BrowserTabBarEx::SlotMenuClicked);
    connect(button, &BrowserTabButtonEx::SigButtonPressed, this, &BrowserTabBarEx::SlotButtonPressed);
    button->lower();
    return button;
}

int BrowserTabBarEx::addTab(TabDataPtr tab, const QString &iconPath, bool loading)
{
    return insertTab(d->buttons.size(), std::move(tab), iconPath, loading);
}

int BrowserTabBarEx::insertTab(int index, TabDataPtr tab, const QString &iconPath, bool loading)
{
    if (!tab) {
        qWarning("BrowserTabBarEx::insertTab: a null tab record is ignored");
        return -1;
    }
    BrowserTabButtonEx *button = CreateTabButton(std::move(tab), iconPath, loading);
    index = qBound(0, index, d->buttons.size());
    d->buttons.insert(index, button);
    if (index <= d->currentIndex)
        ++d->currentIndex;
    ResizeButtons();
    return index;
}

void BrowserTabBarEx::removeTab(int index)
{
    if (!d->IsValidIndex(index))
        return;
    BrowserTabButtonEx *button = d->buttons.at(index);

    if (button->IsChecked()) {
        int next;
        if (GetCloseType() == CloseActiveLeftEx)
            next = index - 1;
        else
            next = index + 1 < d->buttons.size() ? index + 1 : index - 1;
        // Receivers of currentChanged may change the tab list, or delete the bar.
        const QPointer<BrowserTabBarEx> self(this);
        setCurrentIndex(next);
        if (!self)
            return;
        index = d->buttons.indexOf(button);
        if (index < 0)
            return; // already removed from inside currentChanged
    }

    if (d->pressedButton == button) {
        d->pressedButton = nullptr;
        if (d->dragging) {
            d->dragging = false;
            d->arrowTimer.stop(); // the edge scroll of the drag
        }
        // The popup would go on holding the mouse for a tab that is gone; its release
        // finds no pressed button and ends nothing else.
        d->moveProxy->hide();
    }

    d->buttons.removeAt(index);
    disconnect(button, nullptr, this, nullptr);
    // Hidden at once so that it is not painted under its neighbours until deleted.
    button->hide();
    if (d->menuRunning)
        d->retiredButtons.append(button);
    else
        button->deleteLater();

    bool lostCurrent = false;
    if (index < d->currentIndex) {
        --d->currentIndex;
    } else if (index == d->currentIndex) {
        // Only when a receiver of currentChanged made the removed tab current again.
        d->currentIndex = -1;
        lostCurrent = true;
    }

    if (!d->closing) {
        ResizeButtons();
    } else if (!d->closedLast) {
        // Closing mode: the tabs right of the gap slide left by one width and keep
        // theirs, so the next close button arrives under the pointer.
        TabBarExGeometry::SetFixedWidth(d->contentStrip, d->contentStrip->width() - d->buttonWidth);
        ResetDelayButtons();
    } else {
        ResizeLastButtons();
    }
    if (lostCurrent)
        Q_EMIT currentChanged(-1);
}

void BrowserTabBarEx::setCurrentIndex(int index)
{
    // -1 (or anything below) means no current tab.
    if (index < -1)
        index = -1;
    if (index >= d->buttons.size() || index == d->currentIndex)
        return;

    const int previous = d->currentIndex;
    d->currentIndex = index;
    for (int i = 0; i < d->buttons.size(); ++i) {
        BrowserTabButtonEx *button = d->buttons.at(i);
        const bool checked = i == index;
        // SetChecked() with the state a button already has changes nothing.
        if (button->IsChecked() != checked)
            button->SetChecked(checked); // raises the new current button
    }
    // Stacking only matters between the current tab and the others (a wide current
    // tab, a dragged one); the rest never overlap, so only the old current goes down.
    // A dragged button floats above the strip in the viewport; lowered, it would vanish behind it.
    if (d->IsValidIndex(previous) && !d->buttons.at(previous)->IsPressed())
        d->buttons.at(previous)->lower();

    if (d->closing)
        ResizeDelayButtons();
    else
        ResizeButtons();
    Q_EMIT currentChanged(index);
}

int BrowserTabBarEx::count() const
{
    return d->buttons.size();
}

int BrowserTabBarEx::currentIndex() const
{
    return d->currentIndex;
}

int BrowserTabBarEx::GetCurrentIndex() const
{
    return d->currentIndex;
}

TabDataPtr BrowserTabBarEx::GetTabData(int index) const
{
    return TabLookup::TabAt(d->buttons, index);
}

TabDataPtr BrowserTabBarEx::GetCurrentTabData() const
{
    return GetTabData(d->currentIndex);
}

int BrowserTabBarEx::GetIndexByTabData(TabDataPtr tab) const
{
    return TabLookup::IndexOfTab(d->buttons, tab);
}

int BrowserTabBarEx::GetIndexByName(const QString &name) const
{
    return TabLookup::IndexOfTitle(d->buttons, name);
}

int BrowserTabBarEx::GetIndexByTabId(const QString &tabId) const
{
    return TabLookup::IndexOfId(d->buttons, tabId);
}

QStringList BrowserTabBarEx::GetAllTabTitles() const
{
    return TabLookup::AllTitles(d->buttons);
}

void BrowserTabBarEx::setTabText(int index, const QString &text)
{
    if (d->IsValidIndex(index))
        d->buttons.at(index)->SetTitle(text);
}

void BrowserTabBarEx::setTabIcon(int index, const QString &iconUrl)
{
    if (!iconUrl.isEmpty() && d->IsValidIndex(index))
        d->buttons.at(index)->SetIconUrl(iconUrl);
}

void BrowserTabBarEx::LoadStart(int index)
{
    if (d->IsValidIndex(index))
        d->buttons.at(index)->LoadStart();
}

void BrowserTabBarEx::LoadFinished(int index)
{
    if (d->IsValidIndex(index))
        d->buttons.at(index)->LoadFinished();
}

void BrowserTabBarEx::UpdateCustomIcon()
{
    for (int i = qMax(0, FixedTabCount()); i < d->buttons.size(); ++i) {
        if (d->buttons.at(i)->IsChecked())
            d->buttons.at(i)->UpdateIcon();
    }
}

QString BrowserTabBarEx::CurrentIconUrl() const
{
    return d->IsValidIndex(d->currentIndex) ? d->buttons.at(d->currentIndex)->RequestedIconUrl() : QString();
}

QString BrowserTabBarEx::CurrentIconLocalPath() const
{
    return d->IsValidIndex(d->currentIndex) ? d->buttons.at(d->currentIndex)->IconPath() : QString();
}

void BrowserTabBarEx::SetFirstIndex(int index)
{
    d->firstIndex = index;
}

void BrowserTabBarEx::SetTabManager(ITabManager *manager)
{
    d->tabManager = manager;
}

ITabManager *BrowserTabBarEx::GetTabManager() const
{
    return d->tabManager;
}

BrowserTabButtonEx *BrowserTabBarEx::TabButton(int index) const
{
    return d->IsValidIndex(index) ? d->buttons.at(index) : nullptr;
}

int BrowserTabBarEx::ScrollOffset() const
{
    return d->scrollOffset;
}

bool BrowserTabBarEx::IsOverflow() const
{
    return d->overflow;
}

int BrowserTabBarEx::CurrentButtonWidth() const
{
    return d->currentButtonWidth;
}

// ---------------------------------------------------------------------------
// Sizes

int BrowserTabBarEx::ButtonWidth() const
{
    return d->buttonWidth;
}

int BrowserTabBarEx::ButtonBarHeight() const
{
    return S(kBarHeight);
}

int BrowserTabBarEx::ButtonHeight() const
{
    return S(kButtonHeight);
}

int BrowserTabBarEx::ButtonTop() const
{
    return S(kButtonTop);
}

int BrowserTabBarEx::MaxButtonWidth() const
{
    return S(kMaxButtonWidth);
}

int BrowserTabBarEx::MinButtonWidth() const
{
    return S(kMinButtonWidth);
}

int BrowserTabBarEx::NoCloseButtonWidth() const
{
    return S(kNoCloseButtonWidth);
}

int BrowserTabBarEx::ButtonHomepageWidth() const
{
    return S(kHomepageButtonWidth);
}

// ---------------------------------------------------------------------------
// Layout

void BrowserTabBarEx::ComputeButtonWidth(int available)
{
    const int maxWidth = MaxButtonWidth();
    d->overflow = false;
    int n = d->buttons.size() - qMax(0, FixedTabCount());
    if (d->currentIndex >= qMax(0, FixedTabCount()) && d->keepCurrentWide) {
        d->currentButtonWidth = maxWidth;
        --n;
        available -= maxWidth;
    }
    d->buttonWidth = maxWidth;
    // The remainder of the division goes to nobody: the strip ends up to n - 1 pixels short.
    if (n > 0)
        d->buttonWidth = qMin(available / n, maxWidth);
    if (d->buttonWidth < MinButtonWidth()) {
        d->buttonWidth = MinButtonWidth();
        d->overflow = true;
    }
    if (!d->keepCurrentWide)
        d->currentButtonWidth = d->buttonWidth;
}

void BrowserTabBarEx::ResizeButtons()
{
    if (d->buttons.isEmpty())
        return;

    const int fixedCount = qMax(0, FixedTabCount());
    const int fixedTotal = FixedTabTotalWidth();
    const int available = width() - S(kRightMargin) - fixedTotal;
    ComputeButtonWidth(available);

    const int height = ButtonHeight();
    const int top = ButtonTop();
    const int count = d->buttons.size();
    // A bar without fixed tabs has nothing to divide the fixed width among.
    if (fixedCount > 0) {
        const int fixedWidth = fixedTotal / fixedCount;
        for (int i = 0; i < fixedCount && i < count; ++i) {
            BrowserTabButtonEx *button = d->buttons.at(i);
            TabBarExGeometry::SetFixedSize(button, QSize(fixedWidth, height));
            TabBarExGeometry::Move(button, QPoint(i * fixedWidth, top));
        }
    }

    int total = 0;
    for (int i = fixedCount; i < count; ++i) {
        const int w = i == d->currentIndex ? d->currentButtonWidth : d->buttonWidth;
        TabBarExGeometry::SetFixedSize(d->buttons.at(i), QSize(w, height));
        total += w;
    }
    TabBarExGeometry::SetFixedSize(d->contentStrip, QSize(total, this->height()));

    if (total > available)
        d->overflow = true;
    ResetButtons();
}

void BrowserTabBarEx::ResetButtons()
{
    if (!d->buttons.isEmpty())
        PlaceScrollingButtons();
    SetContentWidth();
    ResetSeparator();
    UpdateButtonForms();
}

// The scrolling tabs side by side from the strip's start, each at its present width.
// A tab under a drag floats in the viewport where the pointer holds it; its slot stays
// empty as a gap.
void BrowserTabBarEx::PlaceScrollingButtons()
{
    const int top = ButtonTop();
    int x = 0;
    for (int i = qMax(0, FixedTabCount()); i < d->buttons.size(); ++i) {
        BrowserTabButtonEx *button = d->buttons.at(i);
        if (!d->dragging || button != d->pressedButton)
            TabBarExGeometry::Move(button, QPoint(x, top));
        x += button->width();
    }
}

// ---------------------------------------------------------------------------
// Closing mode: after a close button the tabs keep their widths under the pointer
// until it leaves the bar.

void BrowserTabBarEx::ResetDelayButtons()
{
    if (!d->buttons.isEmpty())
        PlaceScrollingButtons();
    // The strip may have become shorter than the scrolled view: the arrows say so.
    if (d->overflow)
        UpdateArrowState();
    ResetSeparator();
    UpdateButtonForms();
}

// The rightmost tab went: nothing can slide into its place, so the strip itself moves
// right by one tab, bringing the new last tab's close button under the pointer.
void BrowserTabBarEx::ResizeLastButtons()
{
    if (d->buttons.isEmpty())
        return;
    if (d->scrollOffset + d->buttonWidth > 0) {
        // Less than a tab is scrolled off: snap to the start and fit the tabs into what
        // is left of the strip, which may end the overflow.
        TabBarExGeometry::Move(d->contentStrip, QPoint(0, 0));
        TabBarExGeometry::SetFixedWidth(d->contentStrip, d->contentStrip->width() + d->scrollOffset);
        d->scrollOffset = 0;
        ResizeDelayArea();
        return;
    }
    TabBarExGeometry::SetFixedWidth(d->contentStrip, d->contentStrip->width() - d->buttonWidth);
    d->animationStart = d->scrollOffset;
    d->animationTarget = d->scrollOffset + d->buttonWidth;
    // Four ticks of 20 ms: quick enough to be under the pointer before the next click.
    d->animationStep = d->buttonWidth / 4;
    d->arrowTimer.start();
}

void BrowserTabBarEx::ResizeDelayArea()
{
    if (d->buttons.isEmpty())
        return;
    if (d->overflow) {
        // Without arrows the tabs would also have the arrow part of the left frame.
        ComputeButtonWidth(d->contentStrip->width() + ArrowPartWidth());
        if (!d->overflow) {
            const int fixedTotal = FixedTabTotalWidth();
            TabBarExGeometry::SetFixedSize(d->viewport, QSize(width() - S(kRightMargin) - fixedTotal, height()));
            TabBarExGeometry::Move(d->viewport, QPoint(fixedTotal, 0));
            TabBarExGeometry::SetFixedWidth(d->contentStrip, d->contentStrip->width() + ArrowPartWidth());
            TabBarExGeometry::Move(d->contentStrip, QPoint(0, 0));
            d->leftArrowFrame->hide();
            d->rightArrowFrame->hide();
            d->scrollOffset = 0;
            ResizeDelayButtons();
            return;
        }
    }
    ComputeButtonWidth(d->contentStrip->width());
    ResizeDelayButtons();
}

// Widths for the present strip, which keeps its width: the pixels that the division
// leaves over go one each to the tabs from the left.
void BrowserTabBarEx::ResizeDelayButtons()
{
    if (d->buttons.isEmpty())
        return;
    const int fixedCount = qMax(0, FixedTabCount());
    const int count = d->buttons.size();
    const int stripWidth = d->contentStrip->width();
    d->extraPixels = 0;
    if (d->buttonWidth != MaxButtonWidth()) {
        const int n = count - fixedCount;
        if (d->currentIndex < fixedCount)
            d->extraPixels = qMax(stripWidth - n * d->buttonWidth, 0);
        else
            d->extraPixels = qMax(stripWidth - (n - 1) * d->buttonWidth - d->currentButtonWidth, 0);
    }
    const int height = ButtonHeight();
    int seen = 0;
    for (int i = fixedCount; i < count; ++i) {
        BrowserTabButtonEx *button = d->buttons.at(i);
        if (i == d->currentIndex) {
            seen = 1;
            TabBarExGeometry::SetFixedSize(button, QSize(d->currentButtonWidth, height));
            continue;
        }
        // Compared by list index, fixed tabs included: with fixed tabs one pixel fewer
        // than extraPixels is handed out. Kept so, the look users know.
        const int extra = (i - seen) < d->extraPixels ? 1 : 0;
        TabBarExGeometry::SetFixedSize(button, QSize(d->buttonWidth + extra, height));
    }
    ResetDelayButtons();
}

// A strip of hundreds of tabs shows a dozen: only buttons in or near the viewport hold
// their inner widgets. A button gets them once it is within one minimum tab width of
// the visible part and gives them up once it is a whole viewport away, so that scrolling
// to and fro near the edge does not make and destroy them again and again.
void BrowserTabBarEx::UpdateButtonForms()
{
    const int viewportWidth = d->viewport->width();
    const int visibleLeft = -d->scrollOffset;
    const int visibleRight = visibleLeft + viewportWidth;
    const int createMargin = MinButtonWidth();
    const int releaseMargin = qMax(viewportWidth, createMargin);
    for (BrowserTabButtonEx *button : qAsConst(d->buttons)) {
        // Fixed tabs and a dragged one always keep theirs.
        if (button->parentWidget() != d->contentStrip || button->IsPressed()) {
            button->CreateForm();
            continue;
        }
        const int left = button->x();
        const int right = left + button->width();
        if (right > visibleLeft - createMargin && left < visibleRight + createMargin)
            button->CreateForm();
        else if (right <= visibleLeft - releaseMargin || left >= visibleRight + releaseMargin)
            button->ReleaseForm();
    }
}

void BrowserTabBarEx::SetContentWidth()
{
    const int h = height();
    const int w = width();
    const int fixedTotal = FixedTabTotalWidth();

    TabBarExGeometry::SetFixedSize(d->fixedArea, QSize(fixedTotal, h));
    TabBarExGeometry::Move(d->fixedArea, QPoint(0, 0));

    if (!d->overflow) {
        TabBarExGeometry::SetFixedSize(d->viewport, QSize(w - S(kRightMargin) - fixedTotal, h));
        TabBarExGeometry::Move(d->viewport, QPoint(fixedTotal, 0));
        if (d->contentStrip->width() < d->viewport->width())
            TabBarExGeometry::SetFixedWidth(d->contentStrip, d->viewport->width());
        TabBarExGeometry::Move(d->contentStrip, QPoint(0, 0));
        d->leftArrowFrame->hide();
        d->rightArrowFrame->hide();
        d->scrollOffset = 0;
        return;
    }

    const int arrowPart = ArrowPartWidth();
    const int shadow = S(kShadowWidth);
    const int frameWidth = arrowPart + shadow;
    // The viewport ends exactly where the right arrow frame begins; the left arrow
    // frame reaches a shadow's width into it, so that its shadow falls on the tabs.
    TabBarExGeometry::SetFixedSize(d->viewport, QSize(w - 2 * arrowPart - shadow - fixedTotal, h));
    TabBarExGeometry::Move(d->viewport, QPoint(arrowPart + fixedTotal, 0));
    if (d->contentStrip->width() < d->viewport->width())
        TabBarExGeometry::SetFixedWidth(d->contentStrip, d->viewport->width());

    TabBarExGeometry::SetFixedSize(d->leftArrowFrame, QSize(frameWidth, h));
    TabBarExGeometry::Move(d->leftArrowFrame, QPoint(fixedTotal, 0));
    d->leftArrowFrame->show();
    TabBarExGeometry::SetFixedSize(d->rightArrowFrame, QSize(frameWidth, h));
    TabBarExGeometry::Move(d->rightArrowFrame, QPoint(w - frameWidth, 0));
    d->rightArrowFrame->show();

    const QSize arrowSize(S(kArrowSize), S(kArrowSize));
    TabBarExGeometry::SetFixedSize(d->leftArrow, arrowSize);
    TabBarExGeometry::Move(d->leftArrow, QPoint(S(kArrowInset), S(kArrowInset)));
    TabBarExGeometry::SetFixedSize(d->leftShadow, QSize(shadow, h));
    TabBarExGeometry::Move(d->leftShadow, QPoint(arrowPart, 0));
    TabBarExGeometry::SetFixedSize(d->rightArrow, arrowSize);
    TabBarExGeometry::Move(d->rightArrow, QPoint(shadow + S(kArrowInset), S(kArrowInset)));
    TabBarExGeometry::SetFixedSize(d->rightShadow, QSize(shadow, h));
    TabBarExGeometry::Move(d->rightShadow, QPoint(0, 0));

    CheckAreaOffset();
}

void BrowserTabBarEx::ResetSeparator()
{
    const int count = d->buttons.size();
    const int current = d->currentIndex;
    const int fixedCount = qMax(0, FixedTabCount());
    // In overflow the last fixed tab borders the left arrow, not a tab.
    const int lastFixed = (d->overflow && fixedCount > 0 && count >= fixedCount) ? fixedCount - 1 : -1;
    for (int i = 0; i < count; ++i) {
        const bool hidden = i == current || (current > 0 && i == current - 1) || i == lastFixed;
        d->buttons.at(i)->SetSeparatorVisible(!hidden);
    }
}

void BrowserTabBarEx::SetPressedSeparator()
{
    for (int i = qMax(0, FixedTabCount()); i < d->buttons.size(); ++i) {
        BrowserTabButtonEx *button = d->buttons.at(i);
        if (!button->IsPressed()) {
            button->SetSeparatorVisible(true);
            continue;
        }
        button->SetSeparatorVisible(false);
        if (i >= 1)
            d->buttons.at(i - 1)->SetSeparatorVisible(false);
    }
}

void BrowserTabBarEx::SortButtons()
{
    const int fixedCount = qMax(0, FixedTabCount());
    int dragged = -1;
    for (int i = d->buttons.size() - 1; i >= fixedCount; --i) {
        if (d->buttons.at(i)->IsPressed()) {
            dragged = i;
            break;
        }
    }
    if (dragged < 0)
        return;
    BrowserTabButtonEx *button = d->buttons.at(dragged);
    // Edges in the strip's coordinates: the button floats in the viewport.
    const int left = button->x() - d->scrollOffset;
    const int right = left + button->width();
    const auto span = [this](int j) {
        const BrowserTabButtonEx *other = d->buttons.at(j);
        return qMakePair(other->x(), other->width());
    };
    const int target = TabDragOrder::Target(d->buttons.size(), dragged, qMax(0, d->firstIndex), left, right,
                                            d->contentStrip->width(), span);
    if (target < 0)
        return;
    BrowserTabButtonEx *current = d->IsValidIndex(d->currentIndex) ? d->buttons.at(d->currentIndex) : nullptr;
    d->buttons.move(dragged, target);
    // The press made the dragged tab current, so the index follows it; should the host
    // have chosen another tab meanwhile, the index follows that one. No currentChanged:
    // the current tab stays the same tab.
    d->currentIndex = current ? d->buttons.indexOf(current) : -1;
    ResetSortButtons();
}

// The other tabs close up around the gap of the dragged one.
void BrowserTabBarEx::ResetSortButtons()
{
    PlaceScrollingButtons();
    SetPressedSeparator();
    if (d->overflow)
        CheckAreaOffset();
    UpdateButtonForms();
}

void BrowserTabBarEx::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    ResizeButtons();
}

void BrowserTabBarEx::leaveEvent(QEvent *event)
{
    QFrame::leaveEvent(event);
    // A leave reported while the pointer is still over the bar (onto a child) ends nothing.
    if (d->closing && !rect().contains(mapFromGlobal(QCursor::pos())) && !d->delayTimer.isActive())
        d->delayTimer.start();
}

void BrowserTabBarEx::AdjustForDpi()
{
    setFixedHeight(S(kBarHeight));
    // A button whose size does not change gets no resize event; its inner layout and
    // font must follow the new factor all the same.
    for (BrowserTabButtonEx *button : qAsConst(d->buttons)) {
        button->ApplyFont();
        button->UpdateLayout();
        button->UpdateCloseButton();
    }
    ResizeButtons();
}

// ---------------------------------------------------------------------------
// Scrolling

int BrowserTabBarEx::MinOffset() const
{
    return d->viewport->width() - d->contentStrip->width();
}

int BrowserTabBarEx::ScrollStep() const
{
    return MinButtonWidth();
}

void BrowserTabBarEx::UpdateArrowState()
{
    const bool atStart = d->scrollOffset == 0;
    const bool atEnd = d->scrollOffset == MinOffset();
    d->leftArrow->setEnabled(!atStart);
    d->leftShadow->setVisible(!atStart);
    d->rightArrow->setEnabled(!atEnd);
    d->rightShadow->setVisible(!atEnd);
}

void BrowserTabBarEx::CheckAreaOffset()
{
    d->scrollOffset = qMin(qMax(d->scrollOffset, MinOffset()), 0);
    TabBarExGeometry::Move(d->contentStrip, QPoint(d->scrollOffset, 0));
    UpdateArrowState();
}

void BrowserTabBarEx::StartArrowTimer()
{
    d->animationTarget = qMin(qMax(d->animationTarget, MinOffset()), 0);
    if (d->animationTarget == d->scrollOffset)
        return;
    d->animationStart = d->scrollOffset;
    d->arrowTimer.start();
}

void BrowserTabBarEx::SlotArrowTimeout()
{
    // The strip may have shrunk since the animation began (tabs removed): never run
    // past what is now the end. A step below 1 would never arrive.
    d->animationTarget = qMin(qMax(d->animationTarget, MinOffset()), 0);
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
        d->arrowTimer.stop();
    }
    TabBarExGeometry::Move(d->contentStrip, QPoint(d->scrollOffset, 0));
    UpdateArrowState();
    UpdateButtonForms();
    if (d->pressedButton)
        SortButtons();
}

void BrowserTabBarEx::SlotLeftArrowClicked()
{
    if (d->arrowTimer.isActive())
        return;
    d->animationTarget = d->scrollOffset + ScrollStep();
    d->animationStep = ScrollStep() / 10;
    StartArrowTimer();
}

void BrowserTabBarEx::SlotRightArrowClicked()
{
    if (d->arrowTimer.isActive())
        return;
    d->animationTarget = d->scrollOffset - ScrollStep();
    d->animationStep = ScrollStep() / 10;
    StartArrowTimer();
}

void BrowserTabBarEx::SlotLeftArrowDoubleClicked()
{
    d->arrowTimer.stop();
    d->animationTarget = 0;
    d->animationStep = ScrollStep() / 2;
    StartArrowTimer();
}

void BrowserTabBarEx::SlotRightArrowDoubleClicked()
{
    d->arrowTimer.stop();
    d->animationTarget = MinOffset();
    d->animationStep = ScrollStep() / 2;
    StartArrowTimer();
}

void BrowserTabBarEx::SlotLeftArrowPressed()
{
    d->arrowTimer.stop();
    d->animationTarget = 0;
    d->animationStep = ScrollStep() / 5;
    StartArrowTimer();
}

void BrowserTabBarEx::SlotRightArrowPressed()
{
    d->arrowTimer.stop();
    d->animationTarget = MinOffset();
    d->animationStep = ScrollStep() / 5;
    StartArrowTimer();
}

void BrowserTabBarEx::SlotLeftArrowReleased()
{
    d->arrowTimer.stop();
}

void BrowserTabBarEx::SlotRightArrowReleased()
{
    d->arrowTimer.stop();
}

void BrowserTabBarEx::wheelEvent(QWheelEvent *event)
{
    if (!d->overflow)
        return;
    // The dominant axis, as the classic single delta had it: a horizontal swipe on a
    // touchpad scrolls the strip as well as a wheel does.
    const QPoint angle = event->angleDelta();
    const int delta = qAbs(angle.x()) > qAbs(angle.y()) ? angle.x() : angle.y();
    if (delta > 0)
        SlotLeftArrowClicked();
    else
        SlotRightArrowClicked();
    // Consumed: a scrolling parent must not scroll as well.
    event->accept();
}

void BrowserTabBarEx::showIndex(int index)
{
    const int fixedCount = qMax(0, FixedTabCount());
    if (index < fixedCount || index >= d->buttons.size())
        return;
    const int step = ScrollStep();
    const int k = index - fixedCount;
    const int x = d->scrollOffset + k * step;
    const int viewportWidth = d->viewport->width();
    // Every scrolling tab counts as MinButtonWidth() wide here, whatever its real width.
    if (x >= 0 && x + step <= viewportWidth)
        return;
    d->arrowTimer.stop();
    if (x >= 0)
        d->animationTarget = viewportWidth - k * step - step; // flush with the right edge
    else
        d->animationTarget = -k * step; // flush with the left edge
    d->animationStep = step / 2;
    StartArrowTimer();
}

// ---------------------------------------------------------------------------
// Slots answering the buttons

void BrowserTabBarEx::SlotHoverChanged(TabDataPtr tab, bool hovered)
{
    if (!tab)
        return;
    const int i = GetIndexByTabData(tab);
    if (i >= 0) {
        BrowserTabButtonEx *button = d->buttons.at(i);
        if (i + 1 < d->buttons.size() && d->buttons.at(i + 1)->IsChecked())
            button->SetSeparatorVisible(false);
        else
            button->SetSeparatorVisible(!hovered);
        if (i > 0)
            d->buttons.at(i - 1)->SetSeparatorVisible(!hovered);
    }
    const int fixedCount = qMax(0, FixedTabCount());
    if (d->overflow && fixedCount > 0 && d->buttons.size() >= fixedCount)
        d->buttons.at(fixedCount - 1)->SetSeparatorVisible(false);
}

void BrowserTabBarEx::SlotChangeClicked(TabDataPtr tab)
{
    const int index = GetIndexByTabData(tab);
    if (index >= 0)
        setCurrentIndex(index);
}

void BrowserTabBarEx::SlotCloseClicked(TabDataPtr tab)
{
    const int index = GetIndexByTabData(tab);
    if (index < 0)
        return;
    // Set before the request: the host usually removes the tab from inside it.
    d->closing = true;
    d->closedLast = index == d->buttons.size() - 1;
    Q_EMIT tabCloseRequested(index);
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

void BrowserTabBarEx::SlotMenuClicked(TabDataPtr tab)
{
    if (!tab || !d->menu || d->menuRunning)
        return;
    const int index = GetIndexByTabData(tab);
    if (index < 0)
        return;
    d->menuIndex = index;
    CheckMenuVisible(tab);
    CheckMenuEnable();

    // The command slots run inside exec(): the host may remove tabs there, or delete
    // the bar (and the menu with it).
    const QPointer<BrowserTabBarEx> self(this);
    d->menuRunning = true;
    d->menu->exec(QCursor::pos());
    if (!self)
        return;
    d->menuRunning = false;
    ReleaseRetiredButtons();
    ResizeButtons();
}

void BrowserTabBarEx::ReleaseRetiredButtons()
{
    const QList<QPointer<BrowserTabButtonEx>> retired = d->retiredButtons;
    d->retiredButtons.clear();
    for (const QPointer<BrowserTabButtonEx> &button : retired) {
        if (button)
            button->deleteLater();
    }
}

void BrowserTabBarEx::CheckMenuVisible(TabDataPtr tab)
{
    if (!d->menu || !tab)
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
    d->refreshAction->setVisible(refresh);
    d->addFavAction->setVisible(addFav);
    d->copyLinkAction->setVisible(links);
    d->openInBrowserAction->setVisible(links);
    // Without an entry above it the separator would open the menu.
    d->upperSeparator->setVisible(refresh);
}

void BrowserTabBarEx::CheckMenuEnable()
{
    if (!d->menu)
        return;
    d->closeCurAction->setEnabled(CheckCloseCurItem(d->menuIndex));
    d->closeRightAction->setEnabled(CheckCloseRightItem(d->menuIndex));
    d->closeOtherAction->setEnabled(CheckCloseOtherItem(d->menuIndex));
    d->closeLeftAction->setEnabled(CheckCloseLeftItem(d->menuIndex));
    if (d->recoveryAction && IsShowRecoveryItem())
        d->recoveryAction->setEnabled(CheckRecoveryItem());
}

void BrowserTabBarEx::SlotButtonPressed()
{
    auto *button = qobject_cast<BrowserTabButtonEx *>(sender());
    if (!button)
        return;
    // Only scrolling tabs move. A fixed tab lies in the fixed area's coordinates (so
    // does a tab made while the fixed area was not yet full): it would float off into
    // the viewport and land in the strip.
    const int index = d->buttons.indexOf(button);
    if (index < qMax(0, FixedTabCount()) || button->parentWidget() != d->contentStrip)
        return;
    // While a press is under way the popup holds the mouse: a second press can only come
    // from code, and would strand the first tab.
    if (d->pressedButton)
        return;
    const QPoint cursor = QCursor::pos();
    d->pressedButton = button;
    d->pressOffset = QPoint(button->x() - cursor.x() + d->scrollOffset, button->y());
    d->moveProxy->SetStartPoint(cursor);
    d->moveProxy->show();
}

void BrowserTabBarEx::SlotButtonMove()
{
    BrowserTabButtonEx *button = d->pressedButton;
    if (!button)
        return;
    if (!d->dragging) {
        d->dragging = true;
        // Above the strip and clipped by the viewport, the tab floats over the others
        // while they close up around its slot.
        button->setParent(d->viewport);
        button->show();
        button->raise();
    }
    if (!button->IsPressed())
        button->SetPressed();

    const int viewportWidth = d->viewport->width();
    const int maxX = viewportWidth - button->width();
    const int x = qMax(0, qMin(QCursor::pos().x() + d->pressOffset.x(), maxX));
    const QPoint pos(x, d->pressOffset.y());
    if (pos != button->pos()) {
        button->move(pos);
        SortButtons();
    }

    if (!d->overflow)
        return;
    // Held against an edge, the strip scrolls under the tab; each tick sorts again.
    if (x == 0) {
        if (!d->arrowTimer.isActive()) {
            d->animationTarget = 0;
            d->animationStep = ScrollStep() / 5;
            StartArrowTimer();
        }
    } else if (x == maxX) {
        if (!d->arrowTimer.isActive()) {
            d->animationTarget = viewportWidth - d->contentStrip->width();
            d->animationStep = ScrollStep() / 5;
            StartArrowTimer();
        }
    } else {
        d->arrowTimer.stop();
    }
}

void BrowserTabBarEx::SlotButtonRelease()
{
    BrowserTabButtonEx *button = d->pressedButton;
    if (!button)
        return;
    d->arrowTimer.stop();
    d->dragging = false;
    // A press without motion never left the strip.
    if (button->parentWidget() != d->contentStrip)
        button->setParent(d->contentStrip);
    button->show();
    ResetButtons();
    button->SetReleased();
    d->pressedButton = nullptr;
    // The host may delete the bar from inside.
    const QPointer<BrowserTabBarEx> self(this);
    d->endingDrag = true;
    TabButtonMoved();
    if (self)
        d->endingDrag = false;
}

void BrowserTabBarEx::SlotDelayTimeout()
{
    d->delayTimer.stop();
    d->closing = false;
    d->closedLast = false;
    ResizeButtons();
}

// ---------------------------------------------------------------------------
// Tab commands (from the context menu)

void BrowserTabBarEx::SlotRefreshTab()
{
    Q_EMIT SigRefreshTab(d->menuIndex);
}

void BrowserTabBarEx::SlotAddFav()
{
    const QPoint point = d->IsValidIndex(d->menuIndex) ? d->buttons.at(d->menuIndex)->GetIconGlobalPos() : QPoint(0, 0);
    Q_EMIT SigAddFav(d->menuIndex, point);
}

void BrowserTabBarEx::SlotCopyLink()
{
    Q_EMIT SigCopyLink(d->menuIndex);
}

void BrowserTabBarEx::SlotOpenInBrowser()
{
    Q_EMIT SigOpenInBrowser(d->menuIndex);
}

void BrowserTabBarEx::SlotCloseCurTab()
{
    Q_EMIT tabCloseRequested(d->menuIndex);
}

void BrowserTabBarEx::SlotCloseOtherTab()
{
    Q_EMIT SigCloseOtherTab(d->menuIndex);
}

void BrowserTabBarEx::SlotCloseLeftTab()
{
    Q_EMIT SigCloseLeftTab(d->menuIndex);
}

void BrowserTabBarEx::SlotCloseRightTab()
{
    Q_EMIT SigCloseRightTab(d->menuIndex);
}

void BrowserTabBarEx::SlotRecoverRecentlyTab()
{
    Q_EMIT SigRecoverRecentlyTab();
}

// ---------------------------------------------------------------------------
// Policy defaults

QString BrowserTabBarEx::GetPluginIconUrl(const QString &pluginCode) const
{
    Q_UNUSED(pluginCode)
    return QString();
}

bool BrowserTabBarEx::IsDoubleCloseTab() const
{
    return true;
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

bool BrowserTabBarEx::CheckCloseCurItem(int index)
{
    Q_UNUSED(index)
    return true;
}

// The base versions read the menu's tab rather than the argument; the bar always
// passes the menu's tab, so the two agree.
bool BrowserTabBarEx::CheckCloseRightItem(int index)
{
    Q_UNUSED(index)
    return d->menuIndex < d->buttons.size() - 1;
}

bool BrowserTabBarEx::CheckCloseOtherItem(int index)
{
    Q_UNUSED(index)
    return d->buttons.size() >= 2;
}

bool BrowserTabBarEx::CheckCloseLeftItem(int index)
{
    Q_UNUSED(index)
    return d->menuIndex > 0;
}

bool BrowserTabBarEx::CheckRecoveryItem()
{
    return false;
}

bool BrowserTabBarEx::IsShowRecoveryItem()
{
    return false;
}

void BrowserTabBarEx::TabButtonMoved()
{
}

void BrowserTabBarEx::TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos)
{
    Q_UNUSED(tab)
    Q_UNUSED(globalPos)
}

int BrowserTabBarEx::FixedTabTotalWidth()
{
    return 0;
}

int BrowserTabBarEx::FixedTabCount()
{
    return 0;
}
