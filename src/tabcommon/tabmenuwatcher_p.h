// SPDX-License-Identifier: MIT
#pragma once

// Lets a right click on another tab reach the strip while its context menu is open.
// Not part of the installed API.

#include <QObject>
#include <QPoint>

class QMenu;
class QWidget;

/**
 * Watches a strip's context menu for a right press outside it.
 *
 * An open menu takes the mouse: a press elsewhere only closes it, and not every
 * window system hands that press on to the widget under the pointer afterwards (X11
 * does not). A user who right-clicks another tab expects that tab's menu, as in any
 * browser, so the watcher reports such a press where it lands and swallows it; the
 * strip then closes the menu and opens the other one.
 */
class TabMenuWatcher : public QObject
{
    Q_OBJECT
public:
    /** @param menu the menu watched; also the watcher's parent */
    explicit TabMenuWatcher(QMenu *menu);
    ~TabMenuWatcher() override;

Q_SIGNALS:
    /**
     * A right press outside the menu, on @p widget (the widget under the pointer, in
     * one of the application's windows) at @p globalPos. Set @p taken to true to swallow
     * the press; the menu is then closed without passing the press on.
     */
    void SigRightPressElsewhere(QWidget *widget, const QPoint &globalPos, bool *taken);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QMenu *m_menu;
};
