// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/*! One row of a detail table. */
struct DetailRow
{
    QString name;                                        //!< column 0: what the value is
    QString text;                                        //!< column 1: the value in words
    QString toolTip = QString();                         //!< of both cells; empty for none
    std::optional<Qt::GlobalColor> color = std::nullopt; //!< of the text; without it the table's own
};
