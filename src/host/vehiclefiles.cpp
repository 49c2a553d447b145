// SPDX-License-Identifier: MIT
#include "vehiclefiles.h"

#include "filefolder.h"

#include <system/background.h>
#include <host/core/recentfiles.h>
#include <host/core/shownvehicle.h>
#include <snapshot/savedvehicle.h>
#include <snapshot/snapshotexchange.h>
#include <snapshot/snapshotfile.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr char suffix[] = "dxxml";
constexpr QLatin1String fileEndings[]
    = {QLatin1String(".dxsnap"), QLatin1String(".dxxml"), QLatin1String(".zip")};

QFileDialog *makeDialog(QWidget *window, const QString &name, const QString &title, const QString &folder,
                        const QString &filter)
{
    auto *dialog = new QFileDialog(window, title, folder, filter);
    dialog->setObjectName(name);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
}

/*! Whether there is something that is no file: a pipe, for instance, could keep the window waiting. */
bool isOther(const QString &fileName)
{
    const QFileInfo info(fileName);
    return info.exists() && !info.isFile();
}

/*! By its beginning: names may say anything. */
bool isSnapshot(const QString &fileName)
{
    constexpr qint64 looked = 4096;
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) && SnapshotFile::looksLikeSnapshot(file.read(looked));
}

} // namespace

VehicleFiles::VehicleFiles(ShownVehicle *vehicle, QWidget *window)
    : QObject(window)
    , m_vehicle(vehicle)
    , m_window(window)
{
}

void VehicleFiles::setPage(const QWidget *page)
{
    m_exchange = PluginExchange(page);
}

bool VehicleFiles::isVehicleFile(const QString &fileName)
{
    return std::any_of(std::begin(fileEndings), std::end(fileEndings), [&fileName](QLatin1String ending) {
        return fileName.endsWith(ending, Qt::CaseInsensitive);
    });
}

QString VehicleFiles::fileFilter()
{
    return tr("Vehicle data (*.dxsnap *.dxxml *.zip)");
}

QStringList VehicleFiles::endings()
{
    QStringList endings;
    for (const QLatin1String ending : fileEndings)
        endings << ending;
    return endings;
}

void VehicleFiles::open(const QStringList &nameFilters)
{
    QFileDialog *dialog = makeDialog(m_window, QStringLiteral("openDialog"), tr("Open a file"),
                                     FileFolder::start(), QString());
    dialog->setNameFilters(nameFilters);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &VehicleFiles::chosen);
    dialog->open();
}

VehicleFiles::StillWanted VehicleFiles::startOpening()
{
    dropOpening();
    return [this, opening = m_opening] { return opening == m_opening; };
}

void VehicleFiles::openFile(const QString &fileName)
{
    whenKept([this, fileName] { show(fileName); });
}

