// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tabmask.h"

#include <QPointer>

namespace {

QWidget *MakeMessage(const QSize &size = QSize(50, 30))
{
    auto *message = new QWidget;
    message->setFixedSize(size);
    return message;
}

} // namespace

class TstTabMask : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void coversParentOnCreation();
    void followsParentResizes();
    void followsResizeOfHiddenParentOnceShown();
    void secondFilterOnParentIsHarmless();
    void startsClearAndPassingInput();
    void laysWidgetWithAlignment_data();
    void laysWidgetWithAlignment();
    void sameWidgetAgainTakesNewAlignment();
    void blockInputFlag_data();
    void blockInputFlag();
    void dimmedFlag_data();
    void dimmedFlag();
    void replacingDeletesTheOldWidget();
    void replacedWidgetDisappearsAtOnce();
    void nullWidgetClears();
    void widgetDeletedByHostIsForgotten();
    void worksWithoutParent();

private:
    QWidget *m_page = nullptr;
    QWidget *m_pageChild = nullptr;
    TabMask *m_mask = nullptr;
};

void TstTabMask::init()
{
    m_page = new QWidget;
    m_page->resize(300, 200);
    m_page->setAutoFillBackground(true);
    QPalette palette = m_page->palette();
    palette.setColor(QPalette::Window, Qt::white);
    m_page->setPalette(palette);
    m_pageChild = new QWidget(m_page);
    m_pageChild->setGeometry(0, 0, 300, 200);
    m_mask = new TabMask(m_page);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page));
}

void TstTabMask::cleanup()
{
    delete m_page;
    m_page = nullptr;
    m_pageChild = nullptr;
    m_mask = nullptr;
}

void TstTabMask::coversParentOnCreation()
{
    QCOMPARE(m_mask->parentWidget(), m_page);
    QCOMPARE(m_mask->geometry(), QRect(0, 0, 300, 200));
    QCOMPARE(m_mask->objectName(), QStringLiteral("TabMask"));

    QWidget other;
    other.resize(123, 45);
    TabMask late(&other);
    QCOMPARE(late.geometry(), QRect(0, 0, 123, 45));
}

void TstTabMask::followsParentResizes()
{
    m_page->resize(420, 260);
    QTRY_COMPARE(m_mask->geometry(), QRect(0, 0, 420, 260));
    m_page->resize(100, 80);
    QTRY_COMPARE(m_mask->geometry(), QRect(0, 0, 100, 80));
}

void TstTabMask::followsResizeOfHiddenParentOnceShown()
{
    QWidget window;
    window.resize(500, 400);
    auto *page = new QWidget(&window);
    page->setGeometry(0, 0, 200, 100);
    auto *mask = new TabMask(page);
    page->resize(350, 150);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(mask->geometry(), QRect(0, 0, 350, 150));

    page->hide();
    page->resize(250, 120);
    page->show();
    QTRY_COMPARE(mask->geometry(), QRect(0, 0, 250, 120));
}

void TstTabMask::secondFilterOnParentIsHarmless()
{
    // TabContainer installs the mask as a filter on the page once more.
    m_page->installEventFilter(m_mask);
    m_page->resize(310, 210);
    QTRY_COMPARE(m_mask->geometry(), QRect(0, 0, 310, 210));
    QResizeEvent resize(QSize(310, 210), QSize(300, 200));
    QVERIFY(!m_mask->eventFilter(m_page, &resize));
}

void TstTabMask::startsClearAndPassingInput()
{
    QCOMPARE(m_mask->MaskWidget(), nullptr);
    QVERIFY(!m_mask->IsBlockingInput());
    QVERIFY(!m_mask->IsDimmed());
    QVERIFY(m_mask->testAttribute(Qt::WA_TransparentForMouseEvents));
}

