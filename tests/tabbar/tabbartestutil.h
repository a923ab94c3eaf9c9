// SPDX-License-Identifier: MIT
#pragma once

// Helpers shared by the classic tab strip's tests.

#include "browsertabbar.h"
#include "browsertabbutton.h"
#include "dpitool.h"
#include "kelpushbuttonhover.h"
#include "tabdata.h"
#include "tabrecord.h"
#include "vosimagecache.h"

#include <QFrame>
#include <QGuiApplication>
#include <QtTest>
#include <QHash>
#include <QTemporaryDir>
#include <QTimer>
#include <QVector>

namespace ClassicTest {

inline TabDataPtr MakeTab(const QString &title, TabData::TabType type = TabData::TabTypeWeb,
                          const QString &data = QString())
{
    return KelTest::MakeTab(type, title, data);
}

/** A bar whose policy the tests set, with the protected operations re-exported. */
class TestBar : public BrowserTabBar
{
public:
    explicit TestBar(QWidget *parent = nullptr)
        : BrowserTabBar(parent)
    {
    }

    using BrowserTabBar::ButtonBgBuildCount;

    int fixedCount = 0;
    int fixedWidth = 0;
    CloseActiveType closeType = CloseActiveNext;
    bool doubleClose = true;
    bool showRecovery = false;
    bool recoveryEnabled = false;
    int movedCalls = 0;
    QString pluginIcon;

protected:
    int FixedTabCount() override { return fixedCount; }
    int FixedTabTotalWidth() override { return fixedWidth; }
    CloseActiveType GetCloseType() override { return closeType; }
    bool IsDoubleCloseTab() const override { return doubleClose; }
    bool IsShowRecoveryItem() override { return showRecovery; }
    bool CheckRecoveryItem() override { return recoveryEnabled; }
    void TabButtonMoved() override { ++movedCalls; }
    QString GetPluginIconUrl(const QString &) override { return pluginIcon; }
};

/** The strip that holds the tab buttons. */
inline QFrame *Content(BrowserTabBar *bar)
{
    const auto frames = bar->findChildren<QFrame *>(QString(), Qt::FindDirectChildrenOnly);
    for (QFrame *frame : frames) {
        if (!qobject_cast<BrowserTabButton *>(frame) && frame->objectName().isEmpty())
            return frame;
    }
    return nullptr;
}

inline KelPushButtonHover *NewTabButton(BrowserTabBar *bar)
{
    return bar->findChild<KelPushButtonHover *>(QStringLiteral("TabBarNewTabButton"));
}

inline QTimer *RelayoutTimer(BrowserTabBar *bar)
{
    return bar->findChild<QTimer *>(QStringLiteral("TabBarDelayTimer"), Qt::FindDirectChildrenOnly);
}

/**
 * The bar's buttons in tab order. Removed buttons wait hidden for their deferred
 * deletion, so only shown ones count; each is matched to its tab by record identity.
 */
inline QVector<BrowserTabButton *> Buttons(BrowserTabBar *bar)
{
    QHash<const TabData *, BrowserTabButton *> byRecord;
    const auto all = bar->findChildren<BrowserTabButton *>();
    for (BrowserTabButton *button : all) {
        if (!button->isHidden())
            byRecord.insert(button->GetTabData().data(), button);
    }
    QVector<BrowserTabButton *> result;
    for (int i = 0; i < bar->count(); ++i)
        result.append(byRecord.value(bar->GetTabData(i).data()));
    return result;
}

inline BrowserTabButton *ButtonAt(BrowserTabBar *bar, int index)
{
    const auto buttons = Buttons(bar);
    return index >= 0 && index < buttons.size() ? buttons.at(index) : nullptr;
}

inline QList<int> Widths(BrowserTabBar *bar)
{
    QList<int> widths;
    for (BrowserTabButton *button : Buttons(bar))
        widths << button->width();
    return widths;
}

inline QList<int> Xs(BrowserTabBar *bar)
{
    QList<int> xs;
    for (BrowserTabButton *button : Buttons(bar))
        xs << KelTest::LogicalX(button);
    return xs;
}

inline int S(int value)
{
    return DpiTool::ScaleDefault(value);
}

/** Gives each test its own icon cache folder and resets the scale. */
class Environment
{
public:
    Environment()
    {
        DpiTool::SetScaleFactor(1.0);
        VosImageCache::Instance()->SetCacheDirectory(m_dir.path());
    }
    ~Environment()
    {
        VosImageCache::ReleaseInstance();
        DpiTool::SetScaleFactor(1.0);
    }
    QString Path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

/**
 * Announces the warnings the offscreen platform prints whenever a popup (the move
 * proxy, a menu) opens; real window systems print none.
 */
inline void ExpectPopupWarnings()
{
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        return;
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
}

/** Runs the deferred deletions of removed tab buttons. */
inline void FlushDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace ClassicTest
