// SPDX-License-Identifier: MIT
#include "browsertabbutton.h"

#include "browsertabbar.h"
#include "browsertabbar_p.h"
#include "browsertabbutton_p.h"
#include "dpitool.h"
#include "kellabel.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "tabgeometry_p.h"
#include "tabpointer_p.h"
#include "tabrestyle_p.h"
#include "tabworkcounter_p.h"
#include "uiutils.h"

#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

namespace {

constexpr int kLoadingIntervalMs = 25;

int S(int value)
{
    return DpiTool::ScaleDefault(value);
}

QString LoadingImage()
{
    return QStringLiteral(":/images/tab_bar/tab_button_loading.png");
}

// A widget that has never been polished gets its style when it is first shown, by
// its name at that time; polishing it before then is work done twice.
void Restyle(QWidget *widget)
{
    if (widget->testAttribute(Qt::WA_WState_Polished)) {
        TabWorkCounter::Add(TabWorkCounter::Repolish);
        UIUtils::UpdateStyle(widget);
    }
}

// After the button took another name: a child whose rules cannot tell the button's
// names apart would come out of a re-polish as it went in, so only the others are
// re-polished. A child that no longer bears the name it was given (a host renamed it)
// is re-polished too, as it would have been before.
void RestyleForButtonName(QWidget *widget, const QString &givenName)
{
    if (widget->objectName() != givenName || TabRestyle::LookFollowsAncestors(widget))
        Restyle(widget);
}

QString TitleName()
{
    return QStringLiteral("TabButtonText");
}

QString CloseName()
{
    return QStringLiteral("TabButtonCloseBtn");
}

} // namespace

BrowserTabButtonPrivate::BrowserTabButtonPrivate() = default;

BrowserTabButtonPrivate::~BrowserTabButtonPrivate() = default;

BrowserTabBar *BrowserTabButtonPrivate::Bar() const
{
    return static_cast<BrowserTabBar *>(bar.data());
}

const QPixmap *BrowserTabButtonPrivate::Background() const
{
    Q_Q(const BrowserTabButton);
    if (!bar)
        return nullptr;
    // The tab's slanted edges lean the other way when the strip runs leftwards.
    return BrowserTabBarPrivate::get(Bar())->ButtonBg(q->width(), checked, hovered, q->isRightToLeft());
}

BrowserTabButton::BrowserTabButton(TabDataPtr tabData, const QString &iconPath, bool loading,
                                   BrowserTabBar *bar, QWidget *parent)
    : BrowserTabButtonBase(*new BrowserTabButtonPrivate, std::move(tabData), iconPath, loading, bar, parent)
{
    Q_D(BrowserTabButton);
    d->InitFrame();
    // A home-page tab keeps its form for good: its frame is all it shows.
    if (!d->formDeferred || d->IsHomePage())
        d->CreateForm();
    d->SetChecked(false);
    d->InitButton();
}

BrowserTabButton::~BrowserTabButton() = default;

void BrowserTabButtonPrivate::InitFrame()
{
    Q_Q(BrowserTabButton);
    if (q->objectName().isEmpty())
        q->setObjectName(QStringLiteral("BrowserTabButton"));
    q->resize(176, 32);
    q->setFocusPolicy(Qt::NoFocus);
    q->setContextMenuPolicy(Qt::NoContextMenu);
    q->setWindowTitle(QStringLiteral("BrowserTabButtonBase"));
    q->setLineWidth(0);
}

