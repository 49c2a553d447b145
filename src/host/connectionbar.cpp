// SPDX-License-Identifier: MIT
#include "connectionbar.h"

#include "bargap.h"

#include <bus/backends.h>

#include <QCanBus>
#include <QComboBox>
#include <QEvent>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

namespace {

constexpr int bitsPerKilobit = 1000;
constexpr int asConfigured = -1; // item data of the first bit rate

constexpr int interfaceCharacters = 18; // usual width of the interface box
constexpr int smallestWidth = 80;       // pixels of the boxes, on a screen that is too small
constexpr int distance = 18;            // pixels between the two parts

bool hasBitRate(const QString &plugin)
{
    return BackEnd::find(plugin).hasBitRate;
}

} // namespace

ConnectionBar::ConnectionBar(QWidget *parent)
    : BreakingRow(distance, parent)
{
    build();
    fillPlugins();
    fillBitRates();
    retranslate();
    handlePluginChange();
    showState(m_state);

    connect(m_plugin, &QComboBox::currentTextChanged, this, &ConnectionBar::handlePluginChange);
    connect(m_refresh, &QToolButton::clicked, this, &ConnectionBar::refreshInterfaces);
    connect(m_connect, &QPushButton::clicked, this, &ConnectionBar::handleButton);
    connect(m_interface->lineEdit(), &QLineEdit::returnPressed, this, &ConnectionBar::handleButton);
}

BusSettings ConnectionBar::settings() const
{
    BusSettings settings;
    settings.address.plugin = m_plugin->currentText();
    settings.address.interfaceName = m_interface->currentText().trimmed();
    const int bitRate = m_bitRate->currentData().toInt();
    if (hasBitRate(settings.address.plugin) && bitRate != asConfigured)
        settings.bitRate = bitRate;
    return settings;
}

void ConnectionBar::setSettings(const BusSettings &settings)
{
    // A back end that is not installed stays in the list: connecting then says what is missing.
    if (m_plugin->findText(settings.address.plugin) < 0)
        m_plugin->addItem(settings.address.plugin);
    m_plugin->setCurrentText(settings.address.plugin);
    m_interface->setCurrentText(settings.address.interfaceName);

    const int bitRate = settings.bitRate.value_or(asConfigured);
    if (m_bitRate->findData(bitRate) < 0)
        m_bitRate->addItem(bitRateText(bitRate), bitRate);
    m_bitRate->setCurrentIndex(m_bitRate->findData(bitRate));
}

void ConnectionBar::showState(BusConnection::State state)
{
    m_state = state;
    const bool isClosed = state == BusConnection::State::Disconnected;
    m_plugin->setEnabled(isClosed);
    m_interface->setEnabled(isClosed);
    m_refresh->setEnabled(isClosed);
    m_bitRate->setEnabled(isClosed && hasBitRate(m_plugin->currentText()));
    m_connect->setText(isClosed ? tr("Connect") : tr("Disconnect"));
    m_connect->setToolTip(isClosed ? tr("Open this bus") : tr("Close the bus"));
}

void ConnectionBar::refreshInterfaces()
{
    const QString typed = m_interface->currentText();
    const QSignalBlocker blocker(m_interface);
    m_interface->clear();
    const QList<QCanBusDeviceInfo> devices = QCanBus::instance()->availableDevices(m_plugin->currentText());
    for (const QCanBusDeviceInfo &device : devices) {
        m_interface->addItem(device.name());
        m_interface->setItemData(m_interface->count() - 1, device.description(), Qt::ToolTipRole);
    }
    if (!typed.isEmpty())
        m_interface->setCurrentText(typed);
}

void ConnectionBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    BreakingRow::changeEvent(event);
}

bool ConnectionBar::eventFilter(QObject *object, QEvent *event)
{
    // Ctrl+K connects; on X11 a line edit would delete the rest of its text with it.
    if (object == m_interface->lineEdit() && event->type() == QEvent::ShortcutOverride
        && static_cast<QKeyEvent *>(event)->matches(QKeySequence::DeleteEndOfLine)) {
        event->ignore();
        return true;
    }
    return BreakingRow::eventFilter(object, event);
}

