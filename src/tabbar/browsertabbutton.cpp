#include "browsertabbutton.h"

#include "browsertabbar.h"
#include "browsertabbutton_p.h"
#include "dpitool.h"
#include "kellabel.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "uiutils.h"
#include "vosimagecache.h"

#include <QCursor>
#include <QFileInfo>
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

BrowserTabButton::BrowserTabButton(TabDataPtr tabData, const QString &iconPath, bool loading,
                                   BrowserTabBar *bar, QWidget *parent)
    : QFrame(parent)
    , d(new BrowserTabButtonPrivate)
{
    d->loading = loading;
    d->bar = bar;
    // Every operation reads the record; a button without one would be a trap.
    d->tabData = tabData ? tabData : TabDataPtr(new TabData);
    d->iconPath = iconPath;
    InitForm();
    SetChecked(false);
    InitButton();
}

BrowserTabButton::~BrowserTabButton() = default;

void BrowserTabButton::InitForm()
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("BrowserTabButton"));
    resize(176, 32);
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setWindowTitle(QStringLiteral("BrowserTabButtonBase"));
    setLineWidth(0);

    d->homePage = new QFrame(this);
    d->homePage->setObjectName(QStringLiteral("TabButtonHomePage"));
    d->homePage->setGeometry(12, 0, 54, 32);
    d->homePage->setFrameShape(QFrame::NoFrame);
    d->homePage->setFrameShadow(QFrame::Plain);
    d->homePage->setLineWidth(0);

    d->content = new QFrame(this);
    d->content->setObjectName(QStringLiteral("TabButtonContent"));
    d->content->setGeometry(66, 0, 98, 28);
    d->content->setFrameShape(QFrame::NoFrame);
    d->content->setFrameShadow(QFrame::Plain);
    d->content->setLineWidth(0);

    d->icon = new KelPushButton(0, 0, d->content);
    d->icon->setObjectName(QStringLiteral("TabButtonIcon"));
    d->icon->setGeometry(0, 6, 16, 16);
    QSizePolicy iconPolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    iconPolicy.setHorizontalStretch(0);
    iconPolicy.setVerticalStretch(0);
    d->icon->setSizePolicy(iconPolicy);
    d->icon->setText(QString());

    d->loadingLabel = new KelLoadingLabelEx(d->content);
    d->loadingLabel->setObjectName(QStringLiteral("TabButtonLoading"));
    d->loadingLabel->setGeometry(16, 6, 16, 16);
    d->loadingLabel->setText(QString());

    d->title = new KelLabel(d->content);
    d->title->setObjectName(QStringLiteral("TabButtonText"));
    d->title->setGeometry(32, 6, 50, 16);
    d->title->setMinimumSize(0, 0);
    d->title->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    d->title->setStyleSheet(QString());
    d->title->setTextFormat(Qt::PlainText);
    d->title->setMargin(0);
    d->title->setText(QString());

    d->closeButton = new KelPushButton(0, 0, d->content);
    d->closeButton->setObjectName(QStringLiteral("TabButtonCloseBtn"));
    d->closeButton->setGeometry(86, 8, 12, 12);
    d->closeButton->setCursor(Qt::PointingHandCursor);
}

void BrowserTabButton::InitButton()
{
    // The tool tip is taken before a missing title is filled in, so that a new
    // tab shows no tool tip.
    setToolTip(d->tabData->GetTitle().toHtmlEscaped());
    setCursor(Qt::ArrowCursor);
    if (d->tabData->GetTitle().isEmpty())
        d->tabData->SetTitle(TabData::GetNewTabName());

    if (d->tabData->IsHomePage()) {
        d->homePage->show();
        d->content->hide();
    } else {
        d->homePage->hide();
        d->content->show();
        connect(d->closeButton, &QPushButton::clicked, this, &BrowserTabButton::SlotCloseClicked);
    }

    // A click on the icon is a click on the tab.
    d->icon->setAttribute(Qt::WA_TransparentForMouseEvents);

    d->loadingLabel->SetImage(LoadingImage());
    d->loadingLabel->hide();
    if (d->loading)
        d->loadingLabel->StartAnimation(kLoadingIntervalMs);

    RequestIcon();

    UpdateIcon();
    UpdateLayout();
    UpdateCloseButton();
    show();
}

