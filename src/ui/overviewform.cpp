// SPDX-License-Identifier: MIT
#include "overviewform.h"

#include "componenttree.h"
#include "detailtables.h"
#include "exchangeaccess.h"
#include "informationdialogs.h"
#include "messagebox.h"
#include "networkpicture.h"
#include "ui_overviewform.h"

#include <store/exchangefile.h>
#include <report/pdfwriter.h>
#include <report/reportsections.h>
#include <interface/hostinterface.h>
#include <interpreter/objects.h>
#include <reader/datareader.h>
#include <update/componentupdatechecker.h>

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QDesktopServices>
#include <QEventLoop>
#include <QFileDialog>
#include <QGraphicsTextItem>
#include <QHeaderView>
#include <QMenu>
#include <QTimer>
#include <QUrl>

#include <algorithm>

namespace {

constexpr int animationInterval = 30; // ms
constexpr int waitSlice = 10;         // ms, the longest sleep between two looks at the reader
constexpr int usualRowHeight = 22;    // pixels
constexpr char suggestedFile[] = "untitled.dxxml";
constexpr char fileFilter[] = QT_TRANSLATE_NOOP("OverviewForm", "Draxel Tool XML files (*.dxxml)");

/*! Shows a message titled with the application's name. */
void showTitledMessage(const QString &text)
{
    showMessage(QCoreApplication::applicationName(), text);
}

/*! Handles events until the reader's run is over or the reader has gone.
 *
 *  The pointer is a copy: the window whose member it is may be destroyed by one of the events.
 *
 *  QEventLoop::processEvents() and not exec(): once the application was told to quit, every exec() returns at
 *  once, and the wait would burn the processor. The timer ends each slice in which nothing else happens, so
 *  that the process sleeps while the bus is silent.
 */
void waitForEndOfRun(QPointer<DataReader> reader)
{
    QTimer sliceTimer;
    sliceTimer.start(waitSlice);
    while (!reader.isNull() && reader->isReading()) {
        QEventLoop loop;
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

} // namespace

OverviewForm::OverviewForm(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::OverviewForm>())
{
    m_ui->setupUi(this);
    fitToFont();

    m_titleItem = NetworkPicture::create(*m_ui->graphicsView, this);

    m_dataReader = new DataReader;
    connect(m_dataReader, SIGNAL(nmtStateUpdate(quint8, NmtSender::NmtState)), this,
            SLOT(newNmtState(quint8, NmtSender::NmtState)));

    m_animationTimer = new QTimer(this);
    m_animationTimer->start(animationInterval);
    connect(m_animationTimer, SIGNAL(timeout()), this, SLOT(animate()));

    m_ui->splitter->setStretchFactor(0, 3);
    m_ui->splitter->setStretchFactor(1, 3);
    m_ui->splitter_2->setStretchFactor(0, 2);
    m_ui->splitter_2->setStretchFactor(1, 4);

    m_updateChecker = new ComponentUpdateChecker(this);
    connect(m_updateChecker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)), this,
            SLOT(showUpdateInformation(quint32, quint32, quint32, QString)));

    new ExchangeAccess(
        m_dataReader, [this] { rebuildComponentTree(); }, this);

    createContextActions();
    m_ui->treeWidget->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_ui->treeWidget, SIGNAL(customContextMenuRequested(QPoint)), this,
            SLOT(showTreeWidgetContextMenu()));
}

// Deliberate: the reader is not deleted; it may be in the middle of a call that led here.
OverviewForm::~OverviewForm() = default;

void OverviewForm::setHostInterface(HostInterface *host)
{
    m_hostInterface = host;
}

bool OverviewForm::setConnected(bool connected)
{
    m_isConnected = connected;
    const bool hasHost = connected && m_hostInterface != nullptr;
    m_sdoClient = hasHost ? m_hostInterface->getSdoClient() : nullptr;
    m_receiverHub = hasHost ? m_hostInterface->getCanReceiverHub() : nullptr;
    if (m_dataReader.isNull())
        return false;
    m_dataReader->setSdoClient(m_sdoClient);
    m_dataReader->setReceiverHub(m_receiverHub);
    return m_dataReader->setSecondarySdoClient(hasHost ? m_hostInterface->getSecondarySdoClient() : nullptr);
}

