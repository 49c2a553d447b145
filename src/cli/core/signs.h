// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/findings.h>

#include <QString>

/*! How the state of a component and the severity of a finding are shown: a shape with a colour on a terminal that can
 *  show them, a word everywhere else.
 */
class Signs
{
public:
    enum class Style : quint8 { Words, Shapes, ColouredShapes };

    /*! What standard output can show; NO_COLOR is obeyed. */
    static Style detectStyle();

    explicit Signs(Style style)
        : m_style(style)
    {
    }

    /*! "✖ " or "fault: " */
    QString of(ComponentState state) const;
    QString of(Severity severity) const;

private:
    Style m_style;
};
