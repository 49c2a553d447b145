// SPDX-License-Identifier: MIT
#include "hostfixture.h"

#include <host/bundledialog.h>
#include <host/core/languagesetting.h>
#include <host/mainwindow.h>
#include <host/pages/archiveaddressdialog.h>
#include <host/pages/live/addvaluedialog.h>
#include <host/pages/live/livesession.h>
#include <host/pages/live/numbersdialog.h>
#include <host/pages/notesdialog.h>
#include <host/pages/servicereportdialog.h>
#include <host/patiencedialog.h>

#include <QDir>
#include <QtTest>

#include <memory>

namespace {

using MakeDialog = std::function<std::unique_ptr<QDialog>(MainWindow *)>;

const std::vector<std::pair<const char *, MakeDialog>> &dialogs()
{
    static const std::vector<std::pair<const char *, MakeDialog>> all{
        {"archive's address", [](MainWindow *) { return std::make_unique<ArchiveAddressDialog>(); }},
        {"bundle", [](MainWindow *) { return std::make_unique<BundleDialog>(nullptr); }},
        {"notes", [](MainWindow *) { return std::make_unique<NotesDialog>(SnapshotNotes()); }},
        {"patience", [](MainWindow *) { return std::make_unique<PatienceDialog>(PatienceSettings()); }},
        {"service report",
         [](MainWindow *window) {
             return std::make_unique<ServiceReportDialog>(&window->checkup(), QDir::tempPath());
         }},
        {"another value",
         [](MainWindow *window) { return std::make_unique<AddValueDialog>(&window->live()); }},
        {"all numbers", [](MainWindow *window) { return std::make_unique<NumbersDialog>(&window->live()); }},
    };
    return all;
}

} // namespace

/*! The window's dialogs fit on the smallest screen that it is made for. */
class tst_DialogSizes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fitOnASmallScreen_data();
    void fitOnASmallScreen();
};

void tst_DialogSizes::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_dialogsizes"));
    QFont font = QApplication::font();
    font.setPixelSize(13); // 10 pt at 96 dpi, as desktops have it
    QApplication::setFont(font);
}

void tst_DialogSizes::fitOnASmallScreen_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"en", "de", "fr", "nl", "zh_CN"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

/*! 1024x600 at 200 %, less the frame of a window: one that is wider loses its buttons. */
void tst_DialogSizes::fitOnASmallScreen()
{
    QFETCH(QString, language);
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    languages.apply(language);
    Host host;
    MainWindow window(&host.services, &host.session);
    for (const auto &[name, make] : dialogs()) {
        const std::unique_ptr<QDialog> dialog = make(&window);
        const QSize least = dialog->minimumSizeHint();
        QVERIFY2(
            least.width() <= 504,
            qPrintable(QStringLiteral("%1: %2 pixels wide").arg(QLatin1String(name)).arg(least.width())));
    }
}

QTEST_MAIN(tst_DialogSizes)
#include "tst_dialogsizes.moc"
