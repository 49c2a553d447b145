// SPDX-License-Identifier: MIT
#include "numbersdialog.h"

#include "healthrows.h"
#include "livesession.h"

#include <host/pages/copytable.h>
#include <servicereport/reportmark.h>

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

using namespace std::chrono_literals;

constexpr auto refreshTime = 1000ms;
constexpr QSize usualNumbersSize(860, 440);

} // namespace

NumbersDialog::NumbersDialog(LiveSession *session, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_tabs(new QTabWidget(this))
{
    setObjectName(QStringLiteral("numbersDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("All numbers of the bus"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(tr("&Close"));
    QPushButton *copy = buttons->addButton(tr("Copy &all"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("copyNumbers"));
    connect(copy, &QPushButton::clicked, this, [this] { QGuiApplication::clipboard()->setText(toText()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(buttons);
    refresh();
    constexpr int nothingWide = 100;
    addTable("busNumbers", tr("Bus"), &m_bus, 1);
    addTable("nodeNumbers", tr("Devices"), &m_nodes, nothingWide);
    addTable("findingNumbers", tr("Findings"), &m_findings, 2);
    resize(usualNumbersSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
    m_timer.setInterval(refreshTime);
    connect(&m_timer, &QTimer::timeout, this, &NumbersDialog::refresh);
    m_timer.start();
}

CopyTable *NumbersDialog::addTable(const char *name, const QString &title, RowsModel *model, int wideColumn)
{
    auto *table = new CopyTable(m_tabs);
    table->setObjectName(QLatin1String(name));
    table->setWideColumn(wideColumn);
    table->setModel(model);
    m_tabs->addTab(table, title);
    return table;
}

void NumbersDialog::refresh()
{
    const HealthNumbers numbers = m_session->numbers();
    m_bus.setRows({tr("What"), tr("Value")}, HealthRows::ofBus(numbers));
    m_nodes.setRows(HealthRows::nodeHead(), HealthRows::ofNodes(numbers));
    showFindings(numbers);
}

void NumbersDialog::showFindings(const HealthNumbers &numbers)
{
    QVector<QStringList> rows;
    for (const HealthLight &light : m_session->judge(numbers)) {
        for (const Finding &finding : light.findings)
            rows.append({ReportMarks::word(ReportMarks::of(finding.severity)),
                         finding.nodeId != 0 ? QString::number(finding.nodeId) : QString(), finding.text,
                         finding.advice});
    }
    m_findings.setRows({tr("Severity"), tr("Node"), tr("What was found"), tr("What to do")}, rows);
}

QString NumbersDialog::toText() const
{
    return m_bus.toText() + QLatin1Char('\n') + m_nodes.toText() + QLatin1Char('\n') + m_findings.toText();
}
