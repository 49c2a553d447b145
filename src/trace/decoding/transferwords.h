// SPDX-License-Identifier: MIT
#pragma once

#include "tracetext.h"
#include "valuetext.h"

#include <QCoreApplication>
#include <QString>

struct SdoTransfer;

/*! Whole SDO transfers in words, with outcome, duration and what was wrong with them. */
class TransferWords
{
    Q_DECLARE_TR_FUNCTIONS(TransferWords)

public:
    /*! Both must outlive it. */
    TransferWords(const ObjectBook *book, const ValueText *values)
        : m_book(book)
        , m_values(values)
    {
    }

    TraceText text(const SdoTransfer &transfer) const;

    /*! "6164h.2 Relative battery Wh capacity" */
    QString object(const SdoTransfer &transfer) const;
    /*! The value that was read or written, with its unit; empty where there is none. */
    QString value(const SdoTransfer &transfer) const;
    /*! Why there is no value, a sentence's end: "no answer"; empty where there is one. */
    static QString reason(const SdoTransfer &transfer);
    /*! What was wrong on the way, separated by semicolons; empty for nothing. */
    static QString problems(const SdoTransfer &transfer);
    /*! "2 frames, 0.9 ms" */
    static QString effort(const SdoTransfer &transfer);

private:
    QString action(const SdoTransfer &transfer) const;

    const ObjectBook *m_book;
    const ValueText *m_values;
};
