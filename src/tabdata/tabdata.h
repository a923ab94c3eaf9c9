// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

/**
 * The record of one tab: who it is, what kind of page it shows, its title and icon,
 * a free string and one extension value.
 *
 * Records are values: a copy is the same tab (the id is copied). Two records are
 * equal when they have the same id, or else the same type and the same data string;
 * title, icon and extension never take part, so two plug-in tabs with the same
 * plug-in code are the same tab even with different ids.
 */
class KELTABCONTAINER_EXPORT TabData
{
public:
    /** The kind of page a tab shows. */
    enum TabType : qint32 {
        TabTypeNone = 0,     ///< a fresh record; no predicate is true for it
        TabTypeNewTab = 1,
        TabTypeHomePage = 2,
        TabTypeOther = 3,    ///< a page that carries no URL
        TabTypeWeb = 4,
        TabTypeWebPopup = 5,
        TabTypePlugin = 6,
    };

    /** A record with a fresh braced UUID as id, type 0, empty strings and the integer 0 as extension. */
    TabData();
    TabData(const TabData &other);
    TabData &operator=(const TabData &other);
    ~TabData();

    QString GetId() const;
    void SetId(const QString &id);
    TabType GetTabType() const;
    void SetTabType(TabType type);
    QString GetTitle() const;
    void SetTitle(const QString &title);
    QString GetIconUrl() const;
    void SetIconUrl(const QString &iconUrl);
    /** A free string; for a plug-in tab, the plug-in code. */
    QString GetData() const;
    void SetData(const QString &data);
    /** The extension value; for a home-page, web or web pop-up tab, the page's URL as a string. */
    QVariant GetVarExtend() const;
    void SetVarExtend(const QVariant &value);

    bool IsNewTab() const;
    bool IsHomePage() const;
    bool IsWeb() const;
    bool IsWebPopup() const;
    bool IsPlugin() const;

    /** The extension as a string for home-page, web and web pop-up tabs; empty for every other type. */
    QString GetUrl() const;
    /**
     * Stores @p url as the extension, only for home-page, web and web pop-up tabs;
     * for other types the call is ignored, so set the type first.
     */
    void SetUrl(const QString &url);
    /** The data string for a plug-in tab; empty for every other type. */
    QString GetPluginCode() const;

    /**
     * The display name of a new tab, "New tab" translated in the context QObject.
     * @note Translated once, at the first call; a later language change is not reflected.
     */
    static QString GetNewTabName();

    /** Same id, or same type and same data. */
    bool operator==(const TabData &other) const;
    bool IsEqual(const TabData &other) const;
    /** As above against the pointee; false for a null pointer. */
    bool IsEqual(QSharedPointer<TabData> other) const;
    /** True when the id equals @p id exactly (case-sensitive). */
    bool IsEqual(const QString &id) const;
    /** Orders by type, then by data; the id does not take part. */
    bool operator<(const TabData &other) const;

private:
    QString m_id;
    TabType m_tabType;
    QString m_title;
    QString m_iconUrl;
    QString m_data;
    QVariant m_varExtend;
};

/** Tabs travel through every signal, slot, bar and button as a shared pointer. */
typedef QSharedPointer<TabData> TabDataPtr;

Q_DECLARE_METATYPE(TabDataPtr)
