// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QLabel>

/**
 * A one-line plain-text label that elides its text on the right to fit its width.
 *
 * FullText() keeps the text as given; text() is what is shown. The tool tip is the
 * one passed to setText(), never the elided text. In a layout the label asks for the
 * width of its whole text but accepts any width.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT ElidedLabelEx : public QLabel
{
    Q_OBJECT
public:
    /** An empty label showing plain text on one line. */
    explicit ElidedLabelEx(QWidget *parent = nullptr);
    /** Nothing beyond QLabel's own clean-up. */
    ~ElidedLabelEx() override;

    /** Shows @p text, elided on the right to the label's width, with @p toolTip as tool tip. */
    void setText(const QString &text, const QString &toolTip = QString());
    /** @return the text as last given to setText(), before elision. */
    QString FullText() const;

    /** Sets the font family; the pixel size is kept. */
    void SetFontFamily(const QString &family);
    /** Sets the font size in pixels; a value <= 0 is ignored. */
    void SetFontPixelSize(int pixelSize);

    /** Wide enough for the whole text, so that a layout gives it room to show it unelided. */
    QSize sizeHint() const override;
    /** No width of its own: in a layout the label may shrink to anything and elides to fit. */
    QSize minimumSizeHint() const override;

protected:
    /** Elides the text again for the new width. */
    void resizeEvent(QResizeEvent *event) override;
    /** Elides the text again after a font or style change. */
    void changeEvent(QEvent *event) override;

private:
    void UpdateElidedText();

    QString m_fullText;
};
