// SPDX-License-Identifier: MIT
#include "importedform.h"

#include <reader/datareader.h>
#include <tests/support/windowtest.h>
#include <tests/support/markingtranslator.h>
#include <tests/support/messageboxwatcher.h>
#include <ui/informationdialogs.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QMenu>
#include <QScreen>
#include <QtTest>

namespace {

constexpr quint8 nodeId = 5;

const char *const bootloaderLines
    = "DXC controller supported\nPassive device\nDevice changeable by the end-user\n"
      "Manufacturer-specific functionality supported\nMasterless mode supported\n"
      "Bootloader active; no application software is running";

const char *const untroubledSecurity
    = "No locking mechanism supported\nDevice is not locked locally\nNo manipulation detected\n"
      "Device owns current encryption key\nDevice owns initial encryption key\nNo network lock requested\n"
      "Network is not locked\n";

const char *const zeroSecurity
    = "No locking mechanism supported\nDevice is not locked locally\nManipulation detected\n"
      "Device owns current encryption key\nDevice owns initial encryption key\n"
      "Locking of all virtual devices in the EMS requested\n"
      "All virtual devices in the EMS that support softlocking are locked\n";

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/*! A node and the dialogs over a window. */
class ShownDialogs
{
public:
    ShownDialogs() { window.resize(600, 400); }

    ShownDialogs &set(quint16 index, quint8 subIndex, const QVariant &value)
    {
        reader.setValue(nodeId, index, subIndex, value);
        return *this;
    }

    /*! What the dialog said; no box at all gives "no dialog". */
    QString text(InformationDialog dialog) const
    {
        const MessageBoxWatcher watcher;
        dialogs.show(dialog, reader.node(nodeId));
        return watcher.texts().isEmpty() ? s("no dialog") : watcher.texts().join(s(" + "));
    }

    QStringList offeredTexts() const
    {
        QStringList texts;
        const QList<QAction *> actions = dialogs.offeredActions(reader.node(nodeId));
        for (const QAction *action : actions)
            texts.append(action->text());
        return texts;
    }

    DataReader reader;
    QWidget window;
    InformationDialogs dialogs{window};
};

/*! Reads every menu that opens while it lives, and chooses an action of it, or closes it. */
class MenuDriver : public QObject
{
public:
    explicit MenuDriver(const QString &choice = QString())
        : m_choice(choice)
    {
        qApp->installEventFilter(this);
    }

    QStringList actions;
    QWidget *parentOfMenu = nullptr;
    QPoint position;
    int menus = 0;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            if (auto *menu = qobject_cast<QMenu *>(object))
                QMetaObject::invokeMethod(
                    menu, [this, menu] { answer(*menu); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(object, event);
    }

private:
    void answer(QMenu &menu)
    {
        ++menus;
        parentOfMenu = menu.parentWidget();
        position = menu.pos();
        actions.clear();
        QAction *chosen = nullptr;
        const QList<QAction *> offered = menu.actions();
        for (QAction *action : offered) {
            actions.append(action->text());
            if (action->text() == m_choice)
                chosen = action;
        }
        if (chosen == nullptr) {
            menu.close();
            return;
        }
        menu.setActiveAction(chosen);
        QTest::keyClick(&menu, Qt::Key_Return);
    }

    QString m_choice;
};

void rightClick(QTreeWidget &tree)
{
    const QPoint point(10, 10);
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, tree.viewport()->mapToGlobal(point));
    QApplication::sendEvent(tree.viewport(), &event);
}

} // namespace

/*! The context menu of the component tree and the dialogs it offers. */
class tst_InformationDialogs : public WindowTest
{
    Q_OBJECT

private slots:
    void actionsBelongToTheWindow();
    void offersWhatTheNodeHas_data();
    void offersWhatTheNodeHas();
    void offersEverythingInOrder();
    void boxes_data();
    void boxes();
    void boxIsWidened();
    void boxStandsOverTheWindow();
    void boxWithALongTextStaysOnTheScreen();
    void boxHoldsTheOtherWindows();

