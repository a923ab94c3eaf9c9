// SPDX-License-Identifier: MIT
#include "browsertabbuttonex.h"

#include "browsertabbarex.h"
#include "browsertabbarex_p.h"
#include "browsertabbuttonex_p.h"
#include "dpitool.h"
#include "elidedlabelex.h"
#include "kelloadinglabelex.h"
#include "kelpushbutton.h"
#include "tabgeometry_p.h"
#include "tabpointer_p.h"
#include "uiutils.h"

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

void BrowserTabButtonExPrivate::Form::Create(BrowserTabButtonEx *button)
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

BrowserTabButtonExPrivate::BrowserTabButtonExPrivate()
    : iconName(QStringLiteral("TabButtonIconEx"))
{
    recordsIconUrl = true;
}

BrowserTabButtonExPrivate::~BrowserTabButtonExPrivate() = default;

BrowserTabBarEx *BrowserTabButtonExPrivate::Bar() const
{
    return static_cast<BrowserTabBarEx *>(bar.data());
}

BrowserTabButtonEx::BrowserTabButtonEx(TabDataPtr tabData, const QString &iconPath, bool loading,
                                       BrowserTabBarEx *bar, QWidget *parent)
    : BrowserTabButtonBase(*new BrowserTabButtonExPrivate, std::move(tabData), iconPath, loading, bar, parent)
{
    Q_D(BrowserTabButtonEx);
    d->Init();
}

BrowserTabButtonEx::~BrowserTabButtonEx() = default;

void BrowserTabButtonExPrivate::Init()
{
    Q_Q(BrowserTabButtonEx);
    if (q->objectName().isEmpty())
        q->setObjectName(kNameButton);
    q->resize(224, 32);
    q->setFocusPolicy(Qt::NoFocus);
    q->setContextMenuPolicy(Qt::NoContextMenu);
    q->setWindowTitle(QStringLiteral("BrowserTabButtonBase"));
    q->setLineWidth(0);
    if (!formDeferred)
        CreateForm();

    SetStyleName(BackStyleName());
    UpdateIcon();
    UpdateCloseButton();
    SetSeparatorVisible(true);

    InitButton();
}

void BrowserTabButtonExPrivate::InitButton()
{
    Q_Q(BrowserTabButtonEx);
    const QString title = tabData->GetTitle();
    q->setToolTip(title.toHtmlEscaped());
    q->setCursor(Qt::ArrowCursor);
    // The tool tip keeps the empty title on purpose: a fresh tab has nothing to tell.
    if (title.isEmpty())
        tabData->SetTitle(TabData::GetNewTabName());

    if (IsHomePage())
        SetIconLook(kNameIconHome, QString(), QString(), false);
    // The indicator turns from CreateForm() on when the tab is loading.
    SetIconVisibility(iconShown, false);

    ChooseIconSource();
    UpdateIcon();
    titlePixelSize = S(kTitlePixelSize);
    ApplyFont();
    UpdateLayout();
    UpdateCloseButton();
    // A deferred button shows with its inner widgets (CreateForm()); until then it
    // stays hidden, also when the window it lies in is shown.
    q->setVisible(!formDeferred);
}

void BrowserTabButtonExPrivate::CreateForm()
{
    Q_Q(BrowserTabButtonEx);
    if (form)
        return;
    form.reset(new Form);
    form->Create(q);

    if (!IsHomePage()) {
        QObject::connect(form->close, &QPushButton::clicked, q, &BrowserTabButtonBase::SlotCloseClicked);
        QObject::connect(form->icon, &QPushButton::clicked, q, &BrowserTabButtonEx::SlotIconClicked);
        form->loading->SetImage(QString::fromLatin1(kLoadingImage));
        if (loading)
            form->loading->StartAnimation(kLoadingIntervalMs);
    }

    // Everything that happened while the widgets did not exist.
    form->content->setObjectName(separatorShown ? kNameContentWithSep : kNameContentNoSep);
    TabGeometry::SetMirroredStyle(form->content);
    form->icon->setVisible(iconShown);
    form->loading->setVisible(loadingShown);
    form->close->setVisible(closeShown);
    shownIconFile.clear();
    ApplyIconLook();
    ApplyFont();
    UpdateLayout();
    form->content->show();
    if (formDeferred) {
        // Under the others, as the bar stacks its tabs; the current one stays on top.
        if (!checked && !pressed)
            q->lower();
        q->show();
    }
}

