// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

/*! Permissions do not stop root, who therefore acts as nobody while this lives. Elsewhere, and for everybody else, it
 *  does nothing.
 */
class Unprivileged
{
public:
    /*! \a places are the folders and files that shall belong to whoever acts. */
    explicit Unprivileged(const QStringList &places)
    {
#ifdef Q_OS_UNIX
        constexpr uid_t nobody = 65534;
        m_isRoot = geteuid() == 0;
        if (!m_isRoot)
            return;
        for (const QString &place : places)
            QCOMPARE(chown(QFile::encodeName(place).constData(), nobody, nobody), 0);
        QCOMPARE(seteuid(nobody), 0);
#else
        Q_UNUSED(places);
#endif
    }
    ~Unprivileged()
    {
#ifdef Q_OS_UNIX
        if (m_isRoot && seteuid(0) != 0)
            qFatal("root does not become root again");
#endif
    }
    Q_DISABLE_COPY(Unprivileged)

private:
    bool m_isRoot = false;
};
