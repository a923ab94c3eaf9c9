// SPDX-License-Identifier: MIT
#include "keltabstyle.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QWidget>

namespace {
const QString kBeginMarker = QStringLiteral("/* KelTabContainer default style: begin */\n");
const QString kEndMarker = QStringLiteral("/* KelTabContainer default style: end */\n");

QString WithDefaultStyle(const QString &current)
{
    if (current.contains(kBeginMarker))
        return current;
    QString result = current;
    if (!result.isEmpty() && !result.endsWith(QLatin1Char('\n')))
        result += QLatin1Char('\n');
    return result + kBeginMarker + KelTabStyle::DefaultStyleSheet() + kEndMarker;
}
} // namespace

QString KelTabStyle::DefaultStyleSheet()
{
    QString sheet;
    const QDir dir(QStringLiteral(":/qss"));
    const QStringList files = dir.entryList({QStringLiteral("*.qss")}, QDir::Files, QDir::Name);
    for (const QString &name : files) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        sheet += QString::fromUtf8(file.readAll());
        if (!sheet.endsWith(QLatin1Char('\n')))
            sheet += QLatin1Char('\n');
    }
    return sheet;
}

void KelTabStyle::ApplyDefaultStyleSheet(QWidget *target)
{
    if (target) {
        target->setStyleSheet(WithDefaultStyle(target->styleSheet()));
        return;
    }
    if (auto *app = qobject_cast<QApplication *>(QCoreApplication::instance()))
        app->setStyleSheet(WithDefaultStyle(app->styleSheet()));
}
