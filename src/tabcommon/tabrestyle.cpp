// SPDX-License-Identifier: MIT
#include "tabrestyle_p.h"

#include <QApplication>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStyle>
#include <QVector>
#include <QWidget>

namespace {

// The subject (last compound selector) of a rule whose match depends on something a
// re-polish would read again: an ancestor's id, attributes or state, or the subject's
// own attributes. An empty type or id matches any widget.
struct Subject
{
    QByteArray type;
    QString id;
};

struct Analysis
{
    QStringList sheets;       // the style sheets it was made from, innermost first
    QVector<Subject> subjects;
    bool everything = false;  // the sheets could not be read: every widget may depend
};

bool IsIdentChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('-');
}

QString StripComments(const QString &sheet)
{
    QString out;
    out.reserve(sheet.size());
    int i = 0;
    while (i < sheet.size()) {
        const int start = sheet.indexOf(QLatin1String("/*"), i);
        if (start < 0) {
            out += QStringView(sheet).mid(i);
            break;
        }
        out += QStringView(sheet).mid(i, start - i);
        const int end = sheet.indexOf(QLatin1String("*/"), start + 2);
        if (end < 0)
            break;
        i = end + 2;
    }
    return out;
}

// Splits at @p separator outside brackets, parentheses and quotes.
QStringList SplitTopLevel(const QString &text, QChar separator)
{
    QStringList parts;
    int depth = 0;
    QChar quote;
    int from = 0;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            continue;
        }
        if (c == QLatin1Char('"') || c == QLatin1Char('\''))
            quote = c;
        else if (c == QLatin1Char('[') || c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(']') || c == QLatin1Char(')'))
            --depth;
        else if (c == separator && depth == 0) {
            parts << text.mid(from, i - from);
            from = i + 1;
        }
    }
    parts << text.mid(from);
    return parts;
}

// The compound selectors of one selector, from the outermost to the subject.
QStringList Compounds(const QString &selector)
{
    QStringList compounds;
    QString current;
    int depth = 0;
    QChar quote;
    for (const QChar c : selector) {
        if (!quote.isNull()) {
            current += c;
            if (c == quote)
                quote = QChar();
            continue;
        }
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            quote = c;
        } else if (c == QLatin1Char('[')) {
            ++depth;
        } else if (c == QLatin1Char(']')) {
            --depth;
        } else if (depth == 0 && (c.isSpace() || c == QLatin1Char('>') || c == QLatin1Char('+') || c == QLatin1Char('~'))) {
            if (!current.isEmpty())
                compounds << current;
            current.clear();
            continue;
        }
        current += c;
    }
    if (!current.isEmpty())
        compounds << current;
    return compounds;
}

Subject ParseSubject(const QString &compound)
{
    Subject subject;
    int i = 0;
    if (i < compound.size() && compound.at(i) == QLatin1Char('.'))
        ++i; // ".Class" names the class exactly; matching it as a base class is wider, so safe
    int start = i;
    while (i < compound.size() && IsIdentChar(compound.at(i)))
        ++i;
    subject.type = compound.mid(start, i - start).toLatin1();
    const int hash = compound.indexOf(QLatin1Char('#'));
    if (hash >= 0) {
        int end = hash + 1;
        while (end < compound.size() && IsIdentChar(compound.at(end)))
            ++end;
        subject.id = compound.mid(hash + 1, end - hash - 1);
    }
    return subject;
}

// Adds the dependent subjects of @p sheet; false when it cannot be read.
bool Analyse(const QString &sheet, QVector<Subject> *subjects)
{
    const QString text = StripComments(sheet);
    int pos = 0;
    while (true) {
        const int open = text.indexOf(QLatin1Char('{'), pos);
        if (open < 0)
            return QStringView(text).mid(pos).trimmed().isEmpty() || !QStringView(text).mid(pos).contains(QLatin1Char('}'));
        const QString selectors = text.mid(pos, open - pos).trimmed();
        // A sheet set on a widget may hold bare declarations; they apply to that widget
        // itself and never to its children.
        int close = open + 1;
        int depth = 1;
        QChar quote;
        for (; close < text.size() && depth > 0; ++close) {
            const QChar c = text.at(close);
            if (!quote.isNull()) {
                if (c == quote)
                    quote = QChar();
            } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
                quote = c;
            } else if (c == QLatin1Char('{')) {
                ++depth;
            } else if (c == QLatin1Char('}')) {
                --depth;
            }
        }
        if (depth != 0 || selectors.startsWith(QLatin1Char('@')) || selectors.contains(QLatin1Char('}')))
            return false;
        pos = close;
        for (const QString &selector : SplitTopLevel(selectors, QLatin1Char(','))) {
            const QStringList compounds = Compounds(selector.trimmed());
            if (compounds.isEmpty())
                continue;
            const QString &last = compounds.last();
            bool dependent = last.contains(QLatin1Char('['));
            for (int i = 0; i + 1 < compounds.size() && !dependent; ++i) {
                const QString &ancestor = compounds.at(i);
                dependent = ancestor.contains(QLatin1Char('#')) || ancestor.contains(QLatin1Char('['))
                            || ancestor.contains(QLatin1Char(':'));
            }
            if (dependent)
                subjects->append(ParseSubject(last));
        }
    }
}

const Analysis &AnalysisFor(const QStringList &sheets)
{
    // A few sets of sheets at most: the same window's sheets come back on every change.
    static QVector<Analysis> cache;
    for (const Analysis &analysis : qAsConst(cache)) {
        if (analysis.sheets == sheets)
            return analysis;
    }
    if (cache.size() >= 4)
        cache.removeFirst();
    Analysis analysis;
    analysis.sheets = sheets;
    for (const QString &sheet : sheets) {
        if (!Analyse(sheet, &analysis.subjects)) {
            analysis.everything = true;
            break;
        }
    }
    cache.append(analysis);
    return cache.last();
}

} // namespace

bool TabRestyle::LookFollowsAncestors(const QWidget *widget)
{
    if (!widget || widget->testAttribute(Qt::WA_SetStyle) || !widget->style()->inherits("QStyleSheetStyle"))
        return true;
    QStringList sheets;
    for (const QWidget *w = widget; w; w = w->parentWidget()) {
        if (!w->styleSheet().isEmpty())
            sheets << w->styleSheet();
    }
    if (!qApp->styleSheet().isEmpty())
        sheets << qApp->styleSheet();
    const Analysis &analysis = AnalysisFor(sheets);
    if (analysis.everything)
        return true;
    const QString name = widget->objectName();
    for (const Subject &subject : analysis.subjects) {
        if (!subject.id.isEmpty() && subject.id != name)
            continue;
        if (!subject.type.isEmpty() && subject.type != "*" && !widget->inherits(subject.type.constData()))
            continue;
        return true;
    }
    return false;
}
