// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

/*! The language of the host's own texts and of Qt's.
 *
 *  Translations are the files draxel_LANGUAGE.qm in the folder "languages" beside the program. English needs
 *  none.
 */
class LanguageSetting
{
public:
    /*! \a folder with the translations. */
    explicit LanguageSetting(const QString &folder = defaultFolder());
    ~LanguageSetting();

    LanguageSetting(const LanguageSetting &) = delete;
    LanguageSetting &operator=(const LanguageSetting &) = delete;

    /*! The folder "languages" beside the program. */
    static QString defaultFolder();

    /*! The languages that can be chosen, sorted; always with "en". */
    QStringList available() const;

    /*! The available language for \a wanted, empty when there is none: "de-AT" finds "de_AT", then "de". */
    QString find(QString wanted) const;

    /*! The first of the wanted languages that is available, "en" if none is. "de-AT" finds "de_AT", then
     *  "de".
     */
    QString bestOf(const QStringList &wanted) const;

    /*! Switches the program to \a language. True when its texts were found (always for "en"); else the texts
     *  are English.
     */
    bool apply(const QString &language);

    QString current() const { return m_current; }

private:
    QString m_folder;
    QString m_current;
    QTranslator m_hostTexts;
    QTranslator m_qtTexts;
};
