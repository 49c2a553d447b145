// SPDX-License-Identifier: MIT
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

/*! A folder and what its files may include of the project: folders, or single headers. */
struct Rule
{
    const char *folder;
    QStringList mayUse;
};

const QList<Rule> &rules()
{
    static const QList<Rule> list{
        {"canopen", {}},
        {"plugin/interface", {}},
        {"interpreter", {}},
        {"update", {}},
        {"reader", {QStringLiteral("plugin/interface/"), QStringLiteral("export/exchangefile.h")}},
        {"details",
         {QStringLiteral("reader/nodestore.h"), QStringLiteral("reader/nodeview.h"),
          QStringLiteral("interpreter/")}},
        {"export",
         {QStringLiteral("reader/nodestore.h"), QStringLiteral("reader/nodeview.h"),
          QStringLiteral("interpreter/")}},
        {"ui",
         {QStringLiteral("plugin/interface/"), QStringLiteral("reader/"), QStringLiteral("interpreter/"),
          QStringLiteral("details/"), QStringLiteral("export/"), QStringLiteral("update/")}},
        {"plugin", {QStringLiteral("plugin/interface/"), QStringLiteral("ui/")}},
        {"simulator", {QStringLiteral("canopen/")}},
        {"host/core", {QStringLiteral("plugin/interface/"), QStringLiteral("canopen/")}},
        {"host", {QStringLiteral("host/core/"), QStringLiteral("canopen/")}},
        {"cli",
         {QStringLiteral("host/core/"), QStringLiteral("canopen/"), QStringLiteral("reader/"),
          QStringLiteral("details/"), QStringLiteral("export/"), QStringLiteral("interpreter/"),
          QStringLiteral("update/"), QStringLiteral("simulator/"), QStringLiteral("plugin/interface/")}},
    };
    return list;
}

const Rule *ruleFor(const QString &folder)
{
    for (const Rule &rule : rules()) {
        if (folder == QLatin1String(rule.folder))
            return &rule;
    }
    return nullptr;
}

/*! Everything wrong with the includes of one file, a line each. */
QStringList problemsOf(const QString &file, const QString &folder, const QByteArray &text)
{
    static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s*([<\"])([^>\"]+)[>\"]"),
                                            QRegularExpression::MultilineOption);
    const Rule *rule = ruleFor(folder);
    if (rule == nullptr)
        return {file + QStringLiteral(": no rule says what this folder may include")};

    QStringList problems;
    QRegularExpressionMatchIterator it = include.globalMatch(QString::fromUtf8(text));
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const bool quoted = match.captured(1) == QLatin1String("\"");
        const QString name = match.captured(2);
        if (quoted) {
            if (name.contains(QLatin1Char('/')))
                problems << file + QStringLiteral(": quotes are for files of the same folder: ") + name;
            continue;
        }
        const int slash = name.lastIndexOf(QLatin1Char('/'));
        if (slash < 0 || ruleFor(name.left(slash)) == nullptr)
            continue; // not of this project
        bool allowed = false;
        for (const QString &place : rule->mayUse)
            allowed = allowed || (place.endsWith(QLatin1Char('/')) ? name.startsWith(place) : name == place);
        if (!allowed)
            problems << file + QStringLiteral(" must not include ") + name;
    }
    return problems;
}

} // namespace

/*! The directions between the folders, from the include lines of every source. */
class tst_Includes : public QObject
{
    Q_OBJECT

private slots:
    void followTheDirections();
    void wrongDirectionIsFound();
};

void tst_Includes::followTheDirections()
{
    const QDir root(QStringLiteral(OVERVIEW_SOURCE_DIR));
    QStringList problems;
    int files = 0;
    for (const Rule &rule : rules()) {
        const QString folder = QLatin1String(rule.folder);
        const QFileInfoList entries
            = QDir(root.filePath(folder))
                  .entryInfoList({QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files);
        for (const QFileInfo &entry : entries) {
            QFile file(entry.filePath());
            QVERIFY(file.open(QIODevice::ReadOnly));
            problems += problemsOf(root.relativeFilePath(entry.filePath()), folder, file.readAll());
            ++files;
        }
    }
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    QVERIFY2(files > 40, "the sources were not found");
}

void tst_Includes::wrongDirectionIsFound()
{
    QCOMPARE(
        problemsOf(QStringLiteral("host/x.cpp"), QStringLiteral("host"), "#include <ui/overviewform.h>\n"),
        QStringList(QStringLiteral("host/x.cpp must not include ui/overviewform.h")));
    QCOMPARE(problemsOf(QStringLiteral("reader/x.cpp"), QStringLiteral("reader"),
                        "#include <export/exchangefile.h>\n#include <export/pdfwriter.h>\n"),
             QStringList(QStringLiteral("reader/x.cpp must not include export/pdfwriter.h")));
    QCOMPARE(
        problemsOf(QStringLiteral("ui/x.cpp"), QStringLiteral("ui"), "#include \"../reader/datareader.h\"\n"),
        QStringList(
            QStringLiteral("ui/x.cpp: quotes are for files of the same folder: ../reader/datareader.h")));
    QVERIFY(problemsOf(QStringLiteral("ui/x.cpp"), QStringLiteral("ui"),
                       "#include <reader/datareader.h>\n#include <QString>\n#include \"y.h\"\n")
                .isEmpty());
}

QTEST_GUILESS_MAIN(tst_Includes)
#include "tst_includes.moc"