void BrowserTabButtonExPrivate::ReleaseForm()
{
    Q_Q(BrowserTabButtonEx);
    if (!form)
        return;
    QFrame *content = form->content;
    form->loading->StopAnimation();
    form.reset();
    shownIconFile.clear();
    // Later, not now: one of the widgets may be delivering the event that led here.
    content->hide();
    content->deleteLater();
    if (formDeferred)
        q->hide();
}

void BrowserTabButtonExPrivate::ApplyFont()
{
    if (!form)
        return;
    form->title->SetFontFamily(QString::fromLatin1(kTitleFontFamily));
    form->title->SetFontPixelSize(titlePixelSize);
}

void BrowserTabButtonEx::ApplyFont()
{
    Q_D(BrowserTabButtonEx);
    d->titlePixelSize = S(kTitlePixelSize);
    d->ApplyFont();
}

QString BrowserTabButtonExPrivate::BackStyleName() const
{
    return hovered ? kNameBackHover : kNameBack;
}

void BrowserTabButtonExPrivate::SetStyleName(const QString &name)
{
    Q_Q(BrowserTabButtonEx);
    if (q->objectName() == name)
        return;
    q->setObjectName(name);
    // Children's rules may depend on the button's name, so they are re-polished with it.
    TabGeometry::Repolish(q);
    if (form) {
        TabGeometry::Repolish(form->title);
        TabGeometry::Repolish(form->close);
        TabGeometry::Repolish(form->icon);
    }
    q->update();
}

void BrowserTabButtonExPrivate::SetTitle(const QString &)
{
    UpdateTitle();
    UpdateTextGeometry();
}

void BrowserTabButtonExPrivate::SetChecked(bool isChecked)
{
    Q_Q(BrowserTabButtonEx);
    checked = isChecked;
    // A dragged button keeps its look until released.
    if (pressed)
        return;
    if (checked) {
        SetStyleName(kNameFront);
        q->raise();
    } else {
        SetStyleName(BackStyleName());
    }
    UpdateIcon();
    UpdateCloseButton();
}

void BrowserTabButtonExPrivate::SetPressed()
{
    BrowserTabButtonBasePrivate::SetPressed();
    SetStyleName(kNamePressed);
    UpdateIcon();
}

void BrowserTabButtonExPrivate::SetReleased()
{
    Q_Q(BrowserTabButtonEx);
    BrowserTabButtonBasePrivate::SetReleased();
    if (checked) {
        SetStyleName(kNameFront);
        q->raise();
    } else {
        SetStyleName(BackStyleName());
    }
    checkedHover = checked && TabPointer::IsOver(q);
    UpdateIcon();
}

void BrowserTabButtonExPrivate::LeftPressed()
{
    checkedHover = true;
}

void BrowserTabButtonEx::SetSeparatorVisible(bool visible)
{
    Q_D(BrowserTabButtonEx);
    d->SetSeparatorVisible(visible);
}

void BrowserTabButtonExPrivate::SetSeparatorVisible(bool visible)
{
    Q_Q(BrowserTabButtonEx);
    // The bar's next layout shows again every separator its rules do not hide, and
    // looks only at the tabs told to hide theirs: by the bar or by a host, this is one.
    if (!visible && bar)
        BrowserTabBarExPrivate::get(Bar())->SeparatorHidden(q);
    const bool shown = visible && !checked && !hovered;
    if (shown == separatorShown)
        return;
    separatorShown = shown;
    if (!form)
        return;
    form->content->setObjectName(shown ? kNameContentWithSep : kNameContentNoSep);
    TabGeometry::Repolish(form->content);
}

bool BrowserTabButtonEx::IsSeparatorVisible() const
{
    Q_D(const BrowserTabButtonEx);
    return d->separatorShown;
}

