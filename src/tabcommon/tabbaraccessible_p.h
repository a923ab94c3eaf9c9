// SPDX-License-Identifier: MIT
#pragma once

// The accessible interface of a tab strip: a page-tab list of its tabs.

#include <QAccessibleWidget>

class BrowserTabBarBase;

class TabBarAccessible : public QAccessibleWidget
{
public:
    explicit TabBarAccessible(BrowserTabBarBase *bar);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    QString text(QAccessible::Text t) const override;

private:
    BrowserTabBarBase *Bar() const;
    QList<QWidget *> Children() const;
};
