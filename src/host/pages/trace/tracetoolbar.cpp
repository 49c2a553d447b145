// SPDX-License-Identifier: MIT
#include "tracetoolbar.h"

#include "devicefiles.h"
#include "tracedialogs.h"
#include "tracesession.h"
#include "tracetimes.h"

#include <host/pages/elidedlabel.h>
#include <host/pages/pagelayout.h>

#include <QActionGroup>
#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>
#include <QToolButton>

namespace {

constexpr int progressWidth = 90;     // pixels
constexpr int progressInterval = 200; // ms

/*! "bus 2026-11-22 08-30-15": sorts by time, has no dot that a dialog would take for a suffix, and is not taken for a trace that
 *  was saved by itself.
 */
QString suggestedName()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("'bus 'yyyy-MM-dd hh-mm-ss"));
}

} // namespace

TraceToolbar::TraceToolbar(TraceSession *session, QWidget *parent)
    : BreakingRow(PageLayout::gap, parent)
    , m_session(session)
    , m_record(makeButton("traceRecord", &TraceToolbar::record))
    , m_rotations(new QActionGroup(this))
    , m_saveLast(makeButton("traceSaveLast", &TraceToolbar::saveLast))
    , m_open(makeButton("traceOpen", &TraceToolbar::open))
    , m_live(makeButton("traceLive", &TraceToolbar::showLive))
    , m_devices(makeButton("traceDevices", &TraceToolbar::chooseDevices))
    , m_deviceFiles(new DeviceFiles(this))
    , m_state(new ElidedLabel("traceState", Qt::ElideMiddle, this))
    , m_progress(new QProgressBar(this))
    , m_cancel(makeButton("traceCancel", &TraceToolbar::cancel))
    , m_folder([] { return QString(); })
{
    build();
    m_timer.setInterval(progressInterval);
    connect(&m_timer, &QTimer::timeout, this, &TraceToolbar::refresh);
    connect(session, &TraceSession::documentChanged, this, &TraceToolbar::refresh);
    connect(session, &TraceSession::loadingChanged, this, &TraceToolbar::refresh);
    connect(session, &TraceSession::shortened, this, &TraceToolbar::refresh);
    connect(m_deviceFiles, &DeviceFiles::read, session, &TraceSession::tell);
    connect(m_deviceFiles, &DeviceFiles::failed, session, &TraceSession::failed);
    connect(session, &TraceSession::grown, this, &TraceToolbar::refresh);
    connect(&session->recorder(), &TraceRecorder::begun, this, &TraceToolbar::refresh);
    connect(&session->recorder(), &TraceRecorder::recordingChanged, this, &TraceToolbar::refresh);
    connect(&session->recorder(), &TraceRecorder::keptFirst, this, &TraceToolbar::refresh);
    connect(&session->recorder(), &TraceRecorder::ended, this, &TraceToolbar::refresh);
    retranslate();
}

QToolButton *TraceToolbar::makeButton(const char *name, void (TraceToolbar::*pressed)())
{
    auto *button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, this, pressed);
    return button;
}

void TraceToolbar::build()
{
    m_record->setCheckable(true);
    buildRotations();
    m_progress->setObjectName(QStringLiteral("traceProgress"));
    m_progress->setFixedWidth(progressWidth);
    m_progress->setTextVisible(false);
    parts()->setContentsMargins(0, 0, 0, 0);
    auto *keeping = new QHBoxLayout;
    keeping->addWidget(m_record);
    keeping->addWidget(m_saveLast);
    keeping->addStretch();
    auto *shown = new QHBoxLayout;
    for (QToolButton *button : {m_open, m_live, m_devices})
        shown->addWidget(button);
    shown->addWidget(m_state, 1);
    shown->addWidget(m_progress);
    shown->addWidget(m_cancel);
    addPart(keeping);
    addPart(shown, 1);
}

/*! The choice counts from the next recording on. */
void TraceToolbar::buildRotations()
{
    auto *menu = new QMenu(this);
    menu->setToolTipsVisible(true);
    for (const char *name : {"traceRotateNever", "traceRotateSize", "traceRotateTime"}) {
        QAction *action = m_rotations->addAction(QString());
        action->setObjectName(QLatin1String(name));
        action->setCheckable(true);
        menu->addAction(action);
    }
    connect(menu, &QMenu::aboutToShow, this, [this] {
        const auto rotation = static_cast<int>(m_session->recorder().settings().rotation);
        m_rotations->actions().at(rotation)->setChecked(true);
        retranslateRotations(); // of the settings as they are now
    });
    connect(m_rotations, &QActionGroup::triggered, this, [this](QAction *action) {
        TraceSettings settings = m_session->recorder().settings();
        settings.rotation = static_cast<TraceSettings::Rotation>(m_rotations->actions().indexOf(action));
        settings.save();
        m_session->recorder().setSettings(settings);
    });
    m_record->setMenu(menu);
    m_record->setPopupMode(QToolButton::MenuButtonPopup);
}