void TstTabMask::laysWidgetWithAlignment_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<QPoint>("topLeft");

    QTest::newRow("centre") << int(Qt::AlignCenter) << QPoint(125, 85);
    QTest::newRow("top left") << int(Qt::AlignLeft | Qt::AlignTop) << QPoint(0, 0);
    QTest::newRow("bottom right") << int(Qt::AlignRight | Qt::AlignBottom) << QPoint(250, 170);
    QTest::newRow("top centre") << int(Qt::AlignHCenter | Qt::AlignTop) << QPoint(125, 0);
    QTest::newRow("left centre") << int(Qt::AlignLeft | Qt::AlignVCenter) << QPoint(0, 85);
}

void TstTabMask::laysWidgetWithAlignment()
{
    QFETCH(int, alignment);
    QFETCH(QPoint, topLeft);

    QWidget *message = MakeMessage();
    m_mask->SetMaskWidget(message, false, false, Qt::Alignment(alignment));
    QCOMPARE(m_mask->MaskWidget(), message);
    QCOMPARE(message->parentWidget(), m_mask);
    QVERIFY(message->isVisible());
    QTRY_COMPARE(message->geometry(), QRect(topLeft, QSize(50, 30)));

    // The alignment holds as the page changes size.
    m_page->resize(400, 300);
    const QPoint moved(topLeft.x() == 125 ? 175 : topLeft.x() == 250 ? 350 : 0,
                       topLeft.y() == 85 ? 135 : topLeft.y() == 170 ? 270 : 0);
    QTRY_COMPARE(message->geometry(), QRect(moved, QSize(50, 30)));
}

void TstTabMask::sameWidgetAgainTakesNewAlignment()
{
    QPointer<QWidget> message = MakeMessage();
    m_mask->SetMaskWidget(message, false, false, Qt::AlignLeft | Qt::AlignTop);
    QTRY_COMPARE(message->pos(), QPoint(0, 0));

    m_mask->SetMaskWidget(message, true, true, Qt::AlignRight | Qt::AlignBottom);
    QTRY_COMPARE(message->pos(), QPoint(250, 170));
    QCOMPARE(m_mask->MaskWidget(), message.data());
    QVERIFY(m_mask->IsBlockingInput());
    QVERIFY(m_mask->IsDimmed());

    // Not deleted: it is still the one shown.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!message.isNull());
    QVERIFY(message->isVisible());
}

void TstTabMask::blockInputFlag_data()
{
    QTest::addColumn<bool>("blockInput");

    QTest::newRow("blocking") << true;
    QTest::newRow("passing") << false;
}

void TstTabMask::blockInputFlag()
{
    QFETCH(bool, blockInput);

    QWidget *message = MakeMessage();
    m_mask->SetMaskWidget(message, blockInput, false, Qt::AlignCenter);
    QCOMPARE(m_mask->IsBlockingInput(), blockInput);
    QCOMPARE(m_mask->testAttribute(Qt::WA_TransparentForMouseEvents), !blockInput);
    QTRY_COMPARE(message->geometry().topLeft(), QPoint(125, 85));

    // Who gets the mouse outside the widget: the mask, or the page below it.
    QWidget *outside = m_page->childAt(QPoint(10, 10));
    QCOMPARE(outside, blockInput ? static_cast<QWidget *>(m_mask) : m_pageChild);
    // Over the widget: the widget when blocking; the page otherwise, as Qt lets a
    // mouse-transparent widget's children be passed through with it.
    QCOMPARE(m_page->childAt(QPoint(150, 100)), blockInput ? message : m_pageChild);

    // The flag follows every call, both ways.
    m_mask->SetMaskWidget(message, !blockInput, false, Qt::AlignCenter);
    QCOMPARE(m_mask->IsBlockingInput(), !blockInput);
    QCOMPARE(m_mask->testAttribute(Qt::WA_TransparentForMouseEvents), blockInput);
}

