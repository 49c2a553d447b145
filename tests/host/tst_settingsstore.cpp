// SPDX-License-Identifier: MIT
#include <host/core/settingsstore.h>

#include <QDateTime>
#include <QLockFile>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr QLatin1String organization("Draxel Project");
constexpr QLatin1String application("tst_settingsstore");

/*! What another program does that has just begun: "value KEY", "set KEY VALUE", "replace KEY VALUE" (all others go). */
int runAsAnother(int argc, char **argv)
{
    QCoreApplication program(argc, argv);
    if (qstrcmp(argv[1], "--another") == 0) {
        QCoreApplication::setOrganizationName(organization);
        QCoreApplication::setApplicationName(application);
    }
    const QStringList words = QCoreApplication::arguments().mid(2);
    SettingsStore &store = SettingsStore::instance();
    QTextStream out(stdout);
    if (words.at(0) == QLatin1String("value"))
        out << store.value(words.at(1)).toString();
    else if (words.at(0) == QLatin1String("set"))
        store.setValue(words.at(1), words.at(2));
    else if (words.at(0) == QLatin1String("replace"))
        store.setValues({{words.at(1), words.at(2)}});
    return 0;
}

/*! As a program of the same name, or as one without a name. */
QString ask(const QStringList &words, const char *kind = "--another")
{
    QProcess other;
    other.start(QCoreApplication::applicationFilePath(), QStringList(QLatin1String(kind)) + words);
    other.waitForFinished(-1);
    return QString::fromUtf8(other.readAllStandardOutput());
}

} // namespace

/*! The settings in memory and in their file. Another program's part is played by a file of its own that takes the place. */
class tst_SettingsStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void isThereAtOnceAndLaterInTheFile();
    void nobodyWaitsForTheFile();
    void beginsWithWhatIsInTheFile();
    void writesAllBeforeTheProgramEnds();
    void replacesWhatIsInTheFile();
    void commandLineSharesThoseOfTheWindow();
    void manyChangesAreWritten();
    void whatIsTheSameIsNotWritten();
    void removesKeys();
    void keepsWhatAnotherProgramWrote();
    void takesInWhatAnotherProgramWrote();
    void ownChangeWinsOverWhatIsRead();
    void saysOnceThatNothingCanBeKept();
    void saysItAgainAfterItWasKept();
    void saysItWhenAsked();
    void forgetsNothingWhileTheFileIsOutOfReach();
    void keepsLaterWhatCouldNotBeKept();

private:
    QVariant inFile(const char *key) const;
    static QByteArray bytesOf(const QString &path);
    void writeAsAnother(const QVariantMap &values) const;
    static SettingsStore &store() { return SettingsStore::instance(); }
    static QString text(const char *key) { return store().value(QLatin1String(key)).toString(); }

    // Asked once: a QSettings of this file waits while the store's thread writes it, and so for a lock that a test holds.
    QString m_fileName;
};

void tst_SettingsStore::initTestCase()
{
    QCoreApplication::setOrganizationName(organization);
    QCoreApplication::setApplicationName(application);
    m_fileName = QSettings().fileName();
}

void tst_SettingsStore::init()
{
    store().setValues({});
    store().finish();
}

/*! The bytes that are there, and not what QSettings of this process remembers. */
QVariant tst_SettingsStore::inFile(const char *key) const
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.ini"));
    QFile::copy(m_fileName, copy);
    return QSettings(copy, QSettings::IniFormat).value(QLatin1String(key));
}

QByteArray tst_SettingsStore::bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_SettingsStore::writeAsAnother(const QVariantMap &values) const
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.ini"));
    QFile::copy(m_fileName, copy);
    {
        QSettings other(copy, QSettings::IniFormat);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            other.setValue(value.key(), *value);
    }
    QFile::remove(m_fileName);
    QVERIFY(QFile::copy(copy, m_fileName));
}

void tst_SettingsStore::isThereAtOnceAndLaterInTheFile()
{
    store().setValue(QStringLiteral("files/folder"), QStringLiteral("/home/a"));
    QCOMPARE(text("files/folder"), QStringLiteral("/home/a"));
    QCOMPARE(store().values().size(), 1);
    store().finish();
    QCOMPARE(inFile("files/folder").toString(), QStringLiteral("/home/a"));
}

/*! A file that another program keeps locked is as slow as a disk can be. */
void tst_SettingsStore::nobodyWaitsForTheFile()
{
    store().setValue(QStringLiteral("files/folder"), QStringLiteral("/home/a"));
    store().finish();
    QLockFile lock(m_fileName + QStringLiteral(".lock"));
    QVERIFY(lock.lock());
    store().setValue(QStringLiteral("files/folder"), QStringLiteral("/home/b"));
    store().setValue(QStringLiteral("language"), QStringLiteral("de"));
    QCOMPARE(text("files/folder"), QStringLiteral("/home/b"));
    QCOMPARE(text("language"), QStringLiteral("de"));
    QCOMPARE(inFile("files/folder").toString(), QStringLiteral("/home/a"));
    lock.unlock();
    store().finish();
    QCOMPARE(inFile("files/folder").toString(), QStringLiteral("/home/b"));
    QCOMPARE(inFile("language").toString(), QStringLiteral("de"));
}

