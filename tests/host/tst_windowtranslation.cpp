// SPDX-License-Identifier: MIT
#include "hostfixture.h"

#include <checkup/ruleset.h>
#include <host/core/languagesetting.h>
#include <host/core/settingsstore.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <host/pages/live/livesession.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/vehiclesnapshot.h>

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

namespace {

/*! "livePage/eventTable": the names on the way to a part. */
QString pathOf(const QObject *part)
{
    QStringList names;
    for (const QObject *one = part; one != nullptr; one = one->parent())
        names.prepend(one->objectName().isEmpty() ? QLatin1String(one->metaObject()->className())
                                                  : one->objectName());
    return names.join(QLatin1Char('/'));
}

void addProperties(const QObject &part, QStringList *texts)
{
    for (const char *name :
         {"text", "title", "windowTitle", "toolTip", "statusTip", "whatsThis", "placeholderText",
          "accessibleName", "accessibleDescription", "specialValueText", "prefix", "suffix", "format"}) {
        const QString text = part.property(name).toString();
        if (!text.isEmpty())
            texts->append(QStringLiteral("%1 %2: %3").arg(pathOf(&part), QLatin1String(name), text));
    }
}

void addItems(const QObject &part, QStringList *texts)
{
    if (const auto *choice = qobject_cast<const QComboBox *>(&part)) {
        for (int i = 0; i < choice->count(); ++i)
            texts->append(QStringLiteral("%1 item: %2").arg(pathOf(&part), choice->itemText(i)));
    }
    if (const auto *tabs = qobject_cast<const QTabWidget *>(&part)) {
        for (int i = 0; i < tabs->count(); ++i)
            texts->append(QStringLiteral("%1 tab: %2").arg(pathOf(&part), tabs->tabText(i)));
    }
}

/*! Of the parts of an item, and of all below it. */
void addCells(const QAbstractItemView &view, const QModelIndex &parent, QStringList *texts)
{
    const QAbstractItemModel *model = view.model();
    for (int row = 0; row < model->rowCount(parent); ++row) {
        for (int column = 0; column < model->columnCount(parent); ++column) {
            const QModelIndex index = model->index(row, column, parent);
            for (const int role : {Qt::DisplayRole, Qt::ToolTipRole})
                texts->append(QStringLiteral("%1 cell %2: %3")
                                  .arg(pathOf(&view), QString::number(column), index.data(role).toString()));
        }
        addCells(view, model->index(row, 0, parent), texts);
    }
}

void addView(const QObject &part, QStringList *texts)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(&part);
    if (view == nullptr || view->model() == nullptr || qobject_cast<const QHeaderView *>(view) != nullptr)
        return;
    for (int column = 0; column < view->model()->columnCount(); ++column)
        texts->append(QStringLiteral("%1 header: %2")
                          .arg(pathOf(view), view->model()->headerData(column, Qt::Horizontal).toString()));
    addCells(*view, QModelIndex(), texts);
}

/*! Messages stay as they were said, and parts of Qt's own parts say what Qt does. */
bool isLeftAsItWas(const QObject &part)
{
    return part.objectName() == QLatin1String("messageView")
           || part.objectName().startsWith(QLatin1String("qt_"))
           || part.objectName().startsWith(QLatin1String("Scroll"));
}

/*! All texts of a window. */
QStringList textsOf(const QWidget &window)
{
    QStringList texts;
    const QList<QObject *> parts = window.findChildren<QObject *>();
    for (const QObject *part : parts) {
        if (!part->isWidgetType() && qobject_cast<const QAction *>(part) == nullptr)
            continue;
        if (isLeftAsItWas(*part))
            continue;
        addProperties(*part, &texts);
        addItems(*part, &texts);
        addView(*part, &texts);
    }
    addProperties(window, &texts);
    return texts;
}

/*! Without what differs from run to run: times, and the folder of the file. */
QString withoutTimes(QString text)
{
    static const QRegularExpression time(QStringLiteral("[0-9-]* ?[0-9]{2}:[0-9]{2}:[0-9]{2}(\\.[0-9]+)?"));
    static const QRegularExpression folder(QStringLiteral("/[^ ]*/bike\\.dxsnap"));
    static const QRegularExpression difference(QStringLiteral("[0-9.,]+ (ms|µs)"));
    return text.replace(time, QStringLiteral("TIME"))
        .replace(folder, QStringLiteral("bike.dxsnap"))
        .replace(difference, QStringLiteral("DIFFERENCE"));
}

/*! A window that shows a vehicle, a bus and what is on it, on all pages. */
class ShownWindow
{
public:
    explicit ShownWindow(LanguageSetting *languages)
        : m_window(&m_host.services, &m_host.session)
    {
        m_window.checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        m_window.live().setRules(RuleSet::load({QStringLiteral(HEALTH_RULE_FOLDER)}));
        m_window.setLanguages(languages, languages->current());
        m_window.show();
        showVehicle();
        showBus();
        showPages();
    }
    ~ShownWindow() { m_host.services.bus().disconnectFromBus(); }
    Q_DISABLE_COPY(ShownWindow)

    void choose(const QString &language)
    {
        m_window.findChild<QAction *>(QStringLiteral("actionLanguage_") + language)->trigger();
        finishWork();
        showPages(); // what is hidden finds its words when it is shown
    }

    QStringList texts() const
    {
        QStringList texts;
        for (const QString &text : textsOf(m_window))
            texts.append(withoutTimes(text));
        texts.sort();
        return texts;
    }

private:
    void showVehicle()
    {
        const QString name = m_folder.filePath(QStringLiteral("bike.dxsnap"));
        QString error;
        if (!SnapshotFile::save(name, VehicleSnapshot::of(QStringLiteral("pedelec")), &error))
            qFatal("%s", qUtf8Printable(error));
        m_window.openFile(name);
        finishWork();
    }

    void showBus()
    {
        m_host.services.bus().connectToBus(fakeSettings(), nullptr);
        m_host.fake.heartbeat(5);
        QTest::qWait(500);
        m_host.fake.device()->inject(QCanBusFrame(0x085, QByteArray::fromHex("1042080000000000")));
        QTest::qWait(500);
    }

    void showPages()
    {
        for (const char *page : {"Live", "Trace", "Archive", "Checkup"}) {
            m_window.findChild<QAction *>(QLatin1String("actionPage") + QLatin1String(page))->trigger();
            finishWork();
        }
    }

    static void finishWork()
    {
        QThreadPool::globalInstance()->waitForDone();
        QTest::qWait(2000);
    }

    QTemporaryDir m_folder;
    Host m_host;
    MainWindow m_window;
};

} // namespace

/*! A language that is chosen while the window is open translates all that it shows. */
class tst_WindowTranslation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void openWindowIsTranslated_data();
    void openWindowIsTranslated();
};

void tst_WindowTranslation::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_windowtranslation"));
}

void tst_WindowTranslation::init()
{
    SettingsStore::instance().setValues({});
}

void tst_WindowTranslation::openWindowIsTranslated_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "fr", "nl", "zh_CN"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

/*! As a window that has spoken it from the start. */
void tst_WindowTranslation::openWindowIsTranslated()
{
    QFETCH(QString, language);
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    languages.apply(QStringLiteral("en"));
    QStringList switched;
    {
        ShownWindow window(&languages);
        QVERIFY(window.texts().size() > 300);
        window.choose(language);
        QCOMPARE(languages.current(), language);
        switched = window.texts();
    }
    init();
    const QStringList made = ShownWindow(&languages).texts();
    QCOMPARE(switched, made);
}

QTEST_MAIN(tst_WindowTranslation)
#include "tst_windowtranslation.moc"