    void deviceType_data();
    void deviceType();
    void errorRegister_data();
    void errorRegister();
    void errorField_data();
    void errorField();
    void errorFieldOfAHostileCount();
    void specificationVersions_data();
    void specificationVersions();
    void securityStatus_data();
    void securityStatus();
    void entriesOfHostileCounts();
    void everyEntryOfAHostileNode();

    void menuNeedsARow();
    void menuOpensAtTheCursor();
    void menuWithoutActionsStaysAway();
    void everyActionOpensItsDialog();
    void slotsWithoutARowShowNothing();
    void nodeOfTheMenuIsTheLowByteOfTheRow();
    void textsFollowTheLanguage();
};

void tst_InformationDialogs::actionsBelongToTheWindow()
{
    QWidget window;
    const InformationDialogs dialogs(window);

    QStringList lines;
    const QList<QAction *> actions = window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction *action : actions)
        lines.append(action->text() + s(" | ") + action->statusTip());
    QCOMPARE(lines,
             QStringList({s("Device Type | Shows device type information"),
                          s("Error register | Shows detailed error information"),
                          s("Error field | Shows last occured errors"),
                          s("Implemented specification versions | Shows the implemented specifications"),
                          s("Security Status | Shows implemented security status")}));
}

void tst_InformationDialogs::offersWhatTheNodeHas_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("action");

    QTest::newRow("device type") << 0x1000 << s("Device Type");
    QTest::newRow("error register") << 0x1001 << s("Error register");
    QTest::newRow("error field") << 0x1003 << s("Error field");
    QTest::newRow("versions") << 0x600E << s("Implemented specification versions");
    QTest::newRow("security") << 0x6311 << s("Security Status");
}

void tst_InformationDialogs::offersWhatTheNodeHas()
{
    QFETCH(int, index);
    QFETCH(QString, action);

    ShownDialogs dialogs;
    dialogs.set(static_cast<quint16>(index), 1, 1);
    QCOMPARE(dialogs.offeredTexts(), QStringList());
    dialogs.set(static_cast<quint16>(index), 0, 0);
    QCOMPARE(dialogs.offeredTexts(), QStringList(action));
}

void tst_InformationDialogs::offersEverythingInOrder()
{
    ShownDialogs dialogs;
    dialogs.set(0x6311, 0, 0).set(0x600E, 0, 0).set(0x1003, 0, 0).set(0x1001, 0, 0).set(0x1000, 0, 0);
    QCOMPARE(dialogs.offeredTexts(),
             QStringList({s("Device Type"), s("Error register"), s("Error field"),
                          s("Implemented specification versions"), s("Security Status")}));
}

void tst_InformationDialogs::boxes_data()
{
    QTest::addColumn<int>("dialog");
    QTest::addColumn<QString>("title");

    const auto add = [](const char *name, InformationDialog dialog, const char *title) {
        QTest::newRow(name) << static_cast<int>(dialog) << s(title);
    };
    add("device type", InformationDialog::DeviceType, "Device information");
    add("error register", InformationDialog::ErrorRegister, "Error register");
    add("error field", InformationDialog::ErrorField, "Error information");
    add("versions", InformationDialog::SpecificationVersions, "Implemented specification");
    add("security", InformationDialog::SecurityStatus, "Security Status");
}

void tst_InformationDialogs::boxes()
{
    QFETCH(int, dialog);
    QFETCH(QString, title);

    ShownDialogs dialogs;
    dialogs.set(0x1003, 0, 1);
    const MessageBoxWatcher watcher;
    dialogs.dialogs.show(static_cast<InformationDialog>(dialog), dialogs.reader.node(nodeId));
    QCOMPARE(watcher.boxes().size(), 1);
    const MessageBoxRecord box = watcher.boxes().first();
    QCOMPARE(box.title, title);
    QCOMPARE(box.informativeText, QString());
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(!box.hasParent);
    QVERIFY(box.isModal);
    QVERIFY(box.geometry.width() >= 150);
}

