// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "singletontest.h"
#include "vosshortcut.h"
#include "vosshortcutmanager.h"

#include <QPointer>
#include <QWidget>

class TstVosShortcutManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        VosShortcutManager::ReleaseInstance();
    }

    void keepsObjectsInOrderOnce()
    {
        QWidget widget;
        QSharedPointer<VosShortcut> first(new VosShortcut(&widget, Qt::WidgetShortcut));
        QSharedPointer<VosShortcut> second(new VosShortcut(&widget, Qt::WindowShortcut));
        VosShortcutManager *manager = VosShortcutManager::Instance();
        manager->Add(first);
        manager->Add(second);
        manager->Add(first);
        manager->Add(QSharedPointer<VosShortcut>());
        const QList<QSharedPointer<VosShortcut>> expected{first, second};
        QCOMPARE(manager->Shortcuts(), expected);

        manager->Remove(first);
        QCOMPARE(manager->Shortcuts(), QList<QSharedPointer<VosShortcut>>{second});
    }

    void keepsObjectsAliveAfterTheCreatorLetsGo()
    {
        QWidget widget;
        widget.show();
        QPointer<VosShortcut> watched;
        {
            QSharedPointer<VosShortcut> shortcut(new VosShortcut(&widget, Qt::WidgetShortcut));
            shortcut->AddShortcut(0x57, 2);
            watched = shortcut.data();
            VosShortcutManager::Instance()->Add(shortcut);
        }
        QVERIFY(watched);
        QSignalSpy spy(watched.data(), &VosShortcut::SigActivated);
        QTest::keyClick(&widget, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(spy.count(), 1);
    }

    void releaseDestroysWhatNobodyElseHolds()
    {
        QWidget widget;
        widget.show();
        QSharedPointer<VosShortcut> held(new VosShortcut(&widget, Qt::WidgetShortcut));
        QPointer<VosShortcut> dropped;
        {
            QSharedPointer<VosShortcut> shortcut(new VosShortcut(&widget, Qt::WidgetShortcut));
            dropped = shortcut.data();
            VosShortcutManager::Instance()->Add(shortcut);
        }
        VosShortcutManager::Instance()->Add(held);
        VosShortcutManager *before = VosShortcutManager::Instance();

        VosShortcutManager::ReleaseInstance();
        QVERIFY(!dropped);
        QVERIFY(held);

        // A fresh, empty registry afterwards.
        VosShortcutManager *after = VosShortcutManager::Instance();
        QVERIFY(after);
        QVERIFY(after->Shortcuts().isEmpty());
        Q_UNUSED(before)
    }

    void offTheGuiThreadIsRefused()
    {
        SingletonTest::CheckRefusedOffTheGuiThread<VosShortcutManager>("VosShortcutManager");
    }

    // A shortcut object dropped by the release, whose owner reacts by touching the
    // registry again, used to deadlock on the registry's lock.
    void releaseFromItsOwnDestruction()
    {
        QWidget widget;
        SingletonTest::CheckReleaseFromItsOwnDestruction<VosShortcutManager>(
            [&widget](VosShortcutManager *manager, std::function<void()> callback) {
                QSharedPointer<VosShortcut> shortcut(new VosShortcut(&widget, Qt::WidgetShortcut));
                QObject::connect(shortcut.data(), &QObject::destroyed, callback);
                manager->Add(shortcut);
            });
    }
};

KELTAB_TEST_MAIN(TstVosShortcutManager)
#include "tst_vosshortcutmanager.moc"
