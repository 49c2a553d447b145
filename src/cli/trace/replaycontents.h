// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>

#include <QCoreApplication>
#include <QStringList>

#include <vector>

/*! What the frames of a trace can do to devices when they are sent again. */
class ReplayContents
{
    Q_DECLARE_TR_FUNCTIONS(ReplayContents)

public:
    explicit ReplayContents(const std::vector<TraceFrame> &frames);

    /*! What acts on devices, with its number each: "NMT commands: 3". By the predefined connection set (CiA 301). */
    QStringList acting() const;

private:
    void count(const TraceFrame &frame);

    quint64 m_commands = 0;
    quint64 m_syncs = 0;
    quint64 m_processData = 0;
    quint64 m_writings = 0;
    quint64 m_others = 0;
};