void tst_InformationDialogs::boxIsWidened()
{
    ShownDialogs dialogs;
    QSize size;
    int columns = 0;
    QTimer::singleShot(0, &dialogs.window, [&] {
        QWidget *box = QApplication::activeModalWidget();
        if (box == nullptr)
            return;
        const auto *layout = qobject_cast<QGridLayout *>(box->layout());
        const QLayoutItem *item
            = layout != nullptr ? layout->itemAtPosition(layout->rowCount() - 1, 0) : nullptr;
        if (item != nullptr
            && item == layout->itemAtPosition(layout->rowCount() - 1, layout->columnCount() - 1)) {
            size = item->minimumSize();
            columns = layout->columnCount();
        }
        box->close();
    });
    dialogs.dialogs.show(InformationDialog::ErrorRegister, dialogs.reader.node(nodeId));
    QCOMPARE(size, QSize(150, 0)); // an empty row over all columns
    QVERIFY(columns > 1);
}

void tst_InformationDialogs::boxStandsOverTheWindow()
{
    // As in a host: the window fills a page.
    QWidget host;
    host.setGeometry(60, 40, 640, 480);
    QWidget window(&host);
    window.setGeometry(0, 0, 640, 480);
    host.show();
    DataReader reader;
    reader.setValue(nodeId, 0x1001, 0, 1);
    const InformationDialogs dialogs(window);

    const MessageBoxWatcher watcher;
    for (const InformationDialog dialog : {InformationDialog::DeviceType, InformationDialog::ErrorRegister,
                                           InformationDialog::SpecificationVersions}) {
        dialogs.show(dialog, reader.node(nodeId));
    }
    QCOMPARE(watcher.boxes().size(), 3);
    const QPoint centre = window.mapToGlobal(QPoint(320, 240));
    for (const MessageBoxRecord &box : watcher.boxes()) {
        constexpr int frame = 4; // pixels that the frame of a window may add
        const QPoint offset = box.geometry.center() - centre;
        QVERIFY2(qAbs(offset.x()) <= frame && qAbs(offset.y()) <= frame,
                 qPrintable(s("%1: off by %2, %3").arg(box.title).arg(offset.x()).arg(offset.y())));
    }
}

// A text that scrolls, not a box whose button nobody reaches.
void tst_InformationDialogs::boxWithALongTextStaysOnTheScreen()
{
    ShownDialogs dialogs;
    dialogs.set(0x6311, 0, 30);
    for (int subIndex = 1; subIndex <= 30; ++subIndex)
        dialogs.set(0x6311, static_cast<quint8>(subIndex), 30); // it is the next count, too
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const MessageBoxWatcher watcher;
    for (const QPoint &position : {QPoint(0, 0), screen.bottomRight() - QPoint(100, 100)}) {
        dialogs.window.move(position);
        dialogs.dialogs.show(InformationDialog::SecurityStatus, dialogs.reader.node(nodeId));
    }
    QCOMPARE(watcher.boxes().size(), 2);
    for (const MessageBoxRecord &box : watcher.boxes()) {
        QCOMPARE(box.text.count(QLatin1Char('\n')), 30 * 8); // an empty line after each entry
        QVERIFY2(box.geometry.top() >= screen.top() && box.geometry.bottom() <= screen.bottom(),
                 qPrintable(s("from %1 to %2").arg(box.geometry.top()).arg(box.geometry.bottom())));
        QVERIFY(box.geometry.width() > 200); // the text, not only the bar that moves it
    }
}

void tst_InformationDialogs::boxHoldsTheOtherWindows()
{
    ShownDialogs dialogs;
    QPushButton button(&dialogs.window);
    const QSignalSpy clicks(&button, &QPushButton::clicked);
    dialogs.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialogs.window));
    const auto clickOnButton = [&] {
        QTest::mouseClick(dialogs.window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          button.geometry().center());
    };
    clickOnButton();
    QCOMPARE(clicks.size(), 1);

    bool hadBox = false;
    QTimer::singleShot(0, &dialogs.window, [&] {
        clickOnButton();
        if (QWidget *box = QApplication::activeModalWidget()) {
            hadBox = true;
            box->close();
        }
    });
    dialogs.dialogs.show(InformationDialog::ErrorRegister, dialogs.reader.node(nodeId));
    QVERIFY(hadBox);
    QCOMPARE(clicks.size(), 1);
}

