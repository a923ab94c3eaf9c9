// SPDX-License-Identifier: MIT
#include "tabdata.h"

#include <QCoreApplication>
#include <QUuid>

namespace {
// Registers the pointer type under its typedef name before any signal that carries
// it is connected queued; Q_DECLARE_METATYPE alone would register it lazily under
// the spelled-out template name only.
[[maybe_unused]] const int g_tabDataPtrTypeId = qRegisterMetaType<TabDataPtr>("TabDataPtr");

bool CarriesUrl(TabData::TabType type)
{
    return type == TabData::TabTypeHomePage || type == TabData::TabTypeWeb
        || type == TabData::TabTypeWebPopup;
}
} // namespace

TabData::TabData()
    : m_id(QUuid::createUuid().toString(QUuid::WithBraces))
    , m_tabType(TabTypeNone)
    , m_varExtend(0)
{
}

TabData::TabData(const TabData &other) = default;

TabData &TabData::operator=(const TabData &other)
{
    if (this != &other) {
        m_id = other.m_id;
        m_tabType = other.m_tabType;
        m_title = other.m_title;
        m_iconUrl = other.m_iconUrl;
        m_data = other.m_data;
        m_varExtend = other.m_varExtend;
    }
    return *this;
}

TabData::~TabData() = default;

QString TabData::GetId() const { return m_id; }
void TabData::SetId(const QString &id) { m_id = id; }
TabData::TabType TabData::GetTabType() const { return m_tabType; }
void TabData::SetTabType(TabType type) { m_tabType = type; }
QString TabData::GetTitle() const { return m_title; }
void TabData::SetTitle(const QString &title) { m_title = title; }
QString TabData::GetIconUrl() const { return m_iconUrl; }
void TabData::SetIconUrl(const QString &iconUrl) { m_iconUrl = iconUrl; }
QString TabData::GetData() const { return m_data; }
void TabData::SetData(const QString &data) { m_data = data; }
QVariant TabData::GetVarExtend() const { return m_varExtend; }
void TabData::SetVarExtend(const QVariant &value) { m_varExtend = value; }

bool TabData::IsNewTab() const { return m_tabType == TabTypeNewTab; }
bool TabData::IsHomePage() const { return m_tabType == TabTypeHomePage; }
bool TabData::IsWeb() const { return m_tabType == TabTypeWeb; }
bool TabData::IsWebPopup() const { return m_tabType == TabTypeWebPopup; }
bool TabData::IsPlugin() const { return m_tabType == TabTypePlugin; }

QString TabData::GetUrl() const
{
    return CarriesUrl(m_tabType) ? m_varExtend.toString() : QString();
}

void TabData::SetUrl(const QString &url)
{
    if (CarriesUrl(m_tabType))
        m_varExtend = QVariant(url);
}

QString TabData::GetPluginCode() const
{
    return IsPlugin() ? m_data : QString();
}

QString TabData::GetNewTabName()
{
    // A function-local static is initialised once, thread-safely, at the first call.
    static const QString name = QCoreApplication::translate("QObject", "New tab");
    return name;
}

bool TabData::operator==(const TabData &other) const
{
    if (this == &other || m_id == other.m_id)
        return true;
    return m_tabType == other.m_tabType && m_data == other.m_data;
}

bool TabData::IsEqual(const TabData &other) const
{
    return *this == other;
}

bool TabData::IsEqual(QSharedPointer<TabData> other) const
{
    return other && *this == *other;
}

bool TabData::IsEqual(const QString &id) const
{
    return m_id == id;
}

bool TabData::operator<(const TabData &other) const
{
    if (m_tabType != other.m_tabType)
        return static_cast<qint32>(m_tabType) < static_cast<qint32>(other.m_tabType);
    return m_data < other.m_data;
}
