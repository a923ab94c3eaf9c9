// SPDX-License-Identifier: MIT
#include "keltabtest.h"
#include "keyrecordingwidget.h"

#include "vosshortcut.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>

namespace {

using Activation = QPair<uint, uint>;

// A line edit that also wants Escape, as a browser's address bar does (to undo an
// edit), and notes the keys it gets.
class AddressBar : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;
    QList<int> keys;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        return QLineEdit::event(event);
    }
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() != Qt::Key_Control)
            keys.append(event->key());
        QLineEdit::keyPressEvent(event);
    }
};

// A top-level window whose widgets are placed by hand: a layout on a top-level window
// makes the offscreen platform complain about size hints it cannot pass on.
class PlacedWindow : public QWidget
{
public:
    explicit PlacedWindow(const QSize &size) { resize(size); }

    // Makes a W in parent (the window itself unless told) at geometry.
    template <typename W>
    W *place(const QRect &geometry, QWidget *parent = nullptr)
    {
        auto *widget = new W(parent ? parent : this);
        widget->setGeometry(geometry);
        return widget;
    }
};

QList<Activation> Activations(const QSignalSpy &spy)
{
    QList<Activation> result;
    for (const QList<QVariant> &args : spy)
        result.append(qMakePair(args.at(0).toUInt(), args.at(1).toUInt()));
    return result;
}

// A shown widget that records the keys reaching it, a widget shortcut on it for the
// given keys, and a spy on what the shortcut reports. The spy is connected to the
// shortcut, so the shortcut always has a listener (one without any passes keys on).
// Members go in the reverse order: the spy, then the shortcut, then the widget.
struct ShortcutOnWidget
{
    explicit ShortcutOnWidget(const QList<Activation> &keys)
    {
        widget.show();
        for (const Activation &key : keys)
            shortcut.AddShortcut(key.first, key.second);
    }

    KeyRecordingWidget widget;
    VosShortcut shortcut{&widget, Qt::WidgetShortcut};
    QSignalSpy spy{&shortcut, &VosShortcut::SigActivated};
};

} // namespace

