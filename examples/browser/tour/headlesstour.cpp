// SPDX-License-Identifier: MIT
#include "headlesstour.h"

#include "browserwindow.h"
#include "demolanguage.h"
#include "signallog.h"
#include "tabrecordfactory.h"
#include <KelTabContainer/browsertabbarbase.h>
#include <KelTabContainer/browsertabbuttonbase.h>
#include "textbrowserpage.h"

#include <KelTabContainer/dpitool.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QEventLoop>
#include <QFile>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QRegularExpression>
#include <QTextStream>
#include <QTimer>
#include <QWheelEvent>

namespace {

// Warnings can come before the tour exists (while the application starts).
QStringList &Warnings()
{
    static QStringList warnings;
    return warnings;
}

constexpr int kTabsToOpen = 30;
// How often, and how long at most, the tour looks whether the strip has stopped scrolling.
constexpr int kScrollPollMs = 60;
constexpr int kScrollWaitMs = 5000;
// The bar re-fits its tabs 200 ms after the pointer has left it.
constexpr int kLeaveSettleMs = 450;
// When the queued menu action looks for the context menu.
constexpr int kMenuDelayMs = 300;


} // namespace

HeadlessTour::HeadlessTour(BrowserWindow *window, SignalLog *signalLog, const QString &outputDirectory,
                           QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_out(outputDirectory)
    , m_log(signalLog)
{
}

HeadlessTour::~HeadlessTour() = default;

QSize HeadlessTour::WindowSize()
{
    return QSize(1280, 800);
}

QString HeadlessTour::OutputDirectory() const
{
    return m_out.absolutePath();
}

QString HeadlessTour::WindowOpensHeading()
{
    return QStringLiteral("== the window opens");
}

void HeadlessTour::RecordWarning(const QString &message)
{
    Warnings().append(message);
}

int HeadlessTour::Run()
{
    m_window->resize(WindowSize());
    m_window->move(0, 0);
    m_window->show();
    connect(m_window, &BrowserWindow::SigStatusMessage, this,
            [this](const QString &text) { Note(QStringLiteral("status bar: ") + text); });

    StepStart();
    StepOpenTabs();
    StepArrow();
    StepWheel();
    StepCloseWithButtons(QString());
    StepContextMenu(QString(), QStringLiteral("Copy link"), true);
    StepContextMenu(QString(), QStringLiteral("Recover recently closed tabs"), false);
    StepGesture();
    StepKeyboard();
    // Last on this bar: a drag changes the order of the tabs, and nothing after it
    // should depend on how far the tab went.
    StepDrag(QString());
    StepDpi();
    StepContextMenu(QString(), QStringLiteral("Close other tabs"), false);
    Shot(QStringLiteral("other-tabs-closed"));
    StepClassic();
    StepLanguages();
    return WriteFiles() ? 0 : 1;
}

// ---------------------------------------------------------------------------
// Steps

void HeadlessTour::StepStart()
{
    // No heading of its own: the window's first signals came under the one main()
    // wrote before making the window (WindowOpensHeading()).
    Settle(TextBrowserPage::LocalLoadMs() + 200);
    Note(QStringLiteral("tabs: ") + TabTitles());
    Shot(QStringLiteral("start"));
}

void HeadlessTour::StepOpenTabs()
{
    Begin(QStringLiteral("open %1 tabs").arg(kTabsToOpen));
    const QStringList pages = {
        QStringLiteral("qrc:/browser/pages/guide.html"),
        QStringLiteral("qrc:/browser/pages/signals.html"),
        QStringLiteral("qrc:/browser/pages/welcome.html"),
    };
    QWidget *plus = m_window->BarRow()->findChild<QWidget *>(QStringLiteral("NewTabButton"));
    for (int i = 0; i < kTabsToOpen; ++i) {
        if (i == 2) {
            m_window->OpenTab(TabRecordFactory::MakeNotes(), true);
        } else if (i % 6 == 5 && plus) {
            Click(plus, plus->rect().center()); // the bar's SigAddNewTab, answered with a new tab
        } else {
            m_window->OpenUrl(pages.at(i % pages.size()), true);
        }
        Settle(10);
    }
    // The pages finish loading, and the strip scrolls to the last tab.
    Settle(TextBrowserPage::LocalLoadMs() + 100);
    WaitForStripToRest();
    Note(QStringLiteral("%1 tabs").arg(m_window->Bar()->count()));
    Shot(QStringLiteral("thirty-tabs"));
}

void HeadlessTour::StepArrow()
{
    Begin(QStringLiteral("scroll with the left arrow"));
    QWidget *arrow = m_window->Bar()->findChild<QWidget *>(QStringLiteral("TabButtonLeftArrowEx"));
    if (!arrow || !arrow->isVisible()) {
        Note(QStringLiteral("no scroll arrow shows: the bar does not overflow"));
        return;
    }
    for (int i = 0; i < 3; ++i) {
        Click(arrow, arrow->rect().center());
        WaitForStripToRest();
    }
    Shot(QStringLiteral("left-arrow"));
}

void HeadlessTour::StepWheel()
{
    Begin(QStringLiteral("scroll with the wheel"));
    QWidget *bar = m_window->Bar();
    const QPoint pos = bar->rect().center();
    for (int i = 0; i < 2; ++i) {
        // A turn away from the user scrolls towards the first tabs.
        QWheelEvent wheel(pos, bar->mapToGlobal(pos), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(bar, &wheel);
        WaitForStripToRest();
    }
    Shot(QStringLiteral("wheel"));
}

void HeadlessTour::StepDrag(const QString &prefix)
{
    Begin(prefix + QStringLiteral("drag a tab to the left, then Ctrl+9"));
    QWidget *button = TabButtonAtViewportMiddle();
    if (!button) {
        Note(QStringLiteral("no tab under the middle of the bar"));
        return;
    }
    const int from = IndexOfButton(button);
    const TabDataPtr tab = m_window->Bar()->GetTabData(from);
    Note(QStringLiteral("dragging tab %1 \"%2\"").arg(from).arg(tab->GetTitle()));
    DragLeft(button, prefix);
    Note(QStringLiteral("the tab went from %1 to %2").arg(from).arg(m_window->Bar()->GetIndexByTabData(tab)));
    Shot(prefix + QStringLiteral("dropped"));
    SendKey(Qt::Key_9, Qt::ControlModifier); // the last tab, wherever the dragged one went
    Settle(100);
}

void HeadlessTour::DragLeft(QWidget *button, const QString &prefix)
{
    const QPoint centre = button->rect().center();
    const QPoint start = button->mapToGlobal(centre);
    SendMouse(button, QEvent::MouseButtonPress, centre, Qt::LeftButton, Qt::LeftButton);
    // While a tab is held, the bar's invisible move popup has the mouse.
    QWidget *proxy = QApplication::activePopupWidget();
    if (!proxy) {
        Note(QStringLiteral("the bar opened no move popup"));
        SendMouse(button, QEvent::MouseButtonRelease, centre, Qt::LeftButton, Qt::NoButton);
        Settle(50);
        return;
    }
    const int steps = 24;
    const int stepPixels = qMax(4, button->width() / 8);
    for (int k = 1; k <= steps; ++k) {
        const QPoint global = start - QPoint(k * stepPixels, 0);
        QCursor::setPos(global);
        QMouseEvent move(QEvent::MouseMove, proxy->mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(proxy, &move);
        Settle(15);
        if (k == steps * 2 / 3)
            Shot(prefix + QStringLiteral("dragging"));
    }
    const QPoint end = QCursor::pos();
    QMouseEvent release(QEvent::MouseButtonRelease, proxy->mapFromGlobal(end), end, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(proxy, &release);
    Settle(100);
}

void HeadlessTour::StepCloseWithButtons(const QString &prefix)
{
    Begin(prefix + QStringLiteral("select a tab, close three tabs with their close buttons"));
    BrowserTabBarBase *strip = m_window->Bar();
    if (QWidget *button = TabButtonAtViewportMiddle()) {
        Note(QStringLiteral("selecting tab %1").arg(IndexOfButton(button)));
        ClickTab(button);
        Settle(50);
    }
    for (int n = 0; n < 3; ++n) {
        QWidget *close = CloseButtonOf(strip->TabButton(strip->currentIndex()));
        if (!close || !close->isVisible()) {
            Note(QStringLiteral("the current tab shows no close button"));
            break;
        }
        Note(QStringLiteral("closing \"%1\"").arg(strip->GetTabData(strip->currentIndex())->GetTitle()));
        // The pointer stays where the close button was: the bar keeps the widths, so
        // the next tab's close button comes under it.
        Click(close, close->rect().center());
        Settle(60);
    }
    Shot(prefix + QStringLiteral("closed-under-the-mouse"));

    const QPoint away = m_window->PageArea()->mapToGlobal(m_window->PageArea()->rect().center());
    QCursor::setPos(away);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(strip, &leave);
    Settle(kLeaveSettleMs);
    Note(QStringLiteral("tabs: ") + TabTitles());
    Shot(prefix + QStringLiteral("after-leaving-the-bar"));
}

void HeadlessTour::StepContextMenu(const QString &prefix, const QString &actionText, bool screenshot)
{
    Begin(prefix + QStringLiteral("context menu: ") + actionText);
    BrowserTabBarBase *strip = m_window->Bar();
    QWidget *button = strip->TabButton(strip->currentIndex());
    if (!button) {
        Note(QStringLiteral("no current tab"));
        return;
    }
    Note(QStringLiteral("right click on tab %1 \"%2\"")
             .arg(strip->currentIndex())
             .arg(strip->GetTabData(strip->currentIndex())->GetTitle()));
    m_menuSeen = false;
    // The menu runs modally inside the right press; the queued action chooses the
    // entry from within the menu's own event loop.
    QTimer::singleShot(kMenuDelayMs, this, [this, actionText, screenshot, prefix] {
        HandleMenu(actionText, screenshot ? prefix + QStringLiteral("context-menu") : QString());
    });
    const QPoint centre = button->rect().center();
    // The command may close the very tab (its button goes inside the menu's loop).
    const QPointer<QWidget> guard(button);
    SendMouse(button, QEvent::MouseButtonPress, centre, Qt::RightButton, Qt::RightButton);
    if (guard)
        SendMouse(guard, QEvent::MouseButtonRelease, centre, Qt::RightButton, Qt::NoButton);
    Settle(kMenuDelayMs + 150);
    if (!m_menuSeen)
        Note(QStringLiteral("the bar opened no menu"));
    if (actionText == QLatin1String("Copy link"))
        Note(QStringLiteral("clipboard: ") + QApplication::clipboard()->text());
    // A reopened tab loads its page and the strip scrolls it into view.
    Settle(TextBrowserPage::LocalLoadMs() + 100);
    WaitForStripToRest();
    Note(QStringLiteral("tabs: ") + TabTitles());
}

void HeadlessTour::StepGesture()
{
    Begin(QStringLiteral("mouse gesture: right, then up"));
    QWidget *area = m_window->PageArea();
    const QPoint startInArea(area->width() / 2 - 120, area->height() / 2 + 80);
    QWidget *target = area->childAt(startInArea);
    if (!target)
        target = area;
    const QPoint start = target->mapFrom(area, startInArea);
    // The cursor stays put: on the offscreen platform, moving it sends a move event
    // of its own with no button held, and that would end the stroke.
    SendMouse(target, QEvent::MouseButtonPress, start, Qt::RightButton, Qt::RightButton, false);
    QPoint pos = start;
    for (int k = 0; k < 12; ++k) {
        pos += QPoint(12, 0);
        SendMouse(target, QEvent::MouseMove, pos, Qt::NoButton, Qt::RightButton, false);
    }
    for (int k = 0; k < 12; ++k) {
        pos += QPoint(0, -12);
        SendMouse(target, QEvent::MouseMove, pos, Qt::NoButton, Qt::RightButton, false);
    }
    Settle(50);
    Shot(QStringLiteral("gesture-toast"));
    SendMouse(target, QEvent::MouseButtonRelease, pos, Qt::RightButton, Qt::NoButton, false);
    Settle(TextBrowserPage::LocalLoadMs() + 150);
    Note(QStringLiteral("tabs: ") + TabTitles());
    Shot(QStringLiteral("gesture-new-tab"));
}

void HeadlessTour::StepKeyboard()
{
    Begin(QStringLiteral("keyboard: Ctrl+1, Ctrl+Shift+T, Ctrl+W"));
    SendKey(Qt::Key_1, Qt::ControlModifier); // the home tab
    Settle(100);
    Shot(QStringLiteral("home-tab"));
    SendKey(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier); // reopen the tab closed last
    Settle(TextBrowserPage::LocalLoadMs() + 150);
    SendKey(Qt::Key_W, Qt::ControlModifier); // and close it again
    Settle(100);
    Note(QStringLiteral("tabs: ") + TabTitles());
}

void HeadlessTour::StepDpi()
{
    Begin(QStringLiteral("scale factor 1.5"));
    DpiTool::SetScaleFactor(1.5);
    Settle(300);
    Shot(QStringLiteral("scale-150"));
    DpiTool::SetScaleFactor(0.0); // back to the screen's factor
    Settle(300);
}

void HeadlessTour::StepClassic()
{
    Begin(QStringLiteral("classic bar"));
    // The same tabs move over to the classic bar.
    m_window->SetBarKind(BrowserWindow::BarKind::Classic);
    Settle(200);
    Note(QStringLiteral("tabs: ") + TabTitles());
    Shot(QStringLiteral("classic-bar"));

    const QString prefix = QStringLiteral("classic: ");
    Begin(prefix + QStringLiteral("six tabs, two with the bar's new-tab button"));
    QWidget *plus = m_window->Bar()->findChild<QWidget *>(QStringLiteral("TabBarNewTabButton"));
    const QStringList pages = {
        QString(), // the new-tab button
        QStringLiteral("qrc:/browser/pages/welcome.html"),
        QStringLiteral("qrc:/browser/pages/guide.html"),
        QString(),
        TabRecordFactory::NotesPluginCode(),
        QStringLiteral("qrc:/browser/pages/signals.html"),
    };
    for (const QString &page : pages) {
        if (page.isEmpty() && plus)
            Click(plus, plus->rect().center());
        else if (page == TabRecordFactory::NotesPluginCode())
            m_window->OpenTab(TabRecordFactory::MakeNotes(), true);
        else if (!page.isEmpty())
            m_window->OpenUrl(page, true);
        Settle(10);
    }
    Settle(TextBrowserPage::LocalLoadMs() + 100);
    Note(QStringLiteral("tabs: ") + TabTitles());
    Shot(prefix + QStringLiteral("new-tabs"));

    StepDrag(prefix);
    StepCloseWithButtons(prefix);
    StepContextMenu(prefix, QStringLiteral("Close left tabs"), true);
    Shot(prefix + QStringLiteral("left-tabs-closed"));
}

// Last: the window made anew in German and in Hebrew, right to left, with a tab's menu
// open. A window takes the texts of the language loaded when it is made, so each
// language has a window of its own; their signals are not logged.
void HeadlessTour::StepLanguages()
{
    const QStringList pages = {
        QStringLiteral("qrc:/browser/pages/welcome.html"),
        QStringLiteral("qrc:/browser/pages/guide.html"),
        QStringLiteral("qrc:/browser/pages/signals.html"),
    };
    for (const QString &language : {QStringLiteral("de"), QStringLiteral("he")}) {
        Begin(QStringLiteral("language: ") + language);
        DemoLanguage loaded;
        if (!loaded.Load(QLocale(language)))
            Note(QStringLiteral("no catalogue for ") + language);
        BrowserWindow window(BrowserWindow::BarKind::Scrolling);
        window.resize(WindowSize());
        window.move(0, 0);
        window.show();
        for (int i = 0; i < 12; ++i)
            window.OpenUrl(pages.at(i % pages.size()), i == 4);
        Settle(TextBrowserPage::LocalLoadMs() + 200);
        BrowserTabBarBase *strip = window.Bar();
        Note(QStringLiteral("direction: ") + (strip->isRightToLeft() ? QStringLiteral("right to left") : QStringLiteral("left to right")));
        QWidget *button = strip->TabButton(strip->currentIndex());
        if (!button) {
            Note(QStringLiteral("no current tab"));
            continue;
        }
        m_menuSeen = false;
        const QString name = language + QStringLiteral("-context-menu");
        QWidget *shown = &window;
        QTimer::singleShot(kMenuDelayMs, this, [this, name, shown] { HandleMenu(QString(), name, shown); });
        const QPoint centre = button->rect().center();
        SendMouse(button, QEvent::MouseButtonPress, centre, Qt::RightButton, Qt::RightButton);
        SendMouse(button, QEvent::MouseButtonRelease, centre, Qt::RightButton, Qt::NoButton);
        Settle(kMenuDelayMs + 150);
        if (!m_menuSeen)
            Note(QStringLiteral("the bar opened no menu"));
    }
}

// ---------------------------------------------------------------------------
// Helpers

void HeadlessTour::Begin(const QString &title)
{
    const QString heading = QStringLiteral("== ") + title;
    m_log->AddNote(heading);
    m_narrative.append(heading);
}

void HeadlessTour::Note(const QString &text)
{
    m_narrative.append(QStringLiteral("   ") + text);
}

void HeadlessTour::Shot(const QString &name, QWidget *window)
{
    if (!window)
        window = m_window;
    // What a user would see: the window and every popup or tool window over it (the
    // tab menu, the gesture toast). The bar's invisible drag popups are left out, and
    // so are other main windows.
    QPixmap picture = window->grab();
    QPainter painter(&picture);
    const QPoint origin = window->mapToGlobal(QPoint(0, 0));
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *top : windows) {
        if (top == window || !top->isVisible() || top->windowOpacity() < 0.01 || qobject_cast<BrowserWindow *>(top))
            continue;
        painter.drawPixmap(top->mapToGlobal(QPoint(0, 0)) - origin, top->grab());
    }
    painter.end();

    ++m_shots;
    QString slug = name;
    slug.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]+")), QStringLiteral("-"));
    const QString file = QStringLiteral("%1-%2.png").arg(m_shots, 2, 10, QLatin1Char('0')).arg(slug);
    if (!picture.save(m_out.filePath(file)))
        Note(QStringLiteral("could not write ") + file);
    Note(QStringLiteral("screenshot ") + file);
}

void HeadlessTour::Settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void HeadlessTour::WaitForStripToRest()
{
    // The strip scrolls animated, on a timer; a busy machine may take longer than the
    // nominal time, and a click on an arrow while it still scrolls is ignored.
    QWidget *content = m_window->Bar()->findChild<QWidget *>(QStringLiteral("TabBarContentEx"));
    if (!content) {
        Settle(kScrollPollMs);
        return;
    }
    // At rest when three looks in a row find the strip where it was.
    int last = content->x();
    int still = 0;
    for (int waited = 0; waited < kScrollWaitMs && still < 3; waited += kScrollPollMs) {
        Settle(kScrollPollMs);
        still = content->x() == last ? still + 1 : 0;
        last = content->x();
    }
}

void HeadlessTour::ClickTab(QWidget *tabButton)
{
    const QPoint centre = tabButton->rect().center();
    SendMouse(tabButton, QEvent::MouseButtonPress, centre, Qt::LeftButton, Qt::LeftButton);
    // A press may start a drag: the bar's move popup then has the mouse, and the
    // release without motion is its to see.
    if (QWidget *proxy = QApplication::activePopupWidget()) {
        const QPoint global = tabButton->mapToGlobal(centre);
        QMouseEvent release(QEvent::MouseButtonRelease, proxy->mapFromGlobal(global), global, Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(proxy, &release);
    } else {
        SendMouse(tabButton, QEvent::MouseButtonRelease, centre, Qt::LeftButton, Qt::NoButton);
    }
}

void HeadlessTour::Click(QWidget *widget, const QPoint &pos, Qt::MouseButton button)
{
    SendMouse(widget, QEvent::MouseButtonPress, pos, button, button);
    SendMouse(widget, QEvent::MouseButtonRelease, pos, button, Qt::NoButton);
}

void HeadlessTour::SendMouse(QWidget *widget, int type, const QPoint &pos, Qt::MouseButton button,
                             Qt::MouseButtons buttons, bool moveCursor)
{
    if (!widget)
        return;
    const QPoint global = widget->mapToGlobal(pos);
    if (moveCursor)
        QCursor::setPos(global);
    QMouseEvent event(static_cast<QEvent::Type>(type), pos, global, button, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

void HeadlessTour::SendKey(int key, Qt::KeyboardModifiers modifiers)
{
    QWidget *target = QApplication::focusWidget() ? QApplication::focusWidget() : m_window;
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers);
    QApplication::sendEvent(target, &release);
}

QWidget *HeadlessTour::TabButtonAtViewportMiddle()
{
    WaitForStripToRest(); // which tab is in the middle must not depend on timing
    QWidget *bar = m_window->Bar();
    // The scrolling bar shows its tabs in a viewport; the classic bar in itself.
    QWidget *area = bar->findChild<QWidget *>(QStringLiteral("TabBarViewportEx"));
    if (!area)
        area = bar;
    const QPoint middle = bar->mapFromGlobal(area->mapToGlobal(area->rect().center()));
    for (QWidget *w = bar->childAt(middle); w && w != bar; w = w->parentWidget()) {
        if (IndexOfButton(w) >= 0)
            return w;
    }
    return nullptr;
}

QWidget *HeadlessTour::CloseButtonOf(QWidget *tabButton) const
{
    if (!tabButton)
        return nullptr;
    // "TabButtonCloseBtnEx" on the scrolling bar, "TabButtonCloseBtn" on the classic one.
    const auto buttons =
        tabButton->findChildren<QAbstractButton *>(QRegularExpression(QStringLiteral("^TabButtonCloseBtn")));
    return buttons.isEmpty() ? nullptr : buttons.first();
}

int HeadlessTour::IndexOfButton(QWidget *tabButton) const
{
    BrowserTabBarBase *strip = m_window->Bar();
    for (int i = 0; i < strip->count(); ++i) {
        if (strip->TabButton(i) == tabButton)
            return i;
    }
    return -1;
}

QString HeadlessTour::TabTitles() const
{
    BrowserTabBarBase *strip = m_window->Bar();
    QStringList titles;
    for (int i = 0; i < strip->count(); ++i) {
        QString title = strip->GetTabData(i)->GetTitle();
        if (i == strip->currentIndex())
            title = QLatin1Char('[') + title + QLatin1Char(']');
        titles.append(title);
    }
    return QStringLiteral("%1: ").arg(titles.size()) + titles.join(QLatin1String(" | "));
}

void HeadlessTour::HandleMenu(const QString &actionText, const QString &screenshot, QWidget *window)
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (!menu)
        return;
    m_menuSeen = true;
    QStringList entries;
    QAction *chosen = nullptr;
    const auto actions = menu->actions();
    for (QAction *action : actions) {
        if (!action->isVisible())
            continue;
        if (action->isSeparator()) {
            entries.append(QStringLiteral("--"));
            continue;
        }
        const QString text = action->text().remove(QLatin1Char('&'));
        entries.append(action->isEnabled() ? text : text + QStringLiteral(" (disabled)"));
        if (text == actionText && action->isEnabled())
            chosen = action;
    }
    Note(QStringLiteral("menu: ") + entries.join(QLatin1String(" | ")));
    if (actionText.isEmpty()) {
        // Only looked at: the picture, then the menu closes unused.
        if (!screenshot.isEmpty())
            Shot(screenshot, window);
        menu->close();
        return;
    }
    if (!chosen) {
        Note(QStringLiteral("\"%1\" is not in the menu or disabled").arg(actionText));
        menu->close();
        return;
    }
    menu->setActiveAction(chosen);
    if (!screenshot.isEmpty())
        Shot(screenshot, window);
    // Chosen as a user would with the keyboard: the menu triggers the entry and closes.
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(menu, &enter);
}

bool HeadlessTour::WriteFiles()
{
    const auto write = [this](const QString &name, const QStringList &lines) {
        QFile file(m_out.filePath(name));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
            return false;
        QTextStream out(&file);
        // Qt 6 writes UTF-8 unless told otherwise and has no setCodec().
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        out.setCodec("UTF-8");
#endif
        for (const QString &line : lines)
            out << line << '\n';
        return true;
    };
    return write(QStringLiteral("signals.log"), m_log->Lines()) && write(QStringLiteral("tour.log"), m_narrative)
        && write(QStringLiteral("warnings.log"), Warnings());
}
