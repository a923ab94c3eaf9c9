// SPDX-License-Identifier: MIT
#include "tabmask.h"

#include <QEvent>
#include <QGridLayout>
#include <QPainter>

TabMask::TabMask(QWidget *parent)
    : QWidget(parent)
    , m_layout(new QGridLayout(this))
{
    setObjectName(QStringLiteral("TabMask"));
    m_layout->setContentsMargins(0, 0, 0, 0);
    setAttribute(Qt::WA_TransparentForMouseEvents, true);
    if (parent) {
        setGeometry(parent->rect());
        parent->installEventFilter(this);
    }
}

TabMask::~TabMask() = default;

void TabMask::SetMaskWidget(QWidget *widget, bool blockInput, bool dimmed, Qt::Alignment alignment)
{
    if (m_widget && m_widget != widget) {
        m_layout->removeWidget(m_widget);
        // Deleted later, as the caller may be inside one of its slots; hidden now, so that
        // it is never painted next to its successor.
        m_widget->hide();
        m_widget->deleteLater();
        m_widget = nullptr;
    }
    if (widget) {
        if (widget != m_widget)
            m_layout->addWidget(widget, 0, 0, alignment);
        else
            m_layout->setAlignment(widget, alignment);
        widget->show();
    }
    m_widget = widget;
    m_dimmed = dimmed;
    // Without blocking, the mask and, as Qt skips a mouse-transparent widget's children
    // when it picks the receiver, the widget in it let every event through to the page.
    setAttribute(Qt::WA_TransparentForMouseEvents, !blockInput);
    update();
}

QWidget *TabMask::MaskWidget() const
{
    return m_widget;
}

bool TabMask::IsBlockingInput() const
{
    return !testAttribute(Qt::WA_TransparentForMouseEvents);
}

bool TabMask::IsDimmed() const
{
    return m_dimmed;
}

bool TabMask::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void TabMask::paintEvent(QPaintEvent *)
{
    if (!m_dimmed)
        return;
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0, 0, 0, 96));
}
