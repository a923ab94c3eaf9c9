// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "kelpushbutton.h"

class TstKelPushButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void typeAndBusiness_data();
    void typeAndBusiness();
    void styleSheetMatchesButtonType();
    void takesNoFocus();
};

void TstKelPushButton::defaults()
{
    QWidget parent;
    auto *button = new KelPushButton(0, 0, &parent);
    QCOMPARE(button->parentWidget(), &parent);
    QCOMPARE(button->ButtonType(), 0);
    QCOMPARE(button->Business(), 0);

    KelPushButton plain;
    QCOMPARE(plain.ButtonType(), 0);
    QCOMPARE(plain.Business(), 0);
}

void TstKelPushButton::typeAndBusiness_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("business");

    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("type only") << 3 << 0;
    QTest::newRow("business only") << 0 << 42;
    QTest::newRow("both") << 1 << 7;
    QTest::newRow("negative") << -1 << -5;
}

void TstKelPushButton::typeAndBusiness()
{
    QFETCH(int, type);
    QFETCH(int, business);

    KelPushButton button(type, business);
    QCOMPARE(button.ButtonType(), type);
    QCOMPARE(button.Business(), business);
    QCOMPARE(button.property("buttonType").toInt(), type);
    QCOMPARE(button.property("business").toInt(), business);
}

void TstKelPushButton::styleSheetMatchesButtonType()
{
    QWidget host;
    host.setStyleSheet(QStringLiteral(
        "KelPushButton { background: rgb(0, 0, 255); border: none; }"
        "KelPushButton[buttonType=\"1\"] { background: rgb(255, 0, 0); }"));
    host.resize(60, 30);
    auto *typed = new KelPushButton(1, 0, &host);
    typed->setGeometry(0, 0, 30, 30);
    auto *untyped = new KelPushButton(2, 0, &host);
    untyped->setGeometry(30, 0, 30, 30);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    QCOMPARE(typed->grab().toImage().pixelColor(15, 15), QColor(255, 0, 0));
    QCOMPARE(untyped->grab().toImage().pixelColor(15, 15), QColor(0, 0, 255));
}

void TstKelPushButton::takesNoFocus()
{
    QWidget host;
    auto *other = new QPushButton(&host);
    auto *button = new KelPushButton(0, 0, &host);
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    host.show();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    other->setFocus();
    QVERIFY(other->hasFocus());
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!button->hasFocus());
    QVERIFY(other->hasFocus());
}

KELTAB_TEST_MAIN(TstKelPushButton)
#include "tst_kelpushbutton.moc"
