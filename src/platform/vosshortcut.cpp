#include "vosshortcut.h"

#include <QCoreApplication>
#include <QHash>
#include <QKeyEvent>
#include <QWidget>

namespace {

struct KeyPair
{
    int qtKey;
    uint virtualKey;
};

// Keys whose code does not depend on the keypad. The first entry for a virtual key
// is the one QtKeyFromVirtualKey() answers with.
constexpr KeyPair kMainKeys[] = {
    {Qt::Key_Backspace, 0x08}, {Qt::Key_Tab, 0x09}, {Qt::Key_Backtab, 0x09},
    {Qt::Key_Clear, 0x0C}, {Qt::Key_Return, 0x0D}, {Qt::Key_Enter, 0x0D},
    {Qt::Key_Shift, 0x10}, {Qt::Key_Control, 0x11}, {Qt::Key_Alt, 0x12},
    {Qt::Key_Pause, 0x13}, {Qt::Key_CapsLock, 0x14}, {Qt::Key_Escape, 0x1B},
    {Qt::Key_Space, 0x20}, {Qt::Key_PageUp, 0x21}, {Qt::Key_PageDown, 0x22},
    {Qt::Key_End, 0x23}, {Qt::Key_Home, 0x24}, {Qt::Key_Left, 0x25}, {Qt::Key_Up, 0x26},
    {Qt::Key_Right, 0x27}, {Qt::Key_Down, 0x28}, {Qt::Key_Select, 0x29},
    {Qt::Key_Printer, 0x2A}, {Qt::Key_Execute, 0x2B}, {Qt::Key_Print, 0x2C},
    {Qt::Key_Insert, 0x2D}, {Qt::Key_Delete, 0x2E}, {Qt::Key_Help, 0x2F},
    {Qt::Key_Meta, 0x5B}, {Qt::Key_Menu, 0x5D}, {Qt::Key_Sleep, 0x5F},
    {Qt::Key_NumLock, 0x90}, {Qt::Key_ScrollLock, 0x91},
    {Qt::Key_Back, 0xA6}, {Qt::Key_Forward, 0xA7}, {Qt::Key_Refresh, 0xA8},
    {Qt::Key_Stop, 0xA9}, {Qt::Key_Search, 0xAA}, {Qt::Key_Favorites, 0xAB},
    {Qt::Key_HomePage, 0xAC}, {Qt::Key_VolumeMute, 0xAD}, {Qt::Key_VolumeDown, 0xAE},
    {Qt::Key_VolumeUp, 0xAF}, {Qt::Key_MediaNext, 0xB0}, {Qt::Key_MediaPrevious, 0xB1},
    {Qt::Key_MediaStop, 0xB2}, {Qt::Key_MediaPlay, 0xB3}, {Qt::Key_MediaTogglePlayPause, 0xB3},
    {Qt::Key_LaunchMail, 0xB4}, {Qt::Key_LaunchMedia, 0xB5}, {Qt::Key_Launch0, 0xB6},
    {Qt::Key_Launch1, 0xB7},
    // The punctuation keys of a US keyboard, shifted or not: Windows names the key,
    // Qt the character it produced.
    {Qt::Key_Semicolon, 0xBA}, {Qt::Key_Colon, 0xBA}, {Qt::Key_Equal, 0xBB}, {Qt::Key_Plus, 0xBB},
    {Qt::Key_Comma, 0xBC}, {Qt::Key_Less, 0xBC}, {Qt::Key_Minus, 0xBD}, {Qt::Key_Underscore, 0xBD},
    {Qt::Key_Period, 0xBE}, {Qt::Key_Greater, 0xBE}, {Qt::Key_Slash, 0xBF}, {Qt::Key_Question, 0xBF},
    {Qt::Key_QuoteLeft, 0xC0}, {Qt::Key_AsciiTilde, 0xC0}, {Qt::Key_BracketLeft, 0xDB},
    {Qt::Key_BraceLeft, 0xDB}, {Qt::Key_Backslash, 0xDC}, {Qt::Key_Bar, 0xDC},
    {Qt::Key_BracketRight, 0xDD}, {Qt::Key_BraceRight, 0xDD}, {Qt::Key_Apostrophe, 0xDE},
    {Qt::Key_QuoteDbl, 0xDE},
    // Shifted digits of a US keyboard report the digit key, as Windows does.
    {Qt::Key_ParenRight, 0x30}, {Qt::Key_Exclam, 0x31}, {Qt::Key_At, 0x32},
    {Qt::Key_NumberSign, 0x33}, {Qt::Key_Dollar, 0x34}, {Qt::Key_Percent, 0x35},
    {Qt::Key_AsciiCircum, 0x36}, {Qt::Key_Ampersand, 0x37}, {Qt::Key_Asterisk, 0x38},
    {Qt::Key_ParenLeft, 0x39},
};

// Keys that have a code of their own on the numeric keypad. Keypad keys without
// Num Lock arrive as navigation keys and keep the main codes, as on Windows.
constexpr KeyPair kKeypadKeys[] = {
    {Qt::Key_Asterisk, 0x6A}, {Qt::Key_Plus, 0x6B}, {Qt::Key_Minus, 0x6D},
    {Qt::Key_Period, 0x6E}, {Qt::Key_Comma, 0x6E}, {Qt::Key_Slash, 0x6F},
};

uint MainKey(int qtKey)
{
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return 0x41 + uint(qtKey - Qt::Key_A);
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return 0x30 + uint(qtKey - Qt::Key_0);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return 0x70 + uint(qtKey - Qt::Key_F1);
    for (const KeyPair &pair : kMainKeys) {
        if (pair.qtKey == qtKey)
            return pair.virtualKey;
    }
    return 0;
}

quint64 Combination(uint keyCode, uint keyModifiers)
{
    return (quint64(keyModifiers) << 32) | keyCode;
}

bool IsAncestorOrSelf(const QWidget *ancestor, const QWidget *widget)
{
    for (const QWidget *w = widget; w; w = w->parentWidget()) {
        if (w == ancestor)
            return true;
    }
    return false;
}

} // namespace

