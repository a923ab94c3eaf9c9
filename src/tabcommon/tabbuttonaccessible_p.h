// SPDX-License-Identifier: MIT
#pragma once

// The accessible interface of one tab: a page tab named with its full title.

#include <QAccessibleWidget>

class BrowserTabButtonBase;

class TabButtonAccessible : public QAccessibleWidget
{
public:
    explicit TabButtonAccessible(BrowserTabButtonBase *button);
    ~TabButtonAccessible() override;

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
    /** For a tab that makes its close button later: whether it would show, and where (in the tab). */
    static bool CloseButtonWouldShow(const BrowserTabButtonBase *button);
    static QRect CloseButtonPlace(const BrowserTabButtonBase *button);

private:
    BrowserTabButtonBase *Button() const;
    // The close button's interface: the widget's, or, for a tab that makes its close
    // button only once it comes into view, a stand-in with the same name, state, place
    // and action. Null when the tab has no close button.
    QAccessibleInterface *Close() const;
    mutable QAccessible::Id m_standIn = 0;
};