void tst_SettingsStore::beginsWithWhatIsInTheFile()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("nl"));
    store().finish();
    QCOMPARE(ask({QStringLiteral("value"), QStringLiteral("language")}), QStringLiteral("nl"));
}

void tst_SettingsStore::writesAllBeforeTheProgramEnds()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("nl"));
    store().finish();
    ask({QStringLiteral("set"), QStringLiteral("files/folder"), QStringLiteral("/home/c")});
    QCOMPARE(inFile("files/folder").toString(), QStringLiteral("/home/c"));
    QCOMPARE(inFile("language").toString(), QStringLiteral("nl"));
    // What is there already is not written.
    const QDateTime before = QFileInfo(m_fileName).lastModified();
    const QByteArray bytes = bytesOf(m_fileName);
    ask({QStringLiteral("set"), QStringLiteral("files/folder"), QStringLiteral("/home/c")});
    QCOMPARE(QFileInfo(m_fileName).lastModified(), before);
    QCOMPARE(bytesOf(m_fileName), bytes);
}

void tst_SettingsStore::replacesWhatIsInTheFile()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("nl"));
    store().finish();
    ask({QStringLiteral("replace"), QStringLiteral("files/folder"), QStringLiteral("/home/c")});
    QCOMPARE(inFile("files/folder").toString(), QStringLiteral("/home/c"));
    QVERIFY(!inFile("language").isValid());
}

void tst_SettingsStore::commandLineSharesThoseOfTheWindow()
{
    QSettings window(QStringLiteral("Draxel Project"), QStringLiteral("draxel"));
    window.setValue(QStringLiteral("workshop/name"), QStringLiteral("Bikes"));
    window.sync();
    QCOMPARE(ask({QStringLiteral("value"), QStringLiteral("workshop/name")}, "--nameless"),
             QStringLiteral("Bikes"));
    ask({QStringLiteral("set"), QStringLiteral("workshop/name"), QStringLiteral("Batteries")}, "--nameless");
    window.sync();
    QCOMPARE(window.value(QStringLiteral("workshop/name")).toString(), QStringLiteral("Batteries"));
    window.clear();
}

void tst_SettingsStore::manyChangesAreWritten()
{
    for (int i = 0; i < 1000; ++i)
        store().setValue(QStringLiteral("key%1").arg(i % 50), i);
    store().finish();
    QCOMPARE(inFile("key0").toInt(), 950);
    QCOMPARE(inFile("key49").toInt(), 999);
    QCOMPARE(store().values().size(), 50);
}

void tst_SettingsStore::whatIsTheSameIsNotWritten()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("de"));
    store().finish();
    QVERIFY(QFile::remove(m_fileName));
    store().setValue(QStringLiteral("language"), QStringLiteral("de"));
    store().setValues({{QStringLiteral("language"), QStringLiteral("de")}});
    store().finish();
    QVERIFY(!QFile::exists(m_fileName));
}

void tst_SettingsStore::removesKeys()
{
    store().setValues({{QStringLiteral("a"), 1}, {QStringLiteral("b/c"), 2}, {QStringLiteral("b/d"), 3}});
    store().setValue(QStringLiteral("a"), QVariant());
    store().setValue(QStringLiteral("neverThere"), QVariant());
    QVERIFY(!store().value(QStringLiteral("a")).isValid());
    QCOMPARE(store().values().keys(), (QStringList{QStringLiteral("b/c"), QStringLiteral("b/d")}));
    store().setValues({{QStringLiteral("b/d"), 3}});
    store().finish();
    QCOMPARE(store().values().keys(), QStringList(QStringLiteral("b/d")));
    QVERIFY(!inFile("a").isValid());
    QVERIFY(!inFile("b/c").isValid());
    QCOMPARE(inFile("b/d").toInt(), 3);
}

void tst_SettingsStore::keepsWhatAnotherProgramWrote()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("de"));
    store().finish();
    writeAsAnother({{QStringLiteral("archive/address"), QStringLiteral("postgresql://db/bikes")}});
    store().update([](QVariantMap *values) {
        QCOMPARE(values->size(), 1);
        values->insert(QStringLiteral("language"), QStringLiteral("fr"));
    });
    QCOMPARE(text("language"), QStringLiteral("fr"));
    store().finish();
    QCOMPARE(inFile("archive/address").toString(), QStringLiteral("postgresql://db/bikes"));
    QCOMPARE(inFile("language").toString(), QStringLiteral("fr"));
    QCOMPARE(text("archive/address"), QStringLiteral("postgresql://db/bikes"));
}

void tst_SettingsStore::takesInWhatAnotherProgramWrote()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("de"));
    store().finish();
    writeAsAnother({{QStringLiteral("language"), QStringLiteral("zh_CN")}});
    QCOMPARE(text("language"), QStringLiteral("de"));
    store().refresh();
    store().finish();
    QCOMPARE(text("language"), QStringLiteral("zh_CN"));
}

