// SPDX-License-Identifier: MIT
#include "servicereportdialog.h"

#include "checkupsession.h"
#include "servicereportwriting.h"

#include <host/core/hostsettings.h>
#include <servicereport/healthtrends.h>
#include <servicereport/reportlanguage.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int usualWorkshopWidth = 44; // letters
constexpr int addressLines = 3;

QString languageName(const QString &language)
{
    return language == QLatin1String("en") ? QStringLiteral("English")
                                           : QLocale(language).nativeLanguageName();
}

} // namespace

ServiceReportDialog::ServiceReportDialog(CheckupSession *session, const QString &folder, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_language(new QComboBox(this))
    , m_workshop(new QLineEdit(this))
    , m_lines(new QPlainTextEdit(this))
    , m_folder(new QLineEdit(this))
    , m_browse(new QPushButton(this))
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
    const QSettings settings;
    const QStringList languages = ReportLanguage::available();
    for (const QString &language : languages)
        m_language->addItem(languageName(language), language);
    m_language->setCurrentIndex(qMax(0, m_language->findData(m_session->language())));
    m_language->setObjectName(QStringLiteral("reportLanguage"));
    m_workshop->setObjectName(QStringLiteral("workshopName"));
    m_workshop->setText(settings.value(HostSettings::workshopName).toString());
    m_workshop->setMinimumWidth(fontMetrics().averageCharWidth() * usualWorkshopWidth);
    m_lines->setPlainText(settings.value(HostSettings::workshopLines).toString());
    m_lines->setTabChangesFocus(true);
    m_lines->setFixedHeight(fontMetrics().lineSpacing() * addressLines + 12);
    m_folder->setText(QDir::toNativeSeparators(folder));
    m_folder->setObjectName(QStringLiteral("reportFolder"));
    m_browse->setText(tr("&Browse..."));
    m_compare->setText(tr("With what has &changed since the last visit"));
    m_compare->setEnabled(m_session->record().comparison.has_value());
    m_compare->setChecked(m_compare->isEnabled());
    m_show->setText(tr("&Open it then"));
    m_show->setChecked(true);
    m_show->setObjectName(QStringLiteral("showReport"));

    auto *place = new QHBoxLayout;
    place->addWidget(m_folder, 1);
    place->addWidget(m_browse);
    auto *form = new QFormLayout;
    form->addRow(tr("&Language:"), m_language);
    form->addRow(tr("&Workshop:"), m_workshop);
    form->addRow(tr("&Address:"), m_lines);
    auto *folderLabel = new QLabel(tr("&Folder:"), this);
    folderLabel->setBuddy(m_folder);
    form->addRow(folderLabel, place);
    form->addRow(m_compare);
    form->addRow(m_show);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Save)->setText(tr("Write &report"));
    connect(buttons, &QDialogButtonBox::accepted, this, &ServiceReportDialog::write);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_browse, &QPushButton::clicked, this, &ServiceReportDialog::chooseFolder);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
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
    QSettings settings;
    settings.setValue(HostSettings::workshopName, m_workshop->text());
    settings.setValue(HostSettings::workshopLines, m_lines->toPlainText());

    const CheckupRecord &record = m_session->record();
    ServiceReportOrder order;
    order.snapshot = record.snapshot;
    if (m_compare->isChecked() && record.comparison)
        order.earlier = record.comparison->earlier;
    order.trends = record.trends.isEmpty() ? HealthTrends::of(record.snapshot) : record.trends;
    order.workshop.name = m_workshop->text();
    order.workshop.lines = m_lines->toPlainText().split(QLatin1Char('\n'));
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
                                    } else {
                                        emit failed(result.problem);
                                    }
                                    close();
                                    deleteLater();
                                });
}
