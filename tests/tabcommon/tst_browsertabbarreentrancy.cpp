// SPDX-License-Identifier: MIT
// A host reacts to the bars' signals, and may do anything from inside them: remove
// tabs, change the current tab, delete the bar. Each row sends one signal the way a
// user or a host does and answers it one way, on both bars; the bar must stay
// consistent, or be gone without touching freed memory (the suite runs under
// AddressSanitizer too).

#include "bothbars.h"
#include "keltabtest.h"
#include "shownmenu.h"
#include "steps.h"

#include "dpitool.h"

#include <QMenu>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <functional>
#include <memory>

using BothBars::Kind;

namespace {

enum class Answer { RemoveAll, RemoveSignalled, RemoveFirst, MakeFirstCurrent, NoCurrent, DeleteLater, Delete };

const char *AnswerName(Answer answer)
{
    switch (answer) {
    case Answer::RemoveAll:
        return "remove every tab";
    case Answer::RemoveSignalled:
        return "remove the tab signalled";
    case Answer::RemoveFirst:
        return "remove the first tab";
    case Answer::MakeFirstCurrent:
        return "make the first tab current";
    case Answer::NoCurrent:
        return "leave no tab current";
    case Answer::DeleteLater:
        return "deleteLater the bar";
    case Answer::Delete:
        return "delete the bar";
    }
    return "";
}

// How a row makes the bar emit.
enum class Trigger {
    SetCurrentIndex,  // currentChanged from the host's own call
    ClickTab,         // currentChanged from a press on a tab
    RemoveCurrent,    // currentChanged from inside removeTab()
    CloseButton,      // tabCloseRequested from a tab's close button
    DoubleClick,      // tabCloseRequested from a double click on a tab
    MenuCommand,      // a signal from a context-menu command
    NewTabButton,     // SigAddNewTab from the classic bar's new-tab button
};

const char *TriggerName(Trigger trigger)
{
    switch (trigger) {
    case Trigger::SetCurrentIndex:
        return "setCurrentIndex";
    case Trigger::ClickTab:
        return "press on a tab";
    case Trigger::RemoveCurrent:
        return "removeTab of the current tab";
    case Trigger::CloseButton:
        return "close button";
    case Trigger::DoubleClick:
        return "double click";
    case Trigger::MenuCommand:
        return "menu";
    case Trigger::NewTabButton:
        return "new-tab button";
    }
    return "";
}

struct Row {
    Trigger trigger;
    QByteArray signal; // the signal answered, as the meta-object names it
    QString command;   // for MenuCommand: the entry's text
};

} // namespace

Q_DECLARE_METATYPE(Answer)
Q_DECLARE_METATYPE(Trigger)

class TstBrowserTabBarReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void answerFromInsideASignal_data();
    void answerFromInsideASignal();

private:
    std::unique_ptr<QWidget> m_window;
    QPointer<BrowserTabBarBase> m_bar;

    void Fire(Trigger trigger, const QString &command);
    void Answer(::Answer answer, int signalled);
    QString Inconsistency() const;
};

void TstBrowserTabBarReentrancy::initTestCase()
{
    DpiTool::SetScaleFactor(1.0);
}

void TstBrowserTabBarReentrancy::cleanup()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TstBrowserTabBarReentrancy::answerFromInsideASignal_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<Trigger>("trigger");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QString>("command");
    QTest::addColumn<::Answer>("answer");

    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QList<Row> rows = {
            {Trigger::SetCurrentIndex, "currentChanged(int)", QString()},
            {Trigger::ClickTab, "currentChanged(int)", QString()},
            {Trigger::RemoveCurrent, "currentChanged(int)", QString()},
            {Trigger::CloseButton, "tabCloseRequested(int)", QString()},
            {Trigger::DoubleClick, "tabCloseRequested(int)", QString()},
            {Trigger::MenuCommand, "tabCloseRequested(int)", QStringLiteral("Close tab")},
            {Trigger::MenuCommand, "SigCloseOtherTab(int)", QStringLiteral("Close other tabs")},
            {Trigger::MenuCommand, "SigCloseLeftTab(int)", QStringLiteral("Close left tabs")},
            {Trigger::MenuCommand, "SigCloseRightTab(int)", QStringLiteral("Close right tabs")},
        };
        if (kind == Kind::Classic) {
            rows << Row{Trigger::NewTabButton, "SigAddNewTab()", QString()};
        } else {
            rows << Row{Trigger::MenuCommand, "SigRefreshTab(int)", QStringLiteral("Refresh tab")}
                 << Row{Trigger::MenuCommand, "SigAddFav(int,QPoint)", QStringLiteral("Add Fav")}
                 << Row{Trigger::MenuCommand, "SigCopyLink(int)", QStringLiteral("Copy link")}
                 << Row{Trigger::MenuCommand, "SigOpenInBrowser(int)", QStringLiteral("Open in Browser")};
        }
        for (const Row &row : qAsConst(rows)) {
            for (::Answer answer : {Answer::RemoveAll, Answer::RemoveSignalled, Answer::RemoveFirst,
                                    Answer::MakeFirstCurrent, Answer::NoCurrent, Answer::DeleteLater, Answer::Delete}) {
                const QString how = row.command.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(row.command);
                QTest::addRow("%s%s%s -> %s, %s", prefix, TriggerName(row.trigger), qPrintable(how),
                              row.signal.constData(), AnswerName(answer))
                    << kind << row.trigger << row.signal << row.command << answer;
            }
        }
    });
}

