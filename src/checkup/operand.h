// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <cmath>

/*! What an expression comes to: a number (0 is false, anything else true), or the reason why there is none. */
struct Operand
{
    enum class Kind : quint8 {
        Number,
        Absent, //!< the device does not have what is spoken of, so that nothing can be said about it
        Unknown //!< the device may have it, but it was not read; or it cannot be calculated
    };

    Kind kind = Kind::Absent;
    double number = 0;

    static constexpr Operand of(double number) { return {Kind::Number, number}; }
    static constexpr Operand absent() { return {Kind::Absent, 0}; }
    static constexpr Operand unknown() { return {Kind::Unknown, 0}; }
    static constexpr Operand truth(bool isTrue) { return of(isTrue ? 1 : 0); }

    bool isNumber() const { return kind == Kind::Number; }
    bool isUnknown() const { return kind == Kind::Unknown; }
    bool isTrue() const { return isNumber() && std::fpclassify(number) != FP_ZERO; }
    bool isFalse() const { return isNumber() && !isTrue(); }
};