void BrowserTabButtonPrivate::CreateForm()
{
    Q_Q(BrowserTabButton);
    // The home-page frame and the loading animation are made when first needed: most
    // tabs never show the one, and show the other only while a page loads. Each
    // widget under a style sheet costs kilobytes of style data.
    content = new QFrame(q);
    // Beneath whatever was made on the button before it (a focus ring), as if it had
    // been made first.
    content->lower();
    content->setObjectName(QStringLiteral("TabButtonContent"));
    content->setGeometry(66, 0, 98, 28);
    content->setFrameShape(QFrame::NoFrame);
    content->setFrameShadow(QFrame::Plain);
    content->setLineWidth(0);

    icon = new KelPushButton(0, 0, content);
    icon->setObjectName(QStringLiteral("TabButtonIcon"));
    icon->setGeometry(0, 6, 16, 16);
    QSizePolicy iconPolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    iconPolicy.setHorizontalStretch(0);
    iconPolicy.setVerticalStretch(0);
    icon->setSizePolicy(iconPolicy);
    icon->setText(QString());

    title = new KelLabel(content);
    title->setObjectName(TitleName());
    title->setGeometry(32, 6, 50, 16);
    title->setMinimumSize(0, 0);
    title->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    title->setTextFormat(Qt::PlainText);
    title->setMargin(0);
    title->setText(QString());

    closeButton = new KelPushButton(0, 0, content);
    closeButton->setObjectName(CloseName());
    closeButton->setGeometry(86, 8, 12, 12);
    closeButton->setCursor(Qt::PointingHandCursor);

    if (!IsHomePage())
        QObject::connect(closeButton, &QPushButton::clicked, q, &BrowserTabButtonBase::SlotCloseClicked);
    // A click on the icon is a click on the tab.
    icon->setAttribute(Qt::WA_TransparentForMouseEvents);
    iconShownOnce = false;
    if (loading)
        LoadingLabel()->StartAnimation(kLoadingIntervalMs);
}

void BrowserTabButtonPrivate::ShowForm(bool shown)
{
    Q_Q(BrowserTabButton);
    if (shown == bool(content))
        return;
    if (shown) {
        CreateForm();
        // What the form shows follows from the button's state; it is shown (and so
        // polished) once its widgets bear their names.
        q->UpdateLayout();
        q->UpdateCloseButton();
        if (hovered) {
            closeButton->show();
            UpdateTextGeometry();
        }
        content->show();
        return;
    }
    // A tab under the pointer, held or current keeps its form; so does a home-page tab.
    if (hovered || pressed || checked || IsHomePage())
        return;
    // Deleted later: the form may be inside one of its own signals (a close button's
    // click whose receiver rearranged the tabs).
    QFrame *form = content;
    content = nullptr;
    icon = nullptr;
    title = nullptr;
    closeButton = nullptr;
    loadingLabel = nullptr;
    form->hide();
    form->deleteLater();
}

QFrame *BrowserTabButtonPrivate::HomePage()
{
    Q_Q(BrowserTabButton);
    if (homePage)
        return homePage;
    homePage = new QFrame(q);
    homePage->setObjectName(QStringLiteral("TabButtonHomePage"));
    homePage->setGeometry(12, 0, 54, 32);
    homePage->setFrameShape(QFrame::NoFrame);
    homePage->setFrameShadow(QFrame::Plain);
    homePage->setLineWidth(0);
    // Beneath the content, where it would lie had it been made with it.
    homePage->stackUnder(content);
    homePage->hide();
    return homePage;
}

KelLoadingLabelEx *BrowserTabButtonPrivate::LoadingLabel()
{
    if (loadingLabel)
        return loadingLabel;
    loadingLabel = new KelLoadingLabelEx(content);
    loadingLabel->setObjectName(QStringLiteral("TabButtonLoading"));
    loadingLabel->setGeometry(16, 6, 16, 16);
    loadingLabel->setText(QString());
    loadingLabel->SetImage(LoadingImage());
    // Between the icon and the title, the place it would have had from the start.
    loadingLabel->stackUnder(title);
    loadingLabel->hide();
    if (!IsHomePage())
        TabGeometry::Move(loadingLabel, QPoint(0, (content->height() - S(16)) / 2));
    return loadingLabel;
}

void BrowserTabButtonPrivate::InitButton()
{
    Q_Q(BrowserTabButton);
    // The tool tip is taken before a missing title is filled in, so that a new tab
    // shows no tool tip.
    q->setToolTip(tabData->GetTitle().toHtmlEscaped());
    q->setCursor(Qt::ArrowCursor);
    if (tabData->GetTitle().isEmpty())
        tabData->SetTitle(TabData::GetNewTabName());

    if (IsHomePage()) {
        HomePage()->show();
        content->hide();
    } else if (content) {
        content->show();
    }

    ChooseIconSource();

    UpdateIcon();
    q->UpdateLayout();
    q->UpdateCloseButton();
    q->show();
}

