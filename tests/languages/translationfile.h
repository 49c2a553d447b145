// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/*! One text of a .ts file. */
struct TranslationMessage
{
    QString context;
    QString source;
    QString comment;           //!< tells equal sources of one context apart; mostly empty
    QString type;              //!< "unfinished", "vanished", "obsolete"; empty for a finished text
    QString translatorComment; //!< a hint for the next translator
    QStringList translations;  //!< one; for a text with a number one for each form
    bool hasNumber = false;

    /*! Context, source and comment: what makes a text the same one in two files. */
    QString key() const;
};

/*! Reads a .ts file. Empty with an error message when it cannot be read. */
QVector<TranslationMessage> readTranslationFile(const QString &path, QString *errorMessage);
