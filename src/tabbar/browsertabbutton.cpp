// SPDX-License-Identifier: MIT
#include "browsertabbutton.h"

#include "browsertabbar.h"
#include "browsertabbutton_p.h"
#include "dpitool.h"
#include "kellabel.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "tabgeometry_p.h"
#include "tabpointer_p.h"
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
    if (widget->testAttribute(Qt::WA_WState_Polished))
        UIUtils::UpdateStyle(widget);
}

} // namespace

BrowserTabButtonPrivate::BrowserTabButtonPrivate() = default;

BrowserTabButtonPrivate::~BrowserTabButtonPrivate() = default;

BrowserTabBar *BrowserTabButtonPrivate::Bar() const
{
    return static_cast<BrowserTabBar *>(bar.data());
}

BrowserTabButton::BrowserTabButton(TabDataPtr tabData, const QString &iconPath, bool loading,
                                   BrowserTabBar *bar, QWidget *parent)
    : BrowserTabButtonBase(*new BrowserTabButtonPrivate, std::move(tabData), iconPath, loading, bar, parent)
{
    Q_D(BrowserTabButton);
    d->InitForm();
    d->SetChecked(false);
    d->InitButton();
}

BrowserTabButton::~BrowserTabButton() = default;

void BrowserTabButtonPrivate::InitForm()
{
    Q_Q(BrowserTabButton);
    if (q->objectName().isEmpty())
        q->setObjectName(QStringLiteral("BrowserTabButton"));
    q->resize(176, 32);
    q->setFocusPolicy(Qt::NoFocus);
    q->setContextMenuPolicy(Qt::NoContextMenu);
    q->setWindowTitle(QStringLiteral("BrowserTabButtonBase"));
    q->setLineWidth(0);

    homePage = new QFrame(q);
    homePage->setObjectName(QStringLiteral("TabButtonHomePage"));
    homePage->setGeometry(12, 0, 54, 32);
    homePage->setFrameShape(QFrame::NoFrame);
    homePage->setFrameShadow(QFrame::Plain);
    homePage->setLineWidth(0);

    content = new QFrame(q);
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

    loadingLabel = new KelLoadingLabelEx(content);
    loadingLabel->setObjectName(QStringLiteral("TabButtonLoading"));
    loadingLabel->setGeometry(16, 6, 16, 16);
    loadingLabel->setText(QString());

    title = new KelLabel(content);
    title->setObjectName(QStringLiteral("TabButtonText"));
    title->setGeometry(32, 6, 50, 16);
    title->setMinimumSize(0, 0);
    title->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    title->setStyleSheet(QString());
    title->setTextFormat(Qt::PlainText);
    title->setMargin(0);
    title->setText(QString());

    closeButton = new KelPushButton(0, 0, content);
    closeButton->setObjectName(QStringLiteral("TabButtonCloseBtn"));
    closeButton->setGeometry(86, 8, 12, 12);
    closeButton->setCursor(Qt::PointingHandCursor);
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
        homePage->show();
        content->hide();
    } else {
        homePage->hide();
        content->show();
        QObject::connect(closeButton, &QPushButton::clicked, q, &BrowserTabButtonBase::SlotCloseClicked);
    }

    // A click on the icon is a click on the tab.
    icon->setAttribute(Qt::WA_TransparentForMouseEvents);

    loadingLabel->SetImage(LoadingImage());
    loadingLabel->hide();
    if (loading)
        loadingLabel->StartAnimation(kLoadingIntervalMs);

    ChooseIconSource();

    UpdateIcon();
    q->UpdateLayout();
    q->UpdateCloseButton();
    q->show();
}

void BrowserTabButtonPrivate::SetTitle(const QString &text)
{
    title->setText(text);
    UpdateTextGeometry();
}