void BrowserTabButton::RequestIcon()
{
    if (d->tabData->IsPlugin() && d->bar) {
        SetIconUrl(d->bar->GetPluginIconUrl(d->tabData->GetTitle()));
    } else if ((d->tabData->IsWebPopup() || d->tabData->IsWeb()) && !d->iconPath.isEmpty()) {
        SetIconUrl(d->iconPath);
    }
}

TabDataPtr BrowserTabButton::GetTabData() const
{
    return d->tabData;
}

void BrowserTabButton::SetTitle(const QString &title)
{
    if (title.isEmpty())
        return;
    d->tabData->SetTitle(title);
    setToolTip(title.toHtmlEscaped());
    d->title->setText(title);
    UpdateTextGeometry();
}

void BrowserTabButton::SetIconUrl(const QString &url)
{
    d->requestedIconUrl = url;
    VosImageCache *cache = VosImageCache::Instance();
    if (!d->iconConnection)
        d->iconConnection = connect(cache, &VosImageCache::SigRequestImageFinished, this,
                                    &BrowserTabButton::SlotRequestImageFinished);
    cache->RequestImage(url, false);
}

void BrowserTabButton::SlotRequestImageFinished(bool success, const QString &url, const QString &localPath)
{
    // Answers to earlier requests (the tab navigated since) must not overwrite the icon.
    if (url != d->requestedIconUrl)
        return;
    QObject::disconnect(d->iconConnection);
    d->iconConnection = QMetaObject::Connection();
    if (success) {
        if (QFileInfo::exists(localPath))
            d->iconPath = localPath;
    } else {
        d->iconPath.clear();
    }
    UpdateIcon();
}

void BrowserTabButton::SetStyleName(const QString &name)
{
    // Set and re-polished every time, also when the name stays: the children's
    // rules depend on the button's name, and a host may have changed properties
    // that only a new polish picks up. The button itself is not re-polished: its
    // background is painted, not styled.
    setObjectName(name);
    if (d->tabData->IsHomePage()) {
        Restyle(d->homePage);
    } else {
        Restyle(d->title);
        Restyle(d->closeButton);
        Restyle(d->icon);
    }
    update();
}

void BrowserTabButton::SetChecked(bool checked)
{
    d->checked = checked;
    if (checked) {
        SetStyleName(QStringLiteral("TabButtonFront"));
        raise();
    } else {
        SetStyleName(d->hovered ? QStringLiteral("TabButtonBackHover") : QStringLiteral("TabButtonBack"));
    }
    UpdateCloseButton();
    update();
}

bool BrowserTabButton::IsChecked() const
{
    return d->checked;
}

void BrowserTabButton::SetPressed()
{
    d->pressed = true;
}

void BrowserTabButton::SetReleased()
{
    d->pressed = false;
}

bool BrowserTabButton::IsPressed() const
{
    return d->pressed;
}

bool BrowserTabButton::IsHovered() const
{
    return d->hovered;
}

bool BrowserTabButton::IsLoading() const
{
    return d->loading;
}

void BrowserTabButton::UpdateAfterRelease()
{
    const QRect globalRect(mapToGlobal(QPoint(0, 0)), size());
    if (!globalRect.contains(QCursor::pos()))
        UpdateCloseButton();
}

void BrowserTabButton::LoadStart()
{
    d->loading = true;
    d->loadingLabel->StartAnimation(kLoadingIntervalMs);
    d->icon->hide();
    d->loadingLabel->show();
}

void BrowserTabButton::LoadFinished()
{
    d->loading = false;
    d->loadingLabel->StopAnimation();
    UpdateIcon();
}

QString BrowserTabButton::GetRequestedIconUrl() const
{
    return d->requestedIconUrl;
}

QString BrowserTabButton::GetIconPath() const
{
    return d->iconPath;
}

void BrowserTabButton::ReloadIcon()
{
    RequestIcon();
    UpdateIcon();
}

void BrowserTabButton::UpdateTitle()
{
    d->title->setText(d->tabData->GetTitle());
}

