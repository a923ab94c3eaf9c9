#include "browsertabbuttonex.h"

#include "browsertabbarex.h"
#include "dpitool.h"
#include "elidedlabelex.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "tabbarexgeometry_p.h"
#include "uiutils.h"
#include "vosimagecache.h"

#include <QCursor>
#include <QFileInfo>
#include <QIcon>
#include <QMouseEvent>
#include <QPushButton>

namespace {

const char kLoadingImage[] = ":/images/tab_bar/tab_button_loading.png";
const char kTitleFontFamily[] = "Microsoft YaHei";
constexpr int kLoadingIntervalMs = 25;

// Design sizes of the button's inner layout, in 96-dpi pixels.
constexpr int kContentLeft = 12;
constexpr int kContentTop = 8;
constexpr int kContentHeight = 16;
constexpr int kIconSize = 16;
constexpr int kIconTextGap = 8;
constexpr int kCloseRightMargin = 12;
constexpr int kTitlePixelSize = 12;

// The widgets' own names, which the style sheet keys on.
const QString kNameButton = QStringLiteral("BrowserTabButtonEx");
const QString kNameFront = QStringLiteral("TabButtonFrontEx");
const QString kNameBack = QStringLiteral("TabButtonBackEx");
const QString kNameBackHover = QStringLiteral("TabButtonBackExHover");
const QString kNamePressed = QStringLiteral("TabButtonPressedEx");
const QString kNameContent = QStringLiteral("TabButtonContentEx");
const QString kNameContentWithSep = QStringLiteral("TabButtonContentExWithSep");
const QString kNameContentNoSep = QStringLiteral("TabButtonContentExNoSep");
const QString kNameIconHome = QStringLiteral("TabButtonIconHomeEx");
const QString kNameIconCustom = QStringLiteral("TabButtonIconCustomEx");
const QString kNameIconWeb = QStringLiteral("TabButtonIconWebEx");
const QString kNameIconDefault = QStringLiteral("TabButtonIconDefaultEx");

int S(int value)
{
    return DpiTool::ScaleDefault(value);
}

} // namespace

// The button's inner widgets, all owned through Qt parenthood (the content frame is
// their parent); the struct itself is owned by the button.
struct BrowserTabButtonEx::Form
{
    QFrame *content = nullptr;
    KelLoadingLabelEx *loading = nullptr;
    ElidedLabelEx *title = nullptr;
    KelPushButton *close = nullptr;
    QPushButton *icon = nullptr;

    void Create(BrowserTabButtonEx *button)
    {
        content = new QFrame(button);
        content->setObjectName(kNameContent);
        content->setGeometry(0, 8, 224, 16);
        content->setFrameShape(QFrame::NoFrame);
        content->setFrameShadow(QFrame::Plain);
        content->setLineWidth(0);

        loading = new KelLoadingLabelEx(content);
        loading->setObjectName(QStringLiteral("TabButtonLoadingEx"));
        loading->setGeometry(16, 0, 16, 16);
        loading->setLineWidth(0);

        title = new ElidedLabelEx(content);
        title->setObjectName(QStringLiteral("TabButtonTextEx"));
        title->setGeometry(32, 0, 176, 16);
        title->setMinimumSize(0, 0);
        title->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        title->setLineWidth(0);
        title->setTextFormat(Qt::PlainText);
        title->setMargin(0);

        close = new KelPushButton(0, 0, content);
        close->setObjectName(QStringLiteral("TabButtonCloseBtnEx"));
        close->setGeometry(208, 0, 16, 16);
        close->setCursor(Qt::PointingHandCursor);

        icon = new QPushButton(content);
        icon->setObjectName(QStringLiteral("TabButtonIconEx"));
        icon->setGeometry(0, 0, 16, 16);
        // Clicking a tab must never take the keyboard focus away from the page.
        icon->setFocusPolicy(Qt::NoFocus);
    }
};

BrowserTabButtonEx::BrowserTabButtonEx(TabDataPtr tabData, const QString &iconPath, bool loading,
                                       BrowserTabBarEx *bar, QWidget *parent)
    : BrowserTabButtonEx(std::move(tabData), iconPath, loading, bar, parent, FormMode::Created)
{
}