void tst_InformationDialogs::deviceType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("no bits") << QVariant(0u) << s(bootloaderLines);
    QTest::newRow("all bits") << QVariant(0xFFFFFFFFu)
                              << s("DXC not supported\nActive device\nDevice not changeable by end-user\n"
                                   "Manufacturer-specific functionality not supported\n"
                                   "Masterless mode not supported\n"
                                   "CANopen device not in Bootloader mode; application software running");
    QTest::newRow("not stored") << QVariant() << s(bootloaderLines);
}

void tst_InformationDialogs::deviceType()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);

    ShownDialogs dialogs;
    if (value.isValid())
        dialogs.set(0x1000, 0, value);
    QCOMPARE(dialogs.text(InformationDialog::DeviceType), text);
}

void tst_InformationDialogs::errorRegister_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << QVariant(0) << s("No error");
    QTest::newRow("two") << QVariant(3) << s("Generic error\nCurrent Error");
    QTest::newRow("without a text") << QVariant(0x40) << QString();
    QTest::newRow("not stored") << QVariant() << s("No error");
}

void tst_InformationDialogs::errorRegister()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);

    ShownDialogs dialogs;
    if (value.isValid())
        dialogs.set(0x1001, 0, value);
    QCOMPARE(dialogs.text(InformationDialog::ErrorRegister), text);
}

void tst_InformationDialogs::errorField_data()
{
    QTest::addColumn<QVariant>("count");
    QTest::addColumn<QString>("text");

    QTest::newRow("three") << QVariant(3) << s("4096\n4294967295\n");
    QTest::newRow("four, with a gap at the end") << QVariant(5) << s("4096\n4294967295\n12288\n");
    QTest::newRow("two") << QVariant(2) << s("4096\n");
    // A version is a great number: the walk comes back to sub-index 0, whose small value is the last line and
    // the end.
    QTest::newRow("one") << QVariant(1) << QString();
    QTest::newRow("none") << QVariant(0) << QString();
    QTest::newRow("not stored") << QVariant() << s("no dialog");
}

void tst_InformationDialogs::errorField()
{
    QFETCH(QVariant, count);
    QFETCH(QString, text);

    ShownDialogs dialogs;
    dialogs.set(0x1003, 1, 0x1000).set(0x1003, 2, -1).set(0x1003, 3, 0x3000);
    if (count.isValid())
        dialogs.set(0x1003, 0, count);
    QCOMPARE(dialogs.text(InformationDialog::ErrorField), text);
}

void tst_InformationDialogs::errorFieldOfAHostileCount()
{
    ShownDialogs dialogs;
    dialogs.set(0x1003, 0, 4000000000u).set(0x1003, 1, 7);
    const QString text = dialogs.text(InformationDialog::ErrorField);
    QVERIFY(text.startsWith(s("7\n4000000000\n7\n")));
    QVERIFY(text.count(QLatin1Char('\n')) < 100);
    QCOMPARE(log().debugLines().filter(s("more than there can be")).size(), 1);
}

void tst_InformationDialogs::specificationVersions_data()
{
    QTest::addColumn<QVector<quint32>>("entries"); // from sub-index 0
    QTest::addColumn<QString>("text");

    // A version is a great number: the walk comes back to sub-index 0, whose small value is the last line and
    // the end.
    QTest::newRow("one") << QVector<quint32>{1, (454u << 22) | (1u << 16) | (2u << 8)}
                         << s("CiA.part.version.revision\n454.1.2.0\n0.0.0.1\n");
    // The bound is the entry found last, here always far beyond the count.
    QTest::newRow("more than the count") << QVector<quint32>{1, 454u << 22, 301u << 22, 3}
                                         << s("CiA.part.version.revision\n454.0.0.0\n301.0.0.0\n0.0.0.3\n");
    QTest::newRow("ends at a small entry")
        << QVector<quint32>{3, 1, 301u << 22} << s("CiA.part.version.revision\n0.0.0.1\n");
    QTest::newRow("none") << QVector<quint32>{0} << s("CiA.part.version.revision\n");
    QTest::newRow("not stored") << QVector<quint32>() << s("CiA.part.version.revision\n");
}

void tst_InformationDialogs::specificationVersions()
{
    QFETCH(QVector<quint32>, entries);
    QFETCH(QString, text);

    ShownDialogs dialogs;
    for (int i = 0; i < entries.size(); ++i)
        dialogs.set(0x600E, static_cast<quint8>(i), entries.at(i));

    QCOMPARE(dialogs.text(InformationDialog::SpecificationVersions), text);
}

