// SPDX-License-Identifier: MIT
#include "elidedlabelex.h"

#include <QEvent>
#include <QFontMetrics>

ElidedLabelEx::ElidedLabelEx(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(false);
}

ElidedLabelEx::~ElidedLabelEx() = default;

void ElidedLabelEx::setText(const QString &text, const QString &toolTip)
{
    m_fullText = text;
    setToolTip(toolTip);
    UpdateElidedText();
    // The size hint follows the full text, which the shown text may not reflect.
    updateGeometry();
}

QString ElidedLabelEx::FullText() const
{
    return m_fullText;
}

void ElidedLabelEx::SetFontFamily(const QString &family)
{
    QFont f = font();
    if (f.family() == family)
        return;
    f.setFamily(family);
    setFont(f);
}

void ElidedLabelEx::SetFontPixelSize(int pixelSize)
{
    if (pixelSize <= 0)
        return;
    QFont f = font();
    if (f.pixelSize() == pixelSize)
        return;
    f.setPixelSize(pixelSize);
    setFont(f);
}

QSize ElidedLabelEx::sizeHint() const
{
    // QLabel measures the shown text; once elided, a layout would never give the
    // label its room back. Measure the full text instead.
    QSize hint = QLabel::sizeHint();
    const int chrome = width() - contentsRect().width() + 2 * margin();
    hint.setWidth(chrome + fontMetrics().horizontalAdvance(m_fullText));
    return hint;
}

QSize ElidedLabelEx::minimumSizeHint() const
{
    // A plain QLabel's minimum is its whole text, which would keep a layout from
    // ever making the label narrow enough to elide.
    QSize hint = QLabel::minimumSizeHint();
    hint.setWidth(width() - contentsRect().width() + 2 * margin());
    return hint;
}

void ElidedLabelEx::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    UpdateElidedText();
}

void ElidedLabelEx::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        UpdateElidedText();
}

void ElidedLabelEx::UpdateElidedText()
{
    const int available = contentsRect().width() - 2 * margin();
    const QString shown = fontMetrics().elidedText(m_fullText, Qt::ElideRight, qMax(0, available));
    if (shown != text())
        QLabel::setText(shown);
}
