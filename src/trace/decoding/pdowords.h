// SPDX-License-Identifier: MIT
#pragma once

#include "valuetext.h"

#include <canopen/objectkey.h>

#include <QCoreApplication>
#include <QHash>
#include <QString>

struct PdoLayout;
struct TraceFrame;

/*! PDOs with the values of their mapping. */
class PdoWords
{
    Q_DECLARE_TR_FUNCTIONS(PdoWords)

public:
    /*! Both must outlive it. */
    PdoWords(const ObjectBook *book, const ValueText *values)
        : m_book(book)
        , m_values(values)
    {
    }

    /*! "PDO 1: Battery current = 6.20 A, Battery voltage = 39.30 V" */
    QString line(const TraceFrame &frame, const PdoLayout &layout) const;

    /*! "Battery current = 6.20 A"; of what lies behind the frame's end that it is missing. */
    QString part(const TraceFrame &frame, const PdoLayout &layout, int position) const;

    /*! Makes all words anew: the language is another one. */
    void forget() { m_words.clear(); }

private:
    struct Piece // what the words of a part are made of
    {
        quint64 value;
        quint32 object;
        quint8 nodeId;
        quint8 bits;

        friend bool operator==(const Piece &a, const Piece &b)
        {
            return a.value == b.value && a.object == b.object && a.nodeId == b.nodeId && a.bits == b.bits;
        }
        friend uint qHash(const Piece &piece, uint seed)
        {
            constexpr quint64 odd = 0x9E3779B97F4A7C15; // spreads what is near together
            return ::qHash(piece.value * odd ^ quint64(piece.object) << 16 ^ piece.nodeId, seed);
        }
    };

    void forgetOld() const;
    QString words(const TraceFrame &frame, quint8 nodeId, CanOpen::ObjectKey object, int first,
                  int bits) const;
    QString makeWords(quint8 nodeId, CanOpen::ObjectKey object, quint64 value, int bits) const;
    QString nameOf(quint8 nodeId, CanOpen::ObjectKey object) const;

    const ObjectBook *m_book;
    const ValueText *m_values;
    mutable QHash<Piece, QString> m_words; // devices say the same again and again; bounded
    mutable int m_known = 0;               // revision of the book by which they were made
};