void BrowserTabButtonPrivate::SetTitle(const QString &text)
{
    if (!title)
        return; // the form shows the record's title when it is made
    title->setText(text);
    UpdateTextGeometry();
}

void BrowserTabButtonPrivate::SetStyleName(const QString &name)
{
    Q_Q(BrowserTabButton);
    // Set and re-polished every time, also when the name stays: the children's rules
    // may depend on the button's name, and a host may have changed properties that
    // only a new polish picks up. Children that no rule can tell that way are left
    // alone: a re-polish would give them the look they have (RestyleForButtonName).
    // The button itself is not re-polished: its background is painted, not styled.
    q->setObjectName(name);
    if (IsHomePage()) {
        RestyleForButtonName(HomePage(), QStringLiteral("TabButtonHomePage"));
    } else if (content) {
        RestyleForButtonName(title, TitleName());
        RestyleForButtonName(closeButton, CloseName());
        RestyleForButtonName(icon, iconShownOnce ? shownIconName : QStringLiteral("TabButtonIcon"));
    }
    q->update();
}

void BrowserTabButtonPrivate::SetChecked(bool isChecked)
{
    Q_Q(BrowserTabButton);
    // Also while dragged: the classic tab restyles at once.
    checked = isChecked;
    if (checked) {
        SetStyleName(QStringLiteral("TabButtonFront"));
        q->raise();
    } else {
        SetStyleName(hovered ? QStringLiteral("TabButtonBackHover") : QStringLiteral("TabButtonBack"));
    }
    q->UpdateCloseButton();
    q->update();
}

void BrowserTabButton::UpdateAfterRelease()
{
    if (!TabPointer::IsOver(this))
        UpdateCloseButton();
}

void BrowserTabButtonPrivate::LoadStart()
{
    loading = true;
    if (!content)
        return; // the form starts the animation when it is made
    LoadingLabel()->StartAnimation(kLoadingIntervalMs);
    icon->hide();
    loadingLabel->show();
}

void BrowserTabButtonPrivate::LoadFinished()
{
    loading = false;
    if (loadingLabel)
        loadingLabel->StopAnimation();
    UpdateIcon();
}

void BrowserTabButton::UpdateTitle()
{
    Q_D(BrowserTabButton);
    if (d->title)
        d->title->setText(d->tabData->GetTitle());
}

void BrowserTabButtonPrivate::UpdateIcon()
{
    if (!content)
        return; // the form shows the icon when it is made
    // Named before it is shown: showing a widget polishes it, and a polish under the
    // old name would only be undone by the re-polish under the new one.
    if (!loading) {
        // Every resize lays the button out again and comes here: restyle and reload
        // only when the icon really changed.
        const QString name = iconPath.isEmpty() ? QStringLiteral("TabButtonIconDefault")
                                                : QStringLiteral("TabButtonIconCustom");
        if (!iconShownOnce || name != icon->objectName() || shownIconPath != iconPath) {
            iconShownOnce = true;
            shownIconPath = iconPath;
            shownIconName = name;
            icon->setObjectName(name);
            icon->setIcon(iconPath.isEmpty() ? QIcon() : QIcon(iconPath));
            Restyle(icon);
        }
    }
    icon->setVisible(!loading);
    if (loading)
        LoadingLabel()->show();
    else if (loadingLabel)
        loadingLabel->hide();
}