void tst_InformationDialogs::securityStatus_data()
{
    QTest::addColumn<QVector<quint32>>("entries"); // from sub-index 0
    QTest::addColumn<QString>("text");

    QTest::newRow("one of value 0") << QVector<quint32>{1, 0} << s(zeroSecurity) + QLatin1Char('\n');
    QTest::newRow("two, untroubled")
        << QVector<quint32>{1, 0xC4, 2} // the second entry ends the walk
        << s(untroubledSecurity) + QLatin1Char('\n')
               + s("No locking mechanism supported\nDevice is locked locally\nManipulation detected\n"
                   "Device owns current encryption key\nDevice owns initial encryption key\n"
                   "Locking of all virtual devices in the EMS requested\n"
                   "All virtual devices in the EMS that support softlocking are locked\n\n");
    QTest::newRow("none") << QVector<quint32>{0} << QString();
    QTest::newRow("not stored") << QVector<quint32>() << QString();
}

void tst_InformationDialogs::securityStatus()
{
    QFETCH(QVector<quint32>, entries);
    QFETCH(QString, text);

    ShownDialogs dialogs;
    for (int i = 0; i < entries.size(); ++i)
        dialogs.set(0x6311, static_cast<quint8>(i), entries.at(i));
    QCOMPARE(dialogs.text(InformationDialog::SecurityStatus), text);
}

void tst_InformationDialogs::entriesOfHostileCounts()
{
    ShownDialogs dialogs;
    dialogs.set(0x600E, 0, 4000000000u).set(0x6311, 0, 0xFFFFFFFFu);
    const QString versions = dialogs.text(InformationDialog::SpecificationVersions);
    QVERIFY(versions.startsWith(s("CiA.part.version.revision\n953.")));
    QVERIFY(versions.count(QLatin1Char('\n')) < 100);
    QVERIFY(dialogs.text(InformationDialog::SecurityStatus).count(QLatin1Char('\n')) < 200);
    QCOMPARE(log().debugLines().filter(s("more than there can be")).size(), 2);
}

void tst_InformationDialogs::everyEntryOfAHostileNode()
{
    ShownDialogs dialogs;
    for (int subIndex = 0; subIndex < 256; ++subIndex) {
        dialogs.set(0x1003, static_cast<quint8>(subIndex), 4000000000u);
        dialogs.set(0x6311, static_cast<quint8>(subIndex), 4000000000u);
    }
    QCOMPARE(dialogs.text(InformationDialog::ErrorField).count(QLatin1Char('\n')), 16 * 256);
    QCOMPARE(log().debugLines().filter(s("was cut")).size(), 0);
    QCOMPARE(dialogs.text(InformationDialog::SecurityStatus).count(QLatin1Char('\n')), 5000 - 1);
    QCOMPARE(log().debugLines().filter(s("was cut")).size(), 1);
}

void tst_InformationDialogs::menuNeedsARow()
{
    ImportedForm form({});
    QVERIFY(form.tree().currentItem() == nullptr);
    const MenuDriver driver;
    rightClick(form.tree());
    QCoreApplication::processEvents();
    QCOMPARE(driver.menus, 0);
}

void tst_InformationDialogs::menuOpensAtTheCursor()
{
    ImportedForm form({{5, 0x6000, 0, 1}, {5, 0x6000, 1, 6}, {5, 0x1001, 0, 0}});
    const QPoint position(123, 45);
    QCursor::setPos(position);
    const MenuDriver driver;
    rightClick(form.tree());
    QCOMPARE(driver.menus, 1);
    QCOMPARE(driver.actions, QStringList(s("Error register")));
    QCOMPARE(driver.parentOfMenu, &form.form());
    QCOMPARE(driver.position, position);
}

void tst_InformationDialogs::menuWithoutActionsStaysAway()
{
    ImportedForm form({{5, 0x6000, 0, 1}, {5, 0x6000, 1, 6}});
    const MenuDriver driver;
    rightClick(form.tree());
    QCoreApplication::processEvents(); // the driver answers from the event loop
    QCOMPARE(driver.menus, 0);
}

