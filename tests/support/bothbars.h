// SPDX-License-Identifier: MIT
#pragma once

// For tests that hold for both tab strips: they are written once against
// BrowserTabBarBase and run, row by row, on the classic bar and on the scrolling bar.
// A data-driven test adds its rows through BothBars::ForEachBar() and makes its bar
// with BothBars::Make().

#include "browsertabbar.h"
#include "browsertabbarbase.h"
#include "browsertabbarex.h"
#include "browsertabbuttonbase.h"
#include "tabdata.h"
#include "tabrecord.h"

#include <QtTest>

#include <functional>
#include <initializer_list>
#include <utility>

namespace BothBars {

enum class Kind { Classic, Scrolling };

inline const char *Name(Kind kind)
{
    return kind == Kind::Classic ? "classic" : "scrolling";
}

inline BrowserTabBarBase *Make(Kind kind, QWidget *parent = nullptr)
{
    if (kind == Kind::Classic)
        return new BrowserTabBar(parent);
    return new BrowserTabBarEx(parent);
}

using KelTest::WebTab;

/** Adds @p count web tabs titled "t0", "t1", ... and returns their records. */
inline QList<TabDataPtr> Fill(BrowserTabBarBase &bar, int count)
{
    QList<TabDataPtr> tabs;
    for (int i = 0; i < count; ++i) {
        tabs << WebTab(QStringLiteral("t%1").arg(i));
        bar.addTab(tabs.last());
    }
    return tabs;
}

inline QStringList Titles(const BrowserTabBarBase &bar)
{
    QStringList titles;
    for (int i = 0; i < bar.count(); ++i)
        titles << bar.GetTabData(i)->GetTitle();
    return titles;
}

/**
 * Calls @p addRows once per bar with a row-name prefix ("classic: ", "scrolling: ")
 * and the bar's kind; rows are added as QTest::addRow("%sname", prefix). The test
 * declares its columns first, "bar" (a Kind) among them.
 */
inline void ForEachBar(const std::function<void(const char *prefix, Kind kind)> &addRows)
{
    addRows("classic: ", Kind::Classic);
    addRows("scrolling: ", Kind::Scrolling);
}

/**
 * The whole _data() of a test that runs once on each bar and needs nothing else: a
 * column "bar" and one row per bar, named "classic: @p name" and "scrolling: @p name".
 */
inline void AddRowPerBar(const char *name)
{
    QTest::addColumn<Kind>("bar");
    ForEachBar([name](const char *prefix, Kind kind) { QTest::addRow("%s%s", prefix, name) << kind; });
}

/**
 * The whole _data() of a test that runs on each bar with one value more: a column
 * "bar" and a column @p column, and for each bar one row per entry of @p rows (its
 * name and value), named "classic: name" and "scrolling: name".
 */
template <typename T>
inline void AddRowsPerBar(const char *column, std::initializer_list<std::pair<const char *, T>> rows)
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<T>(column);
    ForEachBar([rows](const char *prefix, Kind kind) {
        for (const auto &row : rows)
            QTest::addRow("%s%s", prefix, row.first) << kind << row.second;
    });
}

} // namespace BothBars

Q_DECLARE_METATYPE(BothBars::Kind)
