// SPDX-License-Identifier: MIT
#pragma once

#include "bytesource.h"

#include <array>

/*! What a compressed source holds; the base of the kinds of compression.
 *
 *  Memory is bounded by nature. Time is too: what unpacks to very much more than it is, as nothing that was recorded does,
 *  ends with a failure.
 */
class Unpacking : public ByteSource
{
public:
    /*! Above \a harmless bytes no more than so many for each packed one. */
    static constexpr qint64 largestRatio = 500;
    static constexpr qint64 harmless = qint64(64) * 1024 * 1024;

    explicit Unpacking(std::unique_ptr<ByteSource> packed)
        : m_packed(std::move(packed))
    {
    }

    qint64 read(char *to, qint64 most) final;

protected:
    enum class Result : quint8 {
        Going,
        Complete, //!< what was packed is over; more may follow
        Broken
    };

    struct Step
    {
        Result result = Result::Going;
        qint64 used = 0; //!< packed bytes
        qint64 made = 0; //!< bytes
    };

    /*! Unpacks from \a packed, which may be empty, as far as there is room. */
    virtual Step unpack(const char *packed, qint64 count, char *to, qint64 most) = 0;
    /*! Gets ready for more after Complete; false when it cannot. */
    virtual bool restart() = 0;

private:
    enum class Filled : quint8 { Yes, End, Failed };

    Filled fill();
    qint64 end();
    qint64 broken();

    std::unique_ptr<ByteSource> m_packed;
    std::array<char, std::size_t(64) * 1024> m_room{};
    qint64 m_position = 0;
    qint64 m_filled = 0;
    qint64 m_used = 0;
    qint64 m_made = 0;
    bool m_isComplete = false;  // before anything of what follows was unpacked
    bool m_mayHoldMore = false; // there was no room for all that was made
    bool m_hasEnded = false;
};