BrowserTabButtonEx::BrowserTabButtonEx(TabDataPtr tabData, const QString &iconPath, bool loading,
                                       BrowserTabBarEx *bar, QWidget *parent, FormMode mode)
    : QFrame(parent)
    , m_loading(loading)
    , m_bar(bar)
    , m_tabData(std::move(tabData))
    , m_iconPath(iconPath)
    , m_iconName(QStringLiteral("TabButtonIconEx"))
{
    Init(mode);
}

BrowserTabButtonEx::~BrowserTabButtonEx() = default;

void BrowserTabButtonEx::Init(FormMode mode)
{
    if (objectName().isEmpty())
        setObjectName(kNameButton);
    resize(224, 32);
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setWindowTitle(QStringLiteral("BrowserTabButtonBase"));
    setLineWidth(0);
    if (mode == FormMode::Created)
        CreateForm();

    SetStyleName(BackStyleName());
    UpdateIcon();
    UpdateCloseButton();
    SetSeparatorVisible(true);

    InitButton();
}

void BrowserTabButtonEx::InitButton()
{
    const QString title = m_tabData ? m_tabData->GetTitle() : QString();
    setToolTip(title.toHtmlEscaped());
    setCursor(Qt::ArrowCursor);
    // The tool tip keeps the empty title on purpose: a fresh tab has nothing to tell.
    if (m_tabData && title.isEmpty())
        m_tabData->SetTitle(TabData::GetNewTabName());

    if (IsHomePage()) {
        SetIconLook(kNameIconHome, QString(), QString(), false);
        SetIconVisibility(m_iconShown, false);
    } else {
        // The indicator turns from CreateForm() on when the tab is loading.
        SetIconVisibility(m_iconShown, false);
    }

    ChooseIconSource();
    UpdateIcon();
    ApplyFont();
    UpdateLayout();
    UpdateCloseButton();
    show();
}

void BrowserTabButtonEx::CreateForm()
{
    if (m_form)
        return;
    m_form.reset(new Form);
    m_form->Create(this);
    Form &form = *m_form;

    if (!IsHomePage()) {
        connect(form.close, &QPushButton::clicked, this, &BrowserTabButtonEx::SlotCloseClicked);
        connect(form.icon, &QPushButton::clicked, this, &BrowserTabButtonEx::SlotIconClicked);
        form.loading->SetImage(QString::fromLatin1(kLoadingImage));
        if (m_loading)
            form.loading->StartAnimation(kLoadingIntervalMs);
    }

    // Everything that happened while the widgets did not exist.
    form.content->setObjectName(m_separatorShown ? kNameContentWithSep : kNameContentNoSep);
    form.icon->setVisible(m_iconShown);
    form.loading->setVisible(m_loadingShown);
    form.close->setVisible(m_closeShown);
    m_shownIconFile.clear();
    ApplyIconLook();
    ApplyFont();
    UpdateLayout();
    form.content->show();
}

void BrowserTabButtonEx::ReleaseForm()
{
    if (!m_form)
        return;
    QFrame *content = m_form->content;
    m_form->loading->StopAnimation();
    m_form.reset();
    m_shownIconFile.clear();
    // Later, not now: one of the widgets may be delivering the event that led here.
    content->hide();
    content->deleteLater();
}

void BrowserTabButtonEx::ChooseIconSource()
{
    if (!m_tabData)
        return;
    if (m_tabData->IsPlugin() && m_bar)
        SetIconUrl(m_bar->GetPluginIconUrl(m_tabData->GetTitle()));
    else if (m_tabData->IsWebPopup() && !m_iconPath.isEmpty())
        SetIconUrl(m_iconPath);
    else if (m_tabData->IsWeb() && !m_iconPath.isEmpty())
        SetIconUrl(m_iconPath);
}

void BrowserTabButtonEx::ReloadIcon()
{
    ChooseIconSource();
    UpdateIcon();
}

void BrowserTabButtonEx::ApplyFont()
{
    if (!m_form)
        return;
    m_form->title->SetFontFamily(QString::fromLatin1(kTitleFontFamily));
    m_form->title->SetFontPixelSize(S(kTitlePixelSize));
}

