// SPDX-License-Identifier: MIT
#pragma once

#include "idpiadapter.h"
#include "kelbasewidget.h"
#include "keltabcontainer_export.h"

class QHBoxLayout;
class QLabel;

/**
 * The floating window that names the action of a mouse gesture while it is drawn.
 *
 * A frameless, translucent tool window of 200 x 90 logical pixels (scaled with
 * DpiTool, again whenever the factor changes) holding one centred label. It never
 * takes the activation or the keyboard focus. On Wayland, where a client cannot
 * place a top-level window, it is a tooltip-like popup of the window the stroke is
 * drawn in (BrowserGestureHandler makes it so), placed relative to that window. Its look
 * comes from style sheets: the window is "GestureToast", the label "text_label";
 * the library's default is in KelTabStyle::DefaultStyleSheet().
 *
 * @ingroup gestures
 */
class KELTABCONTAINER_EXPORT GestureToast : public KelBaseWidget, public IDpiAdapter
{
    Q_OBJECT
public:
    /** A hidden toast with an empty label, sized for the present scale factor. */
    explicit GestureToast(QWidget *parent = nullptr);
    /** Nothing beyond the widget's own clean-up; BrowserGestureHandler deletes its toast. */
    ~GestureToast() override;

    /** Shows @p text in the label. */
    void SetText(const QString &text);
    /** @return the text shown. */
    QString Text() const;

    /** Re-applies the size, margins and spacing for the new DPI factor. */
    void AdjustForDpi() override;

protected:
    /**
     * Draws the style sheet's panel. A translucent window gets no background from
     * Qt (WA_TranslucentBackground implies WA_NoSystemBackground), so without this the
     * toast would show its text on nothing.
     */
    void paintEvent(QPaintEvent *event) override;

private:
    void SetupUi();

    QHBoxLayout *m_layout = nullptr;
    QLabel *m_label = nullptr;
};
