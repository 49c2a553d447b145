// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/comparison.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/*! What has changed between two snapshots, for people and for programs. */
class ComparisonListing
{
    Q_DECLARE_TR_FUNCTIONS(ComparisonListing)

public:
    /*! A sentence for each change as ChangeSummary has them, and how many there are. */
    static QString toText(const Comparison &comparison);

    /*! An object with "same" and "changes", with a line end. What a change does not have is left out. */
    static QByteArray toJson(const Comparison &comparison);

    /*! "added", "parameter": for programs. */
    static QString word(Change::Kind kind);
};
