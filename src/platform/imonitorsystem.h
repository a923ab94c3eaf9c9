// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QString>
#include <QStringList>

/**
 * Records usage events (what the user did, for the product's statistics).
 *
 * The library reports through GetMonitorSystem(). Out of the box that is a default
 * recorder that appends one JSON object per event and line to LogFilePath():
 * {"event": ..., "parameters": [...], "plugin": ..., "time": "<UTC, ISO 8601 with ms>"}.
 * A host that has its own telemetry derives from this class, overrides
 * ReportUsageEvent() and installs its object with SetMonitorSystem().
 *
 * GUI thread only.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT IMonitorSystem
{
public:
    /** A recorder that is not installed; install it with SetMonitorSystem(). */
    IMonitorSystem();
    /** A copy that is not installed, whether @p other is or not. */
    IMonitorSystem(const IMonitorSystem &other);
    /** Changes nothing about which recorder is installed. */
    IMonitorSystem &operator=(const IMonitorSystem &other);
    /** If this object is installed, the default recorder is installed again. */
    virtual ~IMonitorSystem();

    /**
     * Records one event. The default implementation appends a line to
     * LogFilePath(), creating missing folders; when the file cannot be written it
     * warns once per path and drops the event.
     * @param event what happened, for example "Start_SystemSetting_GestureFunction"
     * @param pluginCode the part of the product it happened in, for example "kel_webpage"
     * @param parameters details, in an order the event defines
     */
    virtual void ReportUsageEvent(const QString &event, const QString &pluginCode, const QStringList &parameters);

    /** @return the recorder in force: the one installed, or the default one. Never null. */
    static IMonitorSystem *GetMonitorSystem();
    /**
     * Installs @p system (not owned; it uninstalls itself when destroyed).
     * @param system the recorder to use, or null to return to the default one
     */
    static void SetMonitorSystem(IMonitorSystem *system);

    /**
     * @return the file the default implementation writes to: the one set, or
     * "usage-events.jsonl" in QStandardPaths::AppDataLocation.
     */
    static QString LogFilePath();
    /** Sets the file of the default implementation; empty returns to the default path. */
    static void SetLogFilePath(const QString &path);
};
