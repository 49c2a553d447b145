// SPDX-License-Identifier: MIT
#include "languagesetting.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>

namespace {

constexpr QLatin1String sourceLanguage("en");
constexpr QLatin1String filePrefix("draxel_");
constexpr QLatin1String fileSuffix(".qm");

} // namespace

LanguageSetting::LanguageSetting(const QString &folder)
    : m_folder(folder)
    , m_current(sourceLanguage)
{
}

LanguageSetting::~LanguageSetting() = default;

QString LanguageSetting::defaultFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/languages");
}

QStringList LanguageSetting::available() const
{
    QStringList languages{sourceLanguage};
    const QStringList files
        = QDir(m_folder).entryList({filePrefix + QLatin1Char('*') + fileSuffix}, QDir::Files);
    for (const QString &file : files) {
        const QString language
            = file.mid(filePrefix.size(), file.size() - filePrefix.size() - fileSuffix.size());
        if (!language.isEmpty() && !languages.contains(language))
            languages.append(language);
    }
    languages.sort();
    return languages;
}

QString LanguageSetting::find(QString wanted) const
{
    const QStringList languages = available();
    wanted.replace(QLatin1Char('-'), QLatin1Char('_'));
    const QString withoutCountry = wanted.section(QLatin1Char('_'), 0, 0);
    // "zh_Hans_CN" is the system's name for "zh_CN".
    const QString withoutScript = withoutCountry + QLatin1Char('_') + wanted.section(QLatin1Char('_'), -1);
    for (const QString &language : {wanted, withoutCountry, withoutScript}) {
        if (languages.contains(language))
            return language;
    }
    return QString();
}

QString LanguageSetting::bestOf(const QStringList &wanted) const
{
    for (const QString &language : wanted) {
        const QString found = find(language);
        if (!found.isEmpty())
            return found;
    }
    return sourceLanguage;
}

bool LanguageSetting::apply(const QString &language)
{
    QCoreApplication::removeTranslator(&m_hostTexts);
    QCoreApplication::removeTranslator(&m_qtTexts);
    m_current = language;

    // Qt's own texts are missing on some systems; the host's count alone.
    if (m_qtTexts.load(QStringLiteral("qtbase_") + language,
                       QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qtTexts);
    if (m_hostTexts.load(m_folder + QLatin1Char('/') + filePrefix + language + fileSuffix)) {
        QCoreApplication::installTranslator(&m_hostTexts);
        return true;
    }
    return language == sourceLanguage;
}
