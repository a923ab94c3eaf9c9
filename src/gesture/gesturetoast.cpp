// SPDX-License-Identifier: MIT
#include "gesturetoast.h"

#include "dpitool.h"
#include "windowsystem_p.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMetaObject>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace {

// A tool window where the client places its windows itself. A Wayland compositor
// places a window only relative to its parent, and only a popup at a point the
// client asks for: there the toast is a tooltip-like popup of the browser window.
Qt::WindowFlags ToastWindowFlags()
{
    if (WindowSystem::IsWayland())
        return Qt::ToolTip | Qt::FramelessWindowHint;
    return Qt::Tool | Qt::FramelessWindowHint | Qt::CustomizeWindowHint;
}

} // namespace

GestureToast::GestureToast(QWidget *parent)
    : KelBaseWidget(parent, ToastWindowFlags())
    , IDpiAdapter()
{
    // Shown while the user draws in the browser window: it must not take the window's
    // activation or its keyboard focus away.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    SetupUi();
    // The style sheet paints a rounded panel; the corners outside it stay see-through.
    setAttribute(Qt::WA_TranslucentBackground, true);
    AdjustForDpi();
}

GestureToast::~GestureToast() = default;

void GestureToast::SetupUi()
{
    // Built the way a designer form would be, so that a host's style sheets written
    // against the form's names keep applying.
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("GestureToast"));
    resize(180, 90);
    setWindowTitle(QStringLiteral("GestureToast"));
    m_layout = new QHBoxLayout(this);
    m_layout->setSpacing(8);
    m_layout->setContentsMargins(11, 11, 11, 11);
    m_layout->setObjectName(QStringLiteral("horizontalLayout"));
    m_layout->setContentsMargins(12, 12, 12, 12);
    m_label = new QLabel(this);
    m_label->setObjectName(QStringLiteral("text_label"));
    m_label->setAlignment(Qt::AlignCenter);
    m_layout->addWidget(m_label);
    QMetaObject::connectSlotsByName(this);
}

void GestureToast::SetText(const QString &text)
{
    m_label->setText(text);
}

QString GestureToast::Text() const
{
    return m_label->text();
}

void GestureToast::AdjustForDpi()
{
    setFixedSize(DpiTool::ScaleDefault(200), DpiTool::ScaleDefault(90));
    const int margin = DpiTool::ScaleDefault(12);
    m_layout->setContentsMargins(margin, margin, margin, margin);
    m_layout->setSpacing(DpiTool::ScaleDefault(8));
}

void GestureToast::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