void BrowserTabButtonExPrivate::LoadStart()
{
    loading = true;
    // The home tab keeps its icon while loading; a hidden indicator need not turn.
    if (form && !IsHomePage())
        form->loading->StartAnimation(kLoadingIntervalMs);
    if (!bar)
        return;
    if (IsHomePage())
        SetIconVisibility(true, false);
    else
        SetIconVisibility(false, true);
}

void BrowserTabButtonExPrivate::LoadFinished()
{
    loading = false;
    if (form)
        form->loading->StopAnimation();
    UpdateIcon();
}

void BrowserTabButtonExPrivate::SetIconVisibility(bool iconVisible, bool loadingVisible)
{
    iconShown = iconVisible;
    loadingShown = loadingVisible;
    if (!form)
        return;
    if (form->icon->isHidden() == iconVisible)
        form->icon->setVisible(iconVisible);
    if (form->loading->isHidden() == loadingVisible)
        form->loading->setVisible(loadingVisible);
}

void BrowserTabButtonEx::UpdateIcon()
{
    Q_D(BrowserTabButtonEx);
    d->UpdateIcon();
}

void BrowserTabButtonExPrivate::UpdateIcon()
{
    if (!bar)
        return;
    if (IsHomePage()) {
        SetIconVisibility(true, false);
        return;
    }
    SetIconVisibility(!loading, loading);
    if (loading)
        return;
    if (tabData->IsPlugin() || tabData->IsWeb() || tabData->IsWebPopup())
        ShowCustomIcon();
    else
        ShowDefaultIcon();
}

void BrowserTabButtonExPrivate::ShowCustomIcon()
{
    QString path;
    if (checked && checkedHover && !pressed && bar)
        path = BrowserTabBarExPrivate::get(Bar())->CheckedIcon(tabData);
    if (path.isEmpty()) {
        ShowDefaultIcon();
        return;
    }
    SetIconLook(kNameIconCustom, QStringLiteral("#TabButtonIconCustomEx{border-image: url(%1);}").arg(path),
                QString(), true);
}

void BrowserTabButtonExPrivate::ShowDefaultIcon()
{
    if (!iconPath.isEmpty())
        SetIconLook(kNameIconWeb, QString(), iconPath, false);
    else
        SetIconLook(kNameIconDefault, QString(), QString(), false);
}

void BrowserTabButtonExPrivate::SetIconLook(const QString &name, const QString &styleSheet, const QString &file,
                                            bool takesMouse)
{
    iconName = name;
    iconStyleSheet = styleSheet;
    iconFile = file;
    iconTakesMouse = takesMouse;
    ApplyIconLook();
}

// Each part is touched only when it changes: the bar asks buttons to update their icon
// on every change of the current tab, and with hundreds of tabs a re-polish or an icon
// load per button per change would dominate.
void BrowserTabButtonExPrivate::ApplyIconLook()
{
    if (!form)
        return;
    QPushButton *icon = form->icon;
    icon->setAttribute(Qt::WA_TransparentForMouseEvents, !iconTakesMouse);
    if (!icon->testAttribute(Qt::WA_SetCursor))
        icon->setCursor(Qt::ArrowCursor);

    if (iconFile != shownIconFile || (iconFile.isEmpty() && !icon->icon().isNull())) {
        icon->setIcon(iconFile.isEmpty() ? QIcon() : QIcon(iconFile));
        shownIconFile = iconFile;
    }

    const bool renamed = icon->objectName() != iconName;
    if (renamed)
        icon->setObjectName(iconName);
    if (icon->styleSheet() != iconStyleSheet)
        icon->setStyleSheet(iconStyleSheet); // re-polishes by itself, under the new name
    else if (renamed)
        TabGeometry::Repolish(icon);
}

QPoint BrowserTabButtonEx::GetIconGlobalPos() const
{
    Q_D(const BrowserTabButtonEx);
    // The icon lies at the content frame's start, made or not: its right end when mirrored.
    const QPoint iconPos = d->form ? TabGeometry::Pos(d->form->icon) : QPoint(0, 0);
    const QPoint logical = iconPos + DpiTool::ScaleDefault(QPoint(12, 8));
    const int x = TabGeometry::VisualX(isRightToLeft(), width(), logical.x(), DpiTool::ScaleDefault(kIconSize));
    return mapToGlobal(QPoint(x, logical.y()));
}

