// SPDX-License-Identifier: MIT
#pragma once

#include <QVBoxLayout>

/*! A column of a page. Parts that need more height when they are narrow, as wrapped texts, get it from the others and not
 *  from what is around the page: that would scroll it on small screens although its tables could be lower.
 */
class PageLayout : public QVBoxLayout
{
    Q_OBJECT

public:
    static constexpr int margin = 9; //!< pixels around it
    static constexpr int gap = 6;    //!< pixels between its parts

    using QVBoxLayout::QVBoxLayout;

    bool hasHeightForWidth() const override { return false; }
};
