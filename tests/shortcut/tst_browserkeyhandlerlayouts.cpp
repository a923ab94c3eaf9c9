// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "browserkeyhandler.h"
#include "vosshortcut.h"
#include "vosshortcutmanager.h"
#include "xinput.h"

#include <QKeyEvent>
#include <QWidget>

// Real keys on real keyboard layouts: the X server's layout is switched with
// setxkbmap and keys are pressed through XTest by their physical position (evdev
// key codes, as every current X server uses), so Qt sees exactly what a user's
// keyboard would send. Needs the xcb platform on an X server of the test's own.

namespace {

using Combination = QPair<uint, uint>;

// X key codes of the keys a US keyboard labels so.
constexpr uint kKeyControl = 37;
constexpr uint kKeyShift = 50;
constexpr uint kKeyAlt = 64;

uint UsKeyCode(uint virtualKey)
{
    switch (virtualKey) {
    case 0x09: return 23;  // Tab
    case 0x1B: return 9;   // Esc
    case 0x21: return 112; // Page Up
    case 0x22: return 117; // Page Down
    case 0x25: return 113; // Left
    case 0x26: return 111; // Up
    case 0x27: return 114; // Right
    case 0x28: return 116; // Down
    case 0x2E: return 119; // Delete
    case 0x30: return 19;  // 0
    case 0x43: return 54;  // C
    case 0x44: return 40;  // D
    case 0x45: return 26;  // E
    case 0x46: return 41;  // F
    case 0x48: return 43;  // H
    case 0x4A: return 44;  // J
    case 0x52: return 27;  // R
    case 0x54: return 28;  // T
    case 0x57: return 25;  // W
    case 0x60: return 90;  // keypad 0
    case 0x61: return 87;
    case 0x62: return 88;
    case 0x63: return 89;
    case 0x64: return 83;
    case 0x65: return 84;
    case 0x66: return 85;
    case 0x67: return 79;
    case 0x68: return 80;
    case 0x69: return 81;  // keypad 9
    case 0x73: return 70;  // F4
    case 0x74: return 71;  // F5
    case 0x7A: return 95;  // F11
    case 0x7B: return 96;  // F12
    case 0xBB: return 21;  // = +
    case 0xBD: return 20;  // - _
    default: break;
    }
    if (virtualKey >= 0x31 && virtualKey <= 0x39)
        return 10 + (virtualKey - 0x31); // 1 to 9
    return 0;
}

// The key a user of @p layout presses for the table entry @p virtualKey. Letters
// and digits sit where a US keyboard has them; zooming goes by the character the
// layout prints on the key. 0 means the layout has no key for the entry: on a
// French keyboard the digit key that types "-" zooms out instead of being Ctrl+6.
uint PhysicalKey(const QString &layout, uint virtualKey)
{
    if (layout == QLatin1String("de")) {
        if (virtualKey == 0xBB)
            return 35; // + * ~, right of Ü
        if (virtualKey == 0xBD)
            return 61; // - _, right of the full stop
    }
    if (layout == QLatin1String("fr")) {
        if (virtualKey == 0xBD)
            return 15; // - 6
        if (virtualKey == 0x36)
            return 0;
    }
    return UsKeyCode(virtualKey);
}

QString Describe(const Combination &entry)
{
    QStringList parts;
    if (entry.second & VosShortcut::ModifierCtrl)
        parts << QStringLiteral("Ctrl");
    if (entry.second & VosShortcut::ModifierAlt)
        parts << QStringLiteral("Alt");
    if (entry.second & VosShortcut::ModifierShift)
        parts << QStringLiteral("Shift");
    parts << QStringLiteral("0x%1").arg(entry.first, 2, 16, QLatin1Char('0'));
    return parts.join(QLatin1Char('+'));
}

// Notes the release of one physical key. Releases are never consumed, and XTest
// events arrive in order, so once the release is here the press has been handled.
class ReleaseWatcher : public QObject
{
public:
    quint32 scanCode = 0;
    bool seen = false;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyRelease && static_cast<QKeyEvent *>(event)->nativeScanCode() == scanCode)
            seen = true;
        return false;
    }
};

} // namespace

