#pragma once

#include "signallog.h"
#include "tabstrip.h"

#include <KelTabContainer/browsertabbarex.h>

#include <QFrame>
#include <QHBoxLayout>
#include <QPointer>
#include <QToolButton>
#include <QWidget>

#include <type_traits>

class ClosedTabStack;

/**
 * TabStrip over one of the library's bars. @p BarType is the window's subclass of
 * BrowserTabBarEx or BrowserTabBar, made from HomeTabPolicyBar: it takes
 * (const ClosedTabStack *, QWidget *), names its number of fixed tabs in HomeTabCount
 * and the class of its tab buttons in Button.
 *
 * The two bars share their vocabulary, so one template serves both; the few
 * differences (the extended bar scrolls, has no new-tab button of its own and offers
 * more menu commands) are decided at compile time.
 */
template <typename BarType>
class BarTabStrip final : public TabStrip
{
public:
    static constexpr bool IsExtended = std::is_base_of<BrowserTabBarEx, BarType>::value;

    /**
     * @param closedTabs the window's closed tabs, for the bar's recovery entry
     * @param signalLog  when given, writes down every signal of the bar; it watches
     *                   the bar before the strip connects, so each signal is logged
     *                   before those that answering it causes
     */
    explicit BarTabStrip(const ClosedTabStack *closedTabs, SignalLog *signalLog = nullptr, QObject *parent = nullptr)
        : TabStrip(parent)
        , m_widget(new QWidget)
        , m_bar(new BarType(closedTabs, m_widget))
    {
        if (signalLog)
            signalLog->Watch(m_bar, QFrame::staticMetaObject);
        m_widget->setObjectName(QStringLiteral("TabStripRow"));
        m_widget->setAttribute(Qt::WA_StyledBackground);
        auto *row = new QHBoxLayout(m_widget);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(0);
        row->addWidget(m_bar, 1);

        // The constructors leave these to the host: the menu asks the subclass's
        // policy, and dragging must stop at the home tab.
        m_bar->InitMenu();
        m_bar->SetFirstIndex(BarType::HomeTabCount);

        connect(m_bar, &BarType::currentChanged, this, &TabStrip::CurrentChanged);
        connect(m_bar, &BarType::tabCloseRequested, this, &TabStrip::CloseRequested);
        connect(m_bar, &BarType::SigAddNewTab, this, &TabStrip::NewTabRequested);
        connect(m_bar, &BarType::SigCloseOtherTab, this, &TabStrip::CloseOthersRequested);
        connect(m_bar, &BarType::SigCloseLeftTab, this, &TabStrip::CloseLeftRequested);
        connect(m_bar, &BarType::SigCloseRightTab, this, &TabStrip::CloseRightRequested);
        connect(m_bar, &BarType::SigRecoverRecentlyTab, this, &TabStrip::RecoverRequested);
        if constexpr (IsExtended)
            InitExtended(row);
    }

    ~BarTabStrip() override
    {
        delete m_widget.data();
    }

    Kind GetKind() const override { return IsExtended ? Kind::Extended : Kind::Classic; }
    QWidget *Widget() const override { return m_widget; }
    QWidget *Bar() const override { return m_bar; }
    int FixedTabCount() const override { return BarType::HomeTabCount; }
    QWidget *TabButton(int index) const override
    {
        const TabDataPtr tab = m_bar->GetTabData(index);
        if (!tab)
            return nullptr;
        // A removed tab's button lingers, hidden, until it is deleted later.
        const auto buttons = m_bar->template findChildren<typename BarType::Button *>();
        for (auto *button : buttons) {
            if (button->GetTabData() == tab && !button->isHidden())
                return button;
        }
        return nullptr;
    }

    int AddTab(TabDataPtr tab, const QString &iconPath, bool loading) override
    {
        return m_bar->addTab(tab, iconPath, loading);
    }
    int InsertTab(int index, TabDataPtr tab, const QString &iconPath, bool loading) override
    {
        return m_bar->insertTab(index, tab, iconPath, loading);
    }
    void RemoveTab(int index) override { m_bar->removeTab(index); }
    void SetCurrentIndex(int index) override { m_bar->setCurrentIndex(index); }
    int Count() const override { return m_bar->count(); }
    int CurrentIndex() const override { return m_bar->currentIndex(); }
    TabDataPtr TabAt(int index) const override { return m_bar->GetTabData(index); }
    int IndexOf(TabDataPtr tab) const override { return m_bar->GetIndexByTabData(tab); }
    void SetTabText(int index, const QString &text) override { m_bar->setTabText(index, text); }
    void SetTabIcon(int index, const QString &iconUrl) override { m_bar->setTabIcon(index, iconUrl); }
    void LoadStart(int index) override { m_bar->LoadStart(index); }
    void LoadFinished(int index) override { m_bar->LoadFinished(index); }
    void ShowIndex(int index) override
    {
        Q_UNUSED(index) // the classic bar never scrolls
        if constexpr (IsExtended)
            m_bar->showIndex(index);
    }
    void SetTabManager(ITabManager *manager) override { m_bar->SetTabManager(manager); }

private:
    void InitExtended(QHBoxLayout *row)
    {
        // The scrolling bar leaves the new-tab button to the host; announcing the click
        // through the bar's own SigAddNewTab keeps one path for "+" on both bars.
        auto *newTab = new QToolButton(m_widget);
        newTab->setObjectName(QStringLiteral("NewTabButton"));
        newTab->setIcon(QIcon(QStringLiteral(":/browser/icons/newtab.png")));
        newTab->setToolTip(tr("New tab (Ctrl+T)"));
        newTab->setFocusPolicy(Qt::NoFocus);
        newTab->setCursor(Qt::PointingHandCursor);
        row->addWidget(newTab, 0, Qt::AlignVCenter);
        connect(newTab, &QToolButton::clicked, m_bar, [bar = m_bar] { Q_EMIT bar->SigAddNewTab(); });

        connect(m_bar, &BarType::SigRefreshTab, this, &TabStrip::RefreshRequested);
        connect(m_bar, &BarType::SigReloadIconClicked, this, &TabStrip::RefreshRequested);
        connect(m_bar, &BarType::SigAddFav, this, &TabStrip::AddFavRequested);
        connect(m_bar, &BarType::SigCopyLink, this, &TabStrip::CopyLinkRequested);
        connect(m_bar, &BarType::SigOpenInBrowser, this, &TabStrip::OpenInBrowserRequested);
    }

    QPointer<QWidget> m_widget;
    BarType *m_bar;
};