void TstBrowserTabBarReentrancy::Answer(::Answer answer, int signalled)
{
    if (!m_bar)
        return;
    switch (answer) {
    case Answer::RemoveAll:
        while (m_bar->count() > 0)
            m_bar->removeTab(m_bar->count() - 1);
        break;
    case Answer::RemoveSignalled:
        m_bar->removeTab(signalled);
        break;
    case Answer::RemoveFirst:
        m_bar->removeTab(0);
        break;
    case Answer::MakeFirstCurrent:
        m_bar->setCurrentIndex(0);
        break;
    case Answer::NoCurrent:
        m_bar->setCurrentIndex(-1);
        break;
    case Answer::DeleteLater:
        m_bar->deleteLater();
        break;
    case Answer::Delete:
        delete m_bar.data();
        break;
    }
}

using KelTest::ActionNamed;
using KelTest::ShownMenu;

// Tab 2 of five is current; each trigger acts on it (the click on tab 3).
void TstBrowserTabBarReentrancy::Fire(Trigger trigger, const QString &command)
{
    switch (trigger) {
    case Trigger::SetCurrentIndex:
        m_bar->setCurrentIndex(3);
        break;
    case Trigger::ClickTab: {
        // The button pressed gets the release, as long as it exists (removed, it waits
        // for deferred deletion), like the widget the window system saw pressed.
        const QPointer<BrowserTabButtonBase> pressed = m_bar->TabButton(3);
        QTest::mousePress(pressed, Qt::LeftButton, {}, QPoint(20, 10));
        if (pressed)
            QTest::mouseRelease(pressed, Qt::LeftButton, {}, QPoint(20, 10));
        break;
    }
    case Trigger::RemoveCurrent:
        m_bar->removeTab(2);
        break;
    case Trigger::CloseButton: {
        QPushButton *close = nullptr;
        for (QPushButton *candidate : m_bar->TabButton(2)->findChildren<QPushButton *>()) {
            if (candidate->objectName().startsWith(QLatin1String("TabButtonCloseBtn")))
                close = candidate;
        }
        QVERIFY(close);
        QVERIFY(close->isVisible());
        QTest::mouseClick(close, Qt::LeftButton);
        break;
    }
    case Trigger::DoubleClick:
        QTest::mouseDClick(m_bar->TabButton(2), Qt::LeftButton, {}, QPoint(20, 10));
        break;
    case Trigger::MenuCommand: {
        // The menu runs its own loop: the command is clicked from inside it, on the
        // menu, as a user's click reaches it.
        KelTest::Steps steps;
        steps.When(QStringLiteral("the menu"), [] { return ShownMenu() != nullptr; }, [command] {
            QMenu *menu = ShownMenu();
            QAction *action = ActionNamed(menu, command);
            if (!action || !action->isVisible() || !action->isEnabled()) {
                menu->close();
                return;
            }
            const QPoint at = menu->actionGeometry(action).center();
            QTest::mouseClick(menu, Qt::LeftButton, {}, at);
        });
        steps.Start();
        const QPointer<BrowserTabButtonBase> pressed = m_bar->TabButton(2);
        QTest::mousePress(pressed, Qt::RightButton, {}, QPoint(20, 10));
        QVERIFY2(steps.Done(), qPrintable(steps.Waiting()));
        if (pressed)
            QTest::mouseRelease(pressed, Qt::RightButton, {}, QPoint(20, 10));
        break;
    }
    case Trigger::NewTabButton: {
        auto *newTab = m_bar->findChild<QPushButton *>(QStringLiteral("TabBarNewTabButton"));
        QVERIFY(newTab);
        QVERIFY(newTab->isVisible());
        QTest::mouseClick(newTab, Qt::LeftButton);
        break;
    }
    }
}

// What a host can see of the bar must agree with itself.
QString TstBrowserTabBarReentrancy::Inconsistency() const
{
    const int count = m_bar->count();
    const int current = m_bar->currentIndex();
    if (current >= count)
        return QStringLiteral("current %1 of %2 tabs").arg(current).arg(count);
    if (m_bar->findChildren<BrowserTabButtonBase *>().size() < count)
        return QStringLiteral("fewer buttons than tabs");
    for (int i = 0; i < count; ++i) {
        BrowserTabButtonBase *button = m_bar->TabButton(i);
        if (!button || button->GetTabData() != m_bar->GetTabData(i))
            return QStringLiteral("tab %1 has no button of its own").arg(i);
        if (button->IsChecked() != (i == current))
            return QStringLiteral("tab %1 checked %2 with current %3").arg(i).arg(button->IsChecked()).arg(current);
        if (!button->isVisible())
            return QStringLiteral("tab %1 hidden").arg(i);
    }
    return QString();
}