void BrowserTabButtonEx::DetachFromBar()
{
    m_bar = nullptr;
}

bool BrowserTabButtonEx::IsHomePage() const
{
    return m_tabData && m_tabData->IsHomePage();
}

QString BrowserTabButtonEx::BackStyleName() const
{
    return m_hovered ? kNameBackHover : kNameBack;
}

void BrowserTabButtonEx::SetStyleName(const QString &name)
{
    if (objectName() == name)
        return;
    setObjectName(name);
    // Children's rules may depend on the button's name, so they are re-polished with it.
    TabBarExGeometry::Repolish(this);
    if (m_form) {
        TabBarExGeometry::Repolish(m_form->title);
        TabBarExGeometry::Repolish(m_form->close);
        TabBarExGeometry::Repolish(m_form->icon);
    }
    update();
}

void BrowserTabButtonEx::SetTitle(const QString &title)
{
    if (title.isEmpty() || !m_tabData)
        return;
    m_tabData->SetTitle(title);
    setToolTip(title.toHtmlEscaped());
    UpdateTitle();
    UpdateTextGeometry();
}

void BrowserTabButtonEx::SetIconUrl(const QString &url)
{
    m_requestedIconUrl = url;
    if (m_tabData)
        m_tabData->SetIconUrl(url);
    VosImageCache *cache = VosImageCache::Instance();
    // One connection is enough however often the icon is asked for: the answer for
    // an older address is ignored anyway.
    connect(cache, &VosImageCache::SigRequestImageFinished, this, &BrowserTabButtonEx::SlotRequestImageFinished,
            Qt::UniqueConnection);
    cache->RequestImage(m_requestedIconUrl, false);
}

void BrowserTabButtonEx::SlotRequestImageFinished(bool success, const QString &url, const QString &localPath)
{
    if (url != m_requestedIconUrl)
        return;
    disconnect(VosImageCache::Instance(), &VosImageCache::SigRequestImageFinished, this,
               &BrowserTabButtonEx::SlotRequestImageFinished);
    if (success) {
        if (QFileInfo::exists(localPath)) {
            m_iconPath = localPath;
            // The file may have been fetched again under the same name.
            m_shownIconFile.clear();
        }
    } else {
        m_iconPath.clear();
    }
    UpdateIcon();
}

void BrowserTabButtonEx::SetChecked(bool checked)
{
    m_checked = checked;
    if (m_pressed)
        return;
    if (m_checked) {
        SetStyleName(kNameFront);
        raise();
    } else {
        SetStyleName(BackStyleName());
    }
    UpdateIcon();
    UpdateCloseButton();
}

bool BrowserTabButtonEx::IsChecked() const
{
    return m_checked;
}

bool BrowserTabButtonEx::IsPressed() const
{
    return m_pressed;
}

void BrowserTabButtonEx::SetPressed()
{
    m_pressed = true;
    SetStyleName(kNamePressed);
    UpdateIcon();
}

void BrowserTabButtonEx::SetReleased()
{
    m_pressed = false;
    if (m_checked) {
        SetStyleName(kNameFront);
        raise();
    } else {
        SetStyleName(BackStyleName());
    }
    m_checkedHover = m_checked && rect().contains(mapFromGlobal(QCursor::pos()));
    UpdateIcon();
}

void BrowserTabButtonEx::SetSeparatorVisible(bool visible)
{
    const bool shown = visible && !m_checked && !m_hovered;
    if (shown == m_separatorShown)
        return;
    m_separatorShown = shown;
    if (!m_form)
        return;
    m_form->content->setObjectName(shown ? kNameContentWithSep : kNameContentNoSep);
    TabBarExGeometry::Repolish(m_form->content);
}

bool BrowserTabButtonEx::IsSeparatorVisible() const
{
    return m_separatorShown;
}

void BrowserTabButtonEx::LoadStart()
{
    m_loading = true;
    // The home tab keeps its icon while loading; a hidden indicator need not turn.
    if (m_form && !IsHomePage())
        m_form->loading->StartAnimation(kLoadingIntervalMs);
    if (!m_bar)
        return;
    if (IsHomePage())
        SetIconVisibility(true, false);
    else
        SetIconVisibility(false, true);
}

