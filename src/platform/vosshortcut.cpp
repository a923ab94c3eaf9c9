// SPDX-License-Identifier: MIT
#include "vosshortcut.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMetaMethod>
#include <QPointer>
#include <QGuiApplication>
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

// X key codes (evdev codes + 8, as every current X server and Wayland compositor
// reports them) of the letter and digit keys, by the US label of the key.
struct NativeKey
{
    quint32 native;
    uint virtualKey;
};

constexpr NativeKey kXkbKeys[] = {
    {10, '1'}, {11, '2'}, {12, '3'}, {13, '4'}, {14, '5'}, {15, '6'}, {16, '7'}, {17, '8'}, {18, '9'}, {19, '0'},
    {24, 'Q'}, {25, 'W'}, {26, 'E'}, {27, 'R'}, {28, 'T'}, {29, 'Y'}, {30, 'U'}, {31, 'I'}, {32, 'O'}, {33, 'P'},
    {38, 'A'}, {39, 'S'}, {40, 'D'}, {41, 'F'}, {42, 'G'}, {43, 'H'}, {44, 'J'}, {45, 'K'}, {46, 'L'},
    {52, 'Z'}, {53, 'X'}, {54, 'C'}, {55, 'V'}, {56, 'B'}, {57, 'N'}, {58, 'M'},
};

// macOS virtual key codes (kVK_ANSI_*), which name positions on the ANSI keyboard.
constexpr NativeKey kMacKeys[] = {
    {0x00, 'A'}, {0x01, 'S'}, {0x02, 'D'}, {0x03, 'F'}, {0x04, 'H'}, {0x05, 'G'}, {0x06, 'Z'}, {0x07, 'X'},
    {0x08, 'C'}, {0x09, 'V'}, {0x0B, 'B'}, {0x0C, 'Q'}, {0x0D, 'W'}, {0x0E, 'E'}, {0x0F, 'R'}, {0x10, 'Y'},
    {0x11, 'T'}, {0x12, '1'}, {0x13, '2'}, {0x14, '3'}, {0x15, '4'}, {0x16, '6'}, {0x17, '5'}, {0x19, '9'},
    {0x1A, '7'}, {0x1C, '8'}, {0x1D, '0'}, {0x1F, 'O'}, {0x20, 'U'}, {0x22, 'I'}, {0x23, 'P'}, {0x25, 'L'},
    {0x26, 'J'}, {0x28, 'K'}, {0x2D, 'N'}, {0x2E, 'M'},
};

bool IsLetterOrDigitKey(uint virtualKey)
{
    return (virtualKey >= '0' && virtualKey <= '9') || (virtualKey >= 'A' && virtualKey <= 'Z');
}

template <size_t N>
uint LookUp(const NativeKey (&table)[N], quint32 native)
{
    for (const NativeKey &key : table) {
        if (key.native == native)
            return key.virtualKey;
    }
    return 0;
}

// A Latin letter or digit keysym, in upper case; 0 for any other keysym.
uint LatinKeysym(quint32 keysym)
{
    if (keysym >= 'a' && keysym <= 'z')
        return keysym - 'a' + 'A';
    return IsLetterOrDigitKey(keysym) ? keysym : 0;
}

enum class NativeKind { None, Xkb, Windows, Mac };

NativeKind NativeKindOf(const QString &platformName)
{
    if (platformName == QLatin1String("xcb") || platformName.startsWith(QLatin1String("wayland")))
        return NativeKind::Xkb;
    if (platformName == QLatin1String("windows"))
        return NativeKind::Windows;
    if (platformName == QLatin1String("cocoa"))
        return NativeKind::Mac;
    return NativeKind::None;
}

