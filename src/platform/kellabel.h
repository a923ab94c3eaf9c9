// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QLabel>

/** The library's text label: a QLabel that always shows its text as plain text (tab titles come from web pages).
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelLabel : public QLabel
{
    Q_OBJECT
public:
    /** An empty label with Qt::PlainText as its text format. */
    explicit KelLabel(QWidget *parent = nullptr);
    /** Nothing beyond QLabel's own clean-up. */
    ~KelLabel() override;
};