void BrowserTabButtonEx::LoadFinished()
{
    m_loading = false;
    if (m_form)
        m_form->loading->StopAnimation();
    UpdateIcon();
}

void BrowserTabButtonEx::SetIconVisibility(bool iconShown, bool loadingShown)
{
    m_iconShown = iconShown;
    m_loadingShown = loadingShown;
    if (!m_form)
        return;
    if (m_form->icon->isHidden() == iconShown)
        m_form->icon->setVisible(iconShown);
    if (m_form->loading->isHidden() == loadingShown)
        m_form->loading->setVisible(loadingShown);
}

void BrowserTabButtonEx::UpdateIcon()
{
    if (!m_bar)
        return;
    if (IsHomePage()) {
        SetIconVisibility(true, false);
        return;
    }
    SetIconVisibility(!m_loading, m_loading);
    if (m_loading)
        return;
    if (m_tabData && (m_tabData->IsPlugin() || m_tabData->IsWeb() || m_tabData->IsWebPopup()))
        ShowCustomIcon();
    else
        ShowDefaultIcon();
}

void BrowserTabButtonEx::ShowCustomIcon()
{
    QString path;
    if (m_checked && m_checkedHover && !m_pressed && m_bar)
        path = m_bar->GetCheckedIcon(m_tabData);
    if (path.isEmpty()) {
        ShowDefaultIcon();
        return;
    }
    SetIconLook(kNameIconCustom, QStringLiteral("#TabButtonIconCustomEx{border-image: url(%1);}").arg(path),
                QString(), true);
}

void BrowserTabButtonEx::ShowDefaultIcon()
{
    if (!m_iconPath.isEmpty())
        SetIconLook(kNameIconWeb, QString(), m_iconPath, false);
    else
        SetIconLook(kNameIconDefault, QString(), QString(), false);
}

void BrowserTabButtonEx::SetIconLook(const QString &name, const QString &styleSheet, const QString &iconFile,
                                     bool takesMouse)
{
    m_iconName = name;
    m_iconStyleSheet = styleSheet;
    m_iconFile = iconFile;
    m_iconTakesMouse = takesMouse;
    ApplyIconLook();
}

// Each part is touched only when it changes: the bar asks buttons to update their icon
// on every change of the current tab, and with hundreds of tabs a re-polish or an icon
// load per button per change would dominate.
void BrowserTabButtonEx::ApplyIconLook()
{
    if (!m_form)
        return;
    QPushButton *icon = m_form->icon;
    icon->setAttribute(Qt::WA_TransparentForMouseEvents, !m_iconTakesMouse);
    if (!icon->testAttribute(Qt::WA_SetCursor))
        icon->setCursor(Qt::ArrowCursor);

    if (m_iconFile != m_shownIconFile || (m_iconFile.isEmpty() && !icon->icon().isNull())) {
        icon->setIcon(m_iconFile.isEmpty() ? QIcon() : QIcon(m_iconFile));
        m_shownIconFile = m_iconFile;
    }

    const bool renamed = icon->objectName() != m_iconName;
    if (renamed)
        icon->setObjectName(m_iconName);
    if (icon->styleSheet() != m_iconStyleSheet)
        icon->setStyleSheet(m_iconStyleSheet); // re-polishes by itself, under the new name
    else if (renamed)
        TabBarExGeometry::Repolish(icon);
}

QPoint BrowserTabButtonEx::GetIconGlobalPos() const
{
    // The icon lies at the content frame's origin, made or not.
    const QPoint iconPos = m_form ? m_form->icon->pos() : QPoint(0, 0);
    return mapToGlobal(iconPos + DpiTool::ScaleDefault(QPoint(12, 8)));
}

TabDataPtr BrowserTabButtonEx::GetTabData() const
{
    return m_tabData;
}

QString BrowserTabButtonEx::RequestedIconUrl() const
{
    return m_requestedIconUrl;
}

QString BrowserTabButtonEx::IconPath() const
{
    return m_iconPath;
}

bool BrowserTabButtonEx::IsLoading() const
{
    return m_loading;
}

bool BrowserTabButtonEx::IsHovered() const
{
    return m_hovered;
}

