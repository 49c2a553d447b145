// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <canopen/pdomapping.h>

#include <QVector>

/*! What the frames of one PDO carry. */
struct PdoLayout
{
    struct Part
    {
        CanOpen::ObjectKey object;
        quint8 first = 0; //!< bit, from the lowest of the first byte
        quint8 bits = 0;
        bool isDummy = false; //!< only fills a place
    };

    quint8 nodeId = 0;      //!< whose PDO it is
    int number = 0;         //!< from 1
    bool isTransmit = true; //!< sent by the node; else taken by it
    int bytes = 0;          //!< that its parts need
    QVector<Part> parts;

    static PdoLayout of(quint8 nodeId, int number, bool isTransmit, const CanOpen::PdoMapping &mapping);

    bool contains(quint16 index, int subIndex) const; //!< \a subIndex -1: any
};
