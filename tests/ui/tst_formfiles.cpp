// SPDX-License-Identifier: MIT
#include "formbench.h"

#include <tests/support/filedialogdriver.h>
#include <tests/support/filesizelimit.h>
#include <tests/support/messageboxwatcher.h>
#include <tests/support/windowtest.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

namespace {

QByteArray fileContent(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void writeFile(const QString &name, const QByteArray &content)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

const QByteArray vehicle("<dxtoolstorage><nodes><node nodeid=\"5\">"
                         "<object index=\"0x6000\" sub=\"0x00\" value=\"1\" />"
                         "<object index=\"0x6000\" sub=\"0x01\" value=\"6\" />"
                         "</node></nodes></dxtoolstorage>\n");

} // namespace

/*! The buttons for the exchange file. */
class tst_FormFiles : public WindowTest
{
    Q_OBJECT

private slots:
    void exportWritesAFile();
    void exportCancelledOrFailedIsSilent();
    void exportThatFailsKeepsTheOldFile();
    void importRebuildsTheTree();
    void importCancelledRebuildsTheTree();
    void importOfNoXmlEmptiesTheTree();
    void importOfAMissingFileKeepsTheData();
};

void tst_FormFiles::exportWritesAFile()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    FileDialogDriver driver(name);
    MessageBoxWatcher watcher;
    bench.press("btnExport");
    QCOMPARE(driver.dialogs().size(), 1);
    const FileDialogRecord dialog = driver.dialogs().constFirst();
    QCOMPARE(dialog.caption, QStringLiteral("Export Draxel LEV Network information"));
    QCOMPARE(dialog.suggestedFile, QStringLiteral("untitled.dxxml"));
    QCOMPARE(dialog.filters, QStringList{QStringLiteral("Draxel Tool XML files (*.dxxml)")});
    QCOMPARE(dialog.acceptMode, QFileDialog::AcceptSave);
    QCOMPARE(dialog.parent, bench.form.get());
    QCOMPARE(watcher.texts(), QStringList());
    const QByteArray text = fileContent(name);
    QVERIFY2(text.startsWith(
                 "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n<dxtoolstorage pl_overwiew=\"1.0\" date="),
             text.constData());
    QVERIFY2(text.contains("        <node nodeid=\"1\">\n"
                           "            <object index=\"0x6000\" sub=\"0x00\" value=\"1\" />\n"
                           "            <object index=\"0x6000\" sub=\"0x01\" value=\"4\" />\n"
                           "        </node>\n"),
             text.constData());
}

void tst_FormFiles::exportCancelledOrFailedIsSilent()
{
    const QTemporaryDir dir;
    FormBench bench;
    MessageBoxWatcher watcher;
    {
        FileDialogDriver driver{QString()};
        bench.press("btnExport");
        QCOMPARE(driver.dialogs().size(), 1);
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList());
    QCOMPARE(watcher.texts(), QStringList());
}

void tst_FormFiles::exportThatFailsKeepsTheOldFile()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, "old");
    FormBench bench;
    MessageBoxWatcher watcher(QMessageBox::Yes); // the dialog asks whether to replace the file
    FileDialogDriver driver(name);
    {
        const FileSizeLimit fullDisk(16);
        bench.press("btnExport");
    }
    QCOMPARE(driver.dialogs().size(), 1);
    QCOMPARE(fileContent(name), QByteArray("old"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("vehicle.dxxml")});
#else
    QSKIP("This system has no limit for the size of files, which stands for a full disk");
#endif
}

void tst_FormFiles::importRebuildsTheTree()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, vehicle);
    FormBench bench;
    FileDialogDriver driver(name);
    bench.press("btnImport");
    const FileDialogRecord dialog = driver.dialogs().constFirst();
    QCOMPARE(dialog.caption, QStringLiteral("Import Draxel LEV Network information"));
    QCOMPARE(dialog.filters, QStringList{QStringLiteral("Draxel Tool XML files (*.dxxml)")});
    QCOMPARE(dialog.acceptMode, QFileDialog::AcceptOpen);
    QCOMPARE(dialog.parent, bench.form.get());
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Battery Pack")});
    QVERIFY(log().debugLines().contains(QStringLiteral("(5, 0)")));
}

void tst_FormFiles::importCancelledRebuildsTheTree()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.find<QTreeWidget>("treeWidget")->clear();
    FileDialogDriver driver{QString()};
    bench.press("btnImport");
    QCOMPARE(driver.dialogs().size(), 1);
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
}

void tst_FormFiles::importOfNoXmlEmptiesTheTree()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, "no XML");
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    FileDialogDriver driver(name);
    bench.press("btnImport");
    QCOMPARE(bench.components(), QStringList());
    QCOMPARE(watcher.texts(), QStringList());
}

void tst_FormFiles::importOfAMissingFileKeepsTheData()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, vehicle);
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    FileDialogDriver driver(name);
    // The file goes between the choice and the opening.
    QTimer::singleShot(0, &bench.finder, [&] {
        auto *dialog = bench.form->findChild<QFileDialog *>();
        QVERIFY(dialog != nullptr);
        connect(dialog, &QDialog::accepted, dialog, [name] { QFile::remove(name); });
    });
    bench.press("btnImport");
    QVERIFY(!QFile::exists(name));
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
}

QTEST_MAIN(tst_FormFiles)
#include "tst_formfiles.moc"