void tst_SettingsStore::ownChangeWinsOverWhatIsRead()
{
    store().setValue(QStringLiteral("language"), QStringLiteral("de"));
    store().finish();
    QLockFile lock(m_fileName + QStringLiteral(".lock"));
    QVERIFY(lock.lock());
    store().setValue(QStringLiteral("files/folder"), QStringLiteral("/home/a")); // waits for the lock
    store().setValue(QStringLiteral("language"), QStringLiteral("fr"));          // may wait for the first
    store().setValue(QStringLiteral("files/folder"), QVariant());
    lock.unlock();
    store().finish();
    QCOMPARE(text("language"), QStringLiteral("fr"));
    QVERIFY(!store().value(QStringLiteral("files/folder")).isValid());
    QVERIFY(!inFile("files/folder").isValid());
}

namespace {

/*! While it lives no settings can be kept: no folder can be made below a file, whoever tries. */
class NoPlace
{
public:
    NoPlace()
        : m_before(QFileInfo(QSettings().fileName()).dir().absoluteFilePath(QStringLiteral("..")))
        , m_file(m_folder.filePath(QStringLiteral("file")))
    {
        m_isReady = m_file.open(QIODevice::WriteOnly);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_file.fileName());
    }
    ~NoPlace()
    {
        SettingsStore::instance().finish();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_before);
    }
    bool isReady() const { return m_isReady; }

private:
    QString m_before;
    QTemporaryDir m_folder;
    QFile m_file;
    bool m_isReady = false;
};

} // namespace

void tst_SettingsStore::saysOnceThatNothingCanBeKept()
{
    const NoPlace place;
    QVERIFY(place.isReady());
    QSignalSpy refusals(&store(), &SettingsStore::refused);
    store().setValue(QStringLiteral("a"), 1);
    store().finish();
    store().setValues({{QStringLiteral("a"), 2}});
    store().finish();
    store().refresh();
    store().finish();
    QCOMPARE(refusals.size(), 1);
    QCOMPARE(refusals.at(0).at(0).toString(), QSettings().fileName());
    QCOMPARE(store().value(QStringLiteral("a")).toInt(), 2); // as long as the program runs
}

void tst_SettingsStore::saysItAgainAfterItWasKept()
{
    QSignalSpy refusals(&store(), &SettingsStore::refused);
    {
        const NoPlace place;
        store().setValue(QStringLiteral("a"), 1);
    }
    store().setValue(QStringLiteral("a"), 2);
    store().finish();
    QCOMPARE(inFile("a").toInt(), 2);
    {
        const NoPlace place;
        store().setValue(QStringLiteral("a"), 3);
    }
    QCOMPARE(refusals.size(), 2);
}

void tst_SettingsStore::saysItWhenAsked()
{
    QSignalSpy refusals(&store(), &SettingsStore::refused);
    store().checkFile();
    store().finish();
    QCOMPARE(refusals.size(), 0);
    const NoPlace place;
    store().checkFile();
    store().finish();
    store().checkFile();
    store().finish();
    QCOMPARE(refusals.size(), 2);
}

void tst_SettingsStore::forgetsNothingWhileTheFileIsOutOfReach()
{
    store().setValues({{QStringLiteral("a"), 1}, {QStringLiteral("b"), 1}, {QStringLiteral("c"), 1}});
    store().finish();
    {
        const NoPlace place;
        store().setValue(QStringLiteral("a"), 2);
        store().finish();
        QCOMPARE(store().value(QStringLiteral("b")).toInt(), 1);
        store().setValue(QStringLiteral("b"), QVariant());
        store().finish();
    }
    store().refresh();
    store().finish();
    QCOMPARE(store().values(), (QVariantMap{{QStringLiteral("a"), 2}, {QStringLiteral("c"), 1}}));
    QVERIFY(!inFile("b").isValid());
}

void tst_SettingsStore::keepsLaterWhatCouldNotBeKept()
{
    store().setValues({{QStringLiteral("a"), 1}, {QStringLiteral("b"), 1}});
    store().finish();
    {
        const NoPlace place;
        store().setValue(QStringLiteral("a"), 2);
        store().setValue(QStringLiteral("b"), QVariant());
        store().setValue(QStringLiteral("c"), 2);
        store().finish();
        store().setValue(QStringLiteral("c"), 3);
        store().finish();
        store().refresh();
        store().finish();
        QCOMPARE(store().values().keys(), (QStringList{QStringLiteral("a"), QStringLiteral("c")}));
    }
    store().refresh();
    store().finish();
    QCOMPARE(store().values().keys(), (QStringList{QStringLiteral("a"), QStringLiteral("c")}));
    QCOMPARE(inFile("a").toInt(), 2);
    QVERIFY(!inFile("b").isValid());
    QCOMPARE(inFile("c").toInt(), 3);
}

int main(int argc, char **argv)
{
    if (argc > 2 && qstrncmp(argv[1], "--", 2) == 0)
        return runAsAnother(argc, argv);
    QCoreApplication program(argc, argv);
    tst_SettingsStore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_settingsstore.moc"
