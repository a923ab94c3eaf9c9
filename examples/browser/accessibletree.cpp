// SPDX-License-Identifier: MIT
#include "accessibletree.h"

#include <QAccessible>
#include <QMetaEnum>
#include <QStringList>

namespace {

QString RoleName(QAccessible::Role role)
{
    const char *key = QMetaEnum::fromType<QAccessible::Role>().valueToKey(role);
    return key ? QString::fromLatin1(key) : QStringLiteral("Role%1").arg(int(role));
}

QString StateText(const QAccessible::State &state)
{
    QStringList names;
    if (state.selected)
        names << QStringLiteral("selected");
    if (state.focused)
        names << QStringLiteral("focused");
    if (state.focusable)
        names << QStringLiteral("focusable");
    if (state.disabled)
        names << QStringLiteral("disabled");
    if (state.invisible)
        names << QStringLiteral("invisible");
    if (state.offscreen)
        names << QStringLiteral("offscreen");
    if (state.checked)
        names << QStringLiteral("checked");
    return names.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(names.join(QLatin1Char(' ')));
}

void AppendNode(QAccessibleInterface *node, int depth, QString &out)
{
    if (!node || !node->isValid())
        return;
    const QRect rect = node->rect();
    QString line = QString(depth * 2, QLatin1Char(' ')) + RoleName(node->role());
    const QString name = node->text(QAccessible::Name);
    if (!name.isEmpty())
        line += QStringLiteral(" \"%1\"").arg(name);
    line += StateText(node->state());
    if (rect.isValid())
        line += QStringLiteral(" (%1,%2 %3x%4)").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
    const QStringList actions = node->actionInterface() ? node->actionInterface()->actionNames() : QStringList();
    if (!actions.isEmpty())
        line += QStringLiteral(" actions: %1").arg(actions.join(QLatin1String(", ")));
    out += line + QLatin1Char('\n');
    const int children = node->childCount();
    for (int i = 0; i < children; ++i)
        AppendNode(node->child(i), depth + 1, out);
}

} // namespace

QString AccessibleTreeText(QObject *root)
{
    QString out;
    AppendNode(root ? QAccessible::queryAccessibleInterface(root) : nullptr, 0, out);
    return out;
}
