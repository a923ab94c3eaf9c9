// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "kelbasewidget.h"

class TstKelBaseWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framelessAddedToGivenFlags_data();
    void framelessAddedToGivenFlags();
    void childKeepsItsParent();
    void paintsStyleSheetBackground();
};

void TstKelBaseWidget::framelessAddedToGivenFlags_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("windowType");

    QTest::newRow("none") << 0 << int(Qt::Window);
    QTest::newRow("tool") << int(Qt::Tool) << int(Qt::Tool);
    QTest::newRow("tool customized (toast)") << int(Qt::Tool | Qt::CustomizeWindowHint) << int(Qt::Tool);
    QTest::newRow("already frameless") << int(Qt::Tool | Qt::FramelessWindowHint) << int(Qt::Tool);
    QTest::newRow("stays on top") << int(Qt::Window | Qt::WindowStaysOnTopHint) << int(Qt::Window);
}

void TstKelBaseWidget::framelessAddedToGivenFlags()
{
    QFETCH(int, given);
    QFETCH(int, windowType);

    const Qt::WindowFlags flags(given);
    KelBaseWidget widget(nullptr, flags);
    QCOMPARE(int(widget.windowType()), windowType);
    QVERIFY(widget.windowFlags().testFlag(Qt::FramelessWindowHint));
    // Every flag given survives.
    QCOMPARE(widget.windowFlags() & flags, flags);
    QVERIFY(widget.testAttribute(Qt::WA_StyledBackground));
}

void TstKelBaseWidget::childKeepsItsParent()
{
    QWidget parent;
    auto *child = new KelBaseWidget(&parent);
    QCOMPARE(child->parentWidget(), &parent);
    QVERIFY(!child->isWindow());
    QVERIFY(child->testAttribute(Qt::WA_StyledBackground));
}

void TstKelBaseWidget::paintsStyleSheetBackground()
{
    // A QWidget subclass paints no style-sheet background unless it asks for it.
    QWidget host;
    host.setStyleSheet(QStringLiteral("KelBaseWidget { background: rgb(0, 128, 0); }"));
    host.resize(40, 40);
    auto *child = new KelBaseWidget(&host);
    child->setGeometry(0, 0, 20, 20);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    // Grab the host: grabbing the child itself would fill it with its palette anyway.
    const QImage image = host.grab().toImage();
    QCOMPARE(image.pixelColor(10, 10), QColor(0, 128, 0));
    QVERIFY(image.pixelColor(30, 30) != QColor(0, 128, 0));
}

KELTAB_TEST_MAIN(TstKelBaseWidget)
#include "tst_kelbasewidget.moc"