void BrowserTabButton::UpdateIcon()
{
    d->icon->setVisible(!d->loading);
    d->loadingLabel->setVisible(d->loading);
    if (d->loading)
        return;
    // Every resize lays the button out again and comes here: restyle and reload
    // only when the icon really changed.
    const QString name = d->iconPath.isEmpty() ? QStringLiteral("TabButtonIconDefault")
                                               : QStringLiteral("TabButtonIconCustom");
    if (d->iconShown && name == d->icon->objectName() && d->shownIconPath == d->iconPath)
        return;
    d->iconShown = true;
    d->shownIconPath = d->iconPath;
    d->icon->setObjectName(name);
    d->icon->setIcon(d->iconPath.isEmpty() ? QIcon() : QIcon(d->iconPath));
    Restyle(d->icon);
}

void BrowserTabButton::UpdateLayoutOnly()
{
    if (d->tabData->IsHomePage()) {
        d->homePage->move((width() - d->homePage->width()) / 2, (height() - d->homePage->height()) / 2);
        return;
    }
    const int padding = S(12);
    d->content->setFixedSize(qMax(0, width() - 2 * padding), height());
    d->content->move(padding, 0);
    const int contentW = d->content->width();
    const int contentH = d->content->height();
    // The icon, loading and close widgets keep their form sizes; only their places scale.
    d->icon->move(0, (contentH - S(16)) / 2);
    d->loadingLabel->move(0, (contentH - S(16)) / 2);
    d->closeButton->move(contentW - S(12), (contentH - S(12)) / 2);
    UpdateTextGeometry();
}

void BrowserTabButton::UpdateLayout()
{
    UpdateLayoutOnly();
    UpdateIcon();
    d->title->setText(d->tabData->GetTitle());
}

void BrowserTabButton::UpdateTextGeometry()
{
    const int y = (d->content->height() - S(16)) / 2;
    int width = d->content->width() - S(2) - S(16);
    if (!d->closeButton->isHidden())
        width -= S(12);
    d->title->setFixedSize(qMax(0, width), S(16));
    d->title->move(S(2) + S(16), y);
}

void BrowserTabButton::UpdateCloseButton()
{
    bool visible;
    if (d->tabData->IsHomePage())
        visible = false;
    else if (d->checked)
        visible = true;
    else
        // The bar's common width, not this button's: the one-pixel-wider buttons
        // that take up the remainder must not differ from their neighbours.
        visible = d->bar && d->bar->ButtonWidth() > d->bar->NoCloseButtonWidth();
    d->closeButton->setVisible(visible);
    UpdateTextGeometry();
}

void BrowserTabButton::SlotCloseClicked()
{
    const TabDataPtr tab = d->tabData;
    Q_EMIT SigCloseClicked(tab);
}

void BrowserTabButton::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    // The receivers may remove this tab and, in a nested event loop, even delete
    // the button: keep the record and watch the button across each emission.
    const TabDataPtr tab = d->tabData;
    QPointer<BrowserTabButton> self(this);
    if (event->button() == Qt::LeftButton) {
        Q_EMIT SigChangeClicked(tab);
        if (self && !tab->IsHomePage())
            Q_EMIT SigButtonPressed();
    } else if (event->button() == Qt::RightButton && !d->pressed) {
        Q_EMIT SigMenuClicked(tab);
    }
}

void BrowserTabButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
    if (d->bar && d->bar->IsDoubleCloseTab()) {
        const TabDataPtr tab = d->tabData;
        Q_EMIT SigCloseClicked(tab);
    }
}

void BrowserTabButton::enterEvent(QEvent *event)
{
    QFrame::enterEvent(event);
    // Hovering shows the close button even on tabs too narrow to keep it.
    if (!d->tabData->IsHomePage()) {
        d->closeButton->show();
        UpdateTextGeometry();
    }
    d->hovered = true;
    if (!d->checked)
        SetStyleName(QStringLiteral("TabButtonBackHover"));
    update();
}

void BrowserTabButton::leaveEvent(QEvent *event)
{
    QFrame::leaveEvent(event);
    // While dragged, the tab keeps its close button: the pointer has not really left it.
    if (!d->pressed)
        UpdateCloseButton();
    d->hovered = false;
    if (!d->checked)
        SetStyleName(QStringLiteral("TabButtonBack"));
    update();
}

void BrowserTabButton::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    if (!d->bar)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (const QPixmap *background = d->bar->GetButtonBg(width(), d->checked, d->hovered))
        painter.drawPixmap(0, 0, *background);
}

void BrowserTabButton::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    UpdateLayout();
    UpdateCloseButton();
}
