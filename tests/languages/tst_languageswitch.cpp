// SPDX-License-Identifier: MIT
#include <host/core/languagesetting.h>
#include <interpreter/datainterpreter.h>
#include <interface/dxplugininterface.h>
#include <reader/datareader.h>

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLocale>
#include <QPluginLoader>
#include <QTabWidget>
#include <QTableWidget>
#include <QTranslator>
#include <QTreeWidget>
#include <QtTest>

/*! The built translations in use: the plug-in's open window, the texts that are glued together, the host. */
class tst_LanguageSwitch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void openWindowSwitches_data();
    void openWindowSwitches();
    void localeFollows_data();
    void localeFollows();
    void gluedTexts_data();
    void gluedTexts();
    void exchangeFileIsTheSame_data() { addLanguages(); }
    void exchangeFileIsTheSame();
    void hostOffersTheLanguages();
    void hostSwitches_data();
    void hostSwitches();

private:
    void addLanguages();
    DXPlugInInterface *plugin() const { return qobject_cast<DXPlugInInterface *>(m_loader.instance()); }
    QWidget *window() const { return plugin()->getWidget(); }
    QStringList windowTexts() const;
    QStringList actionTexts() const;

    mutable QPluginLoader m_loader{QStringLiteral(OVERVIEW_PLUGIN)};
};

namespace {

const QStringList englishWindow{
    QStringLiteral("Form"),
    QStringLiteral("Draxel Network Components"),
    QStringLiteral("Node-Id"),
    QStringLiteral("NMT-State"),
    QStringLiteral("DX FSA State"),
    QStringLiteral("Device Parameters (fixed)"),
    QStringLiteral("Actual Values"),
    QStringLiteral("Property"),
    QStringLiteral("Value"),
    QStringLiteral("Read all data"),
    QStringLiteral("Export "),
    QStringLiteral("Import"),
    QStringLiteral("Save PDF Report"),
    QStringLiteral("Check for Component update"),
    QStringLiteral("Scan for devices and read all data from the components"),
};

const QStringList englishActions{
    QStringLiteral("Device Type"),     QStringLiteral("Error field"),
    QStringLiteral("Error register"),  QStringLiteral("Implemented specification versions"),
    QStringLiteral("Security Status"),
};

QStringList utf8List(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QString builtFile(const QString &family, const QString &language)
{
    return QStringLiteral(OVERVIEW_LANGUAGES "/%1_%2.qm").arg(family, language);
}

} // namespace

void tst_LanguageSwitch::initTestCase()
{
    QVERIFY2(plugin() != nullptr, qPrintable(m_loader.errorString()));
    window()->show();
    QVERIFY(QTest::qWaitForWindowExposed(window()));
}

void tst_LanguageSwitch::cleanupTestCase()
{
    delete window();
    delete m_loader.instance();
}

void tst_LanguageSwitch::cleanup()
{
    plugin()->setLanguage(QStringLiteral("en"));
    LanguageSetting(QStringLiteral(OVERVIEW_LANGUAGES)).apply(QStringLiteral("en"));
    QCoreApplication::processEvents();
}

void tst_LanguageSwitch::addLanguages()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "fr", "nl", "zh_CN"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

/*! The texts of englishWindow as they are shown now. */
QStringList tst_LanguageSwitch::windowTexts() const
{
    QStringList texts{window()->windowTitle()};
    const auto *tree = window()->findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
    for (int column = 0; column < 4; ++column)
        texts.append(tree->headerItem()->text(column));
    const auto *tabs = window()->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    texts.append({tabs->tabText(0), tabs->tabText(1)});
    const auto *values = window()->findChild<QTableWidget *>(QStringLiteral("tblValues"));
    texts.append({values->horizontalHeaderItem(0)->text(), values->horizontalHeaderItem(1)->text()});
    const auto button
        = [this](const char *name) { return window()->findChild<QAbstractButton *>(QLatin1String(name)); };
    for (const char *name : {"btnRead", "btnExport", "btnImport", "btnSavePdf", "btnCheckUpdate"})
        texts.append(button(name)->text());
    texts.append(button("btnRead")->toolTip());
    return texts;
}

/*! The texts of the tree's context menu, sorted. */
QStringList tst_LanguageSwitch::actionTexts() const
{
    QStringList texts;
    const QList<QAction *> actions = window()->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction *action : actions)
        texts.append(action->text());
    return sorted(texts);
}

