// SPDX-License-Identifier: MIT
#include "homepage.h"

#include "tabrecordfactory.h"

#include <KelTabContainer/browsermainnotify.h>
#include <KelTabContainer/itabmanager.h>

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

TabDataPtr MakeNotes(const QString &)
{
    return TabRecordFactory::MakeNotes();
}

} // namespace

HomePage::HomePage(TabDataPtr tab, ITabManager *tabs)
    : m_widget(new QWidget)
    , m_tabs(tabs)
{
    SetTabData(tab);
    m_widget->setObjectName(QStringLiteral("HomePage"));
    m_widget->setAttribute(Qt::WA_StyledBackground);

    auto *logo = new QLabel(m_widget);
    logo->setPixmap(QPixmap(QStringLiteral(":/browser/icons/app.png")));
    logo->setAlignment(Qt::AlignCenter);
    auto *title = new QLabel(QCoreApplication::translate("HomePage", "KelTab Browser"), m_widget);
    title->setObjectName(QStringLiteral("HomeTitle"));
    title->setAlignment(Qt::AlignCenter);

    m_search = new QLineEdit(m_widget);
    m_search->setObjectName(QStringLiteral("HomeSearch"));
    m_search->setPlaceholderText(QCoreApplication::translate("HomePage", "Type an address and press Enter"));
    m_search->setAccessibleName(QCoreApplication::translate("HomePage", "Address"));
    m_search->setClearButtonEnabled(true);
    QObject::connect(m_search, &QLineEdit::returnPressed, m_widget, [this] {
        const QString url = TabRecordFactory::FromUserInput(m_search->text());
        if (url.isEmpty())
            return;
        m_search->clear();
        Open(TabRecordFactory::MakeWeb(url));
    });

    auto *tiles = new QGridLayout;
    tiles->setSpacing(16);
    tiles->addWidget(MakeTile(QCoreApplication::translate("HomePage", "Welcome"), QStringLiteral(":/browser/icons/page_welcome.png"),
                              &TabRecordFactory::MakeWeb, QStringLiteral("qrc:/browser/pages/welcome.html")), 0, 0);
    tiles->addWidget(MakeTile(QCoreApplication::translate("HomePage", "Host's guide"), QStringLiteral(":/browser/icons/page_guide.png"),
                              &TabRecordFactory::MakeWeb, QStringLiteral("qrc:/browser/pages/guide.html")), 0, 1);
    tiles->addWidget(MakeTile(QCoreApplication::translate("HomePage", "Signals"), QStringLiteral(":/browser/icons/page_signals.png"),
                              &TabRecordFactory::MakeWeb, QStringLiteral("qrc:/browser/pages/signals.html")), 0, 2);
    tiles->addWidget(MakeTile(QCoreApplication::translate("HomePage", "Notes"), QStringLiteral(":/browser/icons/page_notes.png"), &MakeNotes, QString()),
                     0, 3);
    tiles->addWidget(MakeTile(QCoreApplication::translate("HomePage", "qt.io"), QStringLiteral(":/browser/icons/page_web.png"),
                              &TabRecordFactory::MakeWeb, QStringLiteral("https://www.qt.io/")), 0, 4);

    auto *column = new QVBoxLayout;
    column->setSpacing(18);
    column->addWidget(logo);
    column->addWidget(title);
    column->addWidget(m_search);
    column->addSpacing(12);
    column->addLayout(tiles);

    auto *page = new QVBoxLayout(m_widget);
    page->addStretch(2);
    auto *centre = new QHBoxLayout;
    centre->addStretch(1);
    centre->addLayout(column);
    centre->addStretch(1);
    page->addLayout(centre);
    page->addStretch(3);
}

HomePage::~HomePage()
{
    delete m_widget.data();
}

QWidget *HomePage::GetWidget()
{
    return m_widget;
}

void HomePage::OnActivated()
{
    BrowserMainNotify *notify = BrowserMainNotify::Instance();
    Q_EMIT notify->SigWebStatusChanged(GetTabData(), false, false, false);
    Q_EMIT notify->SigAddressChanged(GetTabData(), QUrl());
}

void HomePage::OnDeactivated()
{
}

QString HomePage::GetPageName()
{
    return QStringLiteral("home");
}

void HomePage::SetFocus()
{
    m_search->setFocus(Qt::OtherFocusReason);
}

QWidget *HomePage::MakeTile(const QString &title, const QString &icon, TabDataPtr (*make)(const QString &),
                            const QString &argument)
{
    auto *tile = new QToolButton(m_widget);
    tile->setObjectName(QStringLiteral("HomeTile"));
    tile->setText(title);
    tile->setIcon(QIcon(icon));
    tile->setIconSize(QSize(32, 32));
    tile->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    tile->setCursor(Qt::PointingHandCursor);
    tile->setFocusPolicy(Qt::NoFocus);
    QObject::connect(tile, &QToolButton::clicked, m_widget, [this, make, argument] { Open(make(argument)); });
    return tile;
}

void HomePage::Open(TabDataPtr tab)
{
    if (m_tabs)
        m_tabs->OpenTab(tab, true);
}
