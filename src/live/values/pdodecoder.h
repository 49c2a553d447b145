// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>

#include <QByteArray>

#include <optional>

/*! How the bits of one mapped object become a number. */
class PdoDecoder
{
public:
    enum class Kind : quint8 { Unsigned, Signed, Real32, Real64 };

    /*! Bits \a first to \a first + \a bits - 1 of a frame; they have to be within 64. */
    PdoDecoder(int first, int bits, std::optional<CanOpen::DataType> type);

    /*! The bytes of a frame, the first one lowest; those beyond eight do not count. */
    static quint64 bitsOf(const QByteArray &payload);

    /*! The number in its raw unit. Empty for what no number is (REAL: not finite). */
    std::optional<double> numberIn(quint64 frame) const;

    /*! Whether the object is a number at all. */
    static bool isNumber(std::optional<CanOpen::DataType> type);

private:
    Kind m_kind;
    quint8 m_first;
    quint8 m_bits;
};
