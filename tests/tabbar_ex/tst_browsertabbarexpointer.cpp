// SPDX-License-Identifier: MIT
// BrowserTabBarEx under a real pointer: the X server's own motion, crossing and button
// events, through XTEST. Closing tabs one after another with their close buttons is
// where a user spends time in a strip, and where the window system's enter/leave
// bookkeeping matters: QTest's events never produce it.

#include "keltabtest.h"
#include "xinput.h"

#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

using namespace TabTest;

namespace {

QList<int> Repeated(int count, int value)
{
    return QVector<int>(count, value).toList();
}

} // namespace

class TstBrowserTabBarExPointer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void tabSlidUnderStillPointerLooksHovered_data();
    void tabSlidUnderStillPointerLooksHovered();
    void closingModeEndsAfterAnyExit_data();
    void closingModeEndsAfterAnyExit();

private:
    std::unique_ptr<KelTest::XInput> m_input;
    std::unique_ptr<QWidget> m_window;
    TestTabBarEx *m_bar = nullptr;
    QWidget *m_page = nullptr;

    void MakeWindow(int designAvailable, int scrolling);
    QPoint CloseButtonCentre(int index) const;
    QPoint CloseTabsUnderPointer(int clicks);
};

void TstBrowserTabBarExPointer::initTestCase()
{
    m_input = std::make_unique<KelTest::XInput>();
    const QString why = m_input->Unavailable();
    if (!why.isEmpty())
        QSKIP(qPrintable(why));
}

void TstBrowserTabBarExPointer::init()
{
    DpiTool::SetScaleFactor(1.0);
}

void TstBrowserTabBarExPointer::cleanup()
{
    m_window.reset();
    m_bar = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Park the pointer far from where the next window will be.
    m_input->MoveTo(QPoint(5, 5));
}

void TstBrowserTabBarExPointer::MakeWindow(int designAvailable, int scrolling)
{
    m_window.reset(new QWidget);
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_bar = new TestTabBarEx;
    m_bar->SetFirstIndex(1);
    layout->addWidget(m_bar);
    m_page = new QWidget;
    m_page->setMinimumHeight(200);
    layout->addWidget(m_page);
    m_window->setFixedWidth(BarWidthFor(designAvailable));
    m_window->move(200, 200);
    Fill(*m_bar, scrolling);
    // The host closes what the bar asks it to close.
    connect(m_bar, &BrowserTabBarEx::tabCloseRequested, m_bar, [this](int index) { m_bar->removeTab(index); });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(m_bar->width(), BarWidthFor(designAvailable));
}

QPoint TstBrowserTabBarExPointer::CloseButtonCentre(int index) const
{
    auto *close = m_bar->TabButton(index)->findChild<QPushButton *>(QStringLiteral("TabButtonCloseBtnEx"));
    return close->mapToGlobal(close->rect().center());
}

// One home tab and seven tabs of 130 pixels each (wide enough to show their close
// buttons); the pointer rests on the close button of the first scrolling tab but one
// and clicks it @p clicks times. Each close slides the next tab under the pointer, and
// even after five closes two tabs are left whose normal width differs from 130.
QPoint TstBrowserTabBarExPointer::CloseTabsUnderPointer(int clicks)
{
    MakeWindow(910, 7);
    if (m_bar->ButtonWidth() != 130)
        return QPoint();
    const QPoint pointer = CloseButtonCentre(2);
    m_input->MoveTo(pointer);
    if (!QTest::qWaitFor([this] { return m_bar->TabButton(2)->IsHovered(); }))
        return QPoint();
    for (int i = 0; i < clicks; ++i) {
        const int before = m_bar->count();
        m_input->Click();
        if (!QTest::qWaitFor([&] { return m_bar->count() == before - 1; }))
            return QPoint();
    }
    return pointer;
}

void TstBrowserTabBarExPointer::tabSlidUnderStillPointerLooksHovered_data()
{
    QTest::addColumn<int>("clicks");
    for (int clicks = 1; clicks <= 5; ++clicks)
        QTest::addRow("%d close(s)", clicks) << clicks;
}

void TstBrowserTabBarExPointer::tabSlidUnderStillPointerLooksHovered()
{
    QFETCH(int, clicks);
    const QPoint pointer = CloseTabsUnderPointer(clicks);
    QVERIFY(!pointer.isNull());
    // The widths stay frozen; the tab now under the pointer looks hovered, and its
    // close button is the one under the pointer.
    QCOMPARE(m_bar->ScrollingWidths(), Repeated(7 - clicks, 130));
    BrowserTabButtonEx *under = m_bar->TabButton(2);
    QTRY_VERIFY(under->IsHovered());
    QCOMPARE(under->objectName(), QStringLiteral("TabButtonBackExHover"));
    QVERIFY(under->underMouse());
    QCOMPARE(CloseButtonCentre(2), pointer);
    auto *close = under->findChild<QPushButton *>(QStringLiteral("TabButtonCloseBtnEx"));
    QVERIFY(close->isVisible());
    QVERIFY(close->underMouse());
    // And no other tab looks hovered.
    for (int i = 0; i < m_bar->count(); ++i) {
        if (i != 2)
            QVERIFY2(!m_bar->TabButton(i)->IsHovered(), qPrintable(QString::number(i)));
    }
}

void TstBrowserTabBarExPointer::closingModeEndsAfterAnyExit_data()
{
    QTest::addColumn<int>("clicks");
    QTest::addColumn<int>("exit"); // 0: out of the window at once, 1: onto the page at once, 2: slowly out
    for (int clicks = 1; clicks <= 5; ++clicks) {
        QTest::addRow("%d close(s), flick out of the window", clicks) << clicks << 0;
        QTest::addRow("%d close(s), flick onto the page", clicks) << clicks << 1;
        QTest::addRow("%d close(s), glide out", clicks) << clicks << 2;
    }
}

void TstBrowserTabBarExPointer::closingModeEndsAfterAnyExit()
{
    QFETCH(int, clicks);
    QFETCH(int, exit);
    const QPoint pointer = CloseTabsUnderPointer(clicks);
    QVERIFY(!pointer.isNull());
    const int remaining = m_bar->count() - 1;
    QCOMPARE(m_bar->ScrollingWidths(), Repeated(remaining, 130));

    QElapsedTimer sinceExit;
    sinceExit.start();
    switch (exit) {
    case 0:
        m_input->MoveTo(m_window->geometry().bottomRight() + QPoint(150, 150));
        break;
    case 1:
        m_input->MoveTo(m_page->mapToGlobal(m_page->rect().center()));
        break;
    default:
        m_input->GlideTo(pointer, pointer + QPoint(0, -120), 12);
        break;
    }
    const int normal = qMin(910 / remaining, 224);
    QVERIFY(normal != 130);
    QTRY_COMPARE_WITH_TIMEOUT(m_bar->ScrollingWidths(), Repeated(remaining, normal), 2000);
    // Not before the 200 ms of grace (less a little for the timer's own slack).
    QVERIFY2(sinceExit.elapsed() >= 180, qPrintable(QString::number(sinceExit.elapsed())));
}

KELTAB_TEST_MAIN(TstBrowserTabBarExPointer)
#include "tst_browsertabbarexpointer.moc"
