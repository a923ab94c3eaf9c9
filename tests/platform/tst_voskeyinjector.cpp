// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "voskeyinjector.h"

#include <QKeyEvent>
#include <QWidget>

namespace {

struct KeyRecord
{
    QEvent::Type type;
    int key;
    Qt::KeyboardModifiers modifiers;

    bool operator==(const KeyRecord &other) const
    {
        return type == other.type && key == other.key && modifiers == other.modifiers;
    }
};

class KeyRecorder : public QWidget
{
public:
    KeyRecorder() { setFocusPolicy(Qt::StrongFocus); }
    QList<KeyRecord> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys.append({event->type(), event->key(), event->modifiers()}); }
    void keyReleaseEvent(QKeyEvent *event) override { keys.append({event->type(), event->key(), event->modifiers()}); }
};

} // namespace

class TstVosKeyInjector : public QObject
{
    Q_OBJECT

private:
    static bool Focus(QWidget *widget)
    {
        widget->show();
        QApplication::setActiveWindow(widget);
        widget->setFocus(Qt::OtherFocusReason);
        return QTest::qWaitFor([widget] { return QApplication::focusWidget() == widget; });
    }

private Q_SLOTS:
    void postsPressAndReleaseToTheFocusWidget_data()
    {
        QTest::addColumn<uint>("virtualKey");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("Page Up") << 0x21u << int(Qt::Key_PageUp) << int(Qt::NoModifier);
        QTest::newRow("Page Down") << 0x22u << int(Qt::Key_PageDown) << int(Qt::NoModifier);
        QTest::newRow("keypad 3") << 0x63u << int(Qt::Key_3) << int(Qt::KeypadModifier);
    }

    void postsPressAndReleaseToTheFocusWidget()
    {
        QFETCH(uint, virtualKey);
        QFETCH(int, key);
        QFETCH(int, modifiers);

        KeyRecorder widget;
        QVERIFY(Focus(&widget));
        QVERIFY(VosKeyInjector::InjectKeyClick(virtualKey));
        // Posted, not sent: nothing has arrived while the caller is still running.
        QVERIFY(widget.keys.isEmpty());
        const Qt::KeyboardModifiers mods(modifiers);
        const QList<KeyRecord> expected{{QEvent::KeyPress, key, mods}, {QEvent::KeyRelease, key, mods}};
        QTRY_COMPARE(widget.keys.size(), 2);
        QVERIFY(widget.keys == expected);
    }

    void nothingWithoutFocusWidget()
    {
        KeyRecorder widget;
        widget.show();
        widget.clearFocus();
        QApplication::setActiveWindow(nullptr);
        QVERIFY(QTest::qWaitFor([] { return QApplication::focusWidget() == nullptr; }));
        QVERIFY(!VosKeyInjector::InjectKeyClick(0x21));
        QCoreApplication::processEvents();
        QVERIFY(widget.keys.isEmpty());
    }

    void nothingForAnUnknownCode()
    {
        KeyRecorder widget;
        QVERIFY(Focus(&widget));
        QVERIFY(!VosKeyInjector::InjectKeyClick(0xFF));
        QCoreApplication::processEvents();
        QVERIFY(widget.keys.isEmpty());
    }
};

KELTAB_TEST_MAIN(TstVosKeyInjector)
#include "tst_voskeyinjector.moc"