void BrowserTabButtonExPrivate::UpdateLayout()
{
    Q_Q(BrowserTabButtonEx);
    if (form) {
        const int contentWidth = qMax(0, q->width() - S(kContentLeft));
        TabGeometry::SetFixedSize(form->content, QSize(contentWidth, S(kContentHeight)));
        TabGeometry::Move(form->content, QPoint(S(kContentLeft), S(kContentTop)));
        const QSize iconSize(S(kIconSize), S(kIconSize));
        TabGeometry::SetFixedSize(form->icon, iconSize);
        TabGeometry::SetFixedSize(form->loading, iconSize);
        TabGeometry::SetFixedSize(form->close, iconSize);
        // A web icon fills its button at every scale factor, not the style's 16 pixels.
        form->icon->setIconSize(iconSize);
        TabGeometry::Move(form->icon, QPoint(0, 0));
        TabGeometry::Move(form->loading, QPoint(0, 0));
        TabGeometry::Move(form->close, QPoint(contentWidth - S(kIconSize) - S(kCloseRightMargin), 0));
        UpdateTextGeometry();
    }
    UpdateIcon();
    UpdateTitle();
}

void BrowserTabButtonExPrivate::DirectionChanged()
{
    if (form)
        TabGeometry::SetMirroredStyle(form->content); // the separator changes sides
}

void BrowserTabButtonExPrivate::UpdateTextGeometry()
{
    if (!form)
        return;
    int textWidth = form->content->width() - S(kIconTextGap) - S(kIconSize) - S(kCloseRightMargin);
    if (closeShown)
        textWidth -= S(kIconSize);
    TabGeometry::SetFixedSize(form->title, QSize(qMax(0, textWidth), S(kContentHeight)));
    TabGeometry::Move(form->title, QPoint(S(kIconTextGap) + S(kIconSize), 0));
}

void BrowserTabButtonExPrivate::UpdateTitle()
{
    if (form)
        form->title->setText(tabData->GetTitle(), QString());
}

void BrowserTabButtonExPrivate::UpdateCloseButton()
{
    Q_Q(BrowserTabButtonEx);
    if (IsHomePage())
        closeShown = false;
    else if (checked)
        closeShown = true;
    else
        closeShown = q->width() > (bar ? bar->NoCloseButtonWidth() : S(112));
    if (form && form->close->isHidden() == closeShown)
        form->close->setVisible(closeShown);
    UpdateTextGeometry();
}

void BrowserTabButtonEx::SlotIconClicked()
{
    // The signal takes its own copy of the record: a receiver may delete this button.
    Q_EMIT SigIconClicked(d_func()->tabData);
}

void BrowserTabButtonEx::enterEvent(KelEnterEvent *event)
{
    Q_D(BrowserTabButtonEx);
    BrowserTabButtonBase::enterEvent(event);
    d->hovered = true;
    if (d->checked) {
        d->checkedHover = true;
        d->UpdateIcon();
        return;
    }
    d->checkedHover = false;
    if (!d->pressed)
        d->SetStyleName(kNameBackHover);
    const TabDataPtr tab = d->tabData;
    Q_EMIT SigHoverChanged(tab, true);
}

void BrowserTabButtonEx::leaveEvent(QEvent *event)
{
    Q_D(BrowserTabButtonEx);
    BrowserTabButtonBase::leaveEvent(event);
    d->hovered = false;
    d->checkedHover = false;
    if (d->checked) {
        d->UpdateIcon();
        return;
    }
    if (!d->pressed)
        d->SetStyleName(kNameBack);
    const TabDataPtr tab = d->tabData;
    Q_EMIT SigHoverChanged(tab, false);
}

void BrowserTabButtonEx::resizeEvent(QResizeEvent *event)
{
    Q_D(BrowserTabButtonEx);
    BrowserTabButtonBase::resizeEvent(event);
    d->UpdateLayout();
    d->UpdateCloseButton();
}
