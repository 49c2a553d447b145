// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

struct Snapshot;

/*! The file that a command writes at its end: a file, a device, a pipe, or standard output ("-"). */
class OutputFile
{
    Q_DECLARE_TR_FUNCTIONS(OutputFile)

public:
    explicit OutputFile(const QString &name);

    /*! Whether it is standard output, under whatever name; messages belong to standard error then. */
    bool isStandardOutput() const { return m_isStandardOutput; }

    /*! Finds out whether the file can be written, before the work is done. On failure false, with a sentence in
     *  \a errorMessage.
     */
    bool canBeWritten(QString *errorMessage) const;

    /*! Writes an exchange file, and says that it has, or why not. A file is replaced by a complete one only. */
    bool writeExchange(const QString &text) const;
    /*! The same for a snapshot. */
    bool writeSnapshot(const Snapshot &snapshot) const;

private:
    bool write(const QByteArray &bytes, const std::function<bool(QString *errorMessage)> &save) const;
    static bool isPipe(const QString &fileName); // see platform_*.cpp

    QString m_name;
    bool m_isStandardOutput;
};
