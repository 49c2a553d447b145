// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/*! The names of the files of one recording: one that was given, or "ride-0001.log.gz" and so on. */
class RecordingFiles
{
public:
    enum class Kind : quint8 { One, Numbered };

    /*! Numbers begin behind those of files that are there. */
    RecordingFiles(const QString &path, Kind kind);

    /*! The next name, behind files that have come meanwhile. The same one each time when there is only one. */
    QString next();
    /*! The file \a name has begun, and is the newest. */
    void add(const QString &name) { m_names.append(name); }
    /*! Those that were added and are still there. */
    QStringList names() const { return m_names; }
    /*! Removes the oldest ones but \a keep; what cannot be removed stays among the names. */
    void removeAllBut(int keep);

private:
    QString numbered(int number) const;
    static int suffixAt(const QString &fileName);

    QString m_path;
    Kind m_kind;
    int m_number = 0;
    QStringList m_names;
};
