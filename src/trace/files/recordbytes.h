// SPDX-License-Identifier: MIT
#pragma once

#include "bytesource.h"

#include <memory>
#include <vector>

/*! Cuts a source into records whose length is known before they are read. */
class RecordBytes
{
public:
    /*! The longest record that is given; longer ones can only be skipped. */
    static constexpr size_t longest = size_t(256) * 1024;

    explicit RecordBytes(std::unique_ptr<ByteSource> source);

    /*! The next \a count bytes, which stay until the next call; null when there are not so many. */
    const uchar *take(size_t count);
    /*! The same, and they stay to be taken. */
    const uchar *peek(size_t count);
    /*! Passes over \a count bytes; false when there are not so many. */
    bool skip(quint64 count);

    /*! Whether nothing stands behind what was taken. */
    bool isAtEnd();
    /*! A sentence; empty when the source has not failed. */
    QString errorString() const { return m_source->errorString(); }

private:
    bool fill();

    std::unique_ptr<ByteSource> m_source;
    std::vector<uchar> m_room;
    size_t m_position = 0;
    size_t m_filled = 0;
    bool m_hasEnded = false;
};