VosShortcut::VosShortcut(QWidget *widget, Qt::ShortcutContext context)
    : QObject(nullptr)
    , m_widget(widget)
    , m_context(context)
{
    // Application-wide: the presses that count may be delivered to children created
    // after this object (a web view's own widgets), which a filter on the widget
    // alone would never see.
    if (QCoreApplication *app = QCoreApplication::instance())
        app->installEventFilter(this);
    else if (widget)
        widget->installEventFilter(this);
}

VosShortcut::~VosShortcut()
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->removeEventFilter(this);
    if (m_widget)
        m_widget->removeEventFilter(this);
}

void VosShortcut::AddShortcut(uint keyCode, uint keyModifiers)
{
    const quint64 combination = Combination(keyCode, keyModifiers);
    if (m_registered.contains(combination))
        return;
    m_registered.insert(combination);
    m_order.append(qMakePair(keyCode, keyModifiers));
}

QList<QPair<uint, uint>> VosShortcut::Shortcuts() const
{
    return m_order;
}

void VosShortcut::SetBrowser(bool browser)
{
    m_browser = browser;
}

bool VosShortcut::IsBrowser() const
{
    return m_browser;
}

QWidget *VosShortcut::Widget() const
{
    return m_widget;
}

Qt::ShortcutContext VosShortcut::Context() const
{
    return m_context;
}

uint VosShortcut::VirtualKeyFromQt(int qtKey, Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::KeypadModifier) {
        if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
            return 0x60 + uint(qtKey - Qt::Key_0);
        for (const KeyPair &pair : kKeypadKeys) {
            if (pair.qtKey == qtKey)
                return pair.virtualKey;
        }
    }
    return MainKey(qtKey);
}

int VosShortcut::QtKeyFromVirtualKey(uint keyCode)
{
    if (keyCode >= 0x41 && keyCode <= 0x5A)
        return Qt::Key_A + int(keyCode - 0x41);
    if (keyCode >= 0x30 && keyCode <= 0x39)
        return Qt::Key_0 + int(keyCode - 0x30);
    if (keyCode >= 0x60 && keyCode <= 0x69)
        return Qt::Key_0 + int(keyCode - 0x60);
    if (keyCode >= 0x70 && keyCode <= 0x87)
        return Qt::Key_F1 + int(keyCode - 0x70);
    for (const KeyPair &pair : kKeypadKeys) {
        if (pair.virtualKey == keyCode)
            return pair.qtKey;
    }
    for (const KeyPair &pair : kMainKeys) {
        if (pair.virtualKey == keyCode)
            return pair.qtKey;
    }
    return 0;
}

uint VosShortcut::ModifierMaskFromQt(Qt::KeyboardModifiers modifiers)
{
    uint mask = 0;
    if (modifiers & Qt::AltModifier)
        mask |= ModifierAlt;
    if (modifiers & Qt::ControlModifier)
        mask |= ModifierCtrl;
    if (modifiers & Qt::ShiftModifier)
        mask |= ModifierShift;
    return mask;
}

bool VosShortcut::InContext(QWidget *receiver) const
{
    QWidget *widget = m_widget;
    if (!widget || !receiver)
        return false;
    switch (m_context) {
    case Qt::WidgetShortcut:
        return m_browser ? IsAncestorOrSelf(widget, receiver) : receiver == widget;
    case Qt::WidgetWithChildrenShortcut:
        return IsAncestorOrSelf(widget, receiver);
    case Qt::WindowShortcut:
        return widget->isVisible() && receiver->window() == widget->window();
    case Qt::ApplicationShortcut:
        return widget->isVisible();
    }
    return false;
}

bool VosShortcut::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || m_registered.isEmpty() || !watched->isWidgetType())
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() & Qt::MetaModifier)
        return false;
    const uint keyCode = VirtualKeyFromQt(key->key(), key->modifiers());
    if (keyCode == 0)
        return false;
    const uint mask = ModifierMaskFromQt(key->modifiers());
    if (!m_registered.contains(Combination(keyCode, mask)))
        return false;
    if (!InContext(static_cast<QWidget *>(watched)))
        return false;
    key->accept();
    emit SigActivated(keyCode, mask);
    return true;
}
