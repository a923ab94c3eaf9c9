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
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelPushButton : public QPushButton
{
    Q_OBJECT
    /** The look family given to the constructor, for style sheets (`KelPushButton[buttonType="1"]`). */
    Q_PROPERTY(int buttonType READ ButtonType CONSTANT)
    /** The host's tag given to the constructor. */
    Q_PROPERTY(int business READ Business CONSTANT)
public:
    /**
     * @param type     the look family, exposed as the property "buttonType"
     * @param business the host's free tag, exposed as the property "business"
     * @param parent   the parent widget
     */
    explicit KelPushButton(int type = 0, int business = 0, QWidget *parent = nullptr);
    /** Nothing beyond QPushButton's own clean-up. */
    ~KelPushButton() override;

    /** @return the look family given to the constructor. */
    int ButtonType() const;
    /** @return the host's tag given to the constructor. */
    int Business() const;

private:
    const int m_type;
    const int m_business;
};