class TstBrowserKeyHandlerLayouts : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<KelTest::XInput> m_keyboard;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<BrowserKeyHandler> m_handler;
    QSharedPointer<VosShortcut> m_shortcut;

    // Presses @p keyCode with the modifiers of @p mask and waits until Qt has seen it.
    QList<Combination> Press(uint keyCode, uint mask, ReleaseWatcher &watcher)
    {
        QSignalSpy spy(m_shortcut.data(), &VosShortcut::SigActivated);
        QList<uint> modifiers;
        if (mask & VosShortcut::ModifierCtrl)
            modifiers << kKeyControl;
        if (mask & VosShortcut::ModifierAlt)
            modifiers << kKeyAlt;
        if (mask & VosShortcut::ModifierShift)
            modifiers << kKeyShift;
        for (uint modifier : qAsConst(modifiers))
            m_keyboard->SendKeyCode(modifier, true);
        m_keyboard->SendKeyCode(keyCode, true);
        m_keyboard->SendKeyCode(keyCode, false);
        for (auto it = modifiers.crbegin(); it != modifiers.crend(); ++it)
            m_keyboard->SendKeyCode(*it, false);
        m_keyboard->Sync();

        watcher.scanCode = keyCode;
        watcher.seen = false;
        if (!QTest::qWaitFor([&watcher] { return watcher.seen; }, 5000))
            qInfo("key code %u: no release seen", keyCode);
        QList<Combination> fired;
        for (const QList<QVariant> &args : qAsConst(spy))
            fired << Combination(args.at(0).toUInt(), args.at(1).toUInt());
        return fired;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("needs the xcb platform on an X server (run under xvfb-run)");
        m_keyboard.reset(new KelTest::XInput);
        QVERIFY2(m_keyboard->IsValid(), "no X display with the XTest extension");

        m_window.reset(new QWidget);
        m_window->resize(200, 100);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));

        m_handler.reset(new BrowserKeyHandler);
        m_handler->Initialize(m_window.get(), Qt::WindowShortcut);
        m_shortcut = VosShortcutManager::Instance()->Shortcuts().last();
        QCOMPARE(m_shortcut->Shortcuts().size(), 47);
    }

    void cleanupTestCase()
    {
        // Other tests share the X server: leave it as they expect it.
        if (m_keyboard)
            m_keyboard->SetLayout(QStringLiteral("us"));
        m_keyboard.reset();
        m_shortcut.reset();
        m_handler.reset();
        m_window.reset();
        VosShortcutManager::ReleaseInstance();
    }

    void everyEntryFiresFromItsPhysicalKey_data()
    {
        QTest::addColumn<QString>("layout");
        for (const char *layout : {"us", "fr", "de", "gb", "ru", "gr"})
            QTest::newRow(layout) << QString::fromLatin1(layout);
    }

    // Each entry of the table, pressed where a user of the layout finds it, fires
    // that entry and nothing else.
    void everyEntryFiresFromItsPhysicalKey()
    {
        QFETCH(QString, layout);
        QVERIFY2(m_keyboard->SetLayout(layout), "setxkbmap failed");

        ReleaseWatcher watcher;
        qApp->installEventFilter(&watcher);
        int expected = 0;
        QStringList wrong;
        const QList<Combination> table = m_shortcut->Shortcuts();
        for (const Combination &entry : table) {
            const uint keyCode = PhysicalKey(layout, entry.first);
            if (keyCode == 0)
                continue;
            ++expected;
            const QList<Combination> fired = Press(keyCode, entry.second, watcher);
            if (fired != QList<Combination>{entry}) {
                QStringList got;
                for (const Combination &other : fired)
                    got << Describe(other);
                wrong << QStringLiteral("%1 -> [%2]").arg(Describe(entry), got.join(QLatin1Char(' ')));
            }
        }
        qApp->removeEventFilter(&watcher);
        qInfo("%s: %d/%d fired from their physical keys", qPrintable(layout), expected - int(wrong.size()),
              expected);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral(", "))));
    }
};

KELTAB_TEST_MAIN(TstBrowserKeyHandlerLayouts)
#include "tst_browserkeyhandlerlayouts.moc"
