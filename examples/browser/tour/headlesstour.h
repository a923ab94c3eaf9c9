// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QObject>
#include <QPoint>
#include <QStringList>

class BrowserWindow;
class QWidget;
class SignalLog;

/**
 * A scripted walk through the browser, for machines without a display and for the
 * tests: it drives the window with synthetic input (clicks on the tab buttons, the
 * "+" button and the scroll arrows, wheel turns, a drag through the bar's move
 * popup, right clicks that open the tab menu, a mouse gesture, shortcut keys) and
 * writes into its folder:
 * - NN-name.png: the window after each step, with any popup (menu, gesture toast)
 *   drawn where it stands; the last two show the window made anew in German and in
 *   Hebrew (right to left) with a tab's menu open;
 * - signals.log: every signal the tab bar emitted, one per line, under a
 *   "== step" heading per step;
 * - tour.log: what the tour did and saw, step by step;
 * - warnings.log: every Qt warning the program printed (empty when all went well).
 */
class HeadlessTour : public QObject
{
    Q_OBJECT
public:
    /**
     * @param window          the window to drive, made with @p signalLog
     * @param signalLog       where the window writes down its bars' signals (not owned)
     * @param outputDirectory an existing folder for the files
     */
    HeadlessTour(BrowserWindow *window, SignalLog *signalLog, const QString &outputDirectory,
                 QObject *parent = nullptr);
    ~HeadlessTour() override;

    /** The window size every screenshot has. */
    static QSize WindowSize();

    /** Runs every step and writes the files; @return the process exit code. */
    int Run();
    QString OutputDirectory() const;

    /** The heading under which signals.log lists what the window emits while it is made. */
    static QString WindowOpensHeading();

    /** Remembers a Qt warning for warnings.log (called by the program's message handler). */
    static void RecordWarning(const QString &message);

private:
    void StepStart();
    void StepOpenTabs();
    void StepArrow();
    void StepWheel();
    void StepDrag(const QString &prefix);
    void DragLeft(QWidget *button, const QString &prefix);
    void StepCloseWithButtons(const QString &prefix);
    void StepContextMenu(const QString &prefix, const QString &actionText, bool screenshot);
    void StepGesture();
    void StepKeyboard();
    void StepDpi();
    void StepClassic();
    void StepLanguages();

    void Begin(const QString &title);
    void Note(const QString &text);
    /** Writes a screenshot of @p window (the tour's window by default) with the popups over it. */
    void Shot(const QString &name, QWidget *window = nullptr);
    void Settle(int ms);

    void WaitForStripToRest();
    void ClickTab(QWidget *tabButton);
    void Click(QWidget *widget, const QPoint &pos, Qt::MouseButton button = Qt::LeftButton);
    void SendMouse(QWidget *widget, int type, const QPoint &pos, Qt::MouseButton button, Qt::MouseButtons buttons,
                   bool moveCursor = true);
    void SendKey(int key, Qt::KeyboardModifiers modifiers);
    QWidget *TabButtonAtViewportMiddle();
    QWidget *CloseButtonOf(QWidget *tabButton) const;
    int IndexOfButton(QWidget *tabButton) const;
    QString TabTitles() const;
    /** Reads the open menu and chooses @p actionText; an empty one only pictures the menu over @p window. */
    void HandleMenu(const QString &actionText, const QString &screenshot, QWidget *window = nullptr);
    bool WriteFiles();

    BrowserWindow *m_window;
    QDir m_out;
    SignalLog *m_log;
    QStringList m_narrative;
    int m_shots = 0;
    bool m_menuSeen = false;
};
