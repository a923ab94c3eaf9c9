// SPDX-License-Identifier: MIT
#include "keltabtest.h"
#include "keyrecordingwidget.h"

#include "browserkeyhandler.h"
#include "ikeyhandlerdelegate.h"
#include "vosshortcut.h"
#include "vosshortcutmanager.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>

namespace {

class RecordingDelegate : public IKeyHandlerDelegate
{
public:
    QStringList calls;
    bool fullscreen = false;

    void ActionBack() override { calls << QStringLiteral("ActionBack"); }
    void ActionForward() override { calls << QStringLiteral("ActionForward"); }
    void ActionRefresh() override { calls << QStringLiteral("ActionRefresh"); }
    void ActionRefreshNoCache() override { calls << QStringLiteral("ActionRefreshNoCache"); }
    void ActionNewTab() override { calls << QStringLiteral("ActionNewTab"); }
    void ActionCloseTab() override { calls << QStringLiteral("ActionCloseTab"); }
    void ActionSelectTab(int index) override { calls << QStringLiteral("ActionSelectTab(%1)").arg(index); }
    void ActionNextTab() override { calls << QStringLiteral("ActionNextTab"); }
    void ActionPreviousTab() override { calls << QStringLiteral("ActionPreviousTab"); }
    void ActionCtrl9() override { calls << QStringLiteral("ActionCtrl9"); }
    void ZoomDefault() override { calls << QStringLiteral("ZoomDefault"); }
    void ZoomIn() override { calls << QStringLiteral("ZoomIn"); }
    void ZoomOut() override { calls << QStringLiteral("ZoomOut"); }
    void ActionCtrlD() override { calls << QStringLiteral("ActionCtrlD"); }
    void ActionCtrlJ() override { calls << QStringLiteral("ActionCtrlJ"); }
    void ShowFindDlg() override { calls << QStringLiteral("ShowFindDlg"); }
    void ShowDevTools() override { calls << QStringLiteral("ShowDevTools"); }
    void ActionCtrlH() override { calls << QStringLiteral("ActionCtrlH"); }
    void ActionCtrlShiftDelete() override { calls << QStringLiteral("ActionCtrlShiftDelete"); }
    bool IsFullscreen() override
    {
        calls << QStringLiteral("IsFullscreen");
        return fullscreen;
    }
    void EnterFullscreen() override
    {
        calls << QStringLiteral("EnterFullscreen");
        fullscreen = true;
    }
    void ExitFullscreen() override
    {
        calls << QStringLiteral("ExitFullscreen");
        fullscreen = false;
    }
    void ActionRecoverClosedTab() override { calls << QStringLiteral("ActionRecoverClosedTab"); }
    void ActionAltShiftUp() override { calls << QStringLiteral("ActionAltShiftUp"); }
    void ActionAltShiftDown() override { calls << QStringLiteral("ActionAltShiftDown"); }
    void ActionAltC() override { calls << QStringLiteral("ActionAltC"); }
    void ActionAltE() override { calls << QStringLiteral("ActionAltE"); }
};

// A line edit that notes the keys it gets, as an address bar would act on them.
class RecordingLineEdit : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        keys.append(event->key());
        QLineEdit::keyPressEvent(event);
    }
};

using Combination = QPair<uint, uint>;

QList<Combination> DefaultTable()
{
    QList<Combination> table{{0x74, 0}, {0x52, 2}, {0x74, 2}, {0x25, 1}, {0x27, 1}, {0x7B, 0},
                             {0x7A, 0}, {0x1B, 0}, {0x57, 2}, {0x73, 2}, {0x30, 2}, {0x60, 2}};
    for (uint digit = 1; digit <= 8; ++digit) {
        table << Combination(0x30 + digit, 2);
        table << Combination(0x60 + digit, 2);
    }
    table << Combination(0x39, 2) << Combination(0x69, 2) << Combination(0x09, 2) << Combination(0x22, 2)
          << Combination(0x21, 2) << Combination(0x09, 6) << Combination(0x48, 2) << Combination(0x2E, 6)
          << Combination(0x4A, 2) << Combination(0x46, 2) << Combination(0x44, 2) << Combination(0x54, 2)
          << Combination(0xBB, 2) << Combination(0xBD, 2) << Combination(0x54, 6) << Combination(0x43, 1)
          << Combination(0x45, 1) << Combination(0x26, 5) << Combination(0x28, 5);
    return table;
}

} // namespace

