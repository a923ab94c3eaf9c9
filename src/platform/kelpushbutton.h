// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QPushButton>

/**
 * A push button tagged for style sheets and usage reports.
 *
 * @p type selects a look family: it is exposed as the dynamic property "buttonType",
 * so a style sheet can write `KelPushButton[buttonType="1"]`. @p business is a free
 * tag of the host (for example which feature the button belongs to), exposed as the
 * property "business". Neither changes behaviour. The button takes no keyboard focus.
 */
class KELTABCONTAINER_EXPORT KelPushButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(int buttonType READ ButtonType CONSTANT)
    Q_PROPERTY(int business READ Business CONSTANT)
public:
    explicit KelPushButton(int type = 0, int business = 0, QWidget *parent = nullptr);
    ~KelPushButton() override;

    int ButtonType() const;
    int Business() const;

private:
    const int m_type;
    const int m_business;
};
