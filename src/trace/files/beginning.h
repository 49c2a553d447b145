// SPDX-License-Identifier: MIT
#pragma once

#include "bytesource.h"
#include "traceformat.h"

#include <memory>
#include <optional>

/*! The first bytes of a source, which tell what it holds. */
class Beginning
{
public:
    explicit Beginning(std::unique_ptr<ByteSource> source)
        : m_source(std::move(source))
    {
    }

    /*! What of the first four bytes there is. */
    QByteArray magic();
    Compression compression();

    /*! The format of a text, from its lines; empty when it is none that is known, or no text. Reads no more lines than it
     *  needs.
     */
    std::optional<TraceFormat> textFormat();
    /*! Whether there is nothing but blanks; to be asked after textFormat(). */
    bool isBlank() const { return m_bytes.trimmed().isEmpty(); }

    /*! Why the source cannot be read; empty as long as it can. */
    QString errorString() const { return m_source->errorString(); }

    /*! All bytes once more, the first ones too. To be called once, at last. */
    std::unique_ptr<ByteSource> takeAll();

private:
    bool readMore();
    int endOfLine(int at);
    void dropByteOrderMark();

    std::unique_ptr<ByteSource> m_source;
    QByteArray m_bytes;
    bool m_hasEnded = false;
};
