// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/uploadgate.h>
#include <host/pages/live/addvaluedialog.h>
#include <host/pages/live/livepage.h>
#include <host/pages/live/livesession.h>
#include <tests/integration/simulatedhost.h>

#include <QTableView>
#include <QToolButton>
#include <QtTest>

/*! The page on the ride, which stands still. */
class Ride
{
public:
    explicit Ride(const Simulator::VehicleDescription &vehicle
                  = SimulatedHost::stillVehicle(QStringLiteral("ride")))
        : m_host(vehicle, 250000)
        , m_session(&m_host.services())
        , m_page(&m_session)
    {
        m_session.questions().setSharePercent(100);
        QObject::connect(&m_host.services().bus(), &BusConnection::frameSent, &m_page,
                         [this](const QCanBusFrame &frame) {
                             ++m_sent;
                             m_requests.append(frame.payload().mid(1, 3));
                             m_areAllUploads = m_areAllUploads && CanOpen::isUploadRequest(frame);
                         });
        QObject::connect(&m_page, &LivePage::told, &m_page,
                         [this](const QString &sentence, const QStringList &problems) {
                             m_told = sentence;
                             m_problems = problems;
                         });
        QObject::connect(&m_page, &LivePage::failed, &m_page,
                         [this](const QString &sentence) { m_failed = sentence; });
        m_page.resize(1000, 400);
        m_page.show();
    }
    Q_DISABLE_COPY(Ride)

    void connectToBus()
    {
        QVERIFY(m_host.connectToBus());
        QTest::qWait(1500);
    }
    void learn()
    {
        find<QToolButton>("learnValues")->click();
        QTRY_VERIFY_WITH_TIMEOUT(!m_session.questions().isLearning(), 60000);
        QTest::qWait(300);
    }
    AddValueDialog *openDialog()
    {
        find<QToolButton>("addValue")->click();
        return m_page.findChild<AddValueDialog *>();
    }
    void watch(const char *text, int period = 0)
    {
        WatchedItem item = *parseWatched(QLatin1String(text));
        item.period = period;
        QVERIFY(m_session.watch().add(item));
        QTest::qWait(1500);
    }
    QString cell(int row, int column) const { return index(row, column).data().toString(); }
    QModelIndex index(int row, int column) const
    {
        return find<QTableView>("watchTable")->model()->index(row, column);
    }
    HostServices &services() { return m_host.services(); }
    int rows() const { return find<QTableView>("watchTable")->model()->rowCount(); }
    bool isGrey(int row) const { return index(row, 1).data(Qt::ForegroundRole).isValid(); }

    template<typename Part>
    Part *find(const char *name) const
    {
        auto *part = m_page.findChild<Part *>(QLatin1String(name));
        if (part == nullptr)
            qFatal("there is no %s", name);
        return part;
    }

    SimulatedHost &host() { return m_host; }
    LiveSession &session() { return m_session; }
    LivePage &page() { return m_page; }
    int sent() const { return m_sent; }
    /*! Requests for an object: index and sub-index as they are sent, "406001". */
    int sentFor(const char *object) const { return m_requests.count(QByteArray::fromHex(object)); }
    bool areAllUploads() const { return m_areAllUploads; }
    QString told() const { return m_told; }
    QStringList problems() const { return m_problems; }
    QString failed() const { return m_failed; }

private:
    SimulatedHost m_host;
    LiveSession m_session;
    LivePage m_page;
    int m_sent = 0;
    QVector<QByteArray> m_requests;
    bool m_areAllUploads = true;
    QString m_told;
    QStringList m_problems;
    QString m_failed;
};