void tst_LanguageSwitch::openWindowSwitches_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("actions");

    QTest::newRow("German") << QStringLiteral("de")
                            << utf8List({"Übersicht", "Draxel Network Components", "Knoten-ID", "NMT-Status",
                                         "DX-FSA-Zustand", "Geräteparameter (fest)", "Istwerte",
                                         "Eigenschaft", "Wert", "Alle Daten lesen", "Exportieren ",
                                         "Importieren", "PDF-Bericht speichern", "Komponenten-Update suchen",
                                         "Nach Geräten suchen und alle Daten der Komponenten lesen"})
                            << utf8List({"Gerätetyp", "Fehlerspeicher", "Fehlerregister",
                                         "Umgesetzte Spezifikationsversionen", "Diebstahlschutzstatus"});
    QTest::newRow("French") << QStringLiteral("fr")
                            << utf8List(
                                   {"Vue d’ensemble", "Draxel Network Components", "ID de nœud", "État NMT",
                                    "État FSA DX", "Paramètres de l’appareil (fixes)", "Valeurs actuelles",
                                    "Propriété", "Valeur", "Lire toutes les données", "Exporter ", "Importer",
                                    "Enregistrer le rapport PDF", "Rechercher une mise à jour du composant",
                                    "Rechercher les appareils et lire toutes les données des composants"})
                            << utf8List({"Type d’appareil", "Historique des erreurs", "Registre d’erreurs",
                                         "Versions des spécifications implémentées", "État de l’antivol"});
    QTest::newRow("Dutch") << QStringLiteral("nl")
                           << utf8List({"Overzicht", "Draxel Network Components", "Node-ID", "NMT-status",
                                        "DX-FSA-toestand", "Apparaatparameters (vast)", "Actuele waarden",
                                        "Eigenschap", "Waarde", "Alle gegevens lezen", "Exporteren ",
                                        "Importeren", "PDF-rapport opslaan", "Componentupdate zoeken",
                                        "Apparaten zoeken en alle gegevens van de componenten lezen"})
                           << utf8List({"Apparaattype", "Foutgeheugen", "Foutregister",
                                        "Geïmplementeerde specificatieversies",
                                        "Status van de diefstalbeveiliging"});
    QTest::newRow("Simplified Chinese")
        << QStringLiteral("zh_CN")
        << utf8List({"总览", "Draxel Network Components", "节点 ID", "NMT 状态", "DX FSA 状态",
                     "设备参数（固定）", "实际值", "属性", "值", "读取全部数据", "导出 ", "导入",
                     "保存 PDF 报告", "检查部件更新", "搜索设备并读取部件的全部数据"})
        << utf8List({"设备类型", "错误记录", "错误寄存器", "已实现的规范版本", "防盗状态"});
}

void tst_LanguageSwitch::openWindowSwitches()
{
    QFETCH(QString, language);
    QFETCH(QStringList, texts);
    QFETCH(QStringList, actions);

    QVERIFY(window()->isVisible());
    QCOMPARE(windowTexts(), englishWindow);
    QCOMPARE(actionTexts(), englishActions);

    plugin()->setLanguage(language);
    QTRY_COMPARE(windowTexts(), texts);
    QCOMPARE(actionTexts(), sorted(actions));

    plugin()->setLanguage(QStringLiteral("en"));
    QTRY_COMPARE(windowTexts(), englishWindow);
    QCOMPARE(actionTexts(), englishActions);
}

void tst_LanguageSwitch::localeFollows_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QLocale::Language>("expected");

    QTest::newRow("German") << QStringLiteral("de") << QLocale::German;
    QTest::newRow("French") << QStringLiteral("fr") << QLocale::French;
    QTest::newRow("Dutch") << QStringLiteral("nl") << QLocale::Dutch;
    QTest::newRow("Simplified Chinese") << QStringLiteral("zh_CN") << QLocale::Chinese;
}