void BrowserTabButton::UpdateLayoutOnly()
{
    Q_D(BrowserTabButton);
    if (d->IsHomePage()) {
        QFrame *homePage = d->HomePage();
        TabGeometry::Move(homePage, QPoint((width() - homePage->width()) / 2, (height() - homePage->height()) / 2));
        return;
    }
    if (!d->content)
        return;
    const int padding = S(12);
    TabGeometry::SetFixedSize(d->content, QSize(width() - 2 * padding, height()));
    TabGeometry::Move(d->content, QPoint(padding, 0));
    const int contentW = d->content->width();
    const int contentH = d->content->height();
    // The icon, loading and close widgets keep their form sizes; only their places scale.
    TabGeometry::Move(d->icon, QPoint(0, (contentH - S(16)) / 2));
    if (d->loadingLabel)
        TabGeometry::Move(d->loadingLabel, QPoint(0, (contentH - S(16)) / 2));
    TabGeometry::Move(d->closeButton, QPoint(contentW - S(12), (contentH - S(12)) / 2));
    d->UpdateTextGeometry();
}

void BrowserTabButton::UpdateLayout()
{
    Q_D(BrowserTabButton);
    UpdateLayoutOnly();
    if (!d->content)
        return;
    d->UpdateIcon();
    d->title->setText(d->tabData->GetTitle());
}

void BrowserTabButtonPrivate::UpdateTextGeometry()
{
    if (!content)
        return;
    const int y = (content->height() - S(16)) / 2;
    int width = content->width() - S(2) - S(16);
    if (!closeButton->isHidden())
        width -= S(12);
    TabGeometry::SetFixedSize(title, QSize(width, S(16)));
    TabGeometry::Move(title, QPoint(S(2) + S(16), y));
}

bool BrowserTabButtonPrivate::CloseButtonShownByState() const
{
    if (IsHomePage())
        return false;
    if (checked)
        return true;
    // The bar's common width, not this button's: the one-pixel-wider buttons that
    // take up the remainder must not differ from their neighbours.
    return bar && bar->ButtonWidth() > bar->NoCloseButtonWidth();
}

bool BrowserTabButtonPrivate::CloseButtonMadeLater() const
{
    return !content && !IsHomePage();
}

bool BrowserTabButtonPrivate::CloseButtonWouldShow() const
{
    return CloseButtonShownByState() || (hovered && !IsHomePage());
}

QRect BrowserTabButtonPrivate::CloseButtonPlace() const
{
    Q_Q(const BrowserTabButton);
    // Where UpdateLayoutOnly() puts it: at the end of the content, which keeps a
    // padding to either side of the button; the form's size.
    const QSize size(12, 12);
    const int x = q->width() - 2 * S(12);
    const int visualX = q->isRightToLeft() ? q->width() - x - size.width() : x;
    return QRect(QPoint(visualX, (q->height() - S(12)) / 2), size);
}

void BrowserTabButton::UpdateCloseButton()
{
    Q_D(BrowserTabButton);
    const bool visible = d->CloseButtonShownByState();
    if (!d->closeButton)
        return;
    d->closeButton->setVisible(visible);
    d->UpdateTextGeometry();
}

void BrowserTabButton::enterEvent(KelEnterEvent *event)
{
    Q_D(BrowserTabButton);
    BrowserTabButtonBase::enterEvent(event);
    // Hovering shows the close button even on tabs too narrow to keep it.
    if (!d->IsHomePage() && d->closeButton) {
        d->closeButton->show();
        d->UpdateTextGeometry();
    }
    d->hovered = true;
    if (!d->checked)
        d->SetStyleName(QStringLiteral("TabButtonBackHover"));
    update();
}

void BrowserTabButton::leaveEvent(QEvent *event)
{
    Q_D(BrowserTabButton);
    BrowserTabButtonBase::leaveEvent(event);
    // While dragged, the tab keeps its close button: the pointer has not really left it.
    if (!d->pressed)
        UpdateCloseButton();
    d->hovered = false;
    if (!d->checked)
        d->SetStyleName(QStringLiteral("TabButtonBack"));
    update();
}

void BrowserTabButton::paintEvent(QPaintEvent *event)
{
    Q_D(BrowserTabButton);
    Q_UNUSED(event)
    if (const QPixmap *background = d->Background()) {
        QPainter painter(this);
        painter.drawPixmap(0, 0, *background);
    }
}

void BrowserTabButton::resizeEvent(QResizeEvent *event)
{
    BrowserTabButtonBase::resizeEvent(event);
    UpdateLayout();
    UpdateCloseButton();
}
