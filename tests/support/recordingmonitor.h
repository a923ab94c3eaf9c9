// SPDX-License-Identifier: MIT
#pragma once

// A usage monitor that writes down every event reported to it, for the tests that
// check what the library reports.

#include "imonitorsystem.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace KelTest {

class RecordingMonitor : public IMonitorSystem
{
public:
    struct Event
    {
        QString event;
        QString pluginCode;
        QStringList parameters;
    };
    QList<Event> events;

    void ReportUsageEvent(const QString &event, const QString &pluginCode, const QStringList &parameters) override
    {
        events.append({event, pluginCode, parameters});
    }
};

} // namespace KelTest