void BrowserTabButtonPrivate::SetStyleName(const QString &name)
{
    Q_Q(BrowserTabButton);
    // Set and re-polished every time, also when the name stays: the children's rules
    // depend on the button's name, and a host may have changed properties that only a
    // new polish picks up. The button itself is not re-polished: its background is
    // painted, not styled.
    q->setObjectName(name);
    if (IsHomePage()) {
        Restyle(homePage);
    } else {
        Restyle(title);
        Restyle(closeButton);
        Restyle(icon);
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
    loadingLabel->StartAnimation(kLoadingIntervalMs);
    icon->hide();
    loadingLabel->show();
}

void BrowserTabButtonPrivate::LoadFinished()
{
    loading = false;
    loadingLabel->StopAnimation();
    UpdateIcon();
}

void BrowserTabButton::UpdateTitle()
{
    Q_D(BrowserTabButton);
    d->title->setText(d->tabData->GetTitle());
}

void BrowserTabButtonPrivate::UpdateIcon()
{
    icon->setVisible(!loading);
    loadingLabel->setVisible(loading);
    if (loading)
        return;
    // Every resize lays the button out again and comes here: restyle and reload only
    // when the icon really changed.
    const QString name = iconPath.isEmpty() ? QStringLiteral("TabButtonIconDefault")
                                            : QStringLiteral("TabButtonIconCustom");
    if (iconShownOnce && name == icon->objectName() && shownIconPath == iconPath)
        return;
    iconShownOnce = true;
    shownIconPath = iconPath;
    icon->setObjectName(name);
    icon->setIcon(iconPath.isEmpty() ? QIcon() : QIcon(iconPath));
    Restyle(icon);
}

void BrowserTabButton::UpdateLayoutOnly()
{
    Q_D(BrowserTabButton);
    if (d->IsHomePage()) {
        TabGeometry::Move(d->homePage, QPoint((width() - d->homePage->width()) / 2, (height() - d->homePage->height()) / 2));
        return;
    }
    const int padding = S(12);
    TabGeometry::SetFixedSize(d->content, QSize(width() - 2 * padding, height()));
    TabGeometry::Move(d->content, QPoint(padding, 0));
    const int contentW = d->content->width();
    const int contentH = d->content->height();
    // The icon, loading and close widgets keep their form sizes; only their places scale.
    TabGeometry::Move(d->icon, QPoint(0, (contentH - S(16)) / 2));
    TabGeometry::Move(d->loadingLabel, QPoint(0, (contentH - S(16)) / 2));
    TabGeometry::Move(d->closeButton, QPoint(contentW - S(12), (contentH - S(12)) / 2));
    d->UpdateTextGeometry();
}

void BrowserTabButton::UpdateLayout()
{
    Q_D(BrowserTabButton);
    UpdateLayoutOnly();
    d->UpdateIcon();
    d->title->setText(d->tabData->GetTitle());
}

void BrowserTabButtonPrivate::UpdateTextGeometry()
{
    const int y = (content->height() - S(16)) / 2;
    int width = content->width() - S(2) - S(16);
    if (!closeButton->isHidden())
        width -= S(12);
    TabGeometry::SetFixedSize(title, QSize(width, S(16)));
    TabGeometry::Move(title, QPoint(S(2) + S(16), y));
}

void BrowserTabButton::UpdateCloseButton()
{
    Q_D(BrowserTabButton);
    bool visible;
    if (d->IsHomePage())
        visible = false;
    else if (d->checked)
        visible = true;
    else
        // The bar's common width, not this button's: the one-pixel-wider buttons that
        // take up the remainder must not differ from their neighbours.
        visible = d->bar && d->bar->ButtonWidth() > d->bar->NoCloseButtonWidth();
    d->closeButton->setVisible(visible);
    d->UpdateTextGeometry();
}

void BrowserTabButton::enterEvent(KelEnterEvent *event)
{
    Q_D(BrowserTabButton);
    BrowserTabButtonBase::enterEvent(event);
    // Hovering shows the close button even on tabs too narrow to keep it.
    if (!d->IsHomePage()) {
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
    if (!d->bar)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (const QPixmap *background = d->Bar()->GetButtonBg(width(), d->checked, d->hovered)) {
        // The tab's slanted edges lean the other way when the strip runs leftwards.
        if (isRightToLeft()) {
            painter.translate(width(), 0);
            painter.scale(-1, 1);
        }
        painter.drawPixmap(0, 0, *background);
    }
}

void BrowserTabButton::resizeEvent(QResizeEvent *event)
{
    BrowserTabButtonBase::resizeEvent(event);
    UpdateLayout();
    UpdateCloseButton();
}
