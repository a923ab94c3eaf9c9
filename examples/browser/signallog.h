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
 * Only the signals declared from @p firstClass downwards are watched (for a tab bar:
 * those of the library's bar and the window's subclass, not QWidget's own).
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
     * Watches @p sender's signals declared by @p firstClass and its subclasses, in
     * addition to what is already watched.
     */
    void Watch(QObject *sender, const QMetaObject &firstClass);
    /** Stops watching every sender. */
    void Clear();

    /** Adds a line of the caller's own, such as a heading. */
    void AddNote(const QString &line);
    QStringList Lines() const;

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    struct Watched
    {
        QPointer<QObject> sender;
        QMetaMethod signal;
        QMetaObject::Connection connection;
    };

    static QString FormatArgument(int type, const void *value);

    QVector<Watched> m_watched;
    QStringList m_lines;
};
