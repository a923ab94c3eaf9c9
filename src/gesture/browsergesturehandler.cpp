// SPDX-License-Identifier: MIT
#include "browsergesturehandler.h"

#include "gesturetoast.h"
#include "igesturehandlerdelegate.h"
#include "imonitorsystem.h"
#include "voskeyinjector.h"
#include "windowsystem_p.h"

#include <QApplication>
#include <QCoreApplication>
#include <QWindow>

namespace {

constexpr unsigned int kVirtualKeyPageUp = 0x21;
constexpr unsigned int kVirtualKeyPageDown = 0x22;

} // namespace

BrowserGestureHandler::BrowserGestureHandler(QObject *parent)
    : QObject(parent)
{
    m_codeTable.insert(QStringLiteral("L"), MouseGestureLeft);
    m_codeTable.insert(QStringLiteral("R"), MouseGestureRight);
    m_codeTable.insert(QStringLiteral("U"), MouseGestureUp);
    m_codeTable.insert(QStringLiteral("D"), MouseGestureDown);
    m_codeTable.insert(QStringLiteral("DR"), MouseGestureDownRight);
    m_codeTable.insert(QStringLiteral("RU"), MouseGestureRightUp);
    m_codeTable.insert(QStringLiteral("RD"), MouseGestureRightDown);
    m_codeTable.insert(QStringLiteral("LU"), MouseGestureLeftUp);
    m_codeTable.insert(QStringLiteral("UL"), MouseGestureUpLeft);
    m_codeTable.insert(QStringLiteral("UR"), MouseGestureUpRight);
    m_codeTable.insert(QStringLiteral("RL"), MouseGestureRightLeft);
    InitConnectSignals();
    m_tipEnabled = KelMouseGesture::Instance()->GetEnableGestureTip();
}

BrowserGestureHandler::~BrowserGestureHandler()
{
    // The toast is a top-level window of its own. Widgets cannot be destroyed once
    // the application object is gone (the window system connection went with it);
    // at that point the process is ending and the toast is left to it.
    if (m_toast && QCoreApplication::instance())
        delete m_toast.data();
}

void BrowserGestureHandler::SetGestureHandlerDelegate(IGestureHandlerDelegate *delegate)
{
    m_delegate = delegate;
}

void BrowserGestureHandler::HandleGestureMoving(const QStringList &codes)
{
    if (!m_tipEnabled)
        return;
    const auto shape = m_codeTable.constFind(codes.join(QString()));
    if (shape == m_codeTable.constEnd()) {
        ShowToast(tr("Invalid action"));
        return;
    }
    KelMouseGesture *settings = KelMouseGesture::Instance();
    const QMap<EMouseGestureDirection, EBrowserAction> map = settings->GetGestureMap();
    const auto action = map.constFind(shape.value());
    if (action == map.constEnd()) {
        ShowToast(tr("Invalid action"));
        return;
    }
    ShowToast(settings->GetBrowserActionText(action.value()));
}

void BrowserGestureHandler::HandleGestureEvent(const QStringList &codes)
{
    HideToast();
    const auto shape = m_codeTable.constFind(codes.join(QString()));
    if (shape == m_codeTable.constEnd())
        return;
    KelMouseGesture *settings = KelMouseGesture::Instance();
    const QMap<EMouseGestureDirection, EBrowserAction> map = settings->GetGestureMap();
    const auto found = map.constFind(shape.value());
    if (found == map.constEnd())
        return;

    const EBrowserAction action = found.value();
    // Read before acting: the delegate may release the settings instance (closing
    // the last window, say), and the report must still name the action performed.
    const QString text = settings->GetBrowserActionText(action);
    // Page Up/Down scroll the focused page by themselves and need no host; the
    // host's own actions need a delegate. Either way the gesture is reported.
    if (action == BrowserActionPageUp)
        VosKeyInjector::InjectKeyClick(kVirtualKeyPageUp);
    else if (action == BrowserActionPageDown)
        VosKeyInjector::InjectKeyClick(kVirtualKeyPageDown);
    else if (m_delegate)
        RunHostAction(m_delegate, action);
    ReportGesture(text);
}

void BrowserGestureHandler::RunHostAction(IGestureHandlerDelegate *delegate, EBrowserAction action)
{
    switch (action) {
    case BrowserActionBack:
        delegate->ActionBack();
        break;
    case BrowserActionForward:
        delegate->ActionForward();
        break;
    case BrowserActionCloseTab:
        delegate->ActionCloseTab();
        break;
    case BrowserActionNewTab:
        delegate->ActionNewTab();
        break;
    case BrowserActionReload:
        delegate->ActionRefresh();
        break;
    case BrowserActionCloseAll:
        delegate->ActionCloseAllTabs();
        break;
    case BrowserActionPreviousTab:
        delegate->ActionPreviousTab();
        break;
    case BrowserActionNextTab:
        delegate->ActionNextTab();
        break;
    case BrowserActionRecoverClosedTab:
        delegate->ActionRecoverClosedTab();
        break;
    case BrowserActionPageUp:
    case BrowserActionPageDown:
    case BrowserActionInvalid:
    default:
        // Bound to nothing on purpose (or to a value a newer build wrote): still a
        // gesture the user made, so the caller reports it.
        break;
    }
}

void BrowserGestureHandler::ReportGesture(const QString &actionText)
{
    IMonitorSystem::GetMonitorSystem()->ReportUsageEvent(QStringLiteral("Start_SystemSetting_GestureFunction"),
                                                         QStringLiteral("kel_webpage"), {actionText});
}

void BrowserGestureHandler::SlotMouseGestureUpdate()
{
    m_tipEnabled = KelMouseGesture::Instance()->GetEnableGestureTip();
}

namespace {

// On Wayland the toast is a popup of the window the stroke is drawn in, placed
// relative to it. A popup keeps the parent it was shown with: for another window it
// is hidden first and shown anew.
void MakeToastPopupOf(QWidget *toast, QWidget *window)
{
    QWindow *parent = window && window != toast ? window->window()->windowHandle() : nullptr;
    if (!parent)
        return;
    toast->createWinId();
    QWindow *handle = toast->windowHandle();
    if (!handle || handle->transientParent() == parent)
        return;
    toast->hide();
    handle->setTransientParent(parent);
}

} // namespace

void BrowserGestureHandler::ShowToast(const QString &text)
{
    if (!m_delegate)
        return;
    if (!m_toast)
        m_toast = new GestureToast(nullptr);
    const QRect area = m_delegate->GetToastArea();
    // Integer division truncating toward zero: a toast wider than the area ends up
    // left of it rather than clamped, which keeps it centred on the area's middle.
    const int x = area.left() + (area.width() - m_toast->width()) / 2;
    const int y = area.top() + (area.height() - m_toast->height()) / 2;
    m_toast->SetText(text);
    if (WindowSystem::IsWayland())
        MakeToastPopupOf(m_toast, QApplication::activeWindow() ? QApplication::activeWindow()
                                                               : QApplication::topLevelAt(area.center()));
    m_toast->move(x, y);
    m_toast->show();
}

void BrowserGestureHandler::HideToast()
{
    if (m_toast)
        m_toast->hide();
}

void BrowserGestureHandler::InitConnectSignals()
{
    connect(KelMouseGesture::Instance(), &KelMouseGesture::SigMouseGestureUpdate, this,
            &BrowserGestureHandler::SlotMouseGestureUpdate);
}
