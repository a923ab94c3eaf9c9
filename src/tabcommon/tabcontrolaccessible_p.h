// SPDX-License-Identifier: MIT
#pragma once

// The accessible interface of a strip's own buttons: a tab's close button, the scroll
// arrows and the new-tab button. They show icons only, so their names come from here.

#include <QAccessibleWidget>

class QAbstractButton;

class TabControlAccessible : public QAccessibleWidget
{
public:
    enum class Kind { CloseTab, ScrollLeft, ScrollRight, NewTab };

    TabControlAccessible(QAbstractButton *button, Kind kind);

    QAccessibleInterface *parent() const override;
    QString text(QAccessible::Text t) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;

    /** The kind of control @p object is by its object name; false when none. */
    static bool KindOf(const QObject *object, Kind *kind);

private:
    QAbstractButton *Button() const;
    const Kind kind;
};
