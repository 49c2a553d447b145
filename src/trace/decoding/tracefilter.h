// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <live/core/liveframe.h>

#include <QString>
#include <QVector>

#include <bitset>
#include <optional>

struct FrameSort;
struct PdoLayout;

/*! Which lines of a trace somebody wants to see: those that fit all that is set. */
struct TraceFilter
{
    struct Object
    {
        quint16 index = 0;
        int subIndex = -1; //!< -1: all
    };

    std::bitset<128> nodes;        //!< of these nodes; none: of all
    std::bitset<frameKinds> kinds; //!< by FrameKind; none: all
    QVector<Object> objects;       //!< that carry one of these; empty: all
    QString text;                  //!< whose words hold it, in capitals or not; empty: all
    std::optional<quint8> channel; //!< empty: all
    bool isWrongOnly = false;      //!< warnings and faults

    bool isEmpty() const;

    /*! All but objects and text, which cost more. An NMT command to all nodes is for each of them. */
    bool fits(const FrameSort &sort, quint8 ofChannel) const;
    bool fitsObject(CanOpen::ObjectKey object) const;
    /*! Of a frame; null: its mapping is not known, so it carries nothing. */
    bool fitsObjects(const PdoLayout *layout) const;
    bool fitsText(const QString &words) const;
};
