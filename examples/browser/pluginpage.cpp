// SPDX-License-Identifier: MIT
#include "pluginpage.h"

#include <KelTabContainer/browsermainnotify.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

PluginPage::PluginPage(TabDataPtr tab)
    : m_widget(new QWidget)
{
    SetTabData(tab);
    m_widget->setObjectName(QStringLiteral("PluginPage"));
    m_widget->setAttribute(Qt::WA_StyledBackground);

    auto *heading = new QLabel(QCoreApplication::translate("PluginPage", "Notes"), m_widget);
    heading->setObjectName(QStringLiteral("PluginTitle"));
    auto *hint = new QLabel(QCoreApplication::translate(
                                "PluginPage", "A plug-in page: the tab holds a plug-in code instead of an address."),
                            m_widget);
    hint->setObjectName(QStringLiteral("PluginHint"));
    m_editor = new QPlainTextEdit(m_widget);
    m_editor->setObjectName(QStringLiteral("NotesEditor"));
    m_editor->setPlaceholderText(QCoreApplication::translate("PluginPage", "Write something down..."));

    auto *layout = new QVBoxLayout(m_widget);
    layout->setContentsMargins(48, 32, 48, 32);
    layout->setSpacing(10);
    layout->addWidget(heading);
    layout->addWidget(hint);
    layout->addWidget(m_editor, 1);
}

PluginPage::~PluginPage()
{
    delete m_widget.data();
}

QWidget *PluginPage::GetWidget()
{
    return m_widget;
}

void PluginPage::OnActivated()
{
    BrowserMainNotify *notify = BrowserMainNotify::Instance();
    Q_EMIT notify->SigWebStatusChanged(GetTabData(), false, false, false);
    Q_EMIT notify->SigAddressChanged(GetTabData(), QUrl());
}

void PluginPage::OnDeactivated()
{
}

QString PluginPage::GetPageName()
{
    return QStringLiteral("plugin");
}

bool PluginPage::TryToClose(bool force)
{
    Q_UNUSED(force)
    return true;
}

void PluginPage::SetFocus()
{
    m_editor->setFocus(Qt::OtherFocusReason);
}
