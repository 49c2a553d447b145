// SPDX-License-Identifier: MIT
#pragma once

#include "bytesink.h"

#include <store/wholefile.h>

#include <QFile>

/*! A file that is there as it grows, a pipe, or standard output ("-"). */
class GrowingFile : public ByteSink
{
public:
    explicit GrowingFile(const QString &path)
        : m_path(path)
        , m_file(path)
    {
    }

    /*! False on failure; a file that is there is written anew. */
    bool open();

    bool write(const QByteArray &bytes) override;
    bool flush() override;
    bool finish() override;
    qint64 size() const override { return m_size; }
    QString errorString() const override { return m_error; }

private:
    bool fail();

    QString m_path;
    QFile m_file;
    qint64 m_size = 0;
    QString m_error;
};

/*! A file that is there when it is whole. */
class CompleteFile : public ByteSink
{
public:
    explicit CompleteFile(const QString &path)
        : m_path(path)
        , m_file(path)
    {
    }

    bool open();

    bool write(const QByteArray &bytes) override;
    bool flush() override { return m_error.isEmpty(); }
    bool finish() override;
    qint64 size() const override { return m_size; }
    QString errorString() const override { return m_error; }

private:
    bool fail();

    QString m_path;
    WholeFile m_file;
    qint64 m_size = 0;
    QString m_error;
};
