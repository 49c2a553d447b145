// SPDX-License-Identifier: MIT
#pragma once

#include <interface/nmtsender.h>

#include <QPointer>
#include <QWidget>

#include <memory>

class CanReceiverHub;
class ComponentUpdateChecker;
class DataReader;
class HostInterface;
class InformationDialogs;
class QGraphicsTextItem;
class QTimer;
class QTreeWidgetItem;
class SdoClient;
class pdfWriter;
enum class InformationDialog : quint8;
namespace Ui {
class OverviewForm;
}

/*! The plug-in's window: wires the reader, the tree, the tables and the buttons to each other.
 *
 *  Every slot fetches what it needs and calls a class with one job. The host's objects are used, never owned.
 */
class OverviewForm : public QWidget
{
    Q_OBJECT

public:
    explicit OverviewForm(QWidget *parent = nullptr);
    ~OverviewForm() override;

    /*! Keeps the host's services for setConnected(). */
    void setHostInterface(HostInterface *host);

    /*! Fetches the host's bus objects, or lets go of them, and passes them on to the reader.
     *
     *  Returns whether the host has a second SDO client to listen to; always false when not \a connected.
     */
    bool setConnected(bool connected);

public slots:
    void animate();
    void showUpdateInformation(quint32 vendor, quint32 product, quint32 revision, QString info);
    void newNmtState(quint8 node, NmtSender::NmtState nmtState);

private slots:
    /*! Writes the report into the home directory and opens it with the system's viewer. */
    void on_btnSavePdf_clicked();

    /*! Reads the whole bus; returns when the run is over, and handles events meanwhile. */
    void on_btnRead_clicked();

    void on_btnExport_clicked();
    void on_btnImport_clicked();
    void on_treeWidget_currentItemChanged(QTreeWidgetItem *current, QTreeWidgetItem *previous);
    void on_btnCheckUpdate_clicked();
    void showDeviceType();
    void showErrorReg();
    void showErrorField();
    void showSpec();
    void showSecurityStatus();
    void showTreeWidgetContextMenu();

protected:
    void changeEvent(QEvent *event) override;

private:
    void createContextActions();
    void rebuildComponentTree();
    void fitToFont();
    void retranslateRows();
    void showDialog(InformationDialog dialog);

    std::unique_ptr<Ui::OverviewForm> m_ui;
    bool m_isConnected = false;
    HostInterface *m_hostInterface = nullptr;
    SdoClient *m_sdoClient = nullptr;        // null while not connected
    CanReceiverHub *m_receiverHub = nullptr; // null while not connected
    QPointer<DataReader> m_dataReader;       // without an owner, see the destructor
    QTimer *m_animationTimer = nullptr;      // child
    QPointer<QGraphicsTextItem> m_titleItem; // of the scene, which is a child
    bool m_isMovingDown = true;
    QPointer<ComponentUpdateChecker> m_updateChecker;         // child
    std::unique_ptr<pdfWriter> m_reportWriter;                // of the last report; null until the first
    std::unique_ptr<InformationDialogs> m_informationDialogs; // the five context actions are children
};
