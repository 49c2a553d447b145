// SPDX-License-Identifier: MIT
#include "reportlanguage.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLibraryInfo>
#include <QTranslator>

namespace {

constexpr QLatin1String sourceLanguage("en");
constexpr QLatin1String fileSuffix(".qm");
constexpr QLatin1String programTexts("draxel_");
constexpr QLatin1String deviceTexts("pl_overview_");

/*! Every text as the sources have it: hides the program's translators. */
class SourceTexts : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        Q_UNUSED(context)
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        return QString::fromUtf8(sourceText);
    }
};

/*! Keeps the news of another language from the windows. */
class LanguageSilence : public QObject
{
public:
    LanguageSilence() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        return event->type() == QEvent::LanguageChange || QObject::eventFilter(object, event);
    }
};

} // namespace

ReportLanguage::ReportLanguage(const QString &language, const QString &folder)
    : m_language(language)
    , m_locale(localeOf(language))
    , m_numbers(m_locale)
{
    const LanguageSilence silence;
    install(std::make_unique<SourceTexts>());
    const QString qtTexts
        = QLibraryInfo::location(QLibraryInfo::TranslationsPath) + QStringLiteral("/qtbase_") + language;
    for (const QString &file : {qtTexts, folder + QLatin1Char('/') + deviceTexts + language + fileSuffix,
                                folder + QLatin1Char('/') + programTexts + language + fileSuffix}) {
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(file))
            install(std::move(translator));
    }
}

ReportLanguage::~ReportLanguage()
{
    const LanguageSilence silence;
    for (const auto &translator : m_translators)
        QCoreApplication::removeTranslator(translator.get());
}

void ReportLanguage::install(std::unique_ptr<QTranslator> translator)
{
    QCoreApplication::installTranslator(translator.get());
    m_translators.push_back(std::move(translator));
}

QString ReportLanguage::defaultFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/languages");
}

QStringList ReportLanguage::available(const QString &folder)
{
    QStringList languages{sourceLanguage};
    const QStringList files
        = QDir(folder).entryList({programTexts + QLatin1Char('*') + fileSuffix}, QDir::Files);
    for (const QString &file : files)
        languages.append(file.mid(programTexts.size()).chopped(fileSuffix.size()));
    languages.removeDuplicates();
    languages.sort();
    return languages;
}

QLocale ReportLanguage::localeOf(const QString &language)
{
    const QLocale wanted(language);
    const QLocale system = QLocale::system();
    if (system.language() == wanted.language() && system.script() == wanted.script())
        return system;
    return wanted.language() == QLocale::English ? QLocale(QLocale::English, QLocale::UnitedKingdom) : wanted;
}
