// SPDX-License-Identifier: MIT
#pragma once

// The accessible interface of one tab: a page tab named with its full title.

#include <QAccessibleWidget>

class BrowserTabButtonBase;

class TabButtonAccessible : public QAccessibleWidget
{
public:
    explicit TabButtonAccessible(BrowserTabButtonBase *button);

    QAccessibleInterface *parent() const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QString text(QAccessible::Text t) const override;
    QAccessible::State state() const override;
    QRect rect() const override;

    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;

    /** The tab's close button, null when it has none. */
    static QWidget *CloseButton(const BrowserTabButtonBase *button);

private:
    BrowserTabButtonBase *Button() const;
};
