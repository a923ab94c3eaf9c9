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
 *
 * @ingroup records
 */
class KELTABCONTAINER_EXPORT TabData
{
public:
    /** The kind of page a tab shows. */
    enum TabType : qint32 {
        TabTypeNone = 0,     ///< a fresh record; no predicate is true for it
        TabTypeNewTab = 1,   ///< the browser's new-tab page (IsNewTab())
        TabTypeHomePage = 2, ///< the home page; carries a URL (IsHomePage())
        TabTypeOther = 3,    ///< a page that carries no URL
        TabTypeWeb = 4,      ///< a web page; carries a URL (IsWeb())
        TabTypeWebPopup = 5, ///< a web page opened as a pop-up; carries a URL (IsWebPopup())
        TabTypePlugin = 6,   ///< a plug-in page; the data string is the plug-in code (IsPlugin())
    };

    /** A record with a fresh braced UUID as id, type 0, empty strings and the integer 0 as extension. */
    TabData();
    /** A copy of @p other: the same tab, id included. */
    TabData(const TabData &other);
    /** Takes every field of @p other, id included, so this record becomes the same tab. */
    TabData &operator=(const TabData &other);
    /** Nothing to release beyond the fields. */
    ~TabData();

    /** @return the tab's id, a braced UUID unless SetId() gave another. */
    QString GetId() const;
    /** Replaces the id; any string is taken, also an empty one (equality then falls back to type and data). */
    void SetId(const QString &id);
    /** @return the kind of page (TabTypeNone for a fresh record). */
    TabType GetTabType() const;
    /** Sets the kind of page. Set it before SetUrl(), which depends on it. */
    void SetTabType(TabType type);
    /**
     * @return the title as last set; empty for a fresh record. A bar that gets a record
     * with an empty title sets it to GetNewTabName().
     */
    QString GetTitle() const;
    /**
     * Sets the title. A bar reads it when the tab is added; to retitle a tab on show,
     * call BrowserTabBarBase::setTabText().
     */
    void SetTitle(const QString &title);
    /** @return the icon address as last set; empty for a fresh record. */
    QString GetIconUrl() const;
    /** Stores the icon address (a local file, a ":/" resource or an http(s) address); nothing is loaded. */
    void SetIconUrl(const QString &iconUrl);
    /** A free string; for a plug-in tab, the plug-in code. */
    QString GetData() const;
    /** Sets the free string; it takes part in equality, so give every web tab its own. */
    void SetData(const QString &data);
    /** The extension value; for a home-page, web or web pop-up tab, the page's URL as a string. */
    QVariant GetVarExtend() const;
    /** Sets the extension value, whatever the type (SetUrl() is the checked way to store a URL). */
    void SetVarExtend(const QVariant &value);

    /** @return true for TabTypeNewTab. */
    bool IsNewTab() const;
    /** @return true for TabTypeHomePage. */
    bool IsHomePage() const;
    /** @return true for TabTypeWeb (not for a web pop-up). */
    bool IsWeb() const;
    /** @return true for TabTypeWebPopup. */
    bool IsWebPopup() const;
    /** @return true for TabTypePlugin. */
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
    /** The same as operator==(): same id, or same type and same data. */
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

/**
 * Tabs travel through every signal, slot, bar and button as a shared pointer.
 * @ingroup records
 */
typedef QSharedPointer<TabData> TabDataPtr;

Q_DECLARE_METATYPE(TabDataPtr)
