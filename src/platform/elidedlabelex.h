#pragma once

#include "keltabcontainer_export.h"

#include <QLabel>

/**
 * A one-line plain-text label that elides its text on the right to fit its width.
 *
 * FullText() keeps the text as given; text() is what is shown. The tool tip is the
 * one passed to setText(), never the elided text.
 */
class KELTABCONTAINER_EXPORT ElidedLabelEx : public QLabel
{
    Q_OBJECT
public:
    explicit ElidedLabelEx(QWidget *parent = nullptr);
    ~ElidedLabelEx() override;

    /** Shows @p text, elided on the right to the label's width, with @p toolTip as tool tip. */
    void setText(const QString &text, const QString &toolTip = QString());
    /** @return the text as last given to setText(), before elision. */
    QString FullText() const;

    /** Sets the font family; the pixel size is kept. */
    void SetFontFamily(const QString &family);
    /** Sets the font size in pixels; a value <= 0 is ignored. */
    void SetFontPixelSize(int pixelSize);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void UpdateElidedText();

    QString m_fullText;
};