class TstVosShortcut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void virtualKeyFromQt_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("keypad");
        QTest::addColumn<uint>("expected");
        QTest::newRow("A") << int(Qt::Key_A) << false << 0x41u;
        QTest::newRow("Z") << int(Qt::Key_Z) << false << 0x5Au;
        QTest::newRow("0") << int(Qt::Key_0) << false << 0x30u;
        QTest::newRow("9") << int(Qt::Key_9) << false << 0x39u;
        QTest::newRow("keypad 0") << int(Qt::Key_0) << true << 0x60u;
        QTest::newRow("keypad 3") << int(Qt::Key_3) << true << 0x63u;
        QTest::newRow("keypad 9") << int(Qt::Key_9) << true << 0x69u;
        QTest::newRow("F1") << int(Qt::Key_F1) << false << 0x70u;
        QTest::newRow("F5") << int(Qt::Key_F5) << false << 0x74u;
        QTest::newRow("F11") << int(Qt::Key_F11) << false << 0x7Au;
        QTest::newRow("F12") << int(Qt::Key_F12) << false << 0x7Bu;
        QTest::newRow("F24") << int(Qt::Key_F24) << false << 0x87u;
        QTest::newRow("Left") << int(Qt::Key_Left) << false << 0x25u;
        QTest::newRow("Up") << int(Qt::Key_Up) << false << 0x26u;
        QTest::newRow("Right") << int(Qt::Key_Right) << false << 0x27u;
        QTest::newRow("Down") << int(Qt::Key_Down) << false << 0x28u;
        QTest::newRow("Tab") << int(Qt::Key_Tab) << false << 0x09u;
        QTest::newRow("Backtab") << int(Qt::Key_Backtab) << false << 0x09u;
        QTest::newRow("Esc") << int(Qt::Key_Escape) << false << 0x1Bu;
        QTest::newRow("Delete") << int(Qt::Key_Delete) << false << 0x2Eu;
        QTest::newRow("Page Up") << int(Qt::Key_PageUp) << false << 0x21u;
        QTest::newRow("Page Down") << int(Qt::Key_PageDown) << false << 0x22u;
        QTest::newRow("=") << int(Qt::Key_Equal) << false << 0xBBu;
        QTest::newRow("+") << int(Qt::Key_Plus) << false << 0xBBu;
        QTest::newRow("-") << int(Qt::Key_Minus) << false << 0xBDu;
        QTest::newRow("_") << int(Qt::Key_Underscore) << false << 0xBDu;
        QTest::newRow("keypad +") << int(Qt::Key_Plus) << true << 0x6Bu;
        QTest::newRow("keypad -") << int(Qt::Key_Minus) << true << 0x6Du;
        QTest::newRow("keypad *") << int(Qt::Key_Asterisk) << true << 0x6Au;
        QTest::newRow("keypad /") << int(Qt::Key_Slash) << true << 0x6Fu;
        QTest::newRow("keypad .") << int(Qt::Key_Period) << true << 0x6Eu;
        QTest::newRow("keypad Enter") << int(Qt::Key_Enter) << true << 0x0Du;
        QTest::newRow("keypad Page Up (no Num Lock)") << int(Qt::Key_PageUp) << true << 0x21u;
        QTest::newRow("Return") << int(Qt::Key_Return) << false << 0x0Du;
        QTest::newRow("Space") << int(Qt::Key_Space) << false << 0x20u;
        QTest::newRow("Backspace") << int(Qt::Key_Backspace) << false << 0x08u;
        QTest::newRow("Home") << int(Qt::Key_Home) << false << 0x24u;
        QTest::newRow("End") << int(Qt::Key_End) << false << 0x23u;
        QTest::newRow("Insert") << int(Qt::Key_Insert) << false << 0x2Du;
        QTest::newRow(",") << int(Qt::Key_Comma) << false << 0xBCu;
        QTest::newRow(".") << int(Qt::Key_Period) << false << 0xBEu;
        QTest::newRow("/") << int(Qt::Key_Slash) << false << 0xBFu;
        QTest::newRow("`") << int(Qt::Key_QuoteLeft) << false << 0xC0u;
        QTest::newRow("[") << int(Qt::Key_BracketLeft) << false << 0xDBu;
        QTest::newRow("]") << int(Qt::Key_BracketRight) << false << 0xDDu;
        QTest::newRow("'") << int(Qt::Key_Apostrophe) << false << 0xDEu;
        QTest::newRow(";") << int(Qt::Key_Semicolon) << false << 0xBAu;
        QTest::newRow("shifted 1 (!)") << int(Qt::Key_Exclam) << false << 0x31u;
        QTest::newRow("no code") << int(Qt::Key_unknown) << false << 0u;
    }

    void virtualKeyFromQt()
    {
        QFETCH(int, key);
        QFETCH(bool, keypad);
        QFETCH(uint, expected);
        QCOMPARE(VosShortcut::VirtualKeyFromQt(key, keypad ? Qt::KeypadModifier : Qt::NoModifier), expected);
    }

    void qtKeyFromVirtualKey_data()
    {
        QTest::addColumn<uint>("keyCode");
        QTest::addColumn<int>("expected");
        QTest::newRow("Page Up") << 0x21u << int(Qt::Key_PageUp);
        QTest::newRow("Page Down") << 0x22u << int(Qt::Key_PageDown);
        QTest::newRow("T") << 0x54u << int(Qt::Key_T);
        QTest::newRow("keypad 3") << 0x63u << int(Qt::Key_3);
        QTest::newRow("keypad +") << 0x6Bu << int(Qt::Key_Plus);
        QTest::newRow("Tab") << 0x09u << int(Qt::Key_Tab);
        QTest::newRow("OEM plus") << 0xBBu << int(Qt::Key_Equal);
        QTest::newRow("F12") << 0x7Bu << int(Qt::Key_F12);
        QTest::newRow("unknown") << 0xFFu << 0;
    }

    void qtKeyFromVirtualKey()
    {
        QFETCH(uint, keyCode);
        QFETCH(int, expected);
        QCOMPARE(VosShortcut::QtKeyFromVirtualKey(keyCode), expected);
    }

    void modifierMask_data()
    {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<uint>("expected");
        QTest::newRow("none") << int(Qt::NoModifier) << 0u;
        QTest::newRow("Alt") << int(Qt::AltModifier) << 1u;
        QTest::newRow("Ctrl") << int(Qt::ControlModifier) << 2u;
        QTest::newRow("Shift") << int(Qt::ShiftModifier) << 4u;
        QTest::newRow("Alt+Shift") << int(Qt::AltModifier | Qt::ShiftModifier) << 5u;
        QTest::newRow("Ctrl+Shift") << int(Qt::ControlModifier | Qt::ShiftModifier) << 6u;
        QTest::newRow("Ctrl+Alt") << int(Qt::ControlModifier | Qt::AltModifier) << 3u;
        QTest::newRow("all three") << int(Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier) << 7u;
        QTest::newRow("keypad is not a modifier") << int(Qt::KeypadModifier | Qt::ControlModifier) << 2u;
    }

    void modifierMask()
    {
        QFETCH(int, modifiers);
        QFETCH(uint, expected);
        QCOMPARE(VosShortcut::ModifierMaskFromQt(Qt::KeyboardModifiers(modifiers)), expected);
    }

    void physicalKeyFromNative_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::addColumn<uint>("scanCode");
        QTest::addColumn<uint>("virtualKey");
        QTest::addColumn<uint>("expected");
        // X key codes by position, whatever keysym the layout gives the key.
        QTest::newRow("xcb T (Cyrillic ie)") << "xcb" << 28u << 0x6c5u << uint('T');
        QTest::newRow("xcb W (AZERTY z)") << "xcb" << 25u << uint('z') << uint('W');
        QTest::newRow("xcb 1 (AZERTY &)") << "xcb" << 10u << uint('&') << uint('1');
        QTest::newRow("xcb 0") << "xcb" << 19u << 0xe0u << uint('0');
        QTest::newRow("xcb C") << "xcb" << 54u << 0x6d3u << uint('C');
        QTest::newRow("xcb minus is no letter") << "xcb" << 20u << uint('-') << 0u;
        QTest::newRow("xcb keypad 1 is no digit") << "xcb" << 87u << 0xffb1u << 0u;
        QTest::newRow("xcb unknown code, Latin keysym") << "xcb" << 300u << uint('t') << uint('T');
        QTest::newRow("xcb unknown code, Latin capital") << "xcb" << 300u << uint('K') << uint('K');
        QTest::newRow("xcb unknown code, other keysym") << "xcb" << 300u << 0x6c5u << 0u;
        QTest::newRow("wayland") << "wayland" << 28u << 0u << uint('T');
        QTest::newRow("windows T") << "windows" << 0x14u << 0x54u << uint('T');
        QTest::newRow("windows 1") << "windows" << 0x02u << 0x31u << uint('1');
        QTest::newRow("windows OEM minus") << "windows" << 0x0cu << 0xbdu << 0u;
        QTest::newRow("cocoa T") << "cocoa" << 0u << 0x11u << uint('T');
        QTest::newRow("cocoa 5") << "cocoa" << 0u << 0x17u << uint('5');
        QTest::newRow("cocoa A") << "cocoa" << 1u << 0x00u << uint('A');
        QTest::newRow("cocoa equal") << "cocoa" << 0u << 0x18u << 0u;
        QTest::newRow("offscreen") << "offscreen" << 28u << uint('t') << 0u;
    }

    void physicalKeyFromNative()
    {
        QFETCH(QString, platform);
        QFETCH(uint, scanCode);
        QFETCH(uint, virtualKey);
        QFETCH(uint, expected);
        QCOMPARE(VosShortcut::PhysicalKeyFromNative(platform, scanCode, virtualKey), expected);
    }

    void virtualKeyFromEvent_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<uint>("expected");
        QTest::newRow("Ctrl+T") << int(Qt::Key_T) << int(Qt::ControlModifier) << 0x54u;
        QTest::newRow("+ zooms") << int(Qt::Key_Plus) << int(Qt::ControlModifier) << 0xBBu;
        QTest::newRow("= zooms") << int(Qt::Key_Equal) << int(Qt::ControlModifier) << 0xBBu;
        QTest::newRow("- zooms") << int(Qt::Key_Minus) << int(Qt::ControlModifier) << 0xBDu;
        QTest::newRow("0") << int(Qt::Key_0) << int(Qt::ControlModifier) << 0x30u;
        QTest::newRow("keypad -") << int(Qt::Key_Minus) << int(Qt::ControlModifier | Qt::KeypadModifier) << 0x6Du;
        QTest::newRow("keypad 0") << int(Qt::Key_0) << int(Qt::ControlModifier | Qt::KeypadModifier) << 0x60u;
        QTest::newRow("! without native codes") << int(Qt::Key_Exclam) << int(Qt::ControlModifier) << 0x31u;
        QTest::newRow("Cyrillic without native codes") << 0x426 << int(Qt::ControlModifier) << 0u;
    }

    void virtualKeyFromEvent()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(uint, expected);
        const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(VosShortcut::VirtualKeyFromEvent(&event), expected);
    }

    void registrationKeepsOrderAndIgnoresRepeats()
    {
        KeyRecordingWidget widget;
        VosShortcut shortcut(&widget, Qt::WidgetShortcut);
        shortcut.AddShortcut(0x74, 0);
        shortcut.AddShortcut(0x52, 2);
        shortcut.AddShortcut(0x74, 0);
        shortcut.AddShortcut(0x74, 2);
        const QList<Activation> expected{{0x74, 0}, {0x52, 2}, {0x74, 2}};
        QCOMPARE(shortcut.Shortcuts(), expected);
        QVERIFY(!shortcut.IsBrowser());
        shortcut.SetBrowser(true);
        QVERIFY(shortcut.IsBrowser());
        QCOMPARE(shortcut.Widget(), static_cast<QWidget *>(&widget));
        QCOMPARE(shortcut.Context(), Qt::WidgetShortcut);
    }

    void registeredPressIsReportedAndConsumed_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<uint>("keyCode");
        QTest::addColumn<uint>("mask");
        QTest::newRow("Ctrl+T") << int(Qt::Key_T) << int(Qt::ControlModifier) << 0x54u << 2u;
        QTest::newRow("F5") << int(Qt::Key_F5) << int(Qt::NoModifier) << 0x74u << 0u;
        QTest::newRow("Ctrl+keypad 3") << int(Qt::Key_3) << int(Qt::ControlModifier | Qt::KeypadModifier) << 0x63u << 2u;
        QTest::newRow("Ctrl+Shift+Tab") << int(Qt::Key_Backtab) << int(Qt::ControlModifier | Qt::ShiftModifier) << 0x09u << 6u;
        QTest::newRow("Alt+Shift+Up") << int(Qt::Key_Up) << int(Qt::AltModifier | Qt::ShiftModifier) << 0x26u << 5u;
        QTest::newRow("Ctrl+=") << int(Qt::Key_Equal) << int(Qt::ControlModifier) << 0xBBu << 2u;
    }

    void registeredPressIsReportedAndConsumed()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(uint, keyCode);
        QFETCH(uint, mask);

        ShortcutOnWidget target({qMakePair(keyCode, mask)});
        QTest::keyClick(&target.widget, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(Activations(target.spy), QList<Activation>{qMakePair(keyCode, mask)});
        QVERIFY(target.widget.keys.isEmpty());
    }

    void otherPressesPassOn_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("unregistered key") << int(Qt::Key_Y) << int(Qt::ControlModifier);
        QTest::newRow("registered key, other modifiers") << int(Qt::Key_T) << int(Qt::ControlModifier | Qt::ShiftModifier);
        QTest::newRow("registered key, no modifier") << int(Qt::Key_T) << int(Qt::NoModifier);
        QTest::newRow("Meta held") << int(Qt::Key_T) << int(Qt::ControlModifier | Qt::MetaModifier);
        QTest::newRow("main 3 for keypad 3") << int(Qt::Key_3) << int(Qt::ControlModifier);
        QTest::newRow("keypad + for OEM plus") << int(Qt::Key_Plus) << int(Qt::ControlModifier | Qt::KeypadModifier);
    }

    void otherPressesPassOn()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);

        ShortcutOnWidget target({{0x54, 2}, {0x63, 2}, {0xBB, 2}});
        QTest::keyClick(&target.widget, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(target.spy.count(), 0);
        QCOMPARE(target.widget.keys, QList<int>{key});
    }

    void contexts_data()
    {
        QTest::addColumn<int>("context");
        QTest::addColumn<bool>("browser");
        QTest::addColumn<bool>("onWidget");
        QTest::addColumn<bool>("onChild");
        QTest::addColumn<bool>("onSibling");
        QTest::addColumn<bool>("onOtherWindow");
        QTest::newRow("widget") << int(Qt::WidgetShortcut) << false << true << false << false << false;
        QTest::newRow("widget, browser mode") << int(Qt::WidgetShortcut) << true << true << true << false << false;
        QTest::newRow("widget with children") << int(Qt::WidgetWithChildrenShortcut) << false << true << true << false << false;
        QTest::newRow("window") << int(Qt::WindowShortcut) << false << true << true << true << false;
        QTest::newRow("application") << int(Qt::ApplicationShortcut) << false << true << true << true << true;
    }

    void contexts()
    {
        QFETCH(int, context);
        QFETCH(bool, browser);
        QFETCH(bool, onWidget);
        QFETCH(bool, onChild);
        QFETCH(bool, onSibling);
        QFETCH(bool, onOtherWindow);

        PlacedWindow window(QSize(200, 200));
        auto *widget = window.place<KeyRecordingWidget>(QRect(0, 0, 200, 100));
        auto *child = window.place<KeyRecordingWidget>(QRect(10, 10, 50, 50), widget);
        auto *sibling = window.place<KeyRecordingWidget>(QRect(0, 100, 200, 100));
        KeyRecordingWidget otherWindow;
        window.show();
        otherWindow.show();

        VosShortcut shortcut(widget, Qt::ShortcutContext(context));
        shortcut.SetBrowser(browser);
        shortcut.AddShortcut(0x57, 2);
        QSignalSpy spy(&shortcut, &VosShortcut::SigActivated);

        const auto reported = [&spy](QWidget *target) {
            spy.clear();
            QTest::keyClick(target, Qt::Key_W, Qt::ControlModifier);
            return spy.count() == 1;
        };
        QCOMPARE(reported(widget), onWidget);
        QCOMPARE(reported(child), onChild);
        QCOMPARE(reported(sibling), onSibling);
        QCOMPARE(reported(&otherWindow), onOtherWindow);
    }

    // The shortcut took every registered key before the focus widget could claim
    // it: a line edit lost Ctrl+A and Ctrl+Left, an address bar its Escape.
    void focusWidgetKeepsTheKeysItClaims_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<uint>("keyCode");
        QTest::addColumn<uint>("mask");
        QTest::addColumn<bool>("claimed");
        QTest::newRow("Ctrl+A") << int(Qt::Key_A) << int(Qt::ControlModifier) << 0x41u << 2u << true;
        QTest::newRow("Ctrl+Left") << int(Qt::Key_Left) << int(Qt::ControlModifier) << 0x25u << 2u << true;
        QTest::newRow("Escape") << int(Qt::Key_Escape) << int(Qt::NoModifier) << 0x1Bu << 0u << true;
        QTest::newRow("Ctrl+T is not an editing key") << int(Qt::Key_T) << int(Qt::ControlModifier) << 0x54u << 2u
                                                      << false;
    }

    void focusWidgetKeepsTheKeysItClaims()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(uint, keyCode);
        QFETCH(uint, mask);
        QFETCH(bool, claimed);

        PlacedWindow window(QSize(300, 100));
        auto *edit = window.place<AddressBar>(QRect(0, 0, 300, 30));
        edit->setText(QStringLiteral("some address"));
        window.show();
        QApplication::setActiveWindow(&window);
        edit->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(edit));

        VosShortcut shortcut(&window, Qt::WindowShortcut);
        shortcut.AddShortcut(keyCode, mask);
        QSignalSpy spy(&shortcut, &VosShortcut::SigActivated);
        QTest::keyClick(edit, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(spy.count(), claimed ? 0 : 1);
        QCOMPARE(edit->keys, claimed ? QList<int>{key} : QList<int>());
    }

    // Registered keys were consumed even when nothing acted on them.
    void keyWithoutCommandPassesOn()
    {
        // Not a ShortcutOnWidget: its spy would be a listener.
        KeyRecordingWidget widget;
        widget.show();
        VosShortcut shortcut(&widget, Qt::WidgetShortcut);
        shortcut.AddShortcut(0x57, 2);
        shortcut.AddShortcut(0x54, 2);
        // Nobody listening yet.
        QTest::keyClick(&widget, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(widget.keys, QList<int>{Qt::Key_T});
        widget.keys.clear();

        // A listener that has no command for W at the moment.
        int reports = 0;
        connect(&shortcut, &VosShortcut::SigActivated, &widget, [&](uint keyCode, uint) {
            ++reports;
            if (keyCode == 0x57)
                shortcut.IgnoreActivation();
        });
        QTest::keyClick(&widget, Qt::Key_W, Qt::ControlModifier);
        QTest::keyClick(&widget, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(reports, 2);
        QCOMPARE(widget.keys, QList<int>{Qt::Key_W});
    }

    // Application-wide shortcuts fired while a modal dialog was open, behind the
    // user's back; QShortcut waits until the dialog is gone.
    void applicationShortcutWaitsForModalDialog_data()
    {
        QTest::addColumn<int>("modality");
        QTest::addColumn<bool>("dialogOfOtherWindow");
        QTest::addColumn<bool>("blocked");
        QTest::newRow("application modal") << int(Qt::ApplicationModal) << false << true;
        QTest::newRow("window modal over the widget's window") << int(Qt::WindowModal) << false << true;
        QTest::newRow("window modal over another window") << int(Qt::WindowModal) << true << false;
    }

    void applicationShortcutWaitsForModalDialog()
    {
        QFETCH(int, modality);
        QFETCH(bool, dialogOfOtherWindow);
        QFETCH(bool, blocked);

        KeyRecordingWidget window;
        window.resize(200, 100);
        window.show();
        KeyRecordingWidget other;
        other.resize(200, 100);
        other.show();
        VosShortcut shortcut(&window, Qt::ApplicationShortcut);
        shortcut.AddShortcut(0x57, 2);
        QSignalSpy spy(&shortcut, &VosShortcut::SigActivated);

        QDialog dialog(dialogOfOtherWindow ? &other : &window);
        dialog.setWindowModality(Qt::WindowModality(modality));
        dialog.resize(100, 50);
        auto *inDialog = new KeyRecordingWidget(&dialog);
        inDialog->resize(100, 50);
        dialog.show();
        QTRY_VERIFY(QApplication::activeModalWidget() == &dialog);

        QTest::keyClick(inDialog, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(spy.count(), blocked ? 0 : 1);
        QCOMPARE(inDialog->keys, blocked ? QList<int>{Qt::Key_W} : QList<int>());

        dialog.hide();
        QTRY_VERIFY(!QApplication::activeModalWidget());
        spy.clear();
        QTest::keyClick(&other, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(spy.count(), 1);
    }

    void hiddenWidgetDoesNotTakeWindowPresses()
    {
        QWidget window;
        auto *widget = new KeyRecordingWidget(&window);
        auto *sibling = new KeyRecordingWidget(&window);
        window.show();
        widget->hide();
        VosShortcut shortcut(widget, Qt::WindowShortcut);
        shortcut.AddShortcut(0x57, 2);
        QSignalSpy spy(&shortcut, &VosShortcut::SigActivated);
        QTest::keyClick(sibling, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(spy.count(), 0);
        QCOMPARE(sibling->keys, QList<int>{Qt::Key_W});
    }

    void autoRepeatReportsAgain()
    {
        ShortcutOnWidget target({{0x09, 2}});
        QTest::keyPress(&target.widget, Qt::Key_Tab, Qt::ControlModifier);
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Tab, Qt::ControlModifier, QString(), true);
        QApplication::sendEvent(&target.widget, &repeat);
        QTest::keyRelease(&target.widget, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(target.spy.count(), 2);
    }

    void destroyedWidgetStopsReports()
    {
        auto *widget = new KeyRecordingWidget;
        widget->show();
        VosShortcut shortcut(widget, Qt::WidgetWithChildrenShortcut);
        shortcut.AddShortcut(0x57, 2);
        delete widget;
        QCOMPARE(shortcut.Widget(), nullptr);

        KeyRecordingWidget other;
        other.show();
        QSignalSpy spy(&shortcut, &VosShortcut::SigActivated);
        QTest::keyClick(&other, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(spy.count(), 0);
        QCOMPARE(other.keys, QList<int>{Qt::Key_W});
    }

    // A receiver that ends the shortcut's life from its slot (closing the window that
    // owns it) has acted on the key: it is consumed, and nothing touches the
    // destroyed object.
    void shortcutDestroyedByItsReceiverConsumesTheKey()
    {
        KeyRecordingWidget widget;
        widget.show();
        auto *shortcut = new VosShortcut(&widget, Qt::WidgetShortcut);
        shortcut->AddShortcut(0x57, 2);
        int reports = 0;
        connect(shortcut, &VosShortcut::SigActivated, &widget, [&reports, shortcut] {
            ++reports;
            delete shortcut;
        });
        QTest::keyClick(&widget, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(reports, 1);
        QVERIFY(widget.keys.isEmpty());
        QTest::keyClick(&widget, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(widget.keys, QList<int>{Qt::Key_W});
    }

    void destroyedShortcutStopsWatching()
    {
        KeyRecordingWidget widget;
        widget.show();
        {
            VosShortcut shortcut(&widget, Qt::WidgetShortcut);
            shortcut.AddShortcut(0x57, 2);
            QSignalSpy spy(&shortcut, &VosShortcut::SigActivated);
            QTest::keyClick(&widget, Qt::Key_W, Qt::ControlModifier);
            QVERIFY(widget.keys.isEmpty());
        }
        QTest::keyClick(&widget, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(widget.keys, QList<int>{Qt::Key_W});
    }
};

KELTAB_TEST_MAIN(TstVosShortcut)
#include "tst_vosshortcut.moc"
