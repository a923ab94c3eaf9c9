// SPDX-License-Identifier: MIT
#pragma once

// The ring drawn around the tab that has the keyboard focus while its bar has the
// focus. A child of that tab's button, covering it, transparent for the mouse; the
// default style sheets give "TabBarFocusRing" its border. Being a child keeps it on
// the tab while the tab moves or scrolls, and changes no layout.

#include <QFrame>

class TabFocusRing : public QFrame
{
    Q_OBJECT
public:
    explicit TabFocusRing(QWidget *parent = nullptr);

    /** Puts the ring on @p tab, or hides it when @p tab is null. */
    void Follow(QWidget *tab);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