void BrowserTabButtonEx::UpdateLayout()
{
    if (m_tabData && m_form) {
        const int contentWidth = qMax(0, width() - S(kContentLeft));
        TabBarExGeometry::SetFixedSize(m_form->content, QSize(contentWidth, S(kContentHeight)));
        TabBarExGeometry::Move(m_form->content, QPoint(S(kContentLeft), S(kContentTop)));
        const QSize iconSize(S(kIconSize), S(kIconSize));
        TabBarExGeometry::SetFixedSize(m_form->icon, iconSize);
        TabBarExGeometry::SetFixedSize(m_form->loading, iconSize);
        TabBarExGeometry::SetFixedSize(m_form->close, iconSize);
        // A web icon fills its button at every scale factor, not the style's 16 pixels.
        m_form->icon->setIconSize(iconSize);
        TabBarExGeometry::Move(m_form->icon, QPoint(0, 0));
        TabBarExGeometry::Move(m_form->loading, QPoint(0, 0));
        TabBarExGeometry::Move(m_form->close, QPoint(contentWidth - S(kIconSize) - S(kCloseRightMargin), 0));
        UpdateTextGeometry();
    }
    UpdateIcon();
    UpdateTitle();
}

void BrowserTabButtonEx::UpdateTextGeometry()
{
    if (!m_form)
        return;
    int textWidth = m_form->content->width() - S(kIconTextGap) - S(kIconSize) - S(kCloseRightMargin);
    if (m_closeShown)
        textWidth -= S(kIconSize);
    TabBarExGeometry::SetFixedSize(m_form->title, QSize(qMax(0, textWidth), S(kContentHeight)));
    TabBarExGeometry::Move(m_form->title, QPoint(S(kIconTextGap) + S(kIconSize), 0));
}

void BrowserTabButtonEx::UpdateTitle()
{
    if (m_form)
        m_form->title->setText(m_tabData ? m_tabData->GetTitle() : QString(), QString());
}

void BrowserTabButtonEx::UpdateCloseButton()
{
    if (IsHomePage())
        m_closeShown = false;
    else if (m_checked)
        m_closeShown = true;
    else
        m_closeShown = width() > (m_bar ? m_bar->NoCloseButtonWidth() : DpiTool::ScaleDefault(112));
    if (m_form && m_form->close->isHidden() == m_closeShown)
        m_form->close->setVisible(m_closeShown);
    UpdateTextGeometry();
}

void BrowserTabButtonEx::SlotCloseClicked()
{
    Q_EMIT SigCloseClicked(m_tabData);
}

void BrowserTabButtonEx::SlotIconClicked()
{
    Q_EMIT SigIconClicked(m_tabData);
}

void BrowserTabButtonEx::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() == Qt::LeftButton) {
        // A receiver may delete this button (or its bar) while the signal runs.
        const QPointer<BrowserTabButtonEx> self(this);
        Q_EMIT SigChangeClicked(m_tabData);
        if (!self || IsHomePage())
            return;
        m_checkedHover = true;
        Q_EMIT SigButtonPressed();
    } else if (event->button() == Qt::RightButton && !m_pressed) {
        Q_EMIT SigMenuClicked(m_tabData);
    }
}

void BrowserTabButtonEx::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
    if (m_bar && m_bar->IsDoubleCloseTab())
        Q_EMIT SigCloseClicked(m_tabData);
}

void BrowserTabButtonEx::enterEvent(QEvent *event)
{
    QFrame::enterEvent(event);
    m_hovered = true;
    if (m_checked) {
        m_checkedHover = true;
        UpdateIcon();
        return;
    }
    m_checkedHover = false;
    if (!m_pressed)
        SetStyleName(kNameBackHover);
    Q_EMIT SigHoverChanged(m_tabData, true);
}

void BrowserTabButtonEx::leaveEvent(QEvent *event)
{
    QFrame::leaveEvent(event);
    m_hovered = false;
    m_checkedHover = false;
    if (m_checked) {
        UpdateIcon();
        return;
    }
    if (!m_pressed)
        SetStyleName(kNameBack);
    Q_EMIT SigHoverChanged(m_tabData, false);
}

void BrowserTabButtonEx::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    UpdateLayout();
    UpdateCloseButton();
}
