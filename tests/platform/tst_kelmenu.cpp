// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "kelmenu.h"

class TstKelMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isFramelessPopupWithoutShadow();
    void keepsParentAndActions();
    void styleSheetDrawsItByObjectName();
};

void TstKelMenu::isFramelessPopupWithoutShadow()
{
    KelMenu menu;
    QCOMPARE(menu.windowType(), Qt::Popup);
    QVERIFY(menu.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(menu.windowFlags().testFlag(Qt::NoDropShadowWindowHint));
    QVERIFY(!menu.isVisible());
}

void TstKelMenu::keepsParentAndActions()
{
    QWidget parent;
    auto *menu = new KelMenu(&parent);
    QCOMPARE(menu->parentWidget(), &parent);
    QCOMPARE(menu->windowType(), Qt::Popup);

    QAction *close = menu->addAction(QStringLiteral("Close tab"));
    QSignalSpy triggered(close, &QAction::triggered);
    close->trigger();
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(menu->actions().size(), 1);
}

void TstKelMenu::styleSheetDrawsItByObjectName()
{
    KelMenu menu;
    menu.setObjectName(QStringLiteral("BrowserTabBarMenu"));
    menu.setStyleSheet(QStringLiteral("QMenu#BrowserTabBarMenu { background: rgb(0, 128, 0); border: none; }"));
    menu.addAction(QStringLiteral("Close tab"));
    menu.ensurePolished();
    const QImage image = menu.grab().toImage();
    QVERIFY(!image.isNull());
    QCOMPARE(image.pixelColor(1, 1), QColor(0, 128, 0));
}

KELTAB_TEST_MAIN(TstKelMenu)
#include "tst_kelmenu.moc"
