// SPDX-License-Identifier: MIT
#include "browserkeyhandler.h"

#include "ikeyhandlerdelegate.h"
#include "vosshortcut.h"
#include "vosshortcutmanager.h"

namespace {

// Windows virtual-key codes, as the shortcut service reports them.
enum VirtualKey : uint {
    VkTab = 0x09,
    VkEscape = 0x1B,
    VkPageUp = 0x21,
    VkPageDown = 0x22,
    VkLeft = 0x25,
    VkUp = 0x26,
    VkRight = 0x27,
    VkDown = 0x28,
    VkDelete = 0x2E,
    Vk0 = 0x30,
    Vk1 = 0x31,
    Vk8 = 0x38,
    Vk9 = 0x39,
    VkC = 0x43,
    VkD = 0x44,
    VkE = 0x45,
    VkF = 0x46,
    VkH = 0x48,
    VkJ = 0x4A,
    VkR = 0x52,
    VkT = 0x54,
    VkW = 0x57,
    VkNumpad0 = 0x60,
    VkNumpad1 = 0x61,
    VkNumpad8 = 0x68,
    VkNumpad9 = 0x69,
    VkF4 = 0x73,
    VkF5 = 0x74,
    VkF11 = 0x7A,
    VkF12 = 0x7B,
    VkOemPlus = 0xBB,
    VkOemMinus = 0xBD,
};

enum Modifiers : uint {
    None = 0,
    Alt = 1,
    Ctrl = 2,
    AltShift = 5,
    CtrlShift = 6,
};

} // namespace

BrowserKeyHandler::BrowserKeyHandler()
    : QObject(nullptr)
{
}

BrowserKeyHandler::~BrowserKeyHandler() = default;

void BrowserKeyHandler::Initialize(QWidget *widget, Qt::ShortcutContext context)
{
    m_shortcut = QSharedPointer<VosShortcut>(new VosShortcut(widget, context));
    // Browser mode: the page's own widgets take the focus, and the shortcuts must
    // still work while they have it.
    m_shortcut->SetBrowser(true);
    VosShortcutManager::Instance()->Add(m_shortcut);
    connect(m_shortcut.data(), &VosShortcut::SigActivated, this, &BrowserKeyHandler::SlotActivated);
    RegisterDefaultShortcut();
}

void BrowserKeyHandler::SetKeyHandlerDelegate(IKeyHandlerDelegate *delegate)
{
    m_delegate = delegate;
}

void BrowserKeyHandler::RegisterDefaultShortcut()
{
    RegisterShortcut(VkF5, None);
    RegisterShortcut(VkR, Ctrl);
    RegisterShortcut(VkF5, Ctrl);
    RegisterShortcut(VkLeft, Alt);
    RegisterShortcut(VkRight, Alt);
    RegisterShortcut(VkF12, None);
    RegisterShortcut(VkF11, None);
    RegisterShortcut(VkEscape, None);
    RegisterShortcut(VkW, Ctrl);
    RegisterShortcut(VkF4, Ctrl);
    RegisterShortcut(Vk0, Ctrl);
    RegisterShortcut(VkNumpad0, Ctrl);
    for (uint digit = 0; digit < 8; ++digit) {
        RegisterShortcut(Vk1 + digit, Ctrl);
        RegisterShortcut(VkNumpad1 + digit, Ctrl);
    }
    RegisterShortcut(Vk9, Ctrl);
    RegisterShortcut(VkNumpad9, Ctrl);
    RegisterShortcut(VkTab, Ctrl);
    RegisterShortcut(VkPageDown, Ctrl);
    RegisterShortcut(VkPageUp, Ctrl);
    RegisterShortcut(VkTab, CtrlShift);
    RegisterShortcut(VkH, Ctrl);
    RegisterShortcut(VkDelete, CtrlShift);
    RegisterShortcut(VkJ, Ctrl);
    RegisterShortcut(VkF, Ctrl);
    RegisterShortcut(VkD, Ctrl);
    RegisterShortcut(VkT, Ctrl);
    RegisterShortcut(VkOemPlus, Ctrl);
    RegisterShortcut(VkOemMinus, Ctrl);
    RegisterShortcut(VkT, CtrlShift);
    RegisterShortcut(VkC, Alt);
    RegisterShortcut(VkE, Alt);
    RegisterShortcut(VkUp, AltShift);
    RegisterShortcut(VkDown, AltShift);
}