void TstBrowserTabBarReentrancy::answerFromInsideASignal()
{
    QFETCH(Kind, bar);
    QFETCH(Trigger, trigger);
    QFETCH(QByteArray, signal);
    QFETCH(QString, command);
    QFETCH(::Answer, answer);

    m_window.reset(new QWidget);
    m_window->resize(900, 60);
    m_bar = BothBars::Make(bar, m_window.get());
    m_bar->setGeometry(0, 0, 900, 40);
    m_bar->InitMenu();
    BothBars::Fill(*m_bar, 5);
    m_bar->setCurrentIndex(2);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));

    // The host answers the row's signal, once.
    int answered = 0;
    int signalled = -1;
    QVERIFY2(m_bar->metaObject()->indexOfSignal(signal.constData()) >= 0, signal.constData());
    auto *host = new QObject(m_window.get());
    const std::function<void(int)> respond = [&](int index) {
        if (answered++ > 0)
            return; // only the first emission is answered
        signalled = index;
        Answer(answer, index);
    };
    // Connected by each signal's own pointer-to-member; the index, where there is one,
    // goes to respond().
    QMetaObject::Connection connection;
    if (signal == "SigAddNewTab()") {
        connection = connect(m_bar.data(), &BrowserTabBarBase::SigAddNewTab, host, [&] { respond(-1); });
    } else if (signal == "currentChanged(int)") {
        connection = connect(m_bar.data(), &BrowserTabBarBase::currentChanged, host, respond);
    } else if (signal == "tabCloseRequested(int)") {
        connection = connect(m_bar.data(), &BrowserTabBarBase::tabCloseRequested, host, respond);
    } else if (signal == "SigCloseOtherTab(int)") {
        connection = connect(m_bar.data(), &BrowserTabBarBase::SigCloseOtherTab, host, respond);
    } else if (signal == "SigCloseLeftTab(int)") {
        connection = connect(m_bar.data(), &BrowserTabBarBase::SigCloseLeftTab, host, respond);
    } else if (signal == "SigCloseRightTab(int)") {
        connection = connect(m_bar.data(), &BrowserTabBarBase::SigCloseRightTab, host, respond);
    } else if (auto *ex = qobject_cast<BrowserTabBarEx *>(m_bar.data())) {
        if (signal == "SigRefreshTab(int)")
            connection = connect(ex, &BrowserTabBarEx::SigRefreshTab, host, respond);
        else if (signal == "SigAddFav(int,QPoint)")
            connection = connect(ex, &BrowserTabBarEx::SigAddFav, host, [&](int index, QPoint) { respond(index); });
        else if (signal == "SigCopyLink(int)")
            connection = connect(ex, &BrowserTabBarEx::SigCopyLink, host, respond);
        else if (signal == "SigOpenInBrowser(int)")
            connection = connect(ex, &BrowserTabBarEx::SigOpenInBrowser, host, respond);
    }
    QVERIFY2(connection, signal.constData());

    Fire(trigger, command);
    // Answered once; the answer itself may make the bar emit again.
    QVERIFY(answered >= 1);
    // Let every timer the bar may have started run out (the end of closing mode, a
    // slide, a pointer resync) and the deferred deletions happen.
    const auto busy = [this] {
        if (!m_bar)
            return false;
        const QList<QTimer *> timers = m_bar->findChildren<QTimer *>();
        return std::any_of(timers.cbegin(), timers.cend(), [](const QTimer *timer) { return timer->isActive(); });
    };
    QTRY_VERIFY_WITH_TIMEOUT(!busy(), 2000);
    QTest::qWait(30);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    const bool deletes = answer == Answer::DeleteLater || answer == Answer::Delete;
    QCOMPARE(m_bar.isNull(), deletes);
    if (deletes)
        return;
    const QString problem = Inconsistency();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    switch (answer) {
    case Answer::RemoveAll:
        QCOMPARE(m_bar->count(), 0);
        QCOMPARE(m_bar->currentIndex(), -1);
        break;
    case Answer::MakeFirstCurrent:
        QVERIFY(m_bar->count() > 0);
        QCOMPARE(m_bar->GetTabData(0)->GetTitle(), QStringLiteral("t0"));
        QCOMPARE(m_bar->currentIndex(), 0);
        break;
    case Answer::NoCurrent:
        QCOMPARE(m_bar->currentIndex(), -1);
        break;
    default:
        QVERIFY(m_bar->count() <= 5);
        QVERIFY(signalled >= -1);
        break;
    }
}

KELTAB_TEST_MAIN(TstBrowserTabBarReentrancy)
#include "tst_browsertabbarreentrancy.moc"
