// SPDX-License-Identifier: MIT
#pragma once

#include "objectbook.h"

#include <trace/transfers/sdostep.h>

#include <QCoreApplication>
#include <QString>
#include <QVector>

class PdoWords;
class ValueText;
struct PdoLayout;
struct TraceFrame;

/*! Some bytes of a frame and what they mean. */
struct FramePart
{
    int first = 0; //!< byte, from 0
    int count = 0; //!< bytes; parts of a PDO may share some
    QString text;
};

/*! What a frame is taken for. */
struct FrameContext
{
    SdoStep step = SdoStep::None;      //!< of a frame of a transfer; Stray and None: of none
    const PdoLayout *layout = nullptr; //!< of a PDO whose mapping is known
};

/*! A frame byte by byte in words. */
class FrameParts
{
    Q_DECLARE_TR_FUNCTIONS(FrameParts)

public:
    /*! All must outlive it. */
    FrameParts(const ObjectBook *book, const ValueText *values, const PdoWords *pdos)
        : m_book(book)
        , m_values(values)
        , m_pdos(pdos)
    {
    }

    /*! In the order of the bytes; together they name every byte. Empty for a frame without any. */
    QVector<FramePart> of(const TraceFrame &frame, const FrameContext &context) const;

private:
    QVector<FramePart> ofPdo(const TraceFrame &frame, const PdoLayout &layout) const;
    QVector<FramePart> ofSdo(const TraceFrame &frame, SdoStep step) const;
    QVector<FramePart> ofInitiate(const TraceFrame &frame, SdoStep step) const;
    QString lastBytes(const TraceFrame &frame, SdoStep step) const;
    static QVector<FramePart> ofSegment(const TraceFrame &frame, SdoStep step);
    static QVector<FramePart> ofToggle(const TraceFrame &frame, SdoStep step);
    static QVector<FramePart> ofBlockSegment(const TraceFrame &frame);
    static QVector<FramePart> ofAcknowledge(const TraceFrame &frame);
    static QVector<FramePart> ofBlockEnd(const TraceFrame &frame);
    static QVector<FramePart> ofNmt(const TraceFrame &frame);
    static QVector<FramePart> ofTime(const TraceFrame &frame);
    static QVector<FramePart> ofEmergency(const TraceFrame &frame);
    static QVector<FramePart> ofError(const TraceFrame &frame);
    static QVector<FramePart> single(const TraceFrame &frame);

    const ObjectBook *m_book;
    const ValueText *m_values;
    const PdoWords *m_pdos;
};
