// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include <host/pages/breakingrow.h>

class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;

/*! Where the user chooses a bus and connects: back end, interface, bit rate, one button. Opens nothing
 *  itself.
 */
class ConnectionBar : public BreakingRow
{
    Q_OBJECT

public:
    explicit ConnectionBar(QWidget *parent = nullptr);

    /*! What is chosen; the interface may be empty. */
    BusSettings settings() const;
    void setSettings(const BusSettings &settings);

    /*! Shows what can be done now; the choice is open only while no bus is. */
    void showState(BusConnection::State state);

public slots:
    /*! Lists the interfaces of the chosen back end again; what is typed in stays. */
    void refreshInterfaces();

signals:
    void connectRequested(const BusSettings &settings);
    void disconnectRequested();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void build();
    void arrangeParts();
    void retranslate();
    void fillPlugins();
    void fillBitRates();
    static QString bitRateText(int bitRate);
    void handlePluginChange();
    void handleButton();

    BusConnection::State m_state = BusConnection::State::Disconnected;
    QLabel *m_pluginLabel = nullptr;
    QComboBox *m_plugin = nullptr;
    QLabel *m_interfaceLabel = nullptr;
    QComboBox *m_interface = nullptr;
    QToolButton *m_refresh = nullptr;
    QLabel *m_bitRateLabel = nullptr;
    QComboBox *m_bitRate = nullptr;
    QPushButton *m_connect = nullptr;
};