void tst_LanguageSwitch::localeFollows()
{
    QFETCH(QString, language);
    QFETCH(QLocale::Language, expected);

    plugin()->setLanguage(language);
    QCOMPARE(QLocale().language(), expected);
}

void tst_LanguageSwitch::gluedTexts_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QString>("system");
    QTest::addColumn<QString>("voltage");

    const auto row = [](const char *language, const char *errors, const char *flags, const char *system,
                        const char *voltage) {
        QTest::newRow(language) << QString::fromLatin1(language) << QString::fromUtf8(errors)
                                << QString::fromUtf8(flags) << QString::fromUtf8(system)
                                << QString::fromUtf8(voltage);
    };
    row("de", "Allgemeiner Fehler\nStromfehler", "Stromeingang aktiv Stromausgang aktiv ",
        "5,DX ist ein,DX in Bereitschaft,", "36.50 V");
    row("fr", "Erreur générale\nErreur de courant", "Entrée de courant active Sortie de courant active ",
        "5,DX sous tension,DX en veille,", "36.50 V");
    row("nl", "Algemene fout\nStroomfout", "Stroomingang actief Stroomuitgang actief ",
        "5,DX is aan,DX stand-by,", "36.50 V");
    row("zh_CN", "一般错误\n电流错误", "电流输入有效 电流输出有效 ", "5,DX 已开启,DX 待机,", "36.50 V");
}

void tst_LanguageSwitch::gluedTexts()
{
    QFETCH(QString, language);

    plugin()->setLanguage(language);
    QTEST(DataInterpreter::interpretErrorRegister(3u), "errors");
    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(3u, flags, state);
    QTEST(flags, "flags");
    QTEST(DataInterpreter::formatValue(0x6080, 0, 5u), "system");
    QTEST(DataInterpreter::formatValue(0x6040, 1, 36500u), "voltage");
}

void tst_LanguageSwitch::exchangeFileIsTheSame()
{
    QFETCH(QString, language);

    DataReader reader;
    reader.importXml(
        QStringLiteral("<node id=\"0x06\"><object index=\"0x6000\" sub=\"0x01\" value=\"6\" /></node>"));
    const QString line = QStringLiteral("            <object index=\"0x6000\" sub=\"0x01\" value=\"6\" />\n");
    const QString english = reader.exportXml();
    QVERIFY2(english.contains(line), qPrintable(english));

    QTranslator translator;
    QVERIFY(translator.load(builtFile(QStringLiteral("pl_overview"), language)));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString translated = reader.exportXml();
    QVERIFY2(translated.contains(line), qPrintable(translated));
    QCOMPARE(translated.count(QLatin1Char('\n')), english.count(QLatin1Char('\n')));
}

void tst_LanguageSwitch::hostOffersTheLanguages()
{
    const LanguageSetting setting(QStringLiteral(OVERVIEW_LANGUAGES));
    QCOMPARE(setting.available(), utf8List({"de", "en", "fr", "nl", "zh_CN"}));
    QCOMPARE(setting.bestOf({QStringLiteral("zh-Hans-CN")}), QStringLiteral("zh_CN"));
}

void tst_LanguageSwitch::hostSwitches_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("connectButton");
    QTest::addColumn<QString>("abortText");

    const auto row = [](const char *language, const char *connectButton, const char *abortText) {
        QTest::newRow(language) << QString::fromLatin1(language) << QString::fromUtf8(connectButton)
                                << QString::fromUtf8(abortText);
    };
    row("en", "Connect", "The object does not exist");
    row("de", "Verbinden", "Das Objekt gibt es nicht");
    row("fr", "Connecter", "L’objet n’existe pas");
    row("nl", "Verbinden", "Het object bestaat niet");
    row("zh_CN", "连接", "该对象不存在");
}

void tst_LanguageSwitch::hostSwitches()
{
    QFETCH(QString, language);

    LanguageSetting setting(QStringLiteral(OVERVIEW_LANGUAGES));
    QVERIFY(setting.apply(language));
    QTEST(QCoreApplication::translate("ConnectionBar", "Connect"), "connectButton");
    QTEST(QCoreApplication::translate("CanOpen", "The object does not exist"), "abortText");
}

QTEST_MAIN(tst_LanguageSwitch)
#include "tst_languageswitch.moc"
