// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QWidget>

/**
 * Frameless base widget for the library's own windows (toasts, popups).
 * The window flags given are used with Qt::FramelessWindowHint added; the
 * widget paints its style-sheet background (Qt::WA_StyledBackground).
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelBaseWidget : public QWidget
{
    Q_OBJECT
public:
    /**
     * @param parent the parent widget, or null for a top-level window
     * @param flags  window flags; Qt::FramelessWindowHint is always added
     */
    explicit KelBaseWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    /** Nothing beyond QWidget's own clean-up. */
    ~KelBaseWidget() override;
};