void TstTabMask::dimmedFlag_data()
{
    QTest::addColumn<bool>("dimmed");

    QTest::newRow("dimmed") << true;
    QTest::newRow("clear") << false;
}

void TstTabMask::dimmedFlag()
{
    QFETCH(bool, dimmed);

    m_mask->SetMaskWidget(MakeMessage(), false, dimmed, Qt::AlignCenter);
    QCOMPARE(m_mask->IsDimmed(), dimmed);

    const QColor outside = m_page->grab().toImage().pixelColor(10, 10);
    if (dimmed)
        QVERIFY2(outside.lightness() < 200, qPrintable(outside.name()));
    else
        QCOMPARE(outside, QColor(Qt::white));

    m_mask->SetMaskWidget(m_mask->MaskWidget(), false, !dimmed, Qt::AlignCenter);
    QCOMPARE(m_mask->IsDimmed(), !dimmed);
}

void TstTabMask::replacingDeletesTheOldWidget()
{
    QPointer<QWidget> first = MakeMessage();
    m_mask->SetMaskWidget(first, true, true, Qt::AlignCenter);
    QWidget *second = MakeMessage(QSize(80, 40));
    m_mask->SetMaskWidget(second, false, false, Qt::AlignLeft | Qt::AlignTop);

    QCOMPARE(m_mask->MaskWidget(), second);
    QTRY_VERIFY(first.isNull());
    QTRY_COMPARE(second->geometry(), QRect(0, 0, 80, 40));
    QVERIFY(!m_mask->IsBlockingInput());
    QVERIFY(!m_mask->IsDimmed());
}

void TstTabMask::replacedWidgetDisappearsAtOnce()
{
    // The old widget is deleted later; until then it must not show next to the new one.
    QPointer<QWidget> first = MakeMessage();
    m_mask->SetMaskWidget(first, false, false, Qt::AlignCenter);
    QVERIFY(first->isVisible());
    m_mask->SetMaskWidget(MakeMessage(), false, false, Qt::AlignCenter);
    QVERIFY(!first.isNull());
    QVERIFY(!first->isVisible());
    QTRY_VERIFY(first.isNull());
}

void TstTabMask::nullWidgetClears()
{
    QPointer<QWidget> message = MakeMessage();
    m_mask->SetMaskWidget(message, true, true, Qt::AlignCenter);
    m_mask->SetMaskWidget(nullptr, false, false, Qt::AlignCenter);
    QCOMPARE(m_mask->MaskWidget(), nullptr);
    QVERIFY(!m_mask->IsBlockingInput());
    QVERIFY(!m_mask->IsDimmed());
    QTRY_VERIFY(message.isNull());

    // Clearing an empty mask is harmless.
    m_mask->SetMaskWidget(nullptr, false, false, Qt::AlignCenter);
    QCOMPARE(m_mask->MaskWidget(), nullptr);
}

void TstTabMask::widgetDeletedByHostIsForgotten()
{
    // A host may close its message itself (for example with WA_DeleteOnClose).
    QWidget *message = MakeMessage();
    m_mask->SetMaskWidget(message, true, false, Qt::AlignCenter);
    delete message;
    QCOMPARE(m_mask->MaskWidget(), nullptr);

    QWidget *next = MakeMessage();
    m_mask->SetMaskWidget(next, true, false, Qt::AlignCenter);
    QCOMPARE(m_mask->MaskWidget(), next);
    QTRY_COMPARE(next->geometry().topLeft(), QPoint(125, 85));
}

void TstTabMask::worksWithoutParent()
{
    TabMask mask;
    mask.resize(100, 100);
    QPointer<QWidget> message = MakeMessage();
    mask.SetMaskWidget(message, true, true, Qt::AlignCenter);
    QCOMPARE(mask.MaskWidget(), message.data());
    QCOMPARE(message->parentWidget(), &mask);
}

KELTAB_TEST_MAIN(TstTabMask)
#include "tst_tabmask.moc"