void OverviewForm::createContextActions()
{
    m_informationDialogs = std::make_unique<InformationDialogs>(*this);
    const auto connectAction = [this](InformationDialog dialog, const char *slot) {
        connect(m_informationDialogs->action(dialog), SIGNAL(triggered()), this, slot);
    };
    connectAction(InformationDialog::DeviceType, SLOT(showDeviceType()));
    connectAction(InformationDialog::ErrorRegister, SLOT(showErrorReg()));
    connectAction(InformationDialog::ErrorField, SLOT(showErrorField()));
    connectAction(InformationDialog::SpecificationVersions, SLOT(showSpec()));
    connectAction(InformationDialog::SecurityStatus, SLOT(showSecurityStatus()));
}

void OverviewForm::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        fitToFont();
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_informationDialogs->retranslate();
        retranslateRows();
    }
}

// A row of usual height would cut a large font, a column of usual width the first header.
void OverviewForm::fitToFont()
{
    ComponentTree(*m_ui->treeWidget).fitColumns();
    for (QTableWidget *table : {m_ui->tblParameters, m_ui->tblValues}) {
        const int height = std::max(usualRowHeight, table->fontMetrics().height());
        table->verticalHeader()->setDefaultSectionSize(height);
    }
}

void OverviewForm::retranslateRows()
{
    // The end of a read makes all rows anew; until then they may be of other nodes than the store.
    if (m_dataReader.isNull() || m_dataReader->isReading())
        return;
    ComponentTree(*m_ui->treeWidget).retranslate(*m_dataReader);
    const QTreeWidgetItem *row = m_ui->treeWidget->currentItem();
    if (row != nullptr)
        DetailTables(m_dataReader->store(), *m_ui->tblParameters, *m_ui->tblValues)
            .showNode(ComponentTree::nodeId(*row));
}

void OverviewForm::rebuildComponentTree()
{
    if (m_dataReader.isNull())
        return;
    ComponentTree tree(*m_ui->treeWidget);
    tree.clear();
    m_ui->tblParameters->clearContents();
    m_ui->tblValues->clearContents();
    tree.addNodes(*m_dataReader);
}

void OverviewForm::animate()
{
    if (m_isConnected && !m_titleItem.isNull())
        NetworkPicture::moveTitle(*m_titleItem, *m_ui->graphicsView, m_isMovingDown);
}

void OverviewForm::showUpdateInformation(quint32 vendor, quint32 product, quint32 revision, QString info)
{
    Q_UNUSED(vendor)
    Q_UNUSED(product)
    Q_UNUSED(revision)
    showTitledMessage(info);
}

void OverviewForm::newNmtState(quint8 node, NmtSender::NmtState nmtState)
{
    ComponentTree(*m_ui->treeWidget).showNmtState(node, nmtState);
}

void OverviewForm::on_btnSavePdf_clicked()
{
    if (m_dataReader.isNull() || m_dataReader->getNodeList().isEmpty()) {
        showMessage(QString(),
                    tr("No devices found. Read all data from Draxel or import data from XML file."));
        return;
    }

    m_reportWriter = std::make_unique<pdfWriter>();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ReportSections(m_dataReader->store()).write(*m_reportWriter);
    m_reportWriter->writeFiles();
    QApplication::restoreOverrideCursor();
    // A HTML file that cannot be created is passed over in silence.
    if (m_reportWriter->failure() == pdfWriter::Failure::Incomplete)
        showTitledMessage(m_reportWriter->errorString());
    // Deliberate: the path itself is the URL, without a scheme, and it is opened whatever was written.
    QDesktopServices::openUrl(QUrl(pdfWriter::pdfPath(), QUrl::TolerantMode));
}

