// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

/*! A piece of a document that stays whole on a page; all lengths in one unit of the caller's. */
struct FlowPiece
{
    qreal height = 0;
    bool isSpace = false;       //!< falls away at the top of a page
    bool keepsWithNext = false; //!< a heading: never the last thing of a page
    /*! The piece before that is shown again above this one when it begins a page, below its own head; -1 for none. */
    int head = -1;
};

/*! Where a piece stands. */
struct PlacedPiece
{
    int piece = 0;
    int page = 0;
    qreal top = 0;
};

/*! Puts pieces below each other onto pages. A piece that is higher than a page has one of its own and hangs over, so that
 *  nothing is lost; whoever makes pieces keeps them lower.
 */
QVector<PlacedPiece> flowOntoPages(const QVector<FlowPiece> &pieces, qreal pageHeight);
