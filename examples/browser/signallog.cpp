// SPDX-License-Identifier: MIT
#include "signallog.h"

#include <KelTabContainer/tabdata.h>

#include <QPoint>
#include <QVariant>

#include <cstdio>

SignalLog::SignalLog(QObject *parent)
    : QObject(parent)
{
}

SignalLog::~SignalLog()
{
    Clear();
}

void SignalLog::Watch(QObject *sender, const QMetaObject &base)
{
    if (!sender || !sender->metaObject()->inherits(&base))
        return;
    const QMetaObject *meta = sender->metaObject();
    // The classes below base declare their methods after base's own.
    for (int i = base.methodCount(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        // The receiving "method" is our own index past QObject's methods.
        const int slot = QObject::staticMetaObject.methodCount() + m_watched.size();
        Watched watched{sender, method, QMetaObject::connect(sender, i, this, slot, Qt::DirectConnection)};
        m_watched.append(watched);
    }
}

void SignalLog::Clear()
{
    for (const Watched &watched : qAsConst(m_watched))
        QObject::disconnect(watched.connection);
    m_watched.clear();
}

void SignalLog::AddNote(const QString &line)
{
    Append(line);
}

QStringList SignalLog::Lines() const
{
    return m_lines;
}

void SignalLog::SetEcho(bool echo)
{
    m_echo = echo;
}

void SignalLog::Append(const QString &line)
{
    m_lines.append(line);
    if (m_echo) {
        std::fprintf(stdout, "%s\n", qUtf8Printable(line));
        std::fflush(stdout);
    }
}

int SignalLog::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (id < 0 || call != QMetaObject::InvokeMetaMethod)
        return id;
    if (id < m_watched.size()) {
        const QMetaMethod &signal = m_watched.at(id).signal;
        QStringList values;
        for (int i = 0; i < signal.parameterCount(); ++i)
            values.append(FormatArgument(signal.parameterType(i), arguments[i + 1]));
        Append(QString::fromLatin1(signal.name()) + QLatin1Char('(') + values.join(QLatin1String(", "))
               + QLatin1Char(')'));
    }
    return -1;
}

QString SignalLog::FormatArgument(int type, const void *value)
{
    if (type == qMetaTypeId<TabDataPtr>()) {
        const TabDataPtr &tab = *static_cast<const TabDataPtr *>(value);
        return tab ? QLatin1Char('"') + tab->GetTitle() + QLatin1Char('"') : QStringLiteral("null");
    }
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const QVariant variant(QMetaType(type), value);
#else
    const QVariant variant(type, value);
#endif
    if (type == QMetaType::QPoint) {
        const QPoint point = variant.toPoint();
        return QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y());
    }
    if (type == QMetaType::QString)
        return QLatin1Char('"') + variant.toString() + QLatin1Char('"');
    if (type == QMetaType::Bool)
        return variant.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return variant.toString();
}