void OverviewForm::on_btnRead_clicked()
{
    if (!m_isConnected) {
        showTitledMessage(tr("No connection to Draxel. Please connect to Draxel and retry."));
        return;
    }

    const QPointer<OverviewForm> self(this);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_dataReader->startReading();
    waitForEndOfRun(m_dataReader);
    QApplication::restoreOverrideCursor();
    // The events of the wait may have included the end of this window.
    if (!self.isNull())
        rebuildComponentTree();
}

void OverviewForm::on_btnExport_clicked()
{
    const QString fileName = QFileDialog::getSaveFileName(this, tr("Export Draxel LEV Network information"),
                                                          QLatin1String(suggestedFile), tr(fileFilter));
    if (fileName.isEmpty())
        return;
    // A file that cannot be written is passed over in silence, and stays as it was.
    saveExchangeFile(fileName, m_dataReader->exportXml());
}

void OverviewForm::on_btnImport_clicked()
{
    const QString fileName = QFileDialog::getOpenFileName(this, tr("Import Draxel LEV Network information"),
                                                          QLatin1String(suggestedFile), tr(fileFilter));
    // A file that cannot be read is passed over in silence; the tree shows what the reader holds either way.
    QString text;
    if (!fileName.isEmpty() && loadExchangeFile(fileName, text))
        m_dataReader->importXml(text);
    rebuildComponentTree();
}

void OverviewForm::on_treeWidget_currentItemChanged(QTreeWidgetItem *current, QTreeWidgetItem *previous)
{
    Q_UNUSED(previous)
    if (current == nullptr || m_dataReader.isNull())
        return;

    const quint8 nodeId = ComponentTree::nodeId(*current);
    qDebug() << "Selected component:" << current->text(0) << "of node" << nodeId;
    DetailTables tables(m_dataReader->store(), *m_ui->tblParameters, *m_ui->tblValues);
    tables.showNode(nodeId);
}

void OverviewForm::on_btnCheckUpdate_clicked()
{
    const QTreeWidgetItem *row = m_ui->treeWidget->currentItem();
    if (row == nullptr) {
        showTitledMessage(tr("No component selected."));
        return;
    }
    const NodeView node = m_dataReader->node(ComponentTree::nodeId(*row));
    const std::optional<QVariant> vendor = node.value(Object::identity, 1);
    const std::optional<QVariant> product = node.value(Object::identity, 2);
    const std::optional<QVariant> revision = node.value(Object::identity, 3);
    if (vendor && product && revision)
        m_updateChecker->checkForUpdate(vendor->toUInt(), product->toUInt(), revision->toUInt());
}

void OverviewForm::showDeviceType()
{
    showDialog(InformationDialog::DeviceType);
}

void OverviewForm::showErrorReg()
{
    showDialog(InformationDialog::ErrorRegister);
}

void OverviewForm::showErrorField()
{
    showDialog(InformationDialog::ErrorField);
}

void OverviewForm::showSpec()
{
    showDialog(InformationDialog::SpecificationVersions);
}

void OverviewForm::showSecurityStatus()
{
    showDialog(InformationDialog::SecurityStatus);
}

void OverviewForm::showDialog(InformationDialog dialog)
{
    const QTreeWidgetItem *row = m_ui->treeWidget->currentItem();
    if (row != nullptr && !m_dataReader.isNull())
        m_informationDialogs->show(dialog, m_dataReader->node(ComponentTree::nodeId(*row)));
}

void OverviewForm::showTreeWidgetContextMenu()
{
    const QTreeWidgetItem *row = m_ui->treeWidget->currentItem();
    if (row == nullptr || m_dataReader.isNull())
        return;

    const QPoint position = QCursor::pos();
    QMenu menu(this);
    menu.addActions(m_informationDialogs->offeredActions(m_dataReader->node(ComponentTree::nodeId(*row))));
    if (menu.isEmpty())
        return; // it would be an invisible popup that takes the next click
    menu.exec(position);
}
