// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLineEdit;
class QToolButton;

/**
 * The row under the tab strip: back, forward, reload, home, the address field, the
 * find field (shown on demand) and the bookmark star. It only shows state and
 * reports clicks; the window decides what they do.
 */
class NavigationBar : public QWidget
{
    Q_OBJECT
public:
    explicit NavigationBar(QWidget *parent = nullptr);
    ~NavigationBar() override;

    /** Shows @p url in the address field, unless the user is typing in it. */
    void SetAddress(const QString &url);
    void SetNavigationState(bool canGoBack, bool canGoForward, bool canReload);
    void SetFavourite(bool favourite);
    /** Puts the keyboard focus into the address field and selects it. */
    void FocusAddress();
    /** Shows the find field and gives it the focus. */
    void ShowFind();
    /** Re-applies the sizes that follow the DPI factor. */
    void AdjustForDpi();

Q_SIGNALS:
    void SigBack();
    void SigForward();
    void SigReload();
    void SigHome();
    void SigFavourite();
    void SigAddressEntered(const QString &text);
    void SigFind(const QString &text);

private:
    QToolButton *MakeButton(const QString &name, const QString &icon, const QString &label, const QString &toolTip);

    QToolButton *m_back = nullptr;
    QToolButton *m_forward = nullptr;
    QToolButton *m_reload = nullptr;
    QToolButton *m_home = nullptr;
    QToolButton *m_star = nullptr;
    QLineEdit *m_address = nullptr;
    QLineEdit *m_find = nullptr;
};
