// SPDX-License-Identifier: MIT
#pragma once

#include <QTextBrowser>

/*! Shows a text in which word joiners keep numbers of objects on one line; in what is copied of it there are none. */
class DetailsBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;

    /*! \a line with a word joiner behind the dots in numbers of objects, "1003h.0": Qt would break it there. */
    static QString unbroken(const QString &line);

protected:
    QMimeData *createMimeDataFromSelection() const override;
};