void tst_InformationDialogs::everyActionOpensItsDialog()
{
    ImportedForm form({{5, 0x6000, 0, 1},
                       {5, 0x6000, 1, 6},
                       {5, 0x1000, 0, 0},
                       {5, 0x1001, 0, 3},
                       {5, 0x1003, 0, 3},
                       {5, 0x1003, 1, 10},
                       {5, 0x1003, 2, 20},
                       {5, 0x1003, 3, 30},
                       {5, 0x600E, 0, 1},
                       {5, 0x600E, 1, 1},
                       {5, 0x6311, 0, 1},
                       {5, 0x6311, 1, 0},
                       {6, 0x6000, 0, 1},
                       {6, 0x6000, 1, 4},
                       {6, 0x1001, 0, 0}});
    form.tree().setCurrentItem(form.tree().topLevelItem(0));

    const QStringList actions{s("Device Type"), s("Error register"), s("Error field"),
                              s("Implemented specification versions"), s("Security Status")};
    const MessageBoxWatcher boxes;
    for (const QString &action : actions) {
        const MenuDriver driver(action);
        rightClick(form.tree());
        QCOMPARE(driver.actions, actions);
    }

    QStringList shown;
    for (const MessageBoxRecord &box : boxes.boxes())
        shown.append(box.title + s(": ") + box.text);
    QCOMPARE(shown,
             QStringList({s("Device information: ") + s(bootloaderLines),
                          s("Error register: Generic error\nCurrent Error"), s("Error information: 10\n20\n"),
                          s("Implemented specification: CiA.part.version.revision\n0.0.0.1\n"),
                          s("Security Status: ") + s(zeroSecurity) + QLatin1Char('\n')}));

    // Another row, another node.
    form.tree().setCurrentItem(form.tree().topLevelItem(1));
    const MenuDriver driver(s("Error register"));
    rightClick(form.tree());
    QCOMPARE(driver.actions, QStringList(s("Error register")));
    QCOMPARE(boxes.texts().last(), s("No error"));
}

void tst_InformationDialogs::slotsWithoutARowShowNothing()
{
    ImportedForm form({});
    const MessageBoxWatcher boxes;
    for (const char *slot :
         {"showDeviceType", "showErrorReg", "showErrorField", "showSpec", "showSecurityStatus"})
        QVERIFY(QMetaObject::invokeMethod(&form.form(), slot));
    QCoreApplication::processEvents();
    QCOMPARE(boxes.boxes().size(), 0);
}

void tst_InformationDialogs::nodeOfTheMenuIsTheLowByteOfTheRow()
{
    ImportedForm form({{5, 0x6000, 0, 1}, {5, 0x6000, 1, 6}, {5, 0x1001, 0, 2}});
    auto *row = new QTreeWidgetItem(&form.tree());
    row->setData(0, Qt::UserRole, 0xFF05);
    form.tree().setCurrentItem(row);

    const MessageBoxWatcher boxes;
    const MenuDriver driver(s("Error register"));
    rightClick(form.tree());
    QCOMPARE(driver.actions, QStringList(s("Error register")));
    QCOMPARE(boxes.texts(), QStringList(s("\nCurrent Error")));
}

void tst_InformationDialogs::textsFollowTheLanguage()
{
    ImportedForm form({{5, 0x6000, 0, 1}, {5, 0x6000, 1, 6}, {5, 0x1001, 0, 1}});
    const MarkingTranslator translator("OverviewForm");

    const MessageBoxWatcher boxes;
    const MenuDriver driver(s("[OverviewForm:Error register]"));
    rightClick(form.tree());
    QCOMPARE(driver.actions, QStringList(s("[OverviewForm:Error register]")));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().first().title, s("[OverviewForm:Error register]"));
    QCOMPARE(boxes.boxes().first().text, s("Generic error"));
    for (const QAction *action : form.form().findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly))
        QVERIFY2(action->statusTip().startsWith(s("[OverviewForm:Shows ")), qPrintable(action->statusTip()));
}

QTEST_MAIN(tst_InformationDialogs)
#include "tst_informationdialogs.moc"
