// SPDX-License-Identifier: MIT
#include "navigationbar.h"

#include <KelTabContainer/dpitool.h>

#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

NavigationBar::NavigationBar(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("NavigationBar"));
    setAttribute(Qt::WA_StyledBackground);

    m_back = MakeButton(QStringLiteral("NavBack"), QStringLiteral("back"), tr("Back"), tr("Back (Alt+Left)"));
    m_forward = MakeButton(QStringLiteral("NavForward"), QStringLiteral("forward"), tr("Forward"), tr("Forward (Alt+Right)"));
    m_reload = MakeButton(QStringLiteral("NavReload"), QStringLiteral("reload"), tr("Reload"), tr("Reload (F5)"));
    m_home = MakeButton(QStringLiteral("NavHome"), QStringLiteral("home"), tr("Home"), tr("Home"));
    m_star = MakeButton(QStringLiteral("NavStar"), QStringLiteral("star"), tr("Bookmark this page"), tr("Bookmark this page (Ctrl+D)"));

    m_address = new QLineEdit(this);
    m_address->setObjectName(QStringLiteral("AddressBar"));
    m_address->setPlaceholderText(tr("Type an address"));
    m_address->setAccessibleName(tr("Address"));

    m_find = new QLineEdit(this);
    m_find->setObjectName(QStringLiteral("FindField"));
    m_find->setPlaceholderText(tr("Find in page"));
    m_find->setAccessibleName(tr("Find in page"));
    m_find->setClearButtonEnabled(true);
    m_find->hide();

    auto *row = new QHBoxLayout(this);
    row->addWidget(m_back);
    row->addWidget(m_forward);
    row->addWidget(m_reload);
    row->addWidget(m_home);
    row->addWidget(m_address, 1);
    row->addWidget(m_find);
    row->addWidget(m_star);

    connect(m_back, &QToolButton::clicked, this, &NavigationBar::SigBack);
    connect(m_forward, &QToolButton::clicked, this, &NavigationBar::SigForward);
    connect(m_reload, &QToolButton::clicked, this, &NavigationBar::SigReload);
    connect(m_home, &QToolButton::clicked, this, &NavigationBar::SigHome);
    connect(m_star, &QToolButton::clicked, this, &NavigationBar::SigFavourite);
    connect(m_address, &QLineEdit::returnPressed, this, [this] { Q_EMIT SigAddressEntered(m_address->text()); });
    connect(m_find, &QLineEdit::returnPressed, this, [this] { Q_EMIT SigFind(m_find->text()); });
    connect(m_find, &QLineEdit::editingFinished, this, [this] {
        if (m_find->text().isEmpty())
            m_find->hide();
    });
    AdjustForDpi();
}

NavigationBar::~NavigationBar() = default;

void NavigationBar::SetAddress(const QString &url)
{
    if (m_address->hasFocus() && m_address->isModified())
        return;
    m_address->setText(url);
    m_address->setModified(false);
    m_address->setCursorPosition(0);
}

void NavigationBar::SetNavigationState(bool canGoBack, bool canGoForward, bool canReload)
{
    m_back->setEnabled(canGoBack);
    m_forward->setEnabled(canGoForward);
    m_reload->setEnabled(canReload);
}

void NavigationBar::SetFavourite(bool favourite)
{
    m_star->setIcon(QIcon(favourite ? QStringLiteral(":/browser/icons/star_filled.png")
                                    : QStringLiteral(":/browser/icons/star.png")));
}

void NavigationBar::FocusAddress()
{
    m_address->setFocus(Qt::ShortcutFocusReason);
    m_address->selectAll();
}

void NavigationBar::ShowFind()
{
    m_find->show();
    m_find->setFocus(Qt::ShortcutFocusReason);
    m_find->selectAll();
}

void NavigationBar::AdjustForDpi()
{
    const int button = DpiTool::ScaleDefault(30);
    const QSize icon(DpiTool::ScaleDefault(18), DpiTool::ScaleDefault(18));
    for (QToolButton *b : {m_back, m_forward, m_reload, m_home, m_star}) {
        b->setFixedSize(button, button);
        b->setIconSize(icon);
    }
    m_address->setFixedHeight(DpiTool::ScaleDefault(30));
    m_find->setFixedSize(DpiTool::ScaleDefault(200), DpiTool::ScaleDefault(30));
    layout()->setContentsMargins(DpiTool::ScaleDefault(8), DpiTool::ScaleDefault(5), DpiTool::ScaleDefault(8),
                                 DpiTool::ScaleDefault(5));
    layout()->setSpacing(DpiTool::ScaleDefault(4));
}

// An icon button: the label is what a screen reader says, the tool tip adds the key.
QToolButton *NavigationBar::MakeButton(const QString &name, const QString &icon, const QString &label,
                                       const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setAccessibleName(label);
    button->setIcon(QIcon(QStringLiteral(":/browser/icons/%1.png").arg(icon)));
    button->setToolTip(toolTip);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRaise(true);
    return button;
}