void VehicleFiles::save(const Action &then)
{
    QFileDialog *dialog = makeDialog(m_window, QStringLiteral("saveDialog"), tr("Save vehicle data"),
                                     FileFolder::start(), tr("Vehicle data (*.dxxml)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QLatin1String(suffix));
    dialog->selectFile(m_vehicle->suggestedFileName());
    connect(dialog, &QFileDialog::fileSelected, this, [this, then](const QString &fileName) {
        if (write(fileName) && then)
            then();
    });
    dialog->open();
}

void VehicleFiles::whenKept(const Action &proceed)
{
    if (!m_vehicle->isUnsaved() || !isAvailable()) {
        proceed();
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Question, QApplication::applicationDisplayName(),
                                tr("The values that were read are in no file. Save them before they go?"),
                                QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, m_window);
    box->setObjectName(QStringLiteral("saveQuestion"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(m_vehicle->title());
    box->button(QMessageBox::Save)->setText(tr("&Save..."));
    box->button(QMessageBox::Discard)->setText(tr("&Do not save"));
    box->button(QMessageBox::Cancel)->setText(tr("Cancel"));
    box->setDefaultButton(QMessageBox::Save);
    box->setEscapeButton(QMessageBox::Cancel);
    connect(box->button(QMessageBox::Save), &QPushButton::clicked, this, [this, proceed] { save(proceed); });
    connect(box->button(QMessageBox::Discard), &QPushButton::clicked, this, proceed);
    box->open();
}

void VehicleFiles::show(const QString &fileName)
{
    dropOpening();
    if (isOther(fileName)) {
        refuse(fileName, tr("%1 is not a file.").arg(QDir::toNativeSeparators(fileName)));
        return;
    }
    if (isSnapshot(fileName)) {
        openSnapshot(fileName);
        return;
    }
    QString text;
    QString reason;
    if (!loadExchangeFile(fileName, text, &reason)) {
        refuse(fileName, reason);
        return;
    }
    NodeStore store;
    reason = importChecked(text, store);
    if (!reason.isEmpty()) {
        refuse(fileName, QDir::toNativeSeparators(fileName) + QLatin1String("\n") + reason);
        return;
    }
    // The plug-in reads the text once more: what the user does meanwhile comes before that.
    QMetaObject::invokeMethod(
        this,
        [this, fileName, text, store, opening = m_opening] {
            if (opening == m_opening)
                showText(fileName, text, store);
        },
        Qt::QueuedConnection);
}

void VehicleFiles::showText(const QString &fileName, const QString &text, const NodeStore &store)
{
    const QDateTime time = exchangeDate(text);
    if (!showInPlugin(fileName, text, store, time))
        return;
    Snapshot snapshot = SnapshotExchange::fromStore(store);
    snapshot.time = time;
    tellOpened(snapshot, fileName);
}

/*! The pages judge it, which takes as long as the plug-in's reading: what the user does meanwhile comes in between. */
void VehicleFiles::tellOpened(const Snapshot &snapshot, const QString &fileName)
{
    const auto tell = [this, snapshot, fileName, opening = m_opening] {
        if (opening != m_opening)
            return;
        emit opened(snapshot, fileName);
        noteOpened(fileName);
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

/*! A large one takes a while to read. */
void VehicleFiles::openSnapshot(const QString &fileName)
{
    struct Loaded
    {
        std::optional<Snapshot> snapshot;
        QString problem;
        NodeStore store;
        QString text; // for the plug-in
    };
    const auto load = [fileName] {
        Loaded loaded;
        loaded.snapshot = SavedVehicle::load(fileName, &loaded.problem);
        if (loaded.snapshot) {
            SnapshotExchange::fillStore(*loaded.snapshot, loaded.store);
            loaded.text = exportToText(loaded.store, loaded.snapshot->time);
        }
        return loaded;
    };
    Background::run(this, load, [this, fileName, opening = m_opening](const Loaded &loaded) {
        if (opening != m_opening)
            return;
        if (!loaded.snapshot) {
            refuse(fileName, loaded.problem);
            return;
        }
        if (!showInPlugin(fileName, loaded.text, loaded.store, loaded.snapshot->time))
            return;
        tellOpened(*loaded.snapshot, fileName);
    });
}

void VehicleFiles::showSnapshot(const Snapshot &snapshot, const QString &name)
{
    dropOpening();
    NodeStore store;
    SnapshotExchange::fillStore(snapshot, store);
    showInPlugin(name, exportToText(store, snapshot.time), store, snapshot.time);
}

void VehicleFiles::openSnapshot(const Snapshot &snapshot, const QString &fileName, const Action &then)
{
    whenKept([this, snapshot, fileName, then] {
        dropOpening();
        NodeStore store;
        SnapshotExchange::fillStore(snapshot, store);
        if (!showInPlugin(fileName, exportToText(store, snapshot.time), store, snapshot.time))
            return;
        emit opened(snapshot, fileName);
        then();
    });
}

/*! Without a plug-in that takes part the other pages show it. */
bool VehicleFiles::showInPlugin(const QString &fileName, const QString &text, const NodeStore &store,
                                const QDateTime &time)
{
    if (!isAvailable())
        return true;
    if (!m_exchange.show(text)) {
        refuse(fileName, tr("A file cannot be opened now. Is a read running?"));
        return false;
    }
    m_vehicle->showFile(fileName, store, time);
    return true;
}

void VehicleFiles::noteOpened(const QString &fileName)
{
    FileFolder::remember(fileName);
    RecentFiles::add(fileName);
    emit recentChanged();
    emit succeeded(tr("Opened: %1").arg(QDir::toNativeSeparators(fileName)));
}

bool VehicleFiles::write(const QString &fileName)
{
    if (isOther(fileName)) {
        emit failed(tr("%1 is not a file.").arg(QDir::toNativeSeparators(fileName)));
        return false;
    }
    QString reason;
    if (!saveExchangeFile(fileName, m_exchange.text(), &reason)) {
        emit failed(reason);
        return false;
    }
    m_vehicle->noteSaved(fileName);
    FileFolder::remember(fileName);
    RecentFiles::add(fileName);
    emit recentChanged();
    emit succeeded(tr("Saved: %1").arg(QDir::toNativeSeparators(fileName)));
    return true;
}

void VehicleFiles::refuse(const QString &fileName, const QString &reason)
{
    if (!QFileInfo::exists(fileName)) {
        RecentFiles::remove(fileName);
        emit recentChanged();
    }
    emit failed(m_vehicle->source() == ShownVehicle::Source::None
                    ? reason
                    : reason + QLatin1String("\n\n") + tr("What was shown before is still shown."));
}
