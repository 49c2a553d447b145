// SPDX-License-Identifier: MIT
#include "language.h"

#include "commandarguments.h"
#include "exitstatus.h"

#include <host/core/languagesetting.h>

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

#include <memory>

namespace {

struct LanguageTr
{
    Q_DECLARE_TR_FUNCTIONS(Language)
};

constexpr QLatin1String languageOption("language");
constexpr QLatin1String sourceLanguage("en");
constexpr QLatin1String filePrefix("pl_overview_");
constexpr QLatin1String hostFilePrefix("draxel_");
constexpr QLatin1String fileSuffix(".qm");

QStringList availableLanguages()
{
    QStringList languages{sourceLanguage};
    const QStringList files = QDir(LanguageSetting::defaultFolder())
                                  .entryList({filePrefix + QLatin1Char('*') + fileSuffix}, QDir::Files);
    for (const QString &file : files)
        languages.append(file.mid(filePrefix.size()).chopped(fileSuffix.size()));
    languages.removeDuplicates();
    languages.sort();
    return languages;
}

/*! The available language that is meant by a name as the system writes it: "de-AT" and "de_AT.UTF-8" by "de".
 *  Empty for none.
 */
QString findLanguage(const QStringList &languages, const QString &name)
{
    QString wanted = name.section(QLatin1Char('.'), 0, 0);
    wanted.replace(QLatin1Char('-'), QLatin1Char('_'));
    for (const QString &candidate : {wanted, wanted.section(QLatin1Char('_'), 0, 0)}) {
        if (languages.contains(candidate))
            return candidate;
    }
    return QString();
}

} // namespace

void Language::addOption(CommandArguments &options)
{
    options.addOption({languageOption,
                       LanguageTr::tr("The language of what the devices say, for example de; usually en."),
                       QStringLiteral("LANGUAGE")});
}

std::optional<ExitStatus> Language::load(const CommandArguments &options)
{
    if (!options.isSet(languageOption))
        return std::nullopt;

    const QStringList languages = availableLanguages();
    const QString language = findLanguage(languages, options.value(languageOption));
    if (language.isEmpty()) {
        return options.complain(
            LanguageTr::tr("There are no texts in the language \"%1\"; there are those in %2.")
                .arg(options.value(languageOption), languages.join(QStringLiteral(", "))));
    }
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    const QString file
        = LanguageSetting::defaultFolder() + QLatin1Char('/') + filePrefix + language + fileSuffix;
    if (translator->load(file))
        QCoreApplication::installTranslator(translator.release()); // owned by the application
    else if (language != sourceLanguage)
        return options.complain(
            LanguageTr::tr("The file %1 holds no texts.").arg(QDir::toNativeSeparators(file)));
    return std::nullopt;
}

std::optional<ExitStatus> Language::loadWithHost(const CommandArguments &options)
{
    if (const std::optional<ExitStatus> status = load(options))
        return status;
    const QString language = name(options);
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    if (translator->load(hostFilePrefix + language + fileSuffix, LanguageSetting::defaultFolder()))
        QCoreApplication::installTranslator(translator.release()); // owned by the application
    else if (language != sourceLanguage)
        return options.complain(
            LanguageTr::tr("There are no texts of the host in the language \"%1\".").arg(language));
    return std::nullopt;
}

QString Language::name(const CommandArguments &options)
{
    const QString language = findLanguage(availableLanguages(), options.value(languageOption));
    return language.isEmpty() ? QString(sourceLanguage) : language;
}
