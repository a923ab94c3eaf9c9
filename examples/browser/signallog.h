// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaMethod>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVector>

/**
 * Writes down every signal an object emits, in order, one line each: the signal's
 * name and its arguments, for example "tabCloseRequested(3)".
 *
 * Only the signals declared below a given base class are watched (for a tab bar
 * below QFrame: those of the library's bar and of the window's subclass). Lines can
 * also be echoed to standard output as they come.
 *
 * Signals are logged in the order Qt calls their receivers, so a log that should
 * show a signal before the signals its answer causes must watch the sender before
 * anyone else connects to it.
 *
 * It listens the way QSignalSpy does: each watched signal is connected to a method
 * index of its own beyond those of QObject, and qt_metacall() turns the call into a
 * line. No moc is involved, so any signal of any class can be logged.
 */
class SignalLog : public QObject
{
public:
    explicit SignalLog(QObject *parent = nullptr);
    ~SignalLog() override;

    /**
     * Watches the signals that @p sender's classes below @p base declare, in addition
     * to what is already watched. Watching ends when the sender is destroyed.
     */
    void Watch(QObject *sender, const QMetaObject &base);
    /** Stops watching every sender. */
    void Clear();

    /** Adds a line of the caller's own, such as a heading. */
    void AddNote(const QString &line);
    QStringList Lines() const;
    /** Prints every new line to standard output as well. */
    void SetEcho(bool echo);

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    struct Watched
    {
        QPointer<QObject> sender;
        QMetaMethod signal;
        QMetaObject::Connection connection;
    };

    static QString FormatArgument(int type, const void *value);
    void Append(const QString &line);

    QVector<Watched> m_watched;
    QStringList m_lines;
    bool m_echo = false;
};