void BrowserKeyHandler::RegisterShortcut(uint keyCode, uint keyModifiers)
{
    // Before Initialize() there is nothing to register with; a host that gets the
    // order wrong loses the key rather than the process.
    if (m_shortcut)
        m_shortcut->AddShortcut(keyCode, keyModifiers);
}

void BrowserKeyHandler::SlotActivated(uint keyCode, uint keyModifiers)
{
    // A key that runs nothing is not ours to take: it goes on to the focused widget
    // (Escape to a line edit when there is no full screen to leave, say).
    IKeyHandlerDelegate *delegate = m_delegate;
    if (!delegate || !Dispatch(delegate, keyCode, keyModifiers)) {
        if (auto *shortcut = qobject_cast<VosShortcut *>(sender()))
            shortcut->IgnoreActivation();
    }
}

bool BrowserKeyHandler::Dispatch(IKeyHandlerDelegate *delegate, uint keyCode, uint keyModifiers)
{
    switch (keyModifiers) {
    case Ctrl:
        switch (keyCode) {
        case VkTab:
        case VkPageDown:
            delegate->ActionNextTab();
            return true;
        case VkPageUp:
            delegate->ActionPreviousTab();
            return true;
        case Vk0:
        case VkNumpad0:
            delegate->ZoomDefault();
            return true;
        case Vk9:
        case VkNumpad9:
            delegate->ActionCtrl9();
            return true;
        case VkD:
            delegate->ActionCtrlD();
            return true;
        case VkF:
            delegate->ShowFindDlg();
            return true;
        case VkH:
            delegate->ActionCtrlH();
            return true;
        case VkJ:
            delegate->ActionCtrlJ();
            return true;
        case VkR:
            delegate->ActionRefresh();
            return true;
        case VkT:
            delegate->ActionNewTab();
            return true;
        case VkW:
        case VkF4:
            delegate->ActionCloseTab();
            return true;
        case VkF5:
            delegate->ActionRefreshNoCache();
            return true;
        case VkOemPlus:
            delegate->ZoomIn();
            return true;
        case VkOemMinus:
            delegate->ZoomOut();
            return true;
        default:
            break;
        }
        if (keyCode >= Vk1 && keyCode <= Vk8) {
            delegate->ActionSelectTab(int(keyCode - Vk1));
            return true;
        }
        if (keyCode >= VkNumpad1 && keyCode <= VkNumpad8) {
            delegate->ActionSelectTab(int(keyCode - VkNumpad1));
            return true;
        }
        return false;

    case CtrlShift:
        switch (keyCode) {
        case VkTab:
            delegate->ActionPreviousTab();
            return true;
        case VkDelete:
            delegate->ActionCtrlShiftDelete();
            return true;
        case VkT:
            delegate->ActionRecoverClosedTab();
            return true;
        default:
            return false;
        }

    case AltShift:
        switch (keyCode) {
        case VkUp:
            delegate->ActionAltShiftUp();
            return true;
        case VkDown:
            delegate->ActionAltShiftDown();
            return true;
        default:
            return false;
        }

    case Alt:
        switch (keyCode) {
        case VkLeft:
            delegate->ActionBack();
            return true;
        case VkRight:
            delegate->ActionForward();
            return true;
        case VkC:
            delegate->ActionAltC();
            return true;
        case VkE:
            delegate->ActionAltE();
            return true;
        default:
            return false;
        }

    case None:
        switch (keyCode) {
        case VkEscape:
            // Esc only leaves full screen; everywhere else it belongs to the page.
            if (!delegate->IsFullscreen())
                return false;
            delegate->ExitFullscreen();
            return true;
        case VkF5:
            delegate->ActionRefresh();
            return true;
        case VkF11:
            if (delegate->IsFullscreen())
                delegate->ExitFullscreen();
            else
                delegate->EnterFullscreen();
            return true;
        case VkF12:
            delegate->ShowDevTools();
            return true;
        default:
            return false;
        }

    default:
        return false;
    }
}
