#pragma once

#include <KelTabContainer/tabdata.h>

#include <QObject>
#include <QPoint>

class ITabManager;
class QWidget;

/**
 * The window's view of a tab strip, whichever of the library's two bars it is.
 *
 * Both bars speak the same language (addTab, removeTab, currentChanged, the Sig...
 * commands); this interface is that language, so the window is written once. The
 * extended bar's extra commands (refresh, favourite, copy link, open in browser)
 * simply never come from the classic bar.
 */
class TabStrip : public QObject
{
    Q_OBJECT
public:
    enum class Kind { Extended, Classic };

    ~TabStrip() override;

    virtual Kind GetKind() const = 0;
    /** What the window lays out: the bar and whatever the strip puts beside it. */
    virtual QWidget *Widget() const = 0;
    /** The library's bar itself, for logs and the scripted tour. */
    virtual QWidget *Bar() const = 0;
    /** The button that shows the tab at @p index, null when none does (for the scripted tour). */
    virtual QWidget *TabButton(int index) const = 0;
    /** Tabs below this index are fixed (the home tab). */
    virtual int FixedTabCount() const = 0;

    virtual int AddTab(TabDataPtr tab, const QString &iconPath, bool loading) = 0;
    virtual int InsertTab(int index, TabDataPtr tab, const QString &iconPath, bool loading) = 0;
    virtual void RemoveTab(int index) = 0;
    virtual void SetCurrentIndex(int index) = 0;
    virtual int Count() const = 0;
    virtual int CurrentIndex() const = 0;
    virtual TabDataPtr TabAt(int index) const = 0;
    virtual int IndexOf(TabDataPtr tab) const = 0;
    virtual void SetTabText(int index, const QString &text) = 0;
    virtual void SetTabIcon(int index, const QString &iconUrl) = 0;
    virtual void LoadStart(int index) = 0;
    virtual void LoadFinished(int index) = 0;
    /** Brings the tab into view where the bar scrolls; nothing otherwise. */
    virtual void ShowIndex(int index) = 0;
    virtual void SetTabManager(ITabManager *manager) = 0;

Q_SIGNALS:
    void CurrentChanged(int index);
    void CloseRequested(int index);
    void NewTabRequested();
    void RefreshRequested(int index);
    void AddFavRequested(int index, QPoint globalPos);
    void CopyLinkRequested(int index);
    void OpenInBrowserRequested(int index);
    void CloseOthersRequested(int index);
    void CloseLeftRequested(int index);
    void CloseRightRequested(int index);
    void RecoverRequested();

protected:
    explicit TabStrip(QObject *parent = nullptr);
};
