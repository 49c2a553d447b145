// SPDX-License-Identifier: MIT
#pragma once

#include "bytesource.h"

#include <QFile>

/*! Bytes of a file, of a pipe, or of standard input. */
class FileBytes : public ByteSource
{
public:
    /*! "-" is standard input. Null with a sentence when it cannot be opened. */
    static std::unique_ptr<FileBytes> open(const QString &path, QString *errorMessage);

    qint64 read(char *to, qint64 most) override;
    /*! Whether it is no file but a pipe or a terminal, which comes as it comes. */
    bool isSequential() const { return m_file.isSequential(); }
    /*! Of the system. */
    int handle() const { return m_file.handle(); }

    qint64 size() const override { return m_file.isSequential() ? 0 : m_file.size(); }

private:
    explicit FileBytes(const QString &path)
        : m_file(path)
    {
    }

    bool openIt();
    QString name() const;
    qint64 readSome(char *to, qint64 most); // see filebytes_*.cpp

    QFile m_file;
};