class TstBrowserKeyHandler : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<KeyRecordingWidget> m_page;
    std::unique_ptr<RecordingDelegate> m_delegate;
    std::unique_ptr<BrowserKeyHandler> m_handler;

    void Press(int key, Qt::KeyboardModifiers modifiers, QWidget *target = nullptr)
    {
        QTest::keyClick(target ? target : m_page.get(), Qt::Key(key), modifiers);
    }

    QSharedPointer<VosShortcut> LastShortcut() const
    {
        const QList<QSharedPointer<VosShortcut>> all = VosShortcutManager::Instance()->Shortcuts();
        return all.isEmpty() ? QSharedPointer<VosShortcut>() : all.last();
    }

    static void Activate(BrowserKeyHandler *handler, uint keyCode, uint keyModifiers)
    {
        QVERIFY(QMetaObject::invokeMethod(handler, "SlotActivated", Q_ARG(uint, keyCode), Q_ARG(uint, keyModifiers)));
    }

private Q_SLOTS:
    void init()
    {
        m_page.reset(new KeyRecordingWidget);
        m_page->resize(300, 200);
        m_page->show();
        m_delegate.reset(new RecordingDelegate);
        m_handler.reset(new BrowserKeyHandler);
        m_handler->SetKeyHandlerDelegate(m_delegate.get());
        m_handler->Initialize(m_page.get(), Qt::WidgetShortcut);
    }

    void cleanup()
    {
        m_handler.reset();
        m_delegate.reset();
        m_page.reset();
        VosShortcutManager::ReleaseInstance();
    }

    void registersTheDefaultTableInOrder()
    {
        const QSharedPointer<VosShortcut> shortcut = LastShortcut();
        QVERIFY(shortcut);
        QCOMPARE(VosShortcutManager::Instance()->Shortcuts().size(), 1);
        QCOMPARE(shortcut->Shortcuts().size(), 47);
        QCOMPARE(shortcut->Shortcuts(), DefaultTable());
        QVERIFY(shortcut->IsBrowser());
        QCOMPARE(shortcut->Widget(), static_cast<QWidget *>(m_page.get()));
        QCOMPARE(shortcut->Context(), Qt::WidgetShortcut);
    }

    void realKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QStringList>("calls");

        const int ctrl = Qt::ControlModifier;
        const int alt = Qt::AltModifier;
        const int shift = Qt::ShiftModifier;
        const int keypad = Qt::KeypadModifier;
        const auto row = [](const char *name, int key, int modifiers, const QStringList &calls) {
            QTest::newRow(name) << key << modifiers << calls;
        };
        row("F5", Qt::Key_F5, 0, {"ActionRefresh"});
        row("Ctrl+R", Qt::Key_R, ctrl, {"ActionRefresh"});
        row("Ctrl+F5", Qt::Key_F5, ctrl, {"ActionRefreshNoCache"});
        row("Alt+Left", Qt::Key_Left, alt, {"ActionBack"});
        row("Alt+Right", Qt::Key_Right, alt, {"ActionForward"});
        row("F12", Qt::Key_F12, 0, {"ShowDevTools"});
        row("F11", Qt::Key_F11, 0, {"IsFullscreen", "EnterFullscreen"});
        row("Esc", Qt::Key_Escape, 0, {"IsFullscreen"});
        row("Ctrl+W", Qt::Key_W, ctrl, {"ActionCloseTab"});
        row("Ctrl+F4", Qt::Key_F4, ctrl, {"ActionCloseTab"});
        row("Ctrl+0", Qt::Key_0, ctrl, {"ZoomDefault"});
        row("Ctrl+keypad 0", Qt::Key_0, ctrl | keypad, {"ZoomDefault"});
        for (int digit = 1; digit <= 8; ++digit) {
            const QString call = QStringLiteral("ActionSelectTab(%1)").arg(digit - 1);
            QTest::addRow("Ctrl+%d", digit) << int(Qt::Key_0 + digit) << ctrl << QStringList{call};
            QTest::addRow("Ctrl+keypad %d", digit) << int(Qt::Key_0 + digit) << (ctrl | keypad) << QStringList{call};
        }
        row("Ctrl+9", Qt::Key_9, ctrl, {"ActionCtrl9"});
        row("Ctrl+keypad 9", Qt::Key_9, ctrl | keypad, {"ActionCtrl9"});
        row("Ctrl+Tab", Qt::Key_Tab, ctrl, {"ActionNextTab"});
        row("Ctrl+Page Down", Qt::Key_PageDown, ctrl, {"ActionNextTab"});
        row("Ctrl+Page Up", Qt::Key_PageUp, ctrl, {"ActionPreviousTab"});
        row("Ctrl+Shift+Tab (Backtab)", Qt::Key_Backtab, ctrl | shift, {"ActionPreviousTab"});
        row("Ctrl+Shift+Tab (Tab)", Qt::Key_Tab, ctrl | shift, {"ActionPreviousTab"});
        row("Ctrl+H", Qt::Key_H, ctrl, {"ActionCtrlH"});
        row("Ctrl+Shift+Delete", Qt::Key_Delete, ctrl | shift, {"ActionCtrlShiftDelete"});
        row("Ctrl+J", Qt::Key_J, ctrl, {"ActionCtrlJ"});
        row("Ctrl+F", Qt::Key_F, ctrl, {"ShowFindDlg"});
        row("Ctrl+D", Qt::Key_D, ctrl, {"ActionCtrlD"});
        row("Ctrl+T", Qt::Key_T, ctrl, {"ActionNewTab"});
        row("Ctrl+=", Qt::Key_Equal, ctrl, {"ZoomIn"});
        row("Ctrl++ (shifted =)", Qt::Key_Plus, ctrl, {"ZoomIn"});
        row("Ctrl+-", Qt::Key_Minus, ctrl, {"ZoomOut"});
        row("Ctrl+Shift+T", Qt::Key_T, ctrl | shift, {"ActionRecoverClosedTab"});
        row("Alt+C", Qt::Key_C, alt, {"ActionAltC"});
        row("Alt+E", Qt::Key_E, alt, {"ActionAltE"});
        row("Alt+Shift+Up", Qt::Key_Up, alt | shift, {"ActionAltShiftUp"});
        row("Alt+Shift+Down", Qt::Key_Down, alt | shift, {"ActionAltShiftDown"});

        // Ignored.
        row("plain R", Qt::Key_R, 0, {});
        row("Alt+Shift+Left", Qt::Key_Left, alt | shift, {});
        row("Ctrl+Alt+T", Qt::Key_T, ctrl | alt, {});
        row("Ctrl+Alt+Left", Qt::Key_Left, ctrl | alt, {});
        row("Ctrl+keypad +", Qt::Key_Plus, ctrl | keypad, {});
        row("Ctrl+keypad -", Qt::Key_Minus, ctrl | keypad, {});
        row("Shift+F5", Qt::Key_F5, shift, {});
        row("Ctrl+Shift+R", Qt::Key_R, ctrl | shift, {});
        row("Alt+Up", Qt::Key_Up, alt, {});
        row("plain Tab", Qt::Key_Tab, 0, {});
    }

    void realKeys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QStringList, calls);
        Press(key, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(m_delegate->calls, calls);
    }

    void ctrlThreeAndKeypadThreeSelectTheThirdTab()
    {
        Press(Qt::Key_3, Qt::ControlModifier);
        Press(Qt::Key_3, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(m_delegate->calls, (QStringList{"ActionSelectTab(2)", "ActionSelectTab(2)"}));
    }

    void f11Twice()
    {
        Press(Qt::Key_F11, Qt::NoModifier);
        Press(Qt::Key_F11, Qt::NoModifier);
        QCOMPARE(m_delegate->calls,
                 (QStringList{"IsFullscreen", "EnterFullscreen", "IsFullscreen", "ExitFullscreen"}));
    }

    void escLeavesFullScreenOnly()
    {
        Press(Qt::Key_Escape, Qt::NoModifier);
        QCOMPARE(m_delegate->calls, QStringList{"IsFullscreen"});
        m_delegate->calls.clear();
        m_delegate->fullscreen = true;
        Press(Qt::Key_Escape, Qt::NoModifier);
        QCOMPARE(m_delegate->calls, (QStringList{"IsFullscreen", "ExitFullscreen"}));
    }

    // Esc was consumed even when it had nothing to do, so a focused line edit (the
    // host's address bar) never got it.
    void escapeWithoutFullScreenReachesTheFocusedLineEdit()
    {
        auto *edit = new RecordingLineEdit(m_page.get());
        edit->setGeometry(10, 10, 200, 24);
        edit->show();
        QApplication::setActiveWindow(m_page.get());
        edit->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(edit));

        Press(Qt::Key_Escape, Qt::NoModifier, edit);
        QCOMPARE(m_delegate->calls, QStringList{"IsFullscreen"});
        QCOMPARE(edit->keys, QList<int>{Qt::Key_Escape});

        // In full screen Esc leaves it, and is consumed.
        m_delegate->calls.clear();
        m_delegate->fullscreen = true;
        Press(Qt::Key_Escape, Qt::NoModifier, edit);
        QCOMPARE(m_delegate->calls, (QStringList{"IsFullscreen", "ExitFullscreen"}));
        QCOMPARE(edit->keys, QList<int>{Qt::Key_Escape});
    }

    // Keys arriving before a delegate is set were swallowed although nothing ran.
    void withoutDelegateKeysReachThePage()
    {
        m_handler->SetKeyHandlerDelegate(nullptr);
        Press(Qt::Key_T, Qt::ControlModifier);
        Press(Qt::Key_F5, Qt::NoModifier);
        QCOMPARE(m_page->keys, (QList<int>{Qt::Key_T, Qt::Key_F5}));
        QVERIFY(m_delegate->calls.isEmpty());
    }

    void registeredKeysAreConsumedOthersPassOn()
    {
        Press(Qt::Key_T, Qt::ControlModifier);
        Press(Qt::Key_R, Qt::NoModifier);
        Press(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
        Press(Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(m_page->keys, (QList<int>{Qt::Key_R, Qt::Key_Left, Qt::Key_Plus}));
    }

    void keypadPlusIgnoredEvenWhenRegisteredLater()
    {
        LastShortcut()->AddShortcut(0x6B, 2);
        Press(Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
        QVERIFY(m_delegate->calls.isEmpty());
        // Registered now, so the service reports it; the handler has no rule for it
        // and leaves it to the page.
        QCOMPARE(m_page->keys, QList<int>{Qt::Key_Plus});
    }

    void browserModeTakesKeysOfDescendants()
    {
        auto *view = new KeyRecordingWidget(m_page.get());
        view->setGeometry(10, 10, 100, 100);
        view->show();
        Press(Qt::Key_T, Qt::ControlModifier, view);
        QCOMPARE(m_delegate->calls, QStringList{"ActionNewTab"});
        QVERIFY(view->keys.isEmpty());
    }

    void withoutDelegateEveryKeyIsIgnored()
    {
        m_handler->SetKeyHandlerDelegate(nullptr);
        for (const Combination &combination : DefaultTable()) {
            const int key = VosShortcut::QtKeyFromVirtualKey(combination.first);
            Qt::KeyboardModifiers modifiers;
            if (combination.second & 1)
                modifiers |= Qt::AltModifier;
            if (combination.second & 2)
                modifiers |= Qt::ControlModifier;
            if (combination.second & 4)
                modifiers |= Qt::ShiftModifier;
            if (combination.first >= 0x60 && combination.first <= 0x69)
                modifiers |= Qt::KeypadModifier;
            Press(key, modifiers);
            Activate(m_handler.get(), combination.first, combination.second);
        }
        QVERIFY(m_delegate->calls.isEmpty());
    }

    void dispatch_data()
    {
        QTest::addColumn<uint>("keyCode");
        QTest::addColumn<uint>("keyModifiers");
        QTest::addColumn<QStringList>("calls");
        const auto row = [](const char *name, uint keyCode, uint keyModifiers, const QStringList &calls) {
            QTest::newRow(name) << keyCode << keyModifiers << calls;
        };
        row("Ctrl+9", 0x39, 2, {"ActionCtrl9"});
        row("Ctrl+1", 0x31, 2, {"ActionSelectTab(0)"});
        row("Ctrl+8", 0x38, 2, {"ActionSelectTab(7)"});
        row("Ctrl+keypad 1", 0x61, 2, {"ActionSelectTab(0)"});
        row("Ctrl+keypad 8", 0x68, 2, {"ActionSelectTab(7)"});
        row("Ctrl+keypad +", 0x6B, 2, {});
        row("Ctrl+keypad -", 0x6D, 2, {});
        row("Ctrl+A", 0x41, 2, {});
        row("Ctrl+Alt (3)", 0x54, 3, {});
        row("Shift (4)", 0x74, 4, {});
        row("Ctrl+Alt+Shift (7)", 0x54, 7, {});
        row("large mask", 0x54, 0x102, {});
        row("Alt+Shift+Left", 0x25, 5, {});
        row("Ctrl+Shift+R", 0x52, 6, {});
        row("Alt+R", 0x52, 1, {});
        row("plain R", 0x52, 0, {});
        row("plain Delete", 0x2E, 0, {});
        row("unknown code", 0xFFFF, 2, {});
    }

    void dispatch()
    {
        QFETCH(uint, keyCode);
        QFETCH(uint, keyModifiers);
        QFETCH(QStringList, calls);
        Activate(m_handler.get(), keyCode, keyModifiers);
        QCOMPARE(m_delegate->calls, calls);
    }

    void delegateMaySetAfterInitialize()
    {
        // The newest shortcut object sees presses first, so this handler gets them.
        BrowserKeyHandler handler;
        handler.Initialize(m_page.get(), Qt::WidgetShortcut);
        Press(Qt::Key_T, Qt::ControlModifier);
        RecordingDelegate late;
        handler.SetKeyHandlerDelegate(&late);
        Press(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(late.calls, QStringList{"ActionNewTab"});
    }

    void initializeTwiceKeepsBothObjects()
    {
        QSharedPointer<VosShortcut> first = LastShortcut();
        m_handler->Initialize(m_page.get(), Qt::WidgetShortcut);
        const QList<QSharedPointer<VosShortcut>> all = VosShortcutManager::Instance()->Shortcuts();
        QCOMPARE(all.size(), 2);
        QCOMPARE(all.first(), first);
        QCOMPARE(all.last()->Shortcuts(), DefaultTable());

        // One press, one action: the first object to see it consumes it.
        Press(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(m_delegate->calls, QStringList{"ActionNewTab"});
        // The first object is still connected.
        emit first->SigActivated(0x57, 2);
        QCOMPARE(m_delegate->calls, (QStringList{"ActionNewTab", "ActionCloseTab"}));
    }

    void handlerGoneManagerKeepsTheObject()
    {
        QPointer<VosShortcut> shortcut = LastShortcut().data();
        m_handler.reset();
        QVERIFY(shortcut);
        // Still registered and watching, with nobody listening: the key goes on to
        // the page and nothing breaks.
        Press(Qt::Key_T, Qt::ControlModifier);
        QVERIFY(m_delegate->calls.isEmpty());
        QCOMPARE(m_page->keys, QList<int>{Qt::Key_T});
        VosShortcutManager::ReleaseInstance();
        QVERIFY(!shortcut);
        Press(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(m_page->keys, (QList<int>{Qt::Key_T, Qt::Key_T}));
    }
};

KELTAB_TEST_MAIN(TstBrowserKeyHandler)
#include "tst_browserkeyhandler.moc"
