// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <utility>

/*! Bytes of a file, of what a compressed file holds, of a pipe, of memory; forward only. */
class ByteSource
{
public:
    ByteSource() = default;
    virtual ~ByteSource() = default;
    Q_DISABLE_COPY(ByteSource)

    /*! Reads up to \a most bytes (at least one): as many as there are without waiting for more, so that what comes out of
     *  a pipe is read as it comes. 0: the end; -1: failure, see errorString().
     */
    virtual qint64 read(char *to, qint64 most) = 0;

    /*! How many bytes there are in all; 0 when nobody knows. */
    virtual qint64 size() const { return 0; }

    /*! A sentence; empty as long as nothing has failed. */
    virtual QString errorString() const { return m_error; }

protected:
    /*! Keeps the sentence; returns -1. */
    qint64 fail(const QString &sentence);

private:
    QString m_error;
};

/*! Bytes that are in memory. */
class MemoryBytes : public ByteSource
{
public:
    explicit MemoryBytes(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
    }

    qint64 read(char *to, qint64 most) override;
    qint64 size() const override { return m_bytes.size(); }

private:
    QByteArray m_bytes;
    int m_position = 0;
};

/*! Bytes that were read already, and then those of the source that they were read from. */
class PrefixedBytes : public ByteSource
{
public:
    PrefixedBytes(const QByteArray &prefix, std::unique_ptr<ByteSource> rest)
        : m_prefix(prefix)
        , m_rest(std::move(rest))
    {
    }

    qint64 read(char *to, qint64 most) override;
    qint64 size() const override { return m_rest->size(); }
    QString errorString() const override { return m_rest->errorString(); }

private:
    qint64 readPrefix(char *to, qint64 most);

    MemoryBytes m_prefix;
    std::unique_ptr<ByteSource> m_rest;
    bool m_isPrefixRead = false;
};