void TraceToolbar::record()
{
    TraceRecorder &recorder = m_session->recorder();
    if (recorder.isRecording()) {
        recorder.stopRecording();
        return;
    }
    m_record->setChecked(false); // until there is a file
    TraceDialogs::askToSave(this, "traceRecordDialog", tr("Record to a file"), m_folder(), suggestedName(),
                            [this](const QString &fileName) { m_session->record(fileName); });
}

void TraceToolbar::saveLast()
{
    // As of now, and not of when the name is typed.
    const FlightRecorder minutes = m_session->recorder().lastMinutes();
    TraceDialogs::askToSave(this, "traceSaveDialog", tr("Save the last 10 minutes"), m_folder(),
                            suggestedName(),
                            [this, minutes](const QString &fileName) { m_session->save(fileName, minutes); });
}

void TraceToolbar::open()
{
    QStringList endings = TraceSession::endings();
    for (QString &ending : endings)
        ending.prepend(QLatin1Char('*'));
    TraceDialogs::askToOpen(this, "traceOpenDialog", tr("Open a trace"), m_folder(),
                            {tr("Traces (%1)").arg(endings.join(QLatin1Char(' '))), tr("All files (*)")},
                            [this](const QString &fileName) { m_session->open(fileName); });
}

void TraceToolbar::chooseDevices()
{
    m_deviceFiles->choose(m_folder());
}

void TraceToolbar::showLive()
{
    m_session->showLive();
}

void TraceToolbar::cancel()
{
    m_session->cancelOpening();
}

QString TraceToolbar::progressText() const
{
    TraceLoading &loading = m_session->loading();
    if (loading.isRunning())
        return tr("Reading %1: %2")
            .arg(QFileInfo(loading.fileName()).fileName(), TraceTimes::frames(loading.frames()));
    const TraceRecorder &recorder = m_session->recorder();
    if (recorder.isRecording())
        return tr("Recording %1: %2, %3")
            .arg(QFileInfo(recorder.recordingFile()).fileName(), TraceTimes::frames(recorder.recorded()),
                 TraceTimes::difference(recorder.recordingTime()));
    if (!m_session->isLive())
        return QDir::toNativeSeparators(m_session->document()->fileName);
    return QString();
}

void TraceToolbar::refresh()
{
    const bool isRecording = m_session->recorder().isRecording();
    const bool isLoading = m_session->loading().isRunning();
    if (isLoading && !m_timer.isActive())
        m_timer.start();
    else if (!isLoading)
        m_timer.stop();
    m_record->setChecked(isRecording);
    m_record->setText(isRecording ? tr("■ Stop recor&ding") : tr("● Recor&d..."));
    m_saveLast->setEnabled(m_session->recorder().kept() > 0);
    m_live->setVisible(!m_session->isLive());
    m_devices->setVisible(!m_session->isLive());
    m_devices->setEnabled(!isLoading);
    m_progress->setVisible(isLoading);
    m_cancel->setVisible(isLoading);
    const int percent = m_session->loading().percent();
    m_progress->setRange(0, percent < 0 ? 0 : 100); // without an end, when nobody knows it
    m_progress->setValue(percent);
    m_state->setText(progressText());
    m_state->setToolTip(progressText());
}

void TraceToolbar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    BreakingRow::changeEvent(event);
}

void TraceToolbar::retranslateRotations()
{
    const TraceSettings &settings = m_session->recorder().settings();
    const QList<QAction *> actions = m_rotations->actions();
    actions.at(0)->setText(tr("Record to one &file"));
    actions.at(1)->setText(tr("A new file every %1 &MB").arg(settings.rotationMegabytes));
    actions.at(2)->setText(
        tr("A new file every %n m&inute(s)", nullptr, static_cast<int>(settings.rotationMinutes)));
    for (QAction *action : {actions.at(1), actions.at(2)})
        action->setToolTip(tr("The files get numbers: ride-0001.log, ride-0002.log"));
}

void TraceToolbar::retranslate()
{
    retranslateRotations();
    m_record->setToolTip(tr("Writes all that is heard from now on into a file"));
    m_saveLast->setText(tr("&Save last 10 min..."));
    m_saveLast->setToolTip(tr("Saves what was heard in the last ten minutes; it is kept all the time"));
    m_open->setText(tr("O&pen..."));
    m_open->setToolTip(tr("Opens a trace: a log of candump, asc, trc, pcap or pcapng, also compressed"));
    m_live->setText(tr("Liv&e"));
    m_live->setToolTip(tr("Shows what is heard instead of the file"));
    m_devices->setText(tr("De&vices..."));
    m_devices->setToolTip(
        tr("Opens a snapshot of this vehicle or the data sheet of a device: then the trace says what PDOs "
           "carry and what objects are called"));
    m_cancel->setText(tr("Cancel"));
    refresh();
}
