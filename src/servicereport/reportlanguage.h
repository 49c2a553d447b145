// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/objectwords.h>

#include <QLocale>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QTranslator;

/*! Makes all texts those of one language for as long as it lives, whatever language the program is in; so a workshop
 *  writes a customer's report in the customer's language.
 *
 *  Translators are the whole program's. The windows are not told of the change, so that nothing on the screen turns around;
 *  no events may be processed meanwhile, and all that a report says has to be made in this time, the findings too. In the
 *  GUI thread only.
 */
class ReportLanguage
{
public:
    /*! The texts of \a language ("de", "zh_CN", "en"), from draxel_LANGUAGE.qm and pl_overview_LANGUAGE.qm in \a folder.
     *  What is not translated there is English.
     */
    explicit ReportLanguage(const QString &language, const QString &folder = defaultFolder());
    ~ReportLanguage();
    Q_DISABLE_COPY(ReportLanguage)

    /*! The folder "languages" beside the program. */
    static QString defaultFolder();

    /*! The languages that reports can be written in, sorted; always with "en". */
    static QStringList available(const QString &folder = defaultFolder());

    /*! How numbers and dates of a report are written: as the system does where it has the report's language, else as the
     *  language does; English dates then have the day first.
     */
    static QLocale localeOf(const QString &language);

    QLocale locale() const { return m_locale; }
    /*! As it was given. */
    QString name() const { return m_language; }

private:
    void install(std::unique_ptr<QTranslator> translator);

    QString m_language;
    QLocale m_locale;
    ObjectWords::NumberStyle m_numbers;
    std::vector<std::unique_ptr<QTranslator>> m_translators; // the first one is asked last
};
