// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

/*! The files that were opened or saved last, the newest first; kept in the settings. */
class RecentFiles
{
public:
    static constexpr int mostFiles = 8;

    /*! What is kept, without what is no absolute path. */
    static QStringList load();

    /*! Puts a file first. */
    static void add(const QString &fileName);

    /*! Forgets a file, for example because it is gone. */
    static void remove(const QString &fileName);
};