uint MainKey(int qtKey, bool usShiftedDigits)
{
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return 0x41 + uint(qtKey - Qt::Key_A);
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return 0x30 + uint(qtKey - Qt::Key_0);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return 0x70 + uint(qtKey - Qt::Key_F1);
    for (const KeyPair &pair : kMainKeys) {
        if (pair.qtKey == qtKey)
            return !usShiftedDigits && IsLetterOrDigitKey(pair.virtualKey) ? 0 : pair.virtualKey;
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
    return MainKey(qtKey, true);
}

uint VosShortcut::PhysicalKeyFromNative(const QString &platformName, quint32 nativeScanCode,
                                        quint32 nativeVirtualKey)
{
    switch (NativeKindOf(platformName)) {
    case NativeKind::Xkb:
        if (const uint key = LookUp(kXkbKeys, nativeScanCode))
            return key;
        // A key code we do not know (an unusual keyboard): the layout's own keysym,
        // when it is a Latin letter or digit.
        return LatinKeysym(nativeVirtualKey);
    case NativeKind::Windows:
        // Windows gives letters and digits virtual keys of their own on every layout.
        return IsLetterOrDigitKey(nativeVirtualKey) ? nativeVirtualKey : 0;
    case NativeKind::Mac:
        return nativeVirtualKey == 0 && nativeScanCode == 0 ? 0 : LookUp(kMacKeys, nativeVirtualKey);
    case NativeKind::None:
        break;
    }
    return 0;
}

uint VosShortcut::VirtualKeyFromEvent(const QKeyEvent *event)
{
    const int qtKey = event->key();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (modifiers & Qt::KeypadModifier)
        return VirtualKeyFromQt(qtKey, modifiers);
    // Zooming follows the character, wherever the layout puts it, as browsers do: a
    // German keyboard's "+" is not on the US "=" key. Where a digit key types one of
    // these characters (the French "-" on the 6), zooming wins over the digit.
    switch (qtKey) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus:
    case Qt::Key_0:
        return MainKey(qtKey, false);
    default:
        break;
    }
    // Letters and digits follow the key's position, so that Ctrl+T is Ctrl+T on a
    // Cyrillic or Greek layout and Ctrl+1 is Ctrl+1 where the digits need Shift.
    // Events made up by programs (QTest, hosts) carry no native codes; they are
    // taken by their character alone.
    const QString platform = QGuiApplication::platformName();
    const bool hasNative = NativeKindOf(platform) != NativeKind::None
        && (event->nativeScanCode() != 0 || event->nativeVirtualKey() != 0);
    if (hasNative) {
        const uint physical = PhysicalKeyFromNative(platform, event->nativeScanCode(), event->nativeVirtualKey());
        if (physical != 0)
            return physical;
    }
    // Everything else by its character. With a real key at hand, the characters a US
    // keyboard types with Shift on its digits ("!", "(", ...) are not digits: on
    // other layouts they sit on keys of their own.
    return MainKey(qtKey, !hasNative);
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

void VosShortcut::IgnoreActivation()
{
    m_activationIgnored = true;
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
        // As for QShortcut: not while a modal window shuts the widget's window out.
        return widget->isVisible() && !IsBlockedByModal(widget->window());
    }
    return false;
}

bool VosShortcut::IsBlockedByModal(const QWidget *window)
{
    const QWidget *modal = QApplication::activeModalWidget();
    // The modal window itself, and windows that belong to it, stay usable.
    if (!modal || IsAncestorOrSelf(modal, window))
        return false;
    if (modal->windowModality() == Qt::ApplicationModal)
        return true;
    // A window-modal dialog shuts out only the windows it belongs to.
    for (const QWidget *parent = modal->parentWidget(); parent; parent = parent->parentWidget()) {
        if (parent->window() == window)
            return true;
    }
    return false;
}

bool VosShortcut::FocusWidgetWantsKey(QWidget *receiver, const QKeyEvent *key)
{
    // What Qt asks before its own shortcuts fire: a widget that accepts the
    // ShortcutOverride (a line edit for Ctrl+A or Ctrl+Left, an address bar for
    // Escape) keeps the key.
    QKeyEvent question(QEvent::ShortcutOverride, key->key(), key->modifiers(), key->nativeScanCode(),
                       key->nativeVirtualKey(), key->nativeModifiers(), key->text(), key->isAutoRepeat(),
                       ushort(key->count()));
    question.ignore();
    m_askingOverride = true;
    QCoreApplication::sendEvent(receiver, &question);
    m_askingOverride = false;
    return question.isAccepted();
}

void VosShortcut::NotePassedOn(const QKeyEvent *key, QWidget *receiver)
{
    m_passedOn.event = key;
    m_passedOn.receiver = receiver;
    m_passedOn.key = key->key();
    m_passedOn.modifiers = key->modifiers();
    m_passedOn.timestamp = key->timestamp();
}

bool VosShortcut::IsPassedOnPress(const QKeyEvent *key, QWidget *receiver) const
{
    // The same event object, with the same content, now at an ancestor of the widget
    // it was passed on to: QApplication propagating the ignored press upwards.
    return m_passedOn.event == key && m_passedOn.receiver && m_passedOn.receiver != receiver
        && IsAncestorOrSelf(receiver, m_passedOn.receiver) && m_passedOn.key == key->key()
        && m_passedOn.modifiers == key->modifiers() && m_passedOn.timestamp == key->timestamp();
}

bool VosShortcut::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || m_askingOverride || m_registered.isEmpty() || !watched->isWidgetType())
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() & Qt::MetaModifier)
        return false;
    const uint keyCode = VirtualKeyFromEvent(key);
    if (keyCode == 0)
        return false;
    const uint mask = ModifierMaskFromQt(key->modifiers());
    if (!m_registered.contains(Combination(keyCode, mask)))
        return false;
    auto *receiver = static_cast<QWidget *>(watched);
    if (!InContext(receiver))
        return false;
    // Nobody listening: the key is nobody's command and goes on to the widget.
    if (!isSignalConnected(QMetaMethod::fromSignal(&VosShortcut::SigActivated)))
        return false;
    // A press we passed on and its widget did not take travels on to the widget's
    // parents: it was already decided, once, for where it was first delivered.
    if (IsPassedOnPress(key, receiver))
        return false;
    if (FocusWidgetWantsKey(receiver, key)) {
        NotePassedOn(key, receiver);
        return false;
    }

    // A receiver may destroy this object from its slot (closing the window, say):
    // then a command ran and the key is consumed, and no member is touched again.
    const QPointer<VosShortcut> self(this);
    m_activationIgnored = false;
    emit SigActivated(keyCode, mask);
    if (!self) {
        key->accept();
        return true;
    }
    if (m_activationIgnored) {
        NotePassedOn(key, receiver);
        return false;
    }
    key->accept();
    return true;
}
