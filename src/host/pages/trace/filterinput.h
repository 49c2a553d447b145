// SPDX-License-Identifier: MIT
#pragma once

#include <trace/decoding/tracefilter.h>

#include <QCoreApplication>
#include <QString>

/*! A filter of traces as somebody types it. */
class FilterInput
{
    Q_DECLARE_TR_FUNCTIONS(FilterInput)

public:
    QString nodes;   //!< "2, 5-7"
    QString objects; //!< "6164h.2, 1018h"
    QString text;
    std::bitset<frameKinds> kinds; //!< none: all
    bool isWrongOnly = false;

    /*! Whether there is nothing in any field, right or wrong. */
    bool isEmpty() const;

    /*! Empty with a sentence when a field cannot be read. */
    std::optional<TraceFilter> parse(QString *problem) const;

private:
    bool parseNodes(TraceFilter *filter) const;
    bool parseObjects(TraceFilter *filter) const;
};
