// SPDX-License-Identifier: MIT
// The seed and length of a chaos run. The suite replays a fixed seed, so that a run of
// the test command judges the code and not the luck of the draw; scripts/chaos-soak.sh
// explores new seeds and names any that fails.
//
//   KELTAB_CHAOS_SEED=<n>       replays seed n (0 to 4294967295)
//   KELTAB_CHAOS_SEED=random    draws a new seed (printed with every failure)
//   KELTAB_CHAOS_STEPS=<n>      sets the number of steps
//   KELTAB_CHAOS_KEEP=1-40,97   runs only these steps (scripts/chaos-cutdown.py finds
//                               the few that a failure needs)
#pragma once

#include <QRandomGenerator>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace KelTest {

constexpr quint32 kDefaultChaosSeed = 20261125u;

inline quint32 ChaosSeed()
{
    const QString value = qEnvironmentVariable("KELTAB_CHAOS_SEED");
    if (value == QLatin1String("random"))
        return QRandomGenerator::global()->generate();
    bool ok = false;
    const quint32 seed = value.toUInt(&ok);
    if (!value.isEmpty() && !ok)
        qWarning("KELTAB_CHAOS_SEED=%s is neither a number nor \"random\": using %u", qPrintable(value), kDefaultChaosSeed);
    return ok ? seed : kDefaultChaosSeed;
}

// The run's length: KELTAB_CHAOS_STEPS, else the suite's slice, shorter in a sanitizer
// build (KELTAB_CHAOS_SANITIZED), where every step costs two to three times more.
inline int ChaosSteps(int releaseSteps, int sanitizedSteps)
{
    bool ok = false;
    const int steps = qEnvironmentVariableIntValue("KELTAB_CHAOS_STEPS", &ok);
    if (ok && steps > 0)
        return steps;
#ifdef KELTAB_CHAOS_SANITIZED
    Q_UNUSED(releaseSteps)
    return sanitizedSteps;
#else
    Q_UNUSED(sanitizedSteps)
    return releaseSteps;
#endif
}

// The steps named by KELTAB_CHAOS_KEEP ("3,10-12"); empty when it is not set.
inline QSet<int> ChaosKeptSteps()
{
    QSet<int> steps;
    const QString value = qEnvironmentVariable("KELTAB_CHAOS_KEEP");
    const QStringList ranges = value.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &range : ranges) {
        const QStringList ends = range.split(QLatin1Char('-'));
        bool okFirst = false;
        bool okLast = ends.size() == 1;
        const int first = ends.first().toInt(&okFirst);
        const int last = ends.size() == 2 ? ends.last().toInt(&okLast) : first;
        if (!okFirst || !okLast || ends.size() > 2 || first < 1 || last < first) {
            qWarning("KELTAB_CHAOS_KEEP: \"%s\" is not a step or a range of steps", qPrintable(range));
            continue;
        }
        for (int step = first; step <= last; ++step)
            steps.insert(step);
    }
    return steps;
}

} // namespace KelTest