void ConnectionBar::build()
{
    m_pluginLabel = new QLabel(this);
    m_plugin = new QComboBox(this);
    m_plugin->setObjectName(QStringLiteral("pluginBox"));
    m_pluginLabel->setBuddy(m_plugin);

    m_interfaceLabel = new QLabel(this);
    m_interface = new QComboBox(this);
    m_interface->setObjectName(QStringLiteral("interfaceBox"));
    m_interface->setEditable(true);
    m_interface->setInsertPolicy(QComboBox::NoInsert);
    m_interface->setMinimumContentsLength(interfaceCharacters);
    m_interface->setMinimumWidth(smallestWidth);
    m_interface->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_interface->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_interface->lineEdit()->installEventFilter(this);
    m_interfaceLabel->setBuddy(m_interface);

    m_refresh = new QToolButton(this);
    m_refresh->setObjectName(QStringLiteral("refreshButton"));
    m_refresh->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    m_refresh->setAutoRaise(true);

    m_bitRateLabel = new QLabel(this);
    m_bitRate = new QComboBox(this);
    m_bitRate->setObjectName(QStringLiteral("bitRateBox"));
    m_bitRate->setSizeAdjustPolicy(QComboBox::AdjustToContents); // another language has other words
    m_bitRateLabel->setBuddy(m_bitRate);

    m_connect = new QPushButton(this);
    m_connect->setObjectName(QStringLiteral("connectButton"));
    arrangeParts();
}

void ConnectionBar::arrangeParts()
{
    auto *which = new QHBoxLayout;
    which->setSpacing(barGap);
    which->addWidget(m_pluginLabel);
    which->addWidget(m_plugin);
    which->addSpacing(barGap);
    which->addWidget(m_interfaceLabel);
    which->addWidget(m_interface, 1);
    which->addWidget(m_refresh);
    auto *how = new QHBoxLayout;
    how->setSpacing(barGap);
    how->addWidget(m_bitRateLabel);
    how->addWidget(m_bitRate, 1);
    how->addSpacing(barGap);
    how->addWidget(m_connect);
    addPart(which, 1);
    addPart(how);
}

void ConnectionBar::retranslate()
{
    m_pluginLabel->setText(tr("&Back end:"));
    m_plugin->setToolTip(tr("The kind of CAN adapter"));
    m_interfaceLabel->setText(tr("&Interface:"));
    m_interface->setToolTip(tr("One of the adapters found; others can be typed in"));
    m_interface->lineEdit()->setPlaceholderText(tr("none found: type a name"));
    m_refresh->setToolTip(tr("Look for adapters again"));
    m_refresh->setAccessibleName(m_refresh->toolTip());
    m_bitRateLabel->setText(tr("Bit &rate:"));
    m_bitRate->setToolTip(tr("Set on the adapter before connecting"));
    for (int i = 0; i < m_bitRate->count(); ++i)
        m_bitRate->setItemText(i, bitRateText(m_bitRate->itemData(i).toInt()));
    showState(m_state);
}

void ConnectionBar::fillPlugins()
{
    QStringList plugins = QCanBus::instance()->plugins();
    plugins.sort();
    m_plugin->addItems(plugins);
}

QString ConnectionBar::bitRateText(int bitRate)
{
    if (bitRate == asConfigured)
        return tr("as configured");
    return bitRate % bitsPerKilobit == 0 ? tr("%1 kbit/s").arg(bitRate / bitsPerKilobit)
                                         : tr("%1 bit/s").arg(bitRate);
}

void ConnectionBar::fillBitRates()
{
    m_bitRate->addItem(QString(), asConfigured);
    for (const int bitRate : offeredBitRates)
        m_bitRate->addItem(QString(), bitRate);
}

void ConnectionBar::handlePluginChange()
{
    m_interface->clearEditText();
    refreshInterfaces();
    showState(m_state);
}

void ConnectionBar::handleButton()
{
    if (m_state == BusConnection::State::Disconnected)
        emit connectRequested(settings());
    else if (sender() == m_connect) // Enter in the interface box never disconnects
        emit disconnectRequested();
}
