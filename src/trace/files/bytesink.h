// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

/*! Takes the bytes of a file. After a failure, errorString() has a sentence. */
class ByteSink
{
public:
    ByteSink() = default;
    virtual ~ByteSink() = default;
    Q_DISABLE_COPY(ByteSink)

    virtual bool write(const QByteArray &bytes) = 0;
    /*! Hands on what was written, so that it can be read whatever comes. */
    virtual bool flush() = 0;
    /*! Writes the end, and closes. */
    virtual bool finish() = 0;

    /*! Bytes that were handed on. */
    virtual qint64 size() const = 0;
    virtual QString errorString() const = 0;
};

/*! Keeps them in memory of somebody else's. */
class MemorySink : public ByteSink
{
public:
    explicit MemorySink(QByteArray *to)
        : m_to(to)
    {
    }

    bool write(const QByteArray &bytes) override;
    bool flush() override { return true; }
    bool finish() override { return true; }
    qint64 size() const override { return m_to->size(); }
    QString errorString() const override { return {}; }

private:
    QByteArray *m_to;
};
