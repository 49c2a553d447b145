// SPDX-License-Identifier: MIT
#pragma once

#include "comparison.h"

#include <QCoreApplication>

/*! Changes as people want them: what has one cause is one line. */
class ChangeSummary
{
    Q_DECLARE_TR_FUNCTIONS(ChangeSummary)

public:
    /*! The same changes in the same order, but the values of one device that were not read for one reason are one change
     *  (Change::Kind::Gap without a key, Change::count of them), in the place of the first: "Not read any more: 203 values
     *  of Gateway (node 14). The device did not answer." Likewise those that could not be read before. Everything else
     *  stands as it is. To be shown; programs take the comparison itself.
     */
    static Comparison forPeople(const Comparison &comparison);

private:
    static void describe(Change *change);
};
