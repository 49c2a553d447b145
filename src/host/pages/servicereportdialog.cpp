// SPDX-License-Identifier: MIT
#include "servicereportdialog.h"

#include "checkupsession.h"
#include "servicereportwriting.h"

#include <host/core/settingsstore.h>
#include <servicereport/healthtrends.h>
#include <servicereport/reportlanguage.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int usualReportDialogWidth = 60; // letters
constexpr int addressLines = 3;

QString languageName(const QString &language)
{
    return language == QLatin1String("en") ? QStringLiteral("English")
                                           : QLocale(language).nativeLanguageName();
}

} // namespace

ServiceReportDialog::ServiceReportDialog(CheckupSession *session, const QString &folder, QWidget *parent)
    : ReadableDialog(usualReportDialogWidth, parent)
    , m_session(session)
    , m_language(new QComboBox(this))
    , m_workshop(new QLineEdit(this))
    , m_lines(new QPlainTextEdit(this))
    , m_logo(new QLineEdit(this))
    , m_folder(new QLineEdit(this))
    , m_compare(new QCheckBox(this))
    , m_show(new QCheckBox(this))
{
    setObjectName(QStringLiteral("serviceReportDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Service report"));
    build(folder);
}

void ServiceReportDialog::build(const QString &folder)
{
    fill(folder);
    auto *form = new QFormLayout;
    form->addRow(tr("&Language:"), m_language);
    form->addRow(tr("&Workshop:"), m_workshop);
    form->addRow(tr("&Address:"), m_lines);
    addPath(form, tr("Lo&go:"), m_logo, "browseLogo", &ServiceReportDialog::chooseLogo);
    addPath(form, tr("&Folder:"), m_folder, "browseFolder", &ServiceReportDialog::chooseFolder);
    form->addRow(m_compare);
    form->addRow(m_show);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("reportButtons"));
    buttons->button(QDialogButtonBox::Save)->setText(tr("Write &report"));
    connect(buttons, &QDialogButtonBox::accepted, this, &ServiceReportDialog::write);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

/*! With what was chosen the last time. */
void ServiceReportDialog::fill(const QString &folder)
{
    fillWorkshop(WorkshopSettings::load(SettingsStore::instance().values()));
    const QStringList languages = ReportLanguage::available();
    for (const QString &language : languages)
        m_language->addItem(languageName(language), language);
    m_language->setCurrentIndex(qMax(0, m_language->findData(m_session->language())));
    m_language->setObjectName(QStringLiteral("reportLanguage"));
    m_folder->setText(QDir::toNativeSeparators(folder));
    m_folder->setObjectName(QStringLiteral("reportFolder"));
    m_compare->setObjectName(QStringLiteral("compareReport"));
    m_compare->setText(tr("With what has &changed since the last visit"));
    m_compare->setEnabled(false);
    followPast();
    connect(m_session, &CheckupSession::recordChanged, this, &ServiceReportDialog::followPast);
    m_show->setText(tr("&Open it then"));
    m_show->setChecked(true);
    m_show->setObjectName(QStringLiteral("showReport"));
}

/*! The archive tells later what was before. What the user has chosen by himself stays. */
void ServiceReportDialog::followPast()
{
    const bool isKnown = m_session->record().comparison.has_value();
    if (isKnown == m_compare->isEnabled())
        return;
    m_compare->setEnabled(isKnown);
    m_compare->setChecked(isKnown);
}

void ServiceReportDialog::fillWorkshop(const WorkshopSettings &workshop)
{
    m_workshop->setObjectName(QStringLiteral("workshopName"));
    m_workshop->setText(workshop.name);
    m_lines->setObjectName(QStringLiteral("workshopLines"));
    m_lines->setPlainText(workshop.lines.join(QLatin1Char('\n')));
    m_lines->setTabChangesFocus(true);
    m_lines->setFixedHeight(fontMetrics().lineSpacing() * addressLines + 12);
    m_logo->setObjectName(QStringLiteral("workshopLogo"));
    m_logo->setText(QDir::toNativeSeparators(workshop.logoFile));
    m_logo->setPlaceholderText(tr("None"));
    m_logo->setClearButtonEnabled(true);
}

void ServiceReportDialog::addPath(QFormLayout *form, const QString &name, QLineEdit *path,
                                  const char *buttonName, void (ServiceReportDialog::*choose)())
{
    auto *browse = new QPushButton(tr("Browse..."), this);
    browse->setObjectName(QLatin1String(buttonName));
    connect(browse, &QPushButton::clicked, this, choose);
    auto *place = new QHBoxLayout;
    place->addWidget(path, 1);
    place->addWidget(browse);
    auto *label = new QLabel(name, this);
    label->setBuddy(path);
    form->addRow(label, place);
}

void ServiceReportDialog::chooseLogo()
{
    const QString folder = m_logo->text().isEmpty()
                               ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                               : QFileInfo(m_logo->text()).absolutePath();
    // What is not there would be taken for the name of a file.
    const QString known = QFileInfo(folder).isDir() ? folder : QDir::homePath();
    auto *dialog
        = new QFileDialog(this, tr("Logo of the workshop"), known, tr("Pictures (*.png *.jpg *.jpeg)"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString &file) { m_logo->setText(QDir::toNativeSeparators(file)); });
    dialog->open();
}

/*! As it stands in the fields. */
WorkshopSettings ServiceReportDialog::workshop() const
{
    WorkshopSettings workshop;
    workshop.name = m_workshop->text();
    const QString lines = m_lines->toPlainText();
    if (!lines.isEmpty())
        workshop.lines = lines.split(QLatin1Char('\n'));
    workshop.logoFile = QDir::fromNativeSeparators(m_logo->text());
    return workshop;
}

void ServiceReportDialog::chooseFolder()
{
    auto *dialog = new QFileDialog(this, tr("Folder for reports"), m_folder->text());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString &folder) { m_folder->setText(QDir::toNativeSeparators(folder)); });
    dialog->open();
}

void ServiceReportDialog::write()
{
    SettingsStore::instance().update([this](QVariantMap *settings) { workshop().save(settings); });

    const CheckupRecord &record = m_session->record();
    ServiceReportOrder order;
    order.snapshot = record.snapshot;
    order.archivedFingerprint = record.archivedFingerprint;
    if (m_compare->isChecked() && record.comparison)
        order.earlier = record.comparison->earlier;
    order.trends = record.trends.isEmpty() ? HealthTrends::of(record.snapshot) : record.trends;
    order.workshop = workshop();
    order.language = m_language->currentData().toString();
    order.folder = QDir::fromNativeSeparators(m_folder->text());
    const bool isShown = m_show->isChecked();
    hide(); // the answer is told in its window
    ServiceReportWriting::write(order, m_session->rules(), this,
                                [this, isShown](const ServiceReportWriting::Result &result) {
                                    if (result.problem.isEmpty()) {
                                        emit written(tr("Service report: %1 and %2")
                                                         .arg(QDir::toNativeSeparators(result.paths.pdf),
                                                              QDir::toNativeSeparators(result.paths.html)));
                                        if (isShown)
                                            QDesktopServices::openUrl(QUrl::fromLocalFile(result.paths.pdf));
                                        if (!result.notice.isEmpty())
                                            emit failed(result.notice);
                                    } else {
                                        emit failed(result.problem);
                                    }
                                    close();
                                    deleteLater();
                                });
}
